"""What the two interns share: the build, the hoodie, legs in trainers, arms, hands and the face's parts.

The mirror axis is x = 36.5. "Left" and "right" are the viewer's.
"""
from dataclasses import dataclass

from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW, corner, mirrored, moved
from kit.palette import RAMP_NAMES
from kit.shapes import beside

WIDTH, HEIGHT = 73, 116
FLOOR = 111  # the contour adds the last row above the ground line at 112
FACE = (36.5, 25.52)
GROUND = (35.5, 112)
ACCENT = (0.31, 0.39, 0.6)

SKIN_KEY = {"d": ("skin", SHADOW), "b": ("skin", BASE), "L": ("skin", LIGHT), "H": ("skin", HIGHLIGHT)}


@dataclass(frozen=True)
class Outfit:
    """The ramps of one intern's clothes."""

    hoodie: str
    shirt: str
    trousers: str
    shoes: str
    stripe: str


# Hands: mittens with a finger line or two, all drawn for the arm at the viewer's left. -----------------

HANGING_HAND = """
..LLLLLL..
.HLLLLLLL.
HLLLLLLLLb
HLLLLLLLLb
HLLLLLLbLb
HLbLLbLbLb
HLbLLbLbb.
.LbLLbLb..
..bbLbb...
"""
FIST = """
.HLLLLLL..
HLLLLLLLL.
HLLLLLLLLb
bbbbLLLLLb
HLLLbLLLLb
bbbbLLLLb.
HLLLbLLLb.
.bbbLLLb..
..LLLbb...
"""
OPEN_HAND = """
....HL......
.HL.HL.HL...
.HLdHLdHL...
.HLdHLdHL...
.HLdHLdHL.HL
.HLLLLLLLdHL
.HHLLLLLLLLb
.HLLLLbbLLb.
.HLLbbLLLb..
..HLLLLLLb..
...LLLLbb...
"""
OFFERED_HAND = """
..HL........
..HLL.......
.dHLLL......
HLdLLLL.....
HLLdLLLLb...
dHLLdLLLLb..
.HLLLLLLLLb.
..LLLLLLLLLb
...bbLLLLLLb
.....bbbbbb.
"""
CUPPED_HAND = """
.HLL....
HLLLLL..
HLbLLLL.
HLLbLLLL
HLLLbLLL
HLLLLbLL
.HLLLLLb
.HLLLLLb
..LLLLb.
..bbbb..
"""
POINTING_HAND = """
.......HL..
.......HL..
.......HL..
.......HL..
.HLbLbLHL..
HLLbLbLLLHL
HLLLLLLLdHL
HLbbbbLLLLb
.HLLLLLLLb.
..LLLLLLb..
...bbbbb...
"""
CHIN_HAND = """
..HLLLLL..
.HLLLLLLL.
HLLLbbbLLb
HLLLLLLbLb
HLLLbbbLLb
.LLLLLLbLb
.LLLbbbLb.
..bbbbbb..
"""


# The body ---------------------------------------------------------------------------------------------

def both_sides(points):
    """The points, and their mirror image."""
    return points, mirrored(points, WIDTH)


def draw_legs(canvas, outfit, turned_up=True):
    """Straight trousers, turned up once if so wanted, over round-toed trainers."""
    shoe = [(27, 101), (33.5, 101), (35.6, 105), corner(35.6, FLOOR), corner(20.5, FLOOR), (19.4, 108.5),
            (21, 105.5), (25, 104)]
    leg = [(25, 78), (36.5, 78), (36.5, 104.2), (25.6, 104.2)]
    for side, points in enumerate(both_sides(shoe)):
        trainer = canvas.put(canvas.blob(points), outfit.shoes, thresholds=(0.2, 0.5, 0.86))
        canvas.paint(trainer & canvas.where(lambda x, y: y > FLOOR - 2), "white", LIGHT if not side else BASE)
        stripe = [(25.5, 105), (27.5, 108.4)]
        canvas.line(mirrored(stripe, WIDTH) if side else stripe, outfit.stripe, BASE, width=2,
                    within=trainer & canvas.where(lambda x, y: y < FLOOR - 2))
    for side, points in enumerate(both_sides(leg)):
        left = 24.5 if not side else 36.5
        trouser = canvas.put(canvas.polygon(points), outfit.trousers, canvas.cylinder(left, left + 12),
                             thresholds=(0.3, 0.72, 2))
        canvas.adjust(trouser & canvas.where(lambda x, y: y < 87), -1)
        if turned_up:
            canvas.paint(trouser & canvas.where(lambda x, y: (y > 99) & (y < 100)), outfit.trousers, SHADOW)
            canvas.adjust(trouser & canvas.where(lambda x, y: y > 100), 1)


