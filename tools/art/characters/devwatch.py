"""Dhiru, the dev watch: a night watchman in an indigo greatcoat, with his bamboo lathi and a lantern."""
import math
from typing import NamedTuple

from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW, Canvas, Character, Manifest, corner, mirrored, moved

from . import _devwatch_maps as maps

WIDTH, HEIGHT = 114, 154
MIDDLE = WIDTH // 2
FLOOR = 149  # the contour adds the last row above the ground line at 150

# Everything may move but the boots.
ABOVE_THE_BOOTS = [(0, 0, WIDTH, 136), (0, 136, 31, HEIGHT), (84, 136, WIDTH, HEIGHT)]

CHARACTER = Character(
    identifier="devwatch",
    grid=(WIDTH, HEIGHT),
    ground=(MIDDLE, FLOOR + 1),
    moves={"blink.png": [(41, 48, 73, 60)], "busy.png": ABOVE_THE_BOOTS, "hog.png": ABOVE_THE_BOOTS,
           "idle-server.png": ABOVE_THE_BOOTS, "idle-server-tap.png": ABOVE_THE_BOOTS},
    footing=30,
    stray=16,
    manifest=Manifest(
        name="Dhiru",
        role="Dev watch",
        poses={name: f"{name}.png"
               for name in ("idle", "blink", "busy", "hog", "idle-server", "idle-server-tap")},
        face=(MIDDLE, 56),
        accent=(0.33, 0.39, 0.66),
        behaviours=("idle", "blink"),
        order=6,
    ),
)

CLOTH = (0.3, 0.8, 0.95)  # thresholds: mostly the base colour, a lit edge on the left


class Face(NamedTuple):
    """An expression; `raised` is how many pixels the brows are lifted."""

    eyes: str = "tired"
    brow: str = maps.BROW
    raised: int = 0
    mouth: str = maps.LIP
    puffed: bool = False


def draw(arms, face=Face(), head=(0, 0)):
    """Dhiru with these arms (a function), this face, the head moved by so many pixels."""
    canvas = Canvas(WIDTH, HEIGHT)
    draw_boots(canvas)
    draw_coat(canvas)
    draw_muffler_end(canvas)
    draw_head(canvas, head, face.puffed)
    draw_muffler(canvas, head)
    draw_cap(canvas, head)
    draw_face(canvas, head, face)
    arms(canvas)
    return canvas.render()


def symmetric(half):
    """A closed outline from its right half, whose first and last points lie on the middle axis."""
    return half + mirrored(half[-2:0:-1], WIDTH)


def draw_boots(canvas):
    """Khaki trousers in round-toed leather boots."""
    outline = [(44, 139), (50, 137.5), (54, 139), corner(55, 142), corner(55.5, FLOOR), corner(35, FLOOR),
               (32.5, 146), (36, 142)]
    for side, points in enumerate((outline, mirrored(outline, WIDTH))):
        left = 42 if side == 0 else 58
        leg = canvas.box(left, 120, left + 14, 142)
        canvas.put(leg, "khaki", canvas.cylinder(left, left + 14))
        boot = canvas.put(canvas.blob(points), "wood", thresholds=(0.26, 0.56, 0.86))
        canvas.paint(boot & canvas.where(lambda x, y: y > FLOOR - 2), "wood", BASE)


