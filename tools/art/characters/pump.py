"""Pump, the agent gauge: a roadside petrol pump with a face, its nozzle hung up at the side.

The program draws over the picture: the level in the tank window, the digits on the dark panel and, with
the lamp files, the light on top. `PLACES` says where. The pictures show the tank empty, the panel blank
and the lamp out.
"""
from typing import NamedTuple

from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW, Canvas, Character, Manifest, corner, mirrored

WIDTH, HEIGHT = 104, 156
MIDDLE = 48  # the axis of head and body; the hose is beside it
FLOOR = 151  # the contour adds the last row above the ground line at 152


class Place(NamedTuple):
    """A rectangle in art pixels from the top-left; right and bottom are not part of it."""

    left: int
    top: int
    right: int
    bottom: int

    def grown(self, pixels):
        return Place(self.left - pixels, self.top - pixels, self.right + pixels, self.bottom + pixels)


TANK = Place(34, 101, 58, 126)
DIGITS = Place(34, 83, 62, 94)
LAMP = Place(40, 4, 56, 18)
PLACES = {"tank": TANK, "digits": DIGITS, "lamp": LAMP}


class Glass(NamedTuple):
    """How the lamp's glass is painted: glowing from within, or dark by so many levels."""

    ramp: str
    darkened: int = 0


LAMPS = {
    "out": Glass("steel", darkened=1),
    "amber": Glass("amber"),
    "red": Glass("red"),
    "red-dim": Glass("red", darkened=2),
    "green": Glass("green"),
}
LAMP_FILES = {f"lamp-{lamp}.png": lamp for lamp in LAMPS if lamp != "out"}

CHARACTER = Character(
    places=PLACES,
    identifier="pump",
    grid=(WIDTH, HEIGHT),
    ground=(MIDDLE, FLOOR + 1),
    moves={"blink.png": [(31, 40, 65, 54)]},
    overlays=tuple(LAMP_FILES),
    footing=30,
    manifest=Manifest(
        name="Pump",
        role="Agent gauge",
        poses={"idle": "idle.png", "blink": "blink.png"},
        face=(MIDDLE, 48),
        accent=(0.86, 0.33, 0.2),
        behaviours=("idle", "blink"),
        order=5,
    ),
)

EYES = {
    "open": """
..kkkk..
.kkkkkk.
kkwwkkkk
kwwwkkkk
kwwkkkkk
kkkkkkkk
kkkkkkdk
kkkkkddk
.kkkddk.
..kkkk..
""",
    "closed": """
........
........
........
........
........
k......k
kk....kk
.kkkkkk.
........
........
""",
}
BROW = """
..bbbb..
.bbbbbbb
bb.....b
"""
CHEEK = """
.cccc.
cccccc
.cccc.
"""
SMILE = """
k..............k
kk............kk
.kkkkkkkkkkkkkk.
..kmmmmmmmmmmk..
..kkmmrrrrmmkk..
....kkkkkkkk....
"""
ZIGZAG = """
..t...
.ttt..
ttttt.
"""
CHARM = """
......w......
......w......
......w......
...ggsssGG...
.gGGGGsGGGGg.
GGGggggggGGGg
GGg.gssGG.gGg
Gg.GGGsGGGgGg
g.GGGgggGGGgg
g.Gg.YYYy.Ggg
..gYYYYYYyog.
..gYHHYYYyog.
..YHHYYYYyyo.
..YHYYYYYyyo.
..YYYYYYYyyo.
..yYYYYYyyoo.
...yYYYyyoo..
....yyyyoo...
......yo.....
"""
CHARM_KEY = {"w": ("white", LIGHT), "s": ("leaf", SHADOW), "g": ("leaf", BASE), "G": ("leaf", HIGHLIGHT),
             "y": ("amber", BASE), "Y": ("amber", LIGHT), "H": ("amber", HIGHLIGHT), "o": ("amber", SHADOW)}
FACE_KEY = {"k": ("ink", LINE), "w": ("white", HIGHLIGHT), "d": ("ink", BASE), "b": ("ink", BASE),
            "c": ("red", LIGHT), "m": ("maroon", SHADOW), "r": ("red", LIGHT)}


