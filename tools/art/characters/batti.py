"""Batti, the focus light: a street lamp on curled shoes, with a face in the lens.

`batti.png` is the whole figure with the lamp out. The other files hold only what the lamp lights (the
lens with its face, the gasket, the underside of the visor) and are laid over it.
"""
from typing import NamedTuple

import numpy as np

from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW, Canvas, Character, corner, mirrored
from kit.shapes import beside, shifted

WIDTH, HEIGHT = 120, 193
MIDDLE = WIDTH / 2
FLOOR = 185  # the contour adds the last row above the ground line at 186
LENS = (60, 76)
LAMPS = ("red", "amber", "green")

CHARACTER = Character(
    identifier="batti",
    grid=(WIDTH, HEIGHT),
    ground=(59.5, 186),
    reference="batti.png",
    overlays=tuple(f"batti-lamp-{lamp}.png" for lamp in LAMPS),
    footing=40,
)

EYE = """
..kkkk..
.kkkkkk.
kkwwkkkk
kwwwkkkk
kwwwkkkk
kkwkkkkk
kkkkkkkk
kkkkkddk
kkkkdddk
.kkkddk.
..kkkk..
"""
# One mouth for each light: resting, at work, waiting, let off. Each covers the resting one, so that the
# lamp, which never quite hides the picture below, leaves no second mouth showing through.
RESTING = """
..............
.k..........k.
.kkk......kkk.
...kkkkkkkk...
"""
MOUTHS = {
    "out": RESTING,
    "amber": RESTING,
    "red": """
k............k
kk..........kk
.kkk......kkk.
...kkkkkkkk...
""",
    "green": """
.kkkkkkkkkkkk.
.kmmmmmmmmmmk.
.kkmmmmmmmmkk.
..kkkrrrrkkk..
....kkkkkk....
""",
}
CHEEK = """
.ccccc.
ccccccc
ccccccc
.ccccc.
"""
class Glass(NamedTuple):
    """How the lens is painted: `bias` moves its levels, `shade` is the underside of the visor."""

    ramp: str
    bias: int
    shade: int
    glint: int
    blush: tuple


GLASS = {
    "out": Glass("amber", -2, LINE, BASE, ("maroon", LIGHT)),
    "red": Glass("red", 0, SHADOW, HIGHLIGHT, ("red", BASE)),
    "amber": Glass("amber", 0, SHADOW, HIGHLIGHT, ("red", LIGHT)),
    "green": Glass("green", 0, SHADOW, HIGHLIGHT, ("green", BASE)),
}

# By how many steps the marigolds take turns in being darker: orange ones among the yellow.
BLOOM_SHADES = (0, -1)


def draw(lamp="out"):
    """The figure with one lamp lit ("red", "amber", "green") or none; and the mask of what is lit."""
    canvas = Canvas(WIDTH, HEIGHT)
    draw_feet(canvas)
    draw_post(canvas)
    housing = draw_housing(canvas)
    draw_finial(canvas)
    lit = draw_lamp(canvas, lamp, housing)
    draw_visor(canvas)
    draw_garland(canvas)
    lit = canvas.showing(*lit)
    draw_face(canvas, lamp)
    return canvas, lit


def draw_feet(canvas):
    """Steel ankles in curled red shoes with a brass edge."""
    for left in (43, 66):
        leg = canvas.box(left, 158, left + 11, 178)
        canvas.put(leg, "steel", canvas.cylinder(left, left + 11))
    outline = [(44, 172), (51, 169.5), (57, 173), (59, 179), corner(59, FLOOR), corner(34, FLOOR),
               (27, 182.5), (22.5, 177), (22, 170.5), (25.5, 166), (30, 167), (30.5, 170), (27.5, 170.5),
               (28, 174), (33, 176.5), (39, 175)]
    for points in (outline, mirrored(outline, WIDTH)):
        shoe = canvas.put(canvas.blob(points), "maroon", thresholds=(0.3, 0.58, 0.86))
        canvas.paint(shoe & canvas.where(lambda x, y: y > FLOOR - 2), "maroon", BASE)
        trim = shoe & ~shifted(shoe, 0, 2) & canvas.where(lambda x, y: (abs(x - MIDDLE) < 19) & (y < 178))
        canvas.paint(trim, "brass", LIGHT)
    for x in (31, WIDTH - 31):
        bell = canvas.ellipse(x, 170, 2.6)
        canvas.put(bell, "brass", canvas.sphere(x, 170, 2.6), cast=None)


def draw_post(canvas):
    """The barrel, painted like a kerb."""
    post = canvas.blob([corner(42, 118), corner(78, 118), corner(82, 156), (77, 164), (60, 167), (43, 164),
                        corner(38, 156)])
    drum = canvas.cylinder(34, 84)
    canvas.put(post, "white", drum, thresholds=(0.36, 0.66, 0.9), cast=(1, 3))
    for top in (136, 153):
        band = canvas.blob([corner(30, top), (45, top + 2.5), (60, top + 3), (75, top + 2.5), corner(90, top),
                            corner(90, top + 9), (75, top + 11.5), (60, top + 12), (45, top + 11.5),
                            corner(30, top + 9)])
        canvas.put(band & post, "ink", drum, thresholds=(0.2, 0.66, 0.93), edge="none", cast=None)


