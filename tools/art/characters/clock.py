"""Ghanta Ghar the clock tower: brick and sandstone, a bell under its dome, windows for eyes.

The program draws the hands over the dials, which are empty in the pictures, and hangs small plates with the
names of cities at its foot. `PLACES` says where.
"""
from typing import NamedTuple

import numpy as np

from kit import BASE, LIGHT, SHADOW, Canvas, Character, Manifest, corner, mirrored, turned
from kit.shapes import shifted

from ._clock_maps import CHEEK, EYE_KEY, EYES, FACE_KEY, LAUGH, OPEN_SHUTTER, SHUTTER_KEY, SMILE

WIDTH, HEIGHT = 125, 202
MIDDLE = WIDTH / 2
FLOOR = 197  # the contour adds the last row above the ground line at 198


class Dial(NamedTuple):
    """A dial in art pixels from the upper left: the pixel in its very middle, about which the hands turn, and
    the radius that is free of ticks."""

    column: int
    row: int
    radius: int


class Place(NamedTuple):
    """A rectangle in art pixels from the upper left; right and bottom are not part of it."""

    left: int
    top: int
    right: int
    bottom: int


LARGE_DIAL = Dial(62, 155, 16)
LEFT_DIAL = Dial(18, 155, 6)
RIGHT_DIAL = Dial(106, 155, 6)
NAMES = Place(3, 183, WIDTH - 3, 196)  # on the steps, where the plates with the cities' names hang
PLACES = {"largeDial": LARGE_DIAL, "leftDial": LEFT_DIAL, "rightDial": RIGHT_DIAL, "names": NAMES}

BELL_BOX = (40, 38, 85, 77)
FACE_BOX = (36, 77, 89, 119)
EYES_X = (50, 74)

STONE_LIGHT = (0.24, 0.46, 0.9)
BRICK_LIGHT = (0.3, 0.6, 0.97)

CHARACTER = Character(
    places=PLACES,
    identifier="clock",
    grid=(WIDTH, HEIGHT),
    ground=(MIDDLE, FLOOR + 1),
    moves={"blink.png": [FACE_BOX], "ring.png": [FACE_BOX, BELL_BOX]},
    footing=60,
    manifest=Manifest(
        name="Ghanta Ghar",
        role="World clocks",
        poses={"idle": "idle.png", "blink": "blink.png", "ring": "ring.png"},
        face=(MIDDLE, 98),
        accent=(0.71, 0.36, 0.25),
        behaviours=("idle", "blink"),
        order=10,
    ),
)


def draw(eyes="open", ringing=False):
    """The tower with its eyes open, closed or happy, the bell at rest or swung out."""
    canvas = Canvas(WIDTH, HEIGHT)
    draw_bell(canvas, 24 if ringing else 0)
    draw_belfry(canvas)
    draw_dome(canvas)
    for dial in (LEFT_DIAL, RIGHT_DIAL):
        draw_turret(canvas, dial)
    draw_plinth(canvas)
    draw_body(canvas)
    draw_head(canvas)
    draw_eaves(canvas)
    draw_face(canvas, eyes, LAUGH if ringing else SMILE)
    draw_dial(canvas, LARGE_DIAL, face=20.5, bezel=24.5)
    return canvas.render()


def both_sides(points):
    """The points, and their mirror image."""
    return points, mirrored(points, WIDTH)


def slab(canvas, left, top, bottom, ramp="stone", overhang=0, thresholds=STONE_LIGHT):
    """A course of stone across the tower; its top is `overhang` narrower on each side than its bottom."""
    right = WIDTH - left
    mask = canvas.polygon([(left + overhang, top), (right - overhang, top), (right, bottom), (left, bottom)])
    canvas.put(mask, ramp, canvas.cylinder(left - 6, right + 3), thresholds=thresholds)
    canvas.adjust(mask & ~shifted(mask, 0, 1), 1)
    return mask


# The top: bell, belfry, dome ------------------------------------------------------------------------------

