"""Snake, the game: a cobra with a crown on its brow, risen from a charmer's basket."""
import numpy as np

from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW, Canvas, Character, Manifest, corner, mirrored, moved

WIDTH, HEIGHT = 104, 144
MIDDLE = WIDTH // 2
FLOOR = 139  # the contour adds the last row above the ground line at 140
RISE = 6  # how much higher the head is held in a game

CHARACTER = Character(
    identifier="snake",
    grid=(WIDTH, HEIGHT),
    ground=(MIDDLE, FLOOR + 1),
    moves={"blink.png": [(31, 30, 73, 42)], "playing.png": [(0, 0, WIDTH, 112)]},
    footing=40,
    manifest=Manifest(
        name="Snake",
        role="Game",
        poses={"idle": "idle.png", "blink": "blink.png", "playing": "playing.png"},
        face=(MIDDLE, 38),
        accent=(0.36, 0.6, 0.25),
        behaviours=("idle", "blink"),
        order=4,
    ),
)

EYES = {
    "open": """
...kkkk..
..kkkkkk.
.kkwwkkkk
.kwwwkkkk
.kwwkkkkk
.kkkkkkkk
.kkkkkkdk
.kkkkkddk
..kkkddk.
...kkkk..
""",
    "closed": """
.........
.........
.........
.........
.........
.k......k
.kk....kk
..kkkkkk.
.........
.........
""",
}
# The left brow, drawn down over the eye: the game face.
GAME_BROW = """
ss.......
ssss.....
.sssssss.
...ssssss
"""
CHEEK = """
.cccc.
cccccc
.cccc.
"""
SMILE = """
k..................k
kk................kk
.kkk............kkk.
...kkkkkkkkkkkkkk...
"""
GRIN = """
k..................k
kkk..............kkk
.kkkkkkkkkkkkkkkkkk.
..kwwmmmmmmmmmmwwk..
..kkwmmmmmmmmmmwkk..
...kkmmmqqqqmmmkk...
....kkmqrrrrqmkk....
.....kkqrRrrqkk.....
.......qrRrrq.......
.......qrRrrq.......
.......qrrrrq.......
......qqrrrrqq......
.....qrrrqqrrrq.....
....qrrqq..qqrrq....
....qrq......qrq....
"""
SPOT = """
..yyyy..
.yyyyyy.
yyyggyyy
yyggggyy
yyggggyy
oyyggyyo
.ooyyoo.
..oooo..
"""
NOSTRILS = """
kk...kk
"""
CROWN = """
k......k......k
kk....kkk....kk
kbk..kkbkk..kbk
kbbkkkbbbkkkbdk
kHbbbkHbbkbbbdk
kHHbbbbbbbbbddk
kHbRbbbRbbbRbdk
kkbbbbbbbbbbdkk
.kkkkkkkkkkkkk.
"""
FACE_KEY = {"k": ("ink", LINE), "w": ("white", HIGHLIGHT), "d": ("ink", BASE), "s": ("leaf", SHADOW),
            "c": ("red", LIGHT), "m": ("maroon", SHADOW), "r": ("red", BASE),
            "R": ("red", LIGHT), "q": ("red", LINE)}
CROWN_KEY = {"k": ("brass", LINE), "b": ("brass", LIGHT), "H": ("brass", HIGHLIGHT), "d": ("brass", BASE),
             "R": ("red", BASE)}
SPOT_KEY = {"g": ("leaf", LINE), "y": ("mustard", LIGHT), "o": ("mustard", BASE)}


def draw(eyes="open", playing=False):
    """Snake with these eyes, at rest or at its game."""
    canvas = Canvas(WIDTH, HEIGHT)
    rise = -RISE if playing else 0
    draw_basket_mouth(canvas)
    draw_hood(canvas, rise)
    draw_neck(canvas, rise)
    draw_coils(canvas, playing)
    draw_basket(canvas)
    draw_head(canvas, rise)
    draw_face(canvas, rise, eyes, playing)
    return canvas.render()


def symmetric(half):
    """A closed outline from its right half, whose first and last points lie on the middle axis."""
    return half + mirrored(half[-2:0:-1], WIDTH)


def draw_basket_mouth(canvas):
    """The far rim of the basket and the dark inside."""
    rim = canvas.ellipse(MIDDLE, 105, 36, 9)
    canvas.put(rim, "wood", canvas.even(0.8))
    canvas.put(canvas.ellipse(MIDDLE, 106, 32, 7), "wood", canvas.even(0), cast=None)


def draw_hood(canvas, rise):
    """The spread hood around the head: a lit rim, a darker inside, a spot on either side."""
    half = [(52, 19), (68, 19.5), (82, 26), (90, 40), (89, 55), (81, 69), (71, 81), (64, 94), (52, 98)]
    hood = canvas.blob(moved(symmetric(half), 0, rise))
    canvas.put(hood, "leaf", canvas.inflated(hood, 7), thresholds=(0.3, 0.56, 0.84))
    inner = [(52, 24), (67, 24.5), (79, 30), (85.5, 41), (84.5, 53), (77, 66), (67, 78), (60, 92), (52, 96)]
    inside = canvas.blob(moved(symmetric(inner), 0, rise))
    canvas.put(inside, "leaf", canvas.sphere(50, 48 + rise, 60), thresholds=(0.2, 0.98, 0.99), edge="none",
               cast=None)
    for x, flip in ((24, False), (WIDTH - 24 - 8, True)):
        canvas.stamp(x, 58 + rise, SPOT, SPOT_KEY, flip)