def draw_hood_behind(canvas, outfit):
    """The hood, lying in a roll behind the neck."""
    hood = canvas.blob([(19, 50), (22, 43.5), (36.5, 41), (51, 43.5), (54, 50), (48, 57), (25, 57)])
    canvas.put(hood, outfit.hoodie, canvas.inflated(hood, 7))


def draw_hoodie(canvas, outfit):
    """The body of the hoodie with its hem and its pocket."""
    body = canvas.blob([(20, 55), (25, 50.5), (36.5, 49), (48, 50.5), (53, 55), (54, 68), corner(52.5, 85),
                        corner(20.5, 85), (19, 68)])
    canvas.put(body, outfit.hoodie, canvas.cylinder(15, 57), thresholds=(0.3, 0.58, 0.9))
    pocket = canvas.polygon([(29, 72), (44, 72), (48, 81), (25, 81)])
    canvas.put(pocket, outfit.hoodie, canvas.cylinder(17, 57), thresholds=(0.3, 0.58, 0.9), edge="none",
               cast=None)
    for points in both_sides([(29, 72), (25, 81)]):
        canvas.line(points, outfit.hoodie, SHADOW, within=body)
    canvas.line([(29.5, 72), (43.5, 72)], outfit.hoodie, SHADOW, within=body)
    hem = body & canvas.where(lambda x, y: y > 81)
    canvas.paint(hem & canvas.where(lambda x, y: y < 82), outfit.hoodie, SHADOW)
    for x in range(23, 52, 3):
        canvas.paint(hem & canvas.box(x, 82, x + 1, 85), outfit.hoodie, SHADOW)
    return body


def draw_neck(canvas, outfit):
    """The neck in the shadow of the chin, the shirt, and the hood's two edges that meet below it."""
    neck = canvas.polygon([(30.5, 42), (42.5, 42), (42.5, 50), (36.5, 57), (30.5, 50)])
    canvas.put(neck, "skin", canvas.even(0.3), cast=None)
    canvas.paint(neck & canvas.where(lambda x, y: y > 49 + abs(x - 36.5) * 0.2), outfit.shirt, BASE)
    edge = [(24, 45), (29, 45.5), (32, 51), (37.5, 56), (36, 60.5), (28, 57), (22.5, 51.5)]
    for points in reversed(both_sides(edge)):
        roll = canvas.blob(points)
        canvas.put(roll, outfit.hoodie, canvas.inflated(roll, 4), cast=(1, 2))


def draw_sleeve(canvas, outfit, joints, widths=(10.5, 10.5, 9), folded=False, muscle=None):
    """One sleeve through shoulder, elbow and wrist, with a cuff.

    Folded, the forearm lies over the rest; `muscle` is a mask that swells the sleeve.
    """
    shoulder, elbow, wrist = joints
    upper, middle, lower = widths
    strokes = [([shoulder, elbow, wrist], widths)]
    if folded:
        strokes = [([shoulder, elbow], (upper, middle)), ([elbow, wrist], (middle, lower))]
    for points, stroke_widths in strokes:
        mask = canvas.stroke(points, stroke_widths)
        if muscle is not None:
            mask |= muscle
        canvas.put(mask, outfit.hoodie, canvas.inflated(mask, 6, 1.2), thresholds=(0.46, 0.7, 0.9))
    along_x, along_y = wrist[0] - elbow[0], wrist[1] - elbow[1]
    length = (along_x**2 + along_y**2) ** 0.5
    cuff = mask & canvas.where(
        lambda x, y: abs(((x - wrist[0]) * along_x + (y - wrist[1]) * along_y) / length - 0.5) < 0.6)
    canvas.paint(cuff, outfit.hoodie, SHADOW)


def rim_light(canvas, first_part, ramp):
    """Lifts the outermost ring of dark hair, so that it stands out from a dark desktop."""
    hair = canvas.covered() & (canvas.part > first_part) & (canvas.ramp == RAMP_NAMES.index(ramp))
    rim = hair & beside(~canvas.covered())
    canvas.adjust(rim & (canvas.level == SHADOW), 1)
    canvas.adjust(rim & (canvas.level == BASE), 1)