def draw(eyes="open", lamp="out"):
    """The figure with these eyes and this lamp; and the mask of what the lamp lights."""
    canvas = Canvas(WIDTH, HEIGHT)
    draw_hose(canvas)
    draw_shoes(canvas)
    draw_body(canvas)
    draw_nozzle(canvas)
    draw_lamp_socket(canvas)
    glass = draw_lamp(canvas, LAMPS[lamp])
    draw_head(canvas)
    draw_digit_panel(canvas)
    draw_tank_window(canvas)
    draw_charm(canvas)
    draw_face(canvas, eyes)
    return canvas, canvas.showing(glass)


def draw_shoes(canvas):
    """Short legs in stout leather shoes that point outwards."""
    for left in (32, 53):
        leg = canvas.box(left, 130, left + 11, 146)
        canvas.put(leg, "steel", canvas.cylinder(left, left + 11))
    outline = [(29, 140.5), (35, 138.5), (42, 140), corner(45.5, 143), corner(46, FLOOR), corner(21, FLOOR),
               (18, 148), (21, 144)]
    for points in (outline, mirrored(outline, 2 * MIDDLE)):
        shoe = canvas.put(canvas.blob(points), "wood", thresholds=(0.26, 0.56, 0.86))
        canvas.paint(shoe & canvas.where(lambda x, y: y > FLOOR - 2), "wood", BASE)


def draw_body(canvas):
    """The enamelled cabinet between a painted collar and a cream skirt."""
    light = canvas.cylinder(16, 84)
    body = canvas.blob([corner(25, 70), corner(71, 70), corner(72, 134), corner(24, 134)])
    canvas.put(body, "red", light, thresholds=(0.36, 0.78, 0.94))
    skirt = canvas.rounded_box(20, 130, 76, 137, 3)
    canvas.put(skirt, "white", light, thresholds=(0.34, 0.62, 0.9))
    collar = canvas.box(24, 70, 72, 79)
    canvas.put(collar, "white", light, thresholds=(0.34, 0.62, 0.9), cast=(0, 2))
    for left in range(24, 72, 6):
        canvas.stamp(left, 75, ZIGZAG, {"t": ("teal", BASE), "l": ("teal", LIGHT)})


def draw_head(canvas):
    """The wide top with its cream face plate."""
    half = [(48, 21.5), (62, 22.5), (73, 27.5), (79, 36), corner(80, 45), corner(80, 67), (79, 71.5),
            (75, 73), corner(70, 73)]
    housing = canvas.blob(half + mirrored(half[:0:-1], 2 * MIDDLE))
    light = canvas.inflated(housing, 9) * 0.7 + canvas.cylinder(8, 88) * 0.3
    canvas.put(housing, "red", light, thresholds=(0.42, 0.72, 0.9), cast=(1, 4))
    rim = canvas.rounded_box(23, 30, 73, 69, 15)
    canvas.put(rim, "brass", canvas.inflated(rim, 4), cast=(1, 2))
    plate = canvas.rounded_box(25, 32, 71, 67, 13)
    canvas.put(plate, "white", canvas.sphere(46, 48, 36, 32), thresholds=(0.26, 0.4, 0.9), cast=None)
    for x in (20, 2 * MIDDLE - 20):
        bolt = canvas.ellipse(x, 67, 2.2)
        canvas.put(bolt, "brass", canvas.sphere(x, 67, 2.2), cast=(1, 1))


def draw_face(canvas, eyes):
    """Brows, eyes, cheeks and a ready smile."""
    for left in (34, 54):
        canvas.stamp(left, 42, EYES[eyes], FACE_KEY)
    canvas.stamp(33, 36, BROW, FACE_KEY, flip=True)
    canvas.stamp(55, 36, BROW, FACE_KEY)
    for left in (28, 62):
        canvas.stamp(left, 53, CHEEK, FACE_KEY)
    canvas.stamp(40, 55, SMILE, FACE_KEY)


def draw_digit_panel(canvas):
    """The dark panel that the digits stand on."""
    frame = canvas.rounded_box(*DIGITS.grown(2), 2)
    canvas.put(frame, "brass", canvas.inflated(frame, 3), cast=(1, 2))
    canvas.paint(canvas.box(*DIGITS), "ink", LINE)