def draw_bell(canvas, swing):
    """The brass bell, swung by so many degrees about its hook, and its clapper, which lags behind."""
    hook = (MIDDLE, 42)
    (clapper_x, clapper_y), = turned([(MIDDLE, 65.5)], swing * 0.6, hook)
    clapper = canvas.ellipse(clapper_x, clapper_y, 3, 3)
    canvas.put(clapper, "steel", canvas.slope(-0.08, 0, 0.5 + 0.08 * clapper_x))
    outline = [(62.5, 45.5), (67, 46.5), (69.5, 50), (70.5, 56), corner(75.5, 62), corner(75, 64),
               corner(50, 64), corner(49.5, 62), (54.5, 56), (55.5, 50), (58, 46.5)]
    bell = canvas.blob(turned(outline, swing, hook))
    (x, _), = turned([(MIDDLE, 56)], swing, hook)
    canvas.put(bell, "brass", canvas.cylinder(x - 13, x + 12), thresholds=(0.34, 0.6, 0.87))
    for row in (60.5, 51.5):
        ring = turned([(47, row), (62, row + 0.4), (78, row)], swing, hook)
        canvas.line(ring, "brass", SHADOW, within=bell)


def draw_belfry(canvas):
    """Two pillars, and between them an arch of three scallops."""
    pillar = [(37, 45), (44, 45), (44, 76), (37, 76)]
    for left, points in zip((37, 81), both_sides(pillar)):
        light = canvas.cylinder(left - 1, left + 8)
        canvas.put(canvas.polygon(points), "stone", light, thresholds=(0.3, 0.6, 0.93))
    for left in (35, 80):
        foot = canvas.box(left, 69, left + 10, 74)
        canvas.put(foot, "white", canvas.cylinder(left - 1, left + 11), thresholds=(0.3, 0.6, 0.95))
    arch = canvas.box(36, 42, 89, 52)
    for x, y, radius in ((MIDDLE, 54, 10.5), (48.5, 54, 5.5), (76.5, 54, 5.5)):
        arch &= ~canvas.ellipse(x, y, radius, 7 if x == MIDDLE else 5)
    canvas.put(arch, "brick", canvas.cylinder(34, 92), thresholds=BRICK_LIGHT, cast=(1, 2))


def draw_dome(canvas):
    """The ribbed dome with gilded pots on top, and the eave that shades the bell."""
    for y, radius_x, radius_y in ((12, 4, 2.6), (8, 2.8, 2.6)):
        pot = canvas.ellipse(MIDDLE, y, radius_x, radius_y)
        canvas.put(pot, "brass", canvas.sphere(MIDDLE, y, radius_x, radius_y), thresholds=(0.3, 0.55, 0.85))
    spike = canvas.polygon([(61, 6.5), (61, 2.2), (64, 2.2), (64, 6.5)])
    canvas.put(spike, "brass", canvas.cylinder(60, 65), thresholds=(0.3, 0.55, 0.85))
    half = [corner(MIDDLE, 12), (64.5, 14.5), (73, 18.5), (83.5, 25), (87.5, 32), corner(83, 40)]
    dome = canvas.blob(half + mirrored(half[:0:-1], WIDTH))
    light = canvas.sphere(60, 33, 30, 24) * 0.75 + canvas.cylinder(36, 88) * 0.25
    canvas.put(dome, "white", light, thresholds=(0.3, 0.56, 0.86))
    for reach in (8, 17):
        rib = [(MIDDLE - reach * 0.2, 15), (MIDDLE - reach * 0.9, 22), (MIDDLE - reach * 1.15, 31),
               (MIDDLE - reach, 38)]
        for points in both_sides(rib):
            canvas.line(points, "white", SHADOW, within=dome)
    slab(canvas, 39, 36, 40, "brass", overhang=-0.5, thresholds=(0.3, 0.55, 0.9))
    slab(canvas, 29, 39.5, 44.5, overhang=6)


# The side turrets ---------------------------------------------------------------------------------------