def draw_hand(canvas, x, y, rows, flip=False):
    """A hand from its map; `x` is where the map's left column falls on the viewer's left side, and is
    mirrored together with the map."""
    width = max(map(len, rows.strip("\n").split("\n")))
    padded = "\n".join(row.ljust(width, ".") for row in rows.strip("\n").split("\n"))
    canvas.put_map(WIDTH - x - width if flip else x, y, padded, SKIN_KEY, flip=flip)


# The head ---------------------------------------------------------------------------------------------

HEAD = [(19.5, 20), (24, 11), (36.5, 8), (49, 11), (53.5, 20), (54.3, 28), (52.5, 36), (46.5, 43.2),
        (36.5, 46.2), (26.5, 43.2), (20.5, 36), (18.7, 28)]


def draw_head(canvas, dx=0, dy=0):
    """Ears and the face's own form."""
    for x, lean in ((17.8, -1), (55.2, 1)):
        ear = canvas.ellipse(x + dx, 29 + dy, 3.4, 5)
        canvas.put(ear, "skin", canvas.sphere(x + dx, 29 + dy, 3.4, 5))
        canvas.line(moved([(x, 27), (x + lean * 0.6, 29), (x, 31)], dx, dy), "skin", SHADOW)
    head = canvas.blob(moved(HEAD, dx, dy))
    light = canvas.sphere(35.5 + dx, 26 + dy, 23, 25) * 0.6 + canvas.cylinder(14 + dx, 58 + dx) * 0.4
    return canvas.put(head, "skin", light, thresholds=(0.28, 0.54, 0.94), cast=(1, 3))


EYES = {
    "open": """
.kkk.
kwwkk
kwwkk
kkkkk
kkkkk
kkddk
.kkk.
""",
    "closed": """
.....
.....
.....
k...k
kk.kk
.kkk.
.....
""",
    "happy": """
.....
.....
.kkk.
kk.kk
k...k
.....
.....
""",
    "up": """
.wwk.
kwwkk
kkkkk
kkkkk
.ddk.
.....
.....
""",
}
EYE_KEY = {"k": ("ink", LINE), "w": ("white", HIGHLIGHT), "d": ("ink", LIGHT)}

MOUTHS = {
    "smile": """
m.......m
mm.....mm
.mmmmmmm.
...ddd...
""",
    "grin": """
mmmmmmmmm
mWWWWWWWm
.mWWWWWm.
..mmmmm..
""",
    "talk": """
..mmmmm..
.mWWWWWm.
.mrrrrrm.
..mrrrm..
...mmm...
""",
    "oh": """
...mmm...
..mrrrm..
..mrrrm..
...mmm...
""",
    "flat": """
......mm.
..mmmm...
...dd....
""",
    "chew": """
.m.....m.
..mmmmm..
....bb...
""",
    "soft": """
.........
.m.....m.
..mmmmm..
""",
    "set": """
..mmmmm..
.mWWmWWm.
..mmmmm..
""",
}
MOUTH_KEY = {"m": ("maroon", LINE), "r": ("maroon", LIGHT), "W": ("white", HIGHLIGHT),
             "b": ("skin", BASE), "d": ("skin", BASE)}

CHEEK_KEY = {"c": ("maroon", HIGHLIGHT)}


def draw_features(canvas, eyes, mouth, brow, brows, dx=0, dy=0, mouth_dy=0, gaze=(0, 0)):
    """Eyes, brows, nose, mouth and cheeks.

    `brow` is a map for the left brow; `brows` says how many pixels each of them (left, right) rises.
    """
    for x, flip in ((26, False), (42, True)):
        canvas.stamp(x + dx + gaze[0], 25 + dy + gaze[1], EYES[eyes], EYE_KEY)
    for x, rise, flip in ((25, brows[0], False), (41, brows[1], True)):
        canvas.stamp(x + dx, 21 + dy - rise, brow, {"k": ("ink", SHADOW)}, flip)
    canvas.stamp(36 + dx, 32 + dy, ".d\ndd", {"d": ("skin", SHADOW)})
    canvas.stamp(35 + dx, 32 + dy, "H\n.", {"H": ("skin", HIGHLIGHT)})
    canvas.stamp(32 + dx, 37 + dy + mouth_dy, MOUTHS[mouth], MOUTH_KEY)
    for x, flip in ((21, False), (48, True)):
        canvas.stamp(x + dx, 33 + dy, ".ccc\ncccc", CHEEK_KEY, flip)
