#!/usr/bin/python3
"""Makes a contact sheet of one character, or of the whole cast in a row, for looking.

    sheet.py NAME [--out FILE] [--only FILE]... [--factor N] [--strays]
    sheet.py cast [--out FILE]
"""
import argparse
import sys

from draw import character_names, load_character
from kit.checks import DARK_DESKTOP, LIGHT_DESKTOP
from kit.sheet import as_seen, at_height, contact_sheet, enlarged, marked_strays, row, stack


def cast_sheet():
    """The whole cast's reference pictures at 320 points, as they stand on a desktop together."""
    pictures = []
    for name in character_names():
        character, drawn = load_character(name)
        pictures.append(at_height(drawn[character.reference], 320))
    return stack([row(pictures, LIGHT_DESKTOP), row(pictures, DARK_DESKTOP)])


def character_sheet(arguments):
    """One character's sheet, or only some of its pictures enlarged."""
    drawn = as_seen(*load_character(arguments.name))
    if not (arguments.only or arguments.strays or arguments.factor):
        return contact_sheet(list(drawn.values()))
    pictures = [drawn[file] for file in arguments.only or drawn]
    factor = arguments.factor or 4
    large = [(marked_strays if arguments.strays else enlarged)(picture, factor) for picture in pictures]
    return stack([row(large, LIGHT_DESKTOP), row(large, DARK_DESKTOP)])


def main():
    parser = argparse.ArgumentParser(description="A contact sheet, for looking.")
    parser.add_argument("name", choices=character_names() + ["cast"])
    parser.add_argument("--out", help="the PNG to write (default: NAME-sheet.png)")
    parser.add_argument("--only", action="append", metavar="FILE", help="only this picture, enlarged")
    parser.add_argument("--factor", type=int, help="how much to enlarge (default 4)")
    parser.add_argument("--strays", action="store_true", help="frame isolated pixels in magenta")
    arguments = parser.parse_args()
    picture = cast_sheet() if arguments.name == "cast" else character_sheet(arguments)
    target = arguments.out or f"{arguments.name}-sheet.png"
    picture.save(target)
    print(f"{target}: {picture.width} x {picture.height}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
