#!/usr/bin/python3
"""Each check of the art must be able to fail: damages a sound picture and looks for the complaint."""
import contextlib
import io
import tempfile
import unittest
from dataclasses import replace
from pathlib import Path
from unittest import mock

import numpy as np
from PIL import Image

import draw
from kit import Canvas, Character, Manifest
from kit.checks import check_character, stray_pixels

WIDTH, HEIGHT, GROUND = 40, 50, 46
FIGURE = Character(
    identifier="figure", grid=(WIDTH, HEIGHT), ground=(20, GROUND), moves={"blink.png": [(15, 15, 25, 20)]},
    stray=0,
    manifest=Manifest(name="Figure", role="Test", poses={"idle": "idle.png"}, face=(20, 17), accent=(1, 0, 0),
                      behaviours=("idle",)),
)


def sound_pictures():
    """A teal box with its feet on the ground, and the same again."""
    canvas = Canvas(WIDTH, HEIGHT)
    canvas.put(canvas.box(10, 10, 30, GROUND - 1), "teal", canvas.even(0.9))
    return {"idle.png": canvas.render(), "blink.png": canvas.render()}


def complaints(damage, character=FIGURE):
    """What the checks say when the blink picture is damaged."""
    pictures = sound_pictures()
    pictures["blink.png"] = Image.fromarray(damage(np.array(pictures["blink.png"])))
    return " / ".join(check_character(character, pictures))


def painted(top, left, colour):
    """A damage that sets the pixels from top, left on by two, so that none touches another."""
    def damage(pixels):
        pixels[top:top + 12:2, left:left + 12:2] = colour
        return pixels
    return damage


def many_colours(pixels):
    for index in range(60):
        pixels[20 + index // 10, 12 + index % 10, :3] = (4 * index, 200, 10)
    return pixels


def all_dark(pixels):
    pixels[pixels[..., 3] > 0, :3] = (44, 23, 26)
    return pixels


def all_cream(pixels):
    pixels[pixels[..., 3] > 0, :3] = (236, 232, 224)
    return pixels


class ChecksCanFail(unittest.TestCase):
    def test_sound_pictures_pass(self):
        self.assertEqual(complaints(lambda pixels: pixels), "")

    def test_each_damage_is_named(self):
        damages = {
            "half transparent": (painted(20, 14, (1, 2, 3, 128)), "neither opaque nor empty"),
            "isolated pixels": (painted(20, 14, (255, 0, 255, 255)), "isolated pixels"),
            "too many colours": (many_colours, "48 are allowed"),
            "below the ground": (lambda pixels: np.roll(pixels, 1, 0), "ends in row 46"),
            "off the canvas": (lambda pixels: np.roll(pixels, -9, 1), "empty pixels at an edge"),
            "wrong size": (lambda pixels: pixels[1:], "the grid is"),
            "nothing drawn": (lambda pixels: pixels * 0, "is empty"),
            "invisible on dark": (all_dark, "first ring inside the contour on a dark desktop"),
            "invisible on light": (all_cream, "contour on a light desktop"),
            "the body moved": (lambda pixels: np.roll(pixels, 1, 1), "outside its moves"),
        }
        for name, (damage, complaint) in damages.items():
            with self.subTest(name):
                self.assertIn(complaint, complaints(damage))

    def test_tiptoe_is_named(self):
        self.assertIn("stands on", complaints(lambda pixels: pixels, replace(FIGURE, footing=23)))

    def test_a_named_file_must_be_drawn(self):
        missing = replace(FIGURE, overlays=("lamp.png",))
        self.assertIn("lamp.png: is named, but not drawn", complaints(lambda pixels: pixels, missing))

    def test_a_stray_pixel_is_found_where_it_is(self):
        pixels = np.array(sound_pictures()["idle.png"])
        pixels[30, 20, :3] = (255, 0, 255)
        self.assertEqual(stray_pixels(pixels), [(20, 30)])


class CommittedFilesAreCompared(unittest.TestCase):
    """In a folder of its own, with a picture and a text as the committed files."""

    FOLDER = Path("data/figure")

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        root = mock.patch.object(draw, "ROOT", self.root)
        root.start()
        self.addCleanup(root.stop)
        self.files = {self.FOLDER / "idle.png": sound_pictures()["idle.png"], self.FOLDER / "manifest.json": "{}\n"}
        with contextlib.redirect_stdout(io.StringIO()):
            draw.write(self.files, [])

    def check(self):
        """The exit status, and what was said."""
        said = io.StringIO()
        with contextlib.redirect_stdout(said):
            status = draw.check(self.files, [])
        return status, said.getvalue()

    def test_what_was_just_written_is_the_same(self):
        self.assertEqual(self.check(), (0, ""))
        self.assertEqual(draw.unexpected_files(self.files), [])

    def test_one_changed_pixel_is_named(self):
        picture = self.files[self.FOLDER / "idle.png"].copy()
        picture.putpixel((20, 30), (255, 0, 255, 255))
        picture.save(self.root / self.FOLDER / "idle.png")
        self.assertEqual(self.check(), (1, "data/figure/idle.png differs from what is drawn\n"))

    def test_a_changed_text_and_a_missing_picture_are_named(self):
        (self.root / self.FOLDER / "manifest.json").write_text("{ }\n")
        (self.root / self.FOLDER / "idle.png").unlink()
        self.assertEqual(self.check()[0], 1)
        self.assertEqual(self.check()[1].count("differs"), 2)

    def test_a_file_that_nothing_draws_is_found(self):
        (self.root / self.FOLDER / "old.png").write_bytes(b"")
        self.assertEqual(draw.unexpected_files(self.files), [self.FOLDER / "old.png"])


if __name__ == "__main__":
    unittest.main()
