"""Mira, the breathing companion: cross-legged on a mat in a green sari, a jasmine string in her hair."""
from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW, Canvas, Character, corner, mirrored, moved
from kit.palette import RAMP_NAMES
from kit.shapes import beside

WIDTH, HEIGHT = 90, 119
FLOOR = 114  # the contour adds the last row above the ground line at 115

EYE_BOX = (30, 33, 61, 44)
UPPER_BODY = (0, 0, WIDTH, 96)

# How far the shoulders rise, the ribs widen on each side, and the head rises, from empty lungs to full.
BREATHS = ((0, 0, 0), (1, 0, 0), (2, 0, 1), (2, 1, 1), (3, 1, 2), (4, 1, 2))

CHARACTER = Character(
    identifier="mira",
    grid=(WIDTH, HEIGHT),
    ground=(45, 115),
    reference="mira-breathing.png",
    moves={"mira-breathing-eyes-open.png": [EYE_BOX],
           **{f"mira-breath-{number}.png": [UPPER_BODY] for number in range(1, len(BREATHS))},
           "mira-breath-0.png": []},
    footing=50,
    stray=16,
)


def draw(breath=0, eyes="closed"):
    """Mira at one step of her breath, 0 (empty) to 5 (full)."""
    lift, width, nod = BREATHS[breath]
    canvas = Canvas(WIDTH, HEIGHT)
    draw_mat(canvas)
    draw_back_hair(canvas, -nod)
    draw_torso(canvas, lift, width)
    draw_legs(canvas)
    draw_neck(canvas, lift, nod)
    draw_arms(canvas, lift, width)
    draw_pallu(canvas, lift, width)
    draw_head(canvas, -nod)
    draw_face(canvas, -nod, eyes)
    draw_hair(canvas, -nod)
    light_hair_rim(canvas)
    return canvas.render()


def both_sides(points):
    """The points, and their mirror image."""
    return points, mirrored(points, WIDTH)


# What never moves -----------------------------------------------------------------------------------

def draw_mat(canvas):
    """A small woven mat, its edge towards us."""
    mat = canvas.rounded_box(5, 106, 85, FLOOR, 4)
    canvas.put(mat, "mustard", canvas.cylinder(-10, 110), thresholds=(0.3, 0.64, 0.95))
    for y in (110, 112):
        canvas.paint(mat & canvas.where(lambda x, py: abs(py - y - 0.5) < 0.5), "maroon", BASE)


def draw_legs(canvas):
    """The crossed legs under the sari, two shins and a foot."""
    knee = [(45, 88), (60, 86), (75, 90), (83.5, 98), (83, 106), (74, 109.5), (58, 110), (45, 109)]
    for points in both_sides(knee):
        thigh = canvas.blob(points)
        canvas.put(thigh, "sage", canvas.inflated(thigh, 11), thresholds=(0.3, 0.7, 0.95))
    foot = canvas.blob([(54, 104), (62, 102.5), (70, 104.5), (71, 108.5), (64, 110.5), (54, 109.5)])
    canvas.put(foot, "skin", canvas.inflated(foot, 5), thresholds=(0.3, 0.6, 0.94))
    shin = canvas.blob([(17, 101), (30, 98), (46, 100), (60, 104), (61, 109.5), (46, 111), (28, 111),
                        (14, 109)])
    canvas.put(shin, "sage", canvas.inflated(shin, 8), thresholds=(0.3, 0.7, 0.95))
    canvas.line([(57, 103.5), (58, 106), (57.5, 110.5)], "mustard", LIGHT, width=2, within=shin)


# What breathes --------------------------------------------------------------------------------------