def draw_housing(canvas):
    """The enamelled box with its seam and bolts, a brass collar beneath."""
    collar = canvas.rounded_box(36, 122, 84, 132, 3)
    canvas.put(collar, "brass", canvas.cylinder(36, 84), cast=(1, 3))
    outline = [(60, 21), (78, 22.5), (91, 29), (97, 41), corner(98, 54), corner(98, 119), (96.5, 125),
               (91, 127.5), corner(82, 128), corner(60, 128)]
    housing = canvas.blob(outline + mirrored(outline[-2:0:-1], WIDTH))
    light = canvas.inflated(housing, 9) * 0.75 + canvas.cylinder(12, 108) * 0.25
    canvas.put(housing, "teal", light, thresholds=(0.42, 0.66, 0.85), cast=(1, 4))
    seam = canvas.box(22, 116, 98, 117)
    canvas.adjust(seam & housing, -1)
    canvas.adjust(shifted(seam, 0, 1) & housing, +1)
    for x in (28, WIDTH - 28):
        bolt = canvas.ellipse(x, 98, 2.6)
        canvas.put(bolt, "brass", canvas.sphere(x, 98, 2.6), cast=(1, 1))
    return housing


def draw_finial(canvas):
    """The brass knob on top."""
    base = canvas.blob([corner(51, 16), corner(69, 16), (72, 21), corner(75, 25), (60, 26), corner(45, 25),
                        (48, 21)])
    canvas.put(base, "brass", canvas.cylinder(44, 76))
    knob = canvas.ellipse(60, 10.5, 7)
    canvas.put(knob, "brass", canvas.sphere(60, 10.5, 7))


def draw_lamp(canvas, lamp, housing):
    """Rim, gasket and lens; returns the numbers of the parts that the lamp lights."""
    x, y = LENS
    glass = GLASS[lamp]
    rim = canvas.ellipse(x, y, 33.5)
    canvas.put(rim, "brass", canvas.sphere(x, y, 35), cast=(2, 5))
    under = canvas.ellipse(60, 77, 37.5, 35.5) & ~canvas.ellipse(60, 80.5, 37.5, 34.5)
    canvas.put(under, glass.ramp, canvas.even(0), edge="none", cast=(0, 2), clip=housing, lowest=LINE,
               bias=glass.shade - SHADOW)
    lit = [canvas.last_part]
    gasket = canvas.ellipse(x, y, 29.6)
    canvas.put(gasket, glass.ramp, canvas.even(0), bias=-1, lowest=LINE, edge="none", cast=None)
    lit.append(canvas.last_part)
    lens = canvas.ellipse(x, y, 28.5)
    glow = canvas.radial(x - 6, y - 7, 40)
    canvas.put(lens, glass.ramp, glow, thresholds=(0.09, 0.2, 9), edge="none", cast=None, bias=glass.bias)
    if lamp == "out":
        canvas.paint(lens & (glow < 0.2), "brass", SHADOW)
    lit.append(canvas.last_part)
    arc = canvas.ellipse(x, y, 26) & ~canvas.ellipse(x + 2.2, y + 2.6, 26.4) & (canvas.radial(42, 60, 15) > 0)
    canvas.paint(arc, glass.ramp, glass.glint)
    return lit


def draw_visor(canvas):
    """The hood over the lens, a crescent with a brass lip."""
    inner = canvas.ellipse(60, 77, 37.5, 35)
    crescent = canvas.ellipse(60, 64.5, 44.3, 33) & ~inner & canvas.where(lambda x, y: y < 81)
    light = canvas.inflated(crescent, 7, 1.1) * 0.6 + canvas.sphere(60, 72, 52, 46) * 0.4
    canvas.put(crescent, "maroon", light, cast=(2, 4), thresholds=(0.36, 0.56, 0.8))
    lip = crescent & ~shifted(~inner, 0, -1)
    canvas.paint(lip, "brass", LIGHT)


def draw_garland(canvas):
    """Marigolds from shoulder to shoulder, the middle ones in front."""
    count = 11
    middle = count // 2
    for index in sorted(range(count), key=lambda number: -abs(number - middle)):
        along = (index - middle) / middle
        x = round(60 + 37 * along * (1.1 - 0.1 * abs(along)))
        y = round(110 + 27 * (1 - abs(along) ** 2.3))
        draw_bloom(canvas, x, y, BLOOM_SHADES[index % 2])


def draw_bloom(canvas, x, y, bias):
    """One marigold: a ruffled disc, a smaller ruffled disc turned half a petal, and its heart."""
    def ruffled(radius, turn):
        def inside(px, py):
            angle = np.arctan2(py - y, px - x)
            return np.hypot(px - x, py - y) <= radius + 0.4 * np.cos(8 * angle + turn)
        return canvas.where(inside)
    ball = canvas.sphere(x, y, 8)
    petals = ruffled(6.2, 0)
    canvas.put(petals, "amber", ball, thresholds=(0.3, 0.58, 0.99), cast=(1, 3), bias=bias)
    heart = ruffled(3.4, np.pi)
    canvas.put(heart, "amber", ball, thresholds=(0.2, 0.3, 0.74), edge="none", cast=None, bias=bias)
    canvas.adjust(beside(heart) & ~heart & petals, -1)
    canvas.paint(canvas.where(lambda px, py: (abs(px - x) < 1) & (abs(py - y) < 1)), "amber", SHADOW)


def draw_face(canvas, lamp):
    """Eyes, cheeks and a mouth that goes with the light."""
    key = {"k": ("ink", LINE), "w": ("white", HIGHLIGHT), "d": ("ink", BASE), "m": ("maroon", SHADOW),
           "r": ("red", LIGHT), "c": GLASS[lamp].blush}
    for x in (45, 67):
        canvas.stamp(x, 68, EYE, key)
    for x in (37, 76):
        canvas.stamp(x, 82, CHEEK, key)
    canvas.stamp(53, 86, MOUTHS[lamp], key)


def poses():
    """The figure with the lamp out, and what each light lays over it."""
    pictures = {"batti.png": draw()[0].render()}
    for lamp in LAMPS:
        canvas, lit = draw(lamp)
        pictures[f"batti-lamp-{lamp}.png"] = canvas.render_only(lit)
    return pictures