def draw_turret(canvas, dial):
    """A slim turret at the tower's side with a dome of its own, and a small dial."""
    x = dial[0] + 0.5
    shaft = canvas.box(x - 12, 133, x + 12, 186)
    canvas.put(shaft, "brick", canvas.cylinder(x - 14, x + 13), thresholds=BRICK_LIGHT)
    lay_bricks(canvas, shaft, [(x - 9.5, 139), (x - 5.5, 142), (x + 3.5, 168), (x - 0.5, 171)])
    ball = canvas.ellipse(x, 112.5, 2, 2.5)
    canvas.put(ball, "brass", canvas.sphere(x, 112.5, 2.5, 3), thresholds=(0.3, 0.5, 0.85))
    half = [corner(x, 113.5), (x + 3, 116), (x + 8.5, 119.5), (x + 10, 124), corner(x + 8.5, 129)]
    dome = canvas.blob(half + [(2 * x - point[0],) + tuple(point[1:]) for point in half[:0:-1]])
    canvas.put(dome, "white", canvas.sphere(x - 0.5, 124, 11.5, 11), thresholds=(0.3, 0.56, 0.86))
    eave = canvas.polygon([(x - 11, 127.5), (x + 11, 127.5), (x + 14.5, 133), (x - 14.5, 133)])
    canvas.put(eave, "stone", canvas.cylinder(x - 18, x + 16), thresholds=STONE_LIGHT, cast=(1, 3))
    canvas.adjust(eave & ~shifted(eave, 0, 1), 1)
    sill = canvas.box(x - 13, 174, x + 13, 178)
    canvas.put(sill, "stone", canvas.cylinder(x - 16, x + 15), thresholds=STONE_LIGHT)
    draw_dial(canvas, dial, face=9.5, bezel=11.5)


def lay_bricks(canvas, wall, corners):
    """A few single bricks that stand out from a wall, each five by two."""
    for x, y in corners:
        canvas.adjust(canvas.box(x, y, x + 5, y + 2) & wall, -1)


# The trunk ----------------------------------------------------------------------------------------------

def draw_plinth(canvas):
    """Two broad steps."""
    slab(canvas, 3, 191, FLOOR)
    slab(canvas, 6, 184, 191)


def draw_body(canvas):
    """The brick stage that carries the large dial, its corners dressed with stone."""
    body = canvas.box(31, 123, 94, 189)
    canvas.put(body, "brick", canvas.cylinder(26, 97), thresholds=BRICK_LIGHT)
    lay_bricks(canvas, body, [(42, 129), (46, 132), (74, 129), (79, 132), (42, 177), (74, 179), (79, 176)])
    for index, y in enumerate(range(129, 185, 7)):
        width = 6 if index % 2 else 9
        for left in (31, 94 - width):
            stone = canvas.box(left, y, left + width, y + 6)
            canvas.put(stone, "stone", canvas.cylinder(20, 97), thresholds=STONE_LIGHT, cast=None)


def draw_head(canvas):
    """The sandstone stage that has the face, between two slim brick columns."""
    head = canvas.box(32, 75, 93, 123)
    canvas.put(head, "stone", canvas.cylinder(24, 96), thresholds=(0.3, 0.62, 2))
    for left in (31, 89):
        column = canvas.box(left, 76, left + 5, 121)
        canvas.put(column, "brick", canvas.cylinder(left - 1, left + 6), thresholds=(0.3, 0.6, 0.95))


def draw_eaves(canvas):
    """The two projecting eaves, over and under the face."""
    slab(canvas, 27, 71.5, 77, overhang=4)
    slab(canvas, 26, 118, 125, overhang=6)


# Face and dials -----------------------------------------------------------------------------------------

