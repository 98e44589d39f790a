#!/usr/bin/python3
"""Draws the cast and the icons into data/, or checks that what is there is what would be drawn.

    draw.py [--only NAME]           write the pictures (of one character, or "icon")
    draw.py --check [--only NAME]   write nothing; name every file that differs and every fault of the
                                    art; exit status 1 when there is any
"""
import argparse
import importlib
import io
import json
import sys
from pathlib import Path

import numpy as np
from PIL import Image

HERE = Path(__file__).resolve().parent
DATA = HERE.parents[1] / "data"
sys.path.insert(0, str(HERE))

from kit.checks import check_character  # noqa: E402 (the kit is found through the line above)


def character_names():
    """The characters there is a file for."""
    return sorted(path.stem for path in (HERE / "characters").glob("*.py") if path.stem[0] != "_")


def load_character(name):
    """A character's description and its pictures, file name -> image."""
    module = importlib.import_module(f"characters.{name}")
    return module.CHARACTER, module.poses()


def json_text(value):
    return json.dumps(value, indent=2, ensure_ascii=False) + "\n"


def draw_character(name):
    """The files of one character (path under data/ -> content), and what is wrong with them."""
    character, pictures = load_character(name)
    # A pack has a folder of its own; what is compiled in keeps its pictures with the other resources.
    folder = Path("characters") / character.identifier if character.manifest else Path("builtin")
    files = {folder / file: picture for file, picture in pictures.items()}
    if character.manifest is not None:
        files[folder / "manifest.json"] = json_text(character.manifest_json())
    if character.places:
        files[folder / "places.json"] = json_text({name: place._asdict() for name, place in character.places.items()})
    return files, [f"{character.identifier}/{text}" for text in check_character(character, pictures)]


def draw_icon():
    """The icon files, in the same form; they are checked by looking."""
    module = importlib.import_module("icon")
    return {Path("icon") / file: content for file, content in module.files().items()}, []


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
    folders = {(DATA / path).parent for path in files}
    present = {path for folder in folders if folder.is_dir() for path in folder.iterdir() if path.is_file()}
    return sorted(present - {DATA / path for path in files})


def check(files, findings):
    """Prints what is wrong; returns the exit status."""
    findings = list(findings)
    for path, content in sorted(files.items()):
        if not matches(DATA / path, content):
            findings.append(f"data/{path} differs from what is drawn")
    for finding in findings:
        print(finding)
    return 1 if findings else 0


def write(files, findings):
    """Writes what changed; faults of the art are told, but do not keep it from being looked at."""
    for path, content in sorted(files.items()):
        if not matches(DATA / path, content):
            (DATA / path).parent.mkdir(parents=True, exist_ok=True)
            (DATA / path).write_bytes(encoded(content))
            print(f"wrote data/{path}")
    for finding in findings:
        print(finding, file=sys.stderr)
    return 0


def main():
    everything = character_names() + ["icon"]
    parser = argparse.ArgumentParser(description="Draw the cast and the icons into data/.")
    parser.add_argument("--check", action="store_true", help="compare instead of writing")
    parser.add_argument("--only", metavar="NAME", choices=everything, help="one character, or icon")
    arguments = parser.parse_args()
    files, findings = {}, []
    for name in [arguments.only] if arguments.only else everything:
        drawn, faults = draw_icon() if name == "icon" else draw_character(name)
        files.update(drawn)
        findings += faults
    if not arguments.check:
        return write(files, findings)
    # One character alone shares its folder with others, whose files are not in `files`.
    stray = [] if arguments.only else unexpected_files(files)
    return check(files, findings + [f"data/{path.relative_to(DATA)} is drawn by nothing" for path in stray])


if __name__ == "__main__":
    sys.exit(main())