def draw_coat(canvas):
    """The greatcoat, belted, with two rows of brass buttons."""
    half = [(57, 75), (73, 79), (78, 92), corner(77, 106), (79.5, 116), corner(81, 126), (70, 129),
            (57, 129.5)]
    coat = canvas.blob(symmetric(half))
    light = canvas.cylinder(24, 90)
    canvas.put(coat, "indigo", light, thresholds=CLOTH, cast=(1, 3))
    for crease in ([(43, 130), (46, 112), (48, 130)], [(68, 130), (65, 112), (72, 130)]):
        canvas.fold(crease, within=coat)
    canvas.line([(57, 80), (57.5, 134)], "indigo", SHADOW, within=coat)
    belt = canvas.blob([corner(34, 105), (57, 108), corner(80, 105), corner(80, 111), (57, 114),
                        corner(34, 111)])
    canvas.put(belt, "wood", light, thresholds=(0.26, 0.7, 0.9), clip=coat)
    buckle = canvas.rounded_box(52, 106, 62, 115, 1)
    canvas.put(buckle, "brass", canvas.inflated(buckle, 3))
    canvas.paint(canvas.box(55, 109, 59, 112), "wood", SHADOW)
    button = {"H": ("brass", HIGHLIGHT), "b": ("brass", LIGHT), "d": ("brass", BASE)}
    for y in (93, 100, 119):
        for x in (50, 61):
            canvas.stamp(x, y, "HHb\nbbb\nbdd", button)


def draw_muffler_end(canvas):
    """The end of the muffler on the chest, with a fringe."""
    tail = canvas.blob([(62, 78), (71, 78), (72, 90), corner(72, 100), corner(63, 101), (62, 90)])
    canvas.put(tail, "maroon", canvas.cylinder(58, 76), thresholds=(0.3, 0.56, 0.97))
    for x in (65, 68):
        canvas.line([(x + 0.5, 96), (x + 0.5, 102)], "maroon", LINE, within=tail)
    canvas.line([(62, 92), (72, 91)], "khaki", LIGHT, within=tail)
    canvas.line([(62, 94), (72, 93)], "khaki", LIGHT, within=tail)


def draw_muffler(canvas, head):
    """The muffler around the neck, in two overlapping turns."""
    turns = ([(37, 76), (47, 79), (57, 80), (67, 79), (76, 76), (77, 81), (70, 86), (57, 88.5), (44, 86),
              (37, 81)],
             [(38, 72), (46, 75), (57, 76), (68, 75), (76, 72), (78, 77), (70, 82), (57, 83.5), (44, 82),
              (36, 77)])
    for points in turns:
        turn = canvas.blob(moved(points, *head))
        canvas.put(turn, "maroon", canvas.inflated(turn, 5), thresholds=(0.32, 0.56, 0.92))


def draw_head(canvas, head, puffed):
    """Ears and the broad face; the cheeks may be blown out."""
    dx, dy = head
    for x in (36.5, 77.5):
        ear = canvas.ellipse(x + dx, 55 + dy, 4.5, 7)
        canvas.put(ear, "skin", canvas.sphere(x + dx, 55 + dy, 4.5, 7))
    half = [(57, 30), (76, 36), (78, 51), (77.5, 63), (71, 73), (57, 78)]
    skull = canvas.blob(moved(symmetric(half), dx, dy))
    if puffed:
        skull |= canvas.ellipse(40 + dx, 66 + dy, 9) | canvas.ellipse(74 + dx, 66 + dy, 9)
    light = canvas.sphere(56 + dx, 55 + dy, 29, 33) * 0.6 + canvas.cylinder(31 + dx, 83 + dx) * 0.4
    canvas.put(skull, "skin", light, thresholds=(0.3, 0.5, 0.93), cast=(1, 3))
    for x, flip in ((36, False), (75, True)):
        canvas.stamp(x + dx, 42 + dy, maps.SIDEBURN, maps.FACE_KEY, flip)