def draw_tank_window(canvas):
    """The glass of the tank, empty, in a steel frame with quarter marks on it."""
    frame = canvas.rounded_box(TANK.left - 3, TANK.top - 3, TANK.right + 7, TANK.bottom + 3, 3)
    canvas.put(frame, "steel", canvas.cylinder(20, 80), thresholds=(0.3, 0.5, 0.92), cast=(1, 2))
    canvas.paint(canvas.box(*TANK.grown(1)) & ~canvas.box(*TANK), "steel", SHADOW)
    canvas.paint(canvas.box(*TANK), "slate", LINE)
    for quarter in range(5):
        y = TANK.top + round(quarter * (TANK.bottom - TANK.top - 1) / 4)
        reach = 4 if quarter % 2 == 0 else 3
        canvas.paint(canvas.box(TANK.right + 2, y, TANK.right + 2 + reach, y + 1), "ink", SHADOW)


def draw_lamp_socket(canvas):
    """The brass ring that the lamp sits in."""
    socket = canvas.blob([corner(38, 17), corner(58, 17), (59, 20), corner(63, 25), corner(33, 25), (37, 20)])
    canvas.put(socket, "brass", canvas.cylinder(34, 62))


def draw_lamp(canvas, glass):
    """The glass dome; returns its part number."""
    dome = canvas.ellipse(MIDDLE, 13, 8.5, 9.5) & canvas.where(lambda x, y: y < 18)
    if glass.darkened:
        light, thresholds = canvas.sphere(MIDDLE, 13, 9.5, 11), (0.24, 0.44, 0.82)
    else:
        light, thresholds = canvas.radial(MIDDLE - 0.5, 12.5, 12), (0, 0.44, 0.76)
    canvas.put(dome, glass.ramp, light, thresholds=thresholds, bias=-glass.darkened)
    part = canvas.last_part
    canvas.stamp(42, 8, "..ww\n.www\nww..\nww..", {"w": (glass.ramp, HIGHLIGHT)})
    knob = canvas.ellipse(MIDDLE, 5, 3, 2.4)
    canvas.put(knob, "brass", canvas.sphere(MIDDLE, 5, 3, 2.4), cast=(1, 1))
    return part


def draw_hose(canvas):
    """The hose, from a fitting at the cabinet's foot in a loop up to the nozzle."""
    path = [(70, 121), (77, 123), (81, 132), (85, 141), (91.5, 142), (96, 133), (94.5, 118), (91, 106)]
    hose = canvas.stroke(path, 6.5)
    canvas.put(hose, "teal", canvas.inflated(hose, 3.5, blur=0.8), thresholds=(0.3, 0.55, 0.88))
    fitting = canvas.rounded_box(68, 115, 77, 127, 2)
    canvas.put(fitting, "brass", canvas.inflated(fitting, 4))


def draw_nozzle(canvas):
    """Spout, grip and trigger guard, hung on a hook below the head."""
    hook = canvas.rounded_box(71, 87, 80, 95, 2)
    canvas.put(hook, "brass", canvas.inflated(hook, 4))
    spout = canvas.stroke([(79.5, 72), (80.5, 82), (86, 92)], [5, 5, 7])
    canvas.put(spout, "steel", canvas.inflated(spout, 3, blur=0.8), thresholds=(0.2, 0.5, 0.8))
    guard = canvas.stroke([(85, 91), (79, 97), (81, 104), (89, 107)], 2.6)
    canvas.put(guard, "brass", canvas.even(0.7))
    grip = canvas.stroke([(86, 88), (90.5, 97), (91.5, 108)], [9, 10, 8])
    canvas.put(grip, "steel", canvas.inflated(grip, 5, blur=1), thresholds=(0.3, 0.62, 0.86))
    cuff = canvas.stroke([(91.5, 105), (92, 109)], [9, 9])
    canvas.put(cuff, "brass", canvas.cylinder(86, 98))


def draw_charm(canvas):
    """A lemon and chillies on a thread, against the evil eye."""
    canvas.put_map(9, 73, CHARM, CHARM_KEY)


def poses():
    """The figure with the lamp out, its blink, and what each light lays over it."""
    pictures = {"idle.png": draw()[0].render(), "blink.png": draw(eyes="closed")[0].render()}
    for file, lamp in LAMP_FILES.items():
        canvas, glass = draw(lamp=lamp)
        pictures[file] = canvas.render_only(glass)
    return pictures