def draw_face(canvas, eyes, mouth):
    """Windows for eyes, with shutters, cheeks and a mouth."""
    for column, flip in zip(EYES_X, (False, True)):
        pane = draw_window(canvas, column + 0.5)
        if eyes == "closed":
            shut_window(canvas, pane, column + 0.5)
        else:
            x = column + 9 if flip else column - 12
            canvas.put_map(x, 87, OPEN_SHUTTER, SHUTTER_KEY, flip=flip, cast=(1, 1))
        canvas.stamp(column - 5, 88, EYES[eyes], EYE_KEY)
    canvas.stamp(55, 110, mouth, FACE_KEY)
    for column in (40, 77):
        canvas.stamp(column, 109, CHEEK, FACE_KEY)


def pointed_arch(canvas, x, top, half_width, bottom):
    """The shape of a pointed window."""
    half = [corner(x, top), (x + half_width * 0.7, top + 4), (x + half_width, top + 10),
            corner(x + half_width, bottom)]
    return canvas.blob(half + [(2 * x - point[0],) + tuple(point[1:]) for point in half[:0:-1]])


def draw_window(canvas, x):
    """A moulded frame on a sill, and the pane, warm with lamplight; returns the pane's mask."""
    frame = pointed_arch(canvas, x, 79.5, 8.6, 104)
    canvas.put(frame, "white", canvas.cylinder(x - 12, x + 10), thresholds=(0.3, 0.56, 0.9))
    sill = canvas.box(x - 9.5, 103, x + 9.5, 106)
    canvas.put(sill, "white", canvas.cylinder(x - 14, x + 12), thresholds=(0.3, 0.56, 0.9))
    pane = pointed_arch(canvas, x, 83, 6.6, 102)
    canvas.put(pane, "stone", canvas.even(1), cast=None)
    canvas.paint(pane & ~shifted(pane, 1, 2), "stone", LIGHT)
    return pane


def shut_window(canvas, pane, x):
    """Both leaves of the shutter drawn to, slat above slat."""
    slats = canvas.where(lambda px, y: np.floor(y) % 3 == 0)
    canvas.paint(pane, "teal", LIGHT)
    canvas.paint(pane & slats, "teal", BASE)
    canvas.paint(pane & canvas.box(x - 0.5, 80, x + 0.5, 105), "teal", SHADOW)


def draw_dial(canvas, dial, face, bezel):
    """A white dial in a brass rim, with ticks and no hands."""
    x, y = dial[0] + 0.5, dial[1] + 0.5
    light = canvas.sphere(x, y, bezel * 1.05)
    canvas.put(canvas.ellipse(x, y, bezel), "brass", light, thresholds=(0.36, 0.6, 0.86))
    disc = canvas.ellipse(x, y, face)
    canvas.put(disc, "white", canvas.even(1), cast=None)
    canvas.paint(disc & ~canvas.ellipse(x + 1, y + 1.5, face), "white", LIGHT)
    large = face > 15
    for hour in range(12) if large else range(0, 12, 3):
        draw_tick(canvas, dial, hour, large)


def draw_tick(canvas, dial, hour, large):
    """One hour's mark, mirrored exactly from quarter to quarter; the quarters' are longer and red."""
    column, row, free = dial
    across, down = np.sin(hour * np.pi / 6), -np.cos(hour * np.pi / 6)
    distance = free + (2 if large and hour % 3 == 0 else 1)
    middle_x, middle_y = column + round(across * distance), row + round(down * distance)
    if hour % 3 == 0:
        reach_x, reach_y = (1, 1) if large else (abs(round(across)), abs(round(down)))
        for dx in range(-reach_x, reach_x + 1):
            for dy in range(-reach_y, reach_y + 1):
                canvas.stamp(middle_x + dx, middle_y + dy, "t", {"t": ("maroon", BASE)})
        return
    for dx in (0, round(np.sign(across))):
        for dy in (0, round(np.sign(down))):
            canvas.stamp(middle_x + dx, middle_y + dy, "t", {"t": ("ink", LIGHT)})


def poses():
    """File name -> picture."""
    return {
        "idle.png": draw(),
        "blink.png": draw(eyes="closed"),
        "ring.png": draw(eyes="happy", ringing=True),
    }