def draw_cap(canvas, head):
    """The peaked khaki cap: crown, band, badge and leather peak."""
    half = [(57, 8), (72, 9.5), (84.5, 15), (87, 21), (80, 29), (57, 30)]
    crown = canvas.blob(moved(symmetric(half), *head))
    light = canvas.sphere(54 + head[0], 24 + head[1], 36, 20)
    canvas.put(crown, "khaki", light, thresholds=(0.3, 0.56, 0.92))
    seam = [(27, 20), (40, 15.5), (57, 14), (74, 15.5), (87, 20)]
    canvas.line(moved(seam, *head), "khaki", SHADOW, within=crown)
    band = canvas.blob(moved([corner(35, 27), (57, 23), corner(79, 27), corner(79, 37), (57, 34),
                              corner(35, 37)], *head))
    canvas.put(band, "indigo", canvas.cylinder(26 + head[0], 88 + head[0]), thresholds=CLOTH)
    peak = canvas.blob(moved([corner(34.5, 36.5), (45, 33.5), (57, 32.5), (69, 33.5), corner(79.5, 36.5),
                              (76, 42), (67, 41), (57, 40.5), (47, 41), (38, 42)], *head))
    canvas.put(peak, "wood", canvas.inflated(peak, 5), thresholds=(0.44, 0.74, 0.95), cast=(1, 2))
    badge = canvas.ellipse(57 + head[0], 25.5 + head[1], 5, 5.5)
    canvas.put(badge, "brass", canvas.sphere(57 + head[0], 25.5 + head[1], 5, 5.5))
    star = {"k": ("brass", SHADOW)}
    canvas.stamp(55 + head[0], 24 + head[1], ".k..\nkkk.\n.k..", star)


def draw_face(canvas, head, face):
    """Brows, eyes, nose, moustache and mouth, each a text map."""
    dx, dy = head

    def both(x, y, rows):
        width = max(map(len, rows.strip("\n").split("\n")))
        canvas.stamp(x + dx, y + dy, rows, maps.FACE_KEY)
        canvas.stamp(WIDTH - x - width + dx, y + dy, rows, maps.FACE_KEY, flip=True)

    both(42, 43 - face.raised, face.brow)
    left_eye, right_eye = maps.EYES[face.eyes]
    canvas.stamp(42 + dx, 49 + dy, left_eye, maps.FACE_KEY)
    canvas.stamp(63 + dx, 49 + dy, right_eye, maps.FACE_KEY)
    both(51, 54, maps.NOSE)
    both(38, 58, maps.CHEEK)
    both(36, 58, maps.MOUSTACHE)
    canvas.stamp(54 + dx, 71 + dy, face.mouth, maps.FACE_KEY)


def sleeve(canvas, points, cuff):
    """A coat sleeve ending in a turned-up cuff (a polygon)."""
    mask = canvas.blob(points)
    canvas.put(mask, "indigo", canvas.inflated(mask, 8), thresholds=CLOTH)
    fold = canvas.polygon(cuff)
    canvas.put(fold, "khaki", canvas.inflated(fold, 4))


def draw_lathi(canvas, top, foot):
    """The bamboo staff from its top to its iron foot."""
    length = math.dist(top, foot)
    along = ((foot[0] - top[0]) / length, (foot[1] - top[1]) / length)
    side = (-along[1] * 2.5, along[0] * 2.5)
    staff = canvas.polygon([(x + sign * side[0], y + sign * side[1])
                            for sign, ends in ((1, (top, foot)), (-1, (foot, top))) for x, y in ends])
    canvas.put(staff, "brass", canvas.inflated(staff, 3, blur=0.7), thresholds=(0.2, 0.5, 0.84))
    for distance in range(16, int(length) - 6, 20):
        x, y = top[0] + along[0] * distance, top[1] + along[1] * distance
        canvas.line([(x + side[0], y + side[1]), (x - side[0], y - side[1])], "brass", SHADOW, within=staff)
    canvas.paint(staff & canvas.ellipse(*foot, 7), "steel", BASE)


def draw_lathi_arm(canvas, lift=0):
    """The staff stood on the ground in the hand on the left, or lifted by so many pixels."""
    draw_lathi(canvas, (20.5, 34 - lift), (20.5, FLOOR - lift))
    sleeve(canvas, moved([(43, 80), (37, 80), (31, 89), (24, 98), (27, 108), (36, 107), (42, 96)], 0, -lift),
           moved([(24, 96), (31, 100), (29, 110), (22, 105)], 0, -lift))
    canvas.put_map(15, 96 - lift, maps.FIST, maps.HAND_KEY)