def draw_torso(canvas, lift, width):
    """Blouse and waist."""
    torso = canvas.blob([(45, 56 - lift), (57, 59 - lift), (63 + width, 65 - lift),
                         (60 + width, 76 - lift // 2),
                         (57, 86), (60, 97), (30, 97), (33, 86), (30 - width, 76 - lift // 2),
                         (27 - width, 65 - lift), (33, 59 - lift)])
    canvas.put(torso, "mustard", canvas.cylinder(22, 70), thresholds=(0.36, 0.66, 0.95))
    waist = torso & canvas.where(lambda x, y: y > 80)
    canvas.put(waist, "skin", canvas.cylinder(22, 70), thresholds=(0.36, 0.66, 0.98))


def draw_pallu(canvas, lift, width):
    """The sari's end, from the lap up over the far shoulder."""
    pallu = canvas.blob([corner(28, 96), (30, 84), (36, 74 - lift // 2), (46, 64 - lift),
                         corner(55, 55 - lift),
                         (61, 56 - lift), (66 + width, 63 - lift), (64 + width, 72 - lift // 2),
                         (60 + width, 82), (60, 96)])
    canvas.put(pallu, "sage", canvas.cylinder(20, 72), thresholds=(0.36, 0.76, 0.97))
    edge = [(28.5, 96), (31, 84), (37, 74 - lift // 2), (47, 64 - lift), (56, 56 - lift)]
    canvas.line(edge, "mustard", LIGHT, width=2, within=pallu)
    for crease in ([corner(52, 64 - lift), (49, 80), corner(41, 96), corner(45, 96), (51, 81)],
                   [corner(59, 62 - lift), (57, 80), corner(51, 96), corner(55, 96), (59, 81)]):
        canvas.fold(crease, within=pallu)


def draw_neck(canvas, lift, nod):
    """Neck and collarbone, and a thin chain."""
    neck = canvas.blob([(39.5, 48 - nod), (50.5, 48 - nod), (50, 56 - nod), (56, 59 - lift), (45, 66 - lift),
                        (34, 59 - lift), (40, 56 - nod)])
    canvas.put(neck, "skin", canvas.even(0.7), cast=None)
    canvas.line([(37, 58.5 - lift), (41, 61.5 - lift), (45, 62.8 - lift), (49, 61.5 - lift),
                 (53, 58.5 - lift)],
                "brass", LIGHT, within=neck)


def draw_arms(canvas, lift, width):
    """Short sleeves, bare forearms with bangles, hands on the knees."""
    arm = [(29 - width, 64 - lift), (20.5, 79 - lift // 2), (15, 92)]
    for flip in (False, True):
        side = (lambda points: mirrored(points, WIDTH)) if flip else list
        before = canvas.last_part
        limb = canvas.stroke(side(arm), [9.5, 8.5, 6.5])
        canvas.put(limb, "skin", canvas.inflated(limb, 5), thresholds=(0.34, 0.62, 0.93))
        sleeve = canvas.stroke(side([(30 - width, 62.5 - lift), (25.5 - width, 70 - lift)]), [10.5, 10.5])
        canvas.put(sleeve, "mustard", canvas.inflated(sleeve, 7, 1.2), thresholds=(0.36, 0.7, 0.93))
        if flip:
            canvas.far_side(lambda x, y: x > 66, since=before)
        canvas.put_map(WIDTH - 6 - 13 if flip else 6, 90, HAND, SKIN_KEY, flip=flip)
        for step in (0, 2):
            bangle = side([(12, 85.5 + step), (15.5, 87 + step), (20, 88 + step)])
            canvas.line(bangle, "brass", LIGHT, within=limb)


EARRING_KEY = {"b": ("brass", HIGHLIGHT), "B": ("brass", BASE)}
SKIN_KEY = {"d": ("skin", SHADOW), "b": ("skin", BASE), "L": ("skin", LIGHT), "H": ("skin", HIGHLIGHT)}
HAND = """
.......HLL...
......HL.bLL.
..HLL.HLbLLLb
.HLLLLLLLLLLb
HLLbbbLLLLLLb
.LLLLLLLLLLb.
.HLbbbbLLLb..
..LLLLLLLb...
...bbbbbb....
"""


# Head -------------------------------------------------------------------------------------------------

def hair(canvas, points, dy, thresholds=(0.26, 0.78, 0.97)):
    """One volume of hair, lit as part of the whole head."""
    mask = canvas.blob(moved(points, 0, dy))
    light = canvas.sphere(43, 27 + dy, 26, 24) * 0.6 + canvas.inflated(mask, 6) * 0.4
    return canvas.put(mask, "jet", light, thresholds=thresholds)


def draw_back_hair(canvas, dy):
    """The knot on the crown with its jasmine, and what is combed back."""
    knot = canvas.ellipse(45, 11.5 + dy, 9, 7)
    canvas.put(knot, "jet", canvas.sphere(44, 11 + dy, 10, 8.5), thresholds=(0.2, 0.62, 0.93))
    hair(canvas, [(45, 14), (58.5, 17), (65.3, 26), (65.3, 36), (62, 43), (45, 46), (28, 43),
                  (24.7, 36), (24.7, 26), (31.5, 17)], dy)


def draw_head(canvas, dy):
    """Ears and the face's own form."""
    for x in (26.6, 63.4):
        ear = canvas.ellipse(x, 40 + dy, 2.8, 4.4)
        canvas.put(ear, "skin", canvas.sphere(x, 40 + dy, 2.8, 4.4))
        canvas.stamp(25 if x < 45 else 63, 44 + dy, "bB\nBb", EARRING_KEY)
    head = canvas.blob(moved([(45, 17), (57, 20), (62, 29), (62.4, 38), (59, 46), (52, 52), (45, 54),
                              (38, 52),
                              (31, 46), (27.6, 38), (28, 29), (33, 20)], 0, dy))
    light = canvas.sphere(44, 35 + dy, 22, 25) * 0.6 + canvas.cylinder(22, 68) * 0.4
    canvas.put(head, "skin", light, thresholds=(0.28, 0.54, 0.94), cast=(1, 3))


def draw_hair(canvas, dy):
    """Two smooth wings from the parting, and the jasmine."""
    wing = [corner(45, 15.5), (33, 16), (26, 24), (25.5, 32), corner(25.5, 38), (29, 33), (34, 26.5),
            corner(45, 21)]
    for points in both_sides(wing):
        hair(canvas, points, dy)
    for x, y in ((34, 14), (55, 14), (38, 16), (51, 16), (42.5, 17), (47, 17)):
        canvas.put_map(int(x) - 1, y + dy - 2, BLOSSOM, BLOSSOM_KEY, edge="low", cast=(0, 1))


def light_hair_rim(canvas):
    """Lifts the outermost ring of the dark hair, so that it stands out from a dark desktop."""
    hair_pixels = canvas.covered() & (canvas.ramp == RAMP_NAMES.index("jet"))
    rim = hair_pixels & beside(~canvas.covered())
    canvas.adjust(rim & (canvas.level == SHADOW), 1)
    canvas.adjust(rim & (canvas.level == BASE), 1)


BLOSSOM = """
..W..
.WWW.
WWyWw
.WWw.
..w..
"""
BLOSSOM_KEY = {"W": ("white", HIGHLIGHT), "w": ("white", BASE), "y": ("brass", LIGHT)}


EYES = {
    "closed": """
.......
.......
.......
k.....k
kk...kk
.kkkkk.
k.k.k..
""",
    "open": """
..kkkk.
kkkkkkk
.kkkkkk
.kkkkkk
.kkkkkk
.kkddk.
..kkk..
""",
}
EYE_KEY = {"k": ("ink", LINE), "w": ("white", HIGHLIGHT), "d": ("ink", LIGHT)}


def draw_face(canvas, dy, eyes):
    """Brows, eyes, nose, a quiet mouth, a bindi."""
    for x, flip in ((33, False), (50, True)):
        canvas.stamp(x, 35 + dy, EYES[eyes], EYE_KEY, flip)
        if eyes == "open":
            canvas.stamp(x + 2, 36 + dy, "ww\nww", EYE_KEY)
        canvas.stamp(x, 31 + dy, "..kkkk.\nkkk....", {"k": ("ink", SHADOW)}, flip)
    canvas.stamp(44, 29 + dy, "rr\nrr", {"r": ("maroon", BASE)})
    canvas.stamp(44, 42 + dy, ".d\ndd", {"d": ("skin", SHADOW)})
    canvas.stamp(41, 47 + dy, "m......m\n.mmmmmm.\n..bbbb..", {"m": ("maroon", LINE), "b": ("skin", BASE)})
    for x, flip in ((30, False), (56, True)):
        canvas.stamp(x, 43 + dy, ".ccc\ncccc", {"c": ("maroon", HIGHLIGHT)}, flip)


def poses():
    """File name -> picture."""
    pictures = {"mira-breathing.png": draw(), "mira-breathing-eyes-open.png": draw(eyes="open")}
    for number in range(len(BREATHS)):
        pictures[f"mira-breath-{number}.png"] = draw(number)
    return pictures