def draw_neck(canvas, rise):
    """The broad belly scales, from under the chin down into the coils."""
    neck = canvas.blob([(38, 46 + rise), (66, 46 + rise), (67, 60 + rise), (64, 76 + rise), (62, 90 + rise),
                        (63, 104), (64, 114), (40, 114), (41, 104), (42, 90 + rise), (40, 76 + rise),
                        (37, 60 + rise)])
    canvas.put(neck, "mustard", canvas.cylinder(32, 72), thresholds=(0.2, 0.56, 0.92))
    for y in range(60 + rise, 100, 7):
        scale = [(32, y), (43, y + 2), (52, y + 2), (61, y + 2), (72, y)]
        canvas.line(scale, "mustard", SHADOW, within=neck)


def draw_coils(canvas, playing):
    """The turns of the body that lie in the basket, and the tip of the tail over the rim."""
    tail = canvas.stroke([(78, 110), (90, 105), (96, 95 if playing else 97), (92, 88 if playing else 92)],
                         [10, 9, 6, 2])
    canvas.put(tail, "leaf", canvas.inflated(tail, 4), thresholds=(0.3, 0.5, 0.88))
    upper = canvas.stroke([(30, 101), (40, 97), (54, 96), (68, 98), (76, 103)], [11, 13, 13, 13, 11])
    lower = canvas.stroke([(17, 108), (26, 104), (46, 106), (66, 107), (86, 107)], [10, 13, 14, 14, 10])
    for coil in (upper, lower):
        canvas.put(coil, "leaf", canvas.inflated(coil, 7), thresholds=(0.32, 0.56, 0.86), cast=(0, 2))


def draw_basket(canvas):
    """The woven basket with a red band and a plaited rim."""
    half = [corner(52, 111), corner(87, 106), (92, 114), (89.5, 128), corner(82, FLOOR), corner(52, FLOOR)]
    basket = canvas.blob(symmetric(half))
    drum = canvas.cylinder(8, 98)
    canvas.put(basket, "wood", drum, thresholds=(0.3, 0.68, 0.92))
    draw_weave(canvas, basket, drum)
    rim = canvas.blob([corner(13, 104), (30, 107), (52, 108.5), (74, 107), corner(91, 104), (93, 108),
                       corner(91, 112), (74, 115), (52, 116.5), (30, 115), corner(13, 112), (11, 108)])
    canvas.put(rim, "mustard", canvas.cylinder(6, 102), thresholds=(0.3, 0.6, 0.92), cast=(1, 2))
    for x in range(10, 96, 6):
        canvas.line([(x + 4, 102), (x, 118)], "mustard", SHADOW, within=rim)


def draw_weave(canvas, basket, drum):
    """Strands that go over and under the staves by turns; the third row is red."""
    top, height = 115, 6
    for row in range(4):
        low, high = top + row * height, top + (row + 1) * height

        def sag(x):
            return 2 * (1 - ((x - MIDDLE) / 40) ** 2)
        strand = basket & canvas.where(lambda x, y: (y - sag(x) >= low) & (y - sag(x) < high))
        if row == 1:
            canvas.put(strand, "maroon", drum, thresholds=(0.26, 0.56, 0.95), edge="none", cast=None)

        def under(x, y):
            turn = np.arcsin(np.clip((x - MIDDLE) / 41, -1, 1)) / 0.24
            return (np.floor(turn + 0.5) + row) % 2 == 0
        canvas.adjust(strand & canvas.where(under), -1)
        gap = strand & canvas.where(lambda x, y: y - sag(x) >= high - 1)
        canvas.paint(gap, "wood", SHADOW)


def draw_head(canvas, rise):
    """The broad head, widest at the cheeks."""
    half = [(52, 11), (65, 13.5), (73, 22), (76, 33), (76, 43), (70, 51.5), (61, 56), (52, 57)]
    head = canvas.blob(moved(symmetric(half), 0, rise))
    light = canvas.sphere(50, 36 + rise, 29, 28)
    canvas.put(head, "leaf", light, thresholds=(0.24, 0.42, 0.88), cast=(1, 4))
    chin = canvas.blob(moved([(43, 50), (52, 50.5), (61, 50), (66, 54), (52, 60), (38, 54)], 0, rise))
    canvas.put(chin & head, "mustard", canvas.cylinder(34, 70), thresholds=(0.2, 0.56, 0.92), edge="none",
               cast=None)


def draw_face(canvas, rise, eyes, playing):
    """Crown, eyes, cheeks, nostrils and mouth, each a text map."""
    for left in (35, 59):
        canvas.stamp(left, 30 + rise, EYES[eyes], FACE_KEY)
    for left in (31, 67):
        canvas.stamp(left, 42 + rise, CHEEK, FACE_KEY)
    canvas.stamp(49, 41 + rise, NOSTRILS, FACE_KEY)
    canvas.stamp(42, 46 + rise, GRIN if playing else SMILE, FACE_KEY)
    if playing:
        canvas.stamp(34, 27 + rise, GAME_BROW, FACE_KEY)
        canvas.stamp(61, 27 + rise, GAME_BROW, FACE_KEY, flip=True)
    canvas.stamp(45, 17 + rise, CROWN, CROWN_KEY)


def poses():
    """File name -> picture."""
    return {"idle.png": draw(), "blink.png": draw(eyes="closed"), "playing.png": draw(playing=True)}
