#!/usr/bin/python3
"""Draws the cast, the icons and the pictures of the documentation, or checks that what is there is what would
be drawn.

    draw.py [--only NAME]           write the pictures (of one character, or "icon", "cast", ...)
    draw.py --check [--only NAME]   write nothing; name every file that differs and every fault of the
                                    art; exit status 1 when there is any
"""
import argparse
import functools
import importlib
import io
import json
import sys
from pathlib import Path

import numpy as np
from PIL import Image

HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[1]
DATA, DOCUMENTATION, FIXTURES = Path("data"), Path("docs/images"), Path("tests/fixtures/art")
sys.path.insert(0, str(HERE))

from kit.checks import check_character  # noqa: E402 (the kit is found through the line above)
from kit.palette import named_colours  # noqa: E402


def character_names():
    """The characters there is a file for."""
    return sorted(path.stem for path in (HERE / "characters").glob("*.py") if path.stem[0] != "_")


@functools.cache
def load_character(name):
    """A character's description and its pictures, file name -> image."""
    module = importlib.import_module(f"characters.{name}")
    return module.CHARACTER, module.poses()


def json_text(value):
    return json.dumps(value, indent=2, ensure_ascii=False) + "\n"


def draw_character(name):
    """The files of one character (path -> content), and what is wrong with them."""
    character, pictures = load_character(name)
    # A pack has a folder of its own; what is compiled in keeps its pictures with the other resources.
    folder = DATA / "characters" / character.identifier if character.manifest else DATA / "builtin"
    files = {folder / file: picture for file, picture in pictures.items()}
    if character.manifest is not None:
        files[folder / "manifest.json"] = json_text(character.manifest_json())
    if character.places:
        files[folder / "places.json"] = json_text({name: place._asdict() for name, place in character.places.items()})
    return files, [f"{character.identifier}/{text}" for text in check_character(character, pictures)]


def draw_icon():
    """The icon files, in the same form; they are checked by looking."""
    module = importlib.import_module("icon")
    return {DATA / "icon" / file: content for file, content in module.files().items()}, []


def draw_cast():
    """The pictures of everybody together; what is wrong with somebody is told with their own."""
    module = importlib.import_module("cast")
    pictures = module.files({name: load_character(name) for name in character_names()})
    return {DOCUMENTATION / file: picture for file, picture in pictures.items()}, []


def draw_ramps():
    """The colours that the tests hold the pictures against, one a line: #rrggbb, the ramp and the step."""
    lines = [f"#{bytes(value).hex()} {name}\n" for name, value in named_colours()]
    return {FIXTURES / "ramps.txt": "".join(lines)}, []


def draw_guide():
    """The picture of a pack's points."""
    pictures = importlib.import_module("guide").files(*load_character("munshi"))
    return {DOCUMENTATION / file: picture for file, picture in pictures.items()}, []


TOGETHER = {"icon": draw_icon, "cast": draw_cast, "guide": draw_guide, "ramps": draw_ramps}


def encoded(content):
    """The bytes of a file: a PNG without any metadata, or UTF-8 text."""
    if isinstance(content, str):
        return content.encode()
    buffer = io.BytesIO()
    content.save(buffer, "PNG", compress_level=9)
    return buffer.getvalue()


def matches(path, content):
    """Whether a committed file shows the same: pixels are compared, not bytes."""
    if not path.is_file():
        return False
    if isinstance(content, str):
        return path.read_text(encoding="utf-8") == content
    with Image.open(path) as picture:
        return np.array_equal(np.asarray(picture.convert("RGBA")), np.asarray(content.convert("RGBA")))


def unexpected_files(files):
    """Files in the drawn folders that nothing draws any more."""
    folders = {path.parent for path in files} - {DOCUMENTATION}  # which holds screenshots as well
    present = {path.relative_to(ROOT) for folder in folders if (ROOT / folder).is_dir()
               for path in (ROOT / folder).iterdir() if path.is_file()}
    return sorted(present - set(files))


def check(files, findings):
    """Prints what is wrong; returns the exit status."""
    findings = list(findings)
    for path, content in sorted(files.items()):
        if not matches(ROOT / path, content):
            findings.append(f"{path} differs from what is drawn")
    for finding in findings:
        print(finding)
    return 1 if findings else 0


def write(files, findings):
    """Writes what changed; faults of the art are told, but do not keep it from being looked at."""
    for path, content in sorted(files.items()):
        if not matches(ROOT / path, content):
            (ROOT / path).parent.mkdir(parents=True, exist_ok=True)
            (ROOT / path).write_bytes(encoded(content))
            print(f"wrote {path}")
    for finding in findings:
        print(finding, file=sys.stderr)
    return 0


def main():
    everything = character_names() + list(TOGETHER)
    parser = argparse.ArgumentParser(description="Draw the cast, the icons and the documentation's pictures.")
    parser.add_argument("--check", action="store_true", help="compare instead of writing")
    parser.add_argument("--only", metavar="NAME", choices=everything,
                        help=f"one character, or {', '.join(TOGETHER)}")
    arguments = parser.parse_args()
    files, findings = {}, []
    for name in [arguments.only] if arguments.only else everything:
        drawn, faults = TOGETHER[name]() if name in TOGETHER else draw_character(name)
        files.update(drawn)
        findings += faults
    if not arguments.check:
        return write(files, findings)
    # One character alone shares its folder with others, whose files are not in `files`.
    stray = [] if arguments.only else unexpected_files(files)
    return check(files, findings + [f"{path} is drawn by nothing" for path in stray])


if __name__ == "__main__":
    sys.exit(main())