def draw_arms_idle(canvas):
    """The lathi in one hand, the lantern hanging from the other."""
    draw_lathi_arm(canvas)
    canvas.put_map(85, 119, maps.LANTERN, maps.LANTERN_KEY)
    sleeve(canvas, [(71, 80), (78, 81), (84, 92), (92, 105), (94, 112), (86, 114), (80, 108), (73, 96)],
           [(84, 109), (94, 106), (97, 113), (87, 116)])
    canvas.put_map(87, 113, maps.CARRYING_HAND, maps.HAND_KEY)


def draw_arms_busy(canvas):
    """The lantern held high."""
    draw_lathi_arm(canvas)
    sleeve(canvas, [(70, 81), (76, 79), (83, 81), (88, 76), corner(91, 64), corner(102, 66), (101, 80),
                    (95, 92), (83, 97), (74, 95)], [(90, 60), (103, 62), (102, 70), (89, 68)])
    canvas.put_map(97, 59, maps.LANTERN, maps.LANTERN_KEY)
    canvas.put_map(94, 52, maps.CARRYING_HAND, maps.HAND_KEY)


def draw_arms_hog(canvas):
    """Both fists on the lathi, across the chest; the lantern is on the ground."""
    canvas.put_map(92, FLOOR - 22, maps.LANTERN, maps.LANTERN_KEY)
    draw_lathi(canvas, (104, 82), (9, 104))
    sleeve(canvas, [(43, 80), (37, 80), (31, 88), (26, 96), (28, 106), (36, 108), (42, 98)],
           [(24, 97), (31, 95), (34, 106), (26, 108)])
    sleeve(canvas, [(71, 80), (77, 80), (85, 84), (91, 88), (90, 98), (82, 102), (74, 98)],
           [(84, 84), (91, 83), (93, 95), (85, 98)])
    canvas.put_map(23, 94, maps.FIST, maps.HAND_KEY)
    canvas.put_map(82, 81, maps.FIST, maps.HAND_KEY, flip=True)
    canvas.put_map(90, 36, maps.SWEAT, maps.SWEAT_KEY, cast=None)
    canvas.put_map(97, 27, maps.SMALL_SWEAT, maps.SWEAT_KEY, cast=None)
    canvas.put_map(19, 39, maps.SMALL_SWEAT, maps.SWEAT_KEY, cast=None)


def draw_arms_waiting(canvas, lift=0):
    """One hand on the lathi, the other wrist turned up to read the watch; the lantern is on the ground."""
    canvas.put_map(92, FLOOR - 22, maps.LANTERN, maps.LANTERN_KEY)
    draw_lathi_arm(canvas, lift)
    sleeve(canvas, [(71, 80), (78, 81), (84, 90), (86, 100), (80, 106), (70, 104), (64, 100), (65, 92),
                    (73, 92)],
           [(62, 91), (67, 91), (67, 103), (62, 102)])
    canvas.put_map(50, 92, maps.WATCH_HAND, maps.HAND_KEY)
    canvas.put_map(58, 92, maps.WATCH, maps.WATCH_KEY)


WAITING = Face(eyes="down")
STRAINING = Face(eyes="startled", brow=maps.WORRIED_BROW, raised=1, mouth=maps.ROUND_MOUTH, puffed=True)
LEANING = (-2, 2)


def poses():
    """File name -> picture."""
    return {
        "idle.png": draw(draw_arms_idle),
        "blink.png": draw(draw_arms_idle, Face(eyes="closed")),
        "busy.png": draw(draw_arms_busy, Face(eyes="alert", raised=1)),
        "hog.png": draw(draw_arms_hog, STRAINING),
        "idle-server.png": draw(draw_arms_waiting, WAITING, LEANING),
        "idle-server-tap.png": draw(lambda canvas: draw_arms_waiting(canvas, lift=3), WAITING, LEANING),
    }
