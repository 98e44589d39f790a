"""Munshi, the ledger clerk: a turban, spectacles, a white moustache and a red day book."""
from kit import (BASE, HIGHLIGHT, LIGHT, LINE, SHADOW, Canvas, Character, Manifest, corner, mirrored, moved)
from kit.shapes import shifted

WIDTH, HEIGHT = 96, 150
FLOOR = 145  # the contour adds the last row above the ground line at 146

EYE_BOX = (35, 47, 61, 54)
ARMS_AND_HEAD = (0, 0, WIDTH, 121)

CHARACTER = Character(
    identifier="munshi",
    grid=(WIDTH, HEIGHT),
    ground=(48, 146),
    moves={"blink.png": [EYE_BOX], "writing.png": [ARMS_AND_HEAD], "all-done.png": [ARMS_AND_HEAD]},
    footing=30,
    stray=16,
    manifest=Manifest(
        name="Munshi",
        role="Ledger",
        poses={"idle": "idle.png", "blink": "blink.png", "writing": "writing.png",
               "all-done": "all-done.png"},
        face=(48, 52),
        accent=(0.7, 0.24, 0.24),
        behaviours=("idle", "blink"),
        order=3,
    ),
)

SKIN_KEY = {"d": ("skin", SHADOW), "b": ("skin", BASE), "L": ("skin", LIGHT),
            "H": ("skin", HIGHLIGHT)}

# The left half of the face from the brow down; the right half mirrors it.
BROW = """
.....HHHHHH....
...HHHHHHHHHH..
..HHhh....hhHH.
..hh...........
"""
SPECTACLES = """
.....bbbGGGbbb.....
....bGGGGGGGGGb....
....bGGGGGGGGGb....
...bGGGGGGGGGGGbbbb
...bGGGGGGGGGGGb...
...bGGGGGGGGGGGb..o
....bGGGGGGGGGb...o
....bGGGGGGGGGb...o
.....bbbGGGbbb....o
........bbb.......N
................ooN
................dnn
"""
MOUSTACHE = """
..............hhhdd
..hh.......hhHHHHHH
..HHh....hhHHHHHHHH
..HHhh.hhHHHHHHHHHH
..hHHHHHHHHHHHHHHhh
...hHHHHHHHHHhhhddd
.....hhhhhhhh..mmmm
.................qq
"""
SMILING_MOUSTACHE = """
.hh...........hhhdd
.HHh.......hhHHHHHH
.HHh.....hhHHHHHHHH
.hHHhh.hhHHHHHHHHHH
..hHHHHHHHHHHHHHHhh
...hHHHHHHHHHhhmmmm
.....hhhhhhhh.mmrrr
...............mmmm
"""
FACE_KEY = {"h": ("hair", BASE), "H": ("hair", HIGHLIGHT), "b": ("wood", LINE), "G": ("skin", HIGHLIGHT),
            "n": ("skin", BASE), "N": ("skin", HIGHLIGHT), "o": ("skin", LIGHT), "d": ("skin", SHADOW),
            "m": ("maroon", SHADOW), "q": ("skin", SHADOW), "r": ("maroon", LIGHT)}
EYES = {
    "open": """
.......
..kkk..
.kwwkk.
.kwwkk.
.kkkkk.
.kkddk.
..kkk..
""",
    "closed": """
.......
.......
.......
k.....k
kk...kk
.kkkkk.
.......
""",
    "down": """
.......
.......
.......
kkkkkkk
.kwkkk.
.kkkkk.
..kkk..
""",
    "happy": """
.......
..kkk..
.kkkkk.
kk...kk
k.....k
.......
.......
""",
}
EYE_KEY = {"k": ("ink", LINE), "w": ("white", HIGHLIGHT), "d": ("ink", BASE)}

PEN = """
w..........
ws.........
.ss........
..ss.......
..bbs......
...bb......
...ttt.....
....Ttt....
....Ttt....
.....Ttt...
.....Ttt...
......Ttt..
......Ttt..
.......Ttt.
.......Ttt.
........Tt.
"""
PEN_KEY = {"w": ("steel", HIGHLIGHT), "s": ("steel", LIGHT), "b": ("brass", LIGHT), "t": ("maroon", BASE),
           "T": ("maroon", HIGHLIGHT)}
PEN_HAND = """
...HLLL...
..HLLLLLL.
.HLLLLLLLL
.LLbbLLLLL
HLLLLbLLLb
LbbbLLbLLb
HLLLLLbLLb
LbbbbLbLb.
.LLLLLbbb.
..bbbbbb..
"""
BOOK_HAND = """
..HLLLLL..
.HLLLLLLL.
HLLLLLLLLL
..bbbLLLLL
HLLLLbLLLb
..bbbLLLLb
HLLLLbLLLb
..bbbLLLb.
..LLLLbbb.
...bbbb...
"""
OPEN_HAND = """
.....HL.......
..HL.HL.HL....
..HLdHLdHL....
..HLdHLdHL....
..HLdHLdHL....
..HLdHLdHL..HL
..HLLHLLHLdHLL
..HHHHLLLLLLLb
..HHLLLLLLLLb.
..HLLLbbbLLb..
..HLLbLLLLLb..
...LLLLLLLb...
....LLLLbb....
.....LLLb.....
"""


def draw(eyes="open", pose="idle", nod=0):
    """Munshi with these eyes, in this pose of the arms, the head lowered by so many pixels."""
    canvas = Canvas(WIDTH, HEIGHT)
    draw_legs(canvas)
    draw_turban_tail(canvas, nod)
    draw_kurta(canvas)
    draw_waistcoat(canvas)
    draw_head(canvas, nod)
    draw_turban(canvas, nod)
    draw_face(canvas, nod, eyes, happy=pose == "all-done")
    {"idle": draw_arms_idle, "writing": draw_arms_writing, "all-done": draw_arms_raised}[pose](canvas)
    return canvas.render()


def both_sides(points):
    """The points, and their mirror image."""
    return points, mirrored(points, WIDTH)


def draw_legs(canvas):
    """Gathered trousers in curled leather shoes."""
    shoe = [(38, 136), (44, 134.5), (47, 138), corner(47, FLOOR), corner(31, FLOOR), (26, 142.5), (23.5, 138),
            (24, 134), (27, 133), (28.5, 135), (27.5, 137), (31, 138.5)]
    leg = [(34, 112), (47.5, 112), (46.5, 137), (35, 137)]
    for points in both_sides(shoe):
        sole = canvas.put(canvas.blob(points), "wood", thresholds=(0.3, 0.6, 0.84))
        canvas.paint(sole & canvas.where(lambda x, y: y > FLOOR - 1.6), "wood", BASE)
    for side, points in zip((0, 1), both_sides(leg)):
        trouser = canvas.put(canvas.polygon(points), "white", canvas.cylinder(34 + 14 * side, 48 + 14 * side))
        canvas.adjust(trouser & canvas.where(lambda x, y: y < 132), -1)
        crease = [(34, 134), (41, 135.5), (48, 134)]
        canvas.line(mirrored(crease, WIDTH) if side else crease, "white", SHADOW, within=trouser)


def draw_turban_tail(canvas, nod):
    """The loose end of the turban, behind the far shoulder."""
    tail = canvas.blob(moved([(63, 40), (71, 43), (75, 57), (74, 72), (77, 85), (69, 88), (66, 70),
                              (64, 56)], 0, nod))
    canvas.put(tail, "mustard", canvas.inflated(tail, 6), bias=-1, lowest=BASE)
    canvas.line(moved([(67, 82), (72, 82.5), (77, 80.5)], 0, nod), "maroon", LIGHT, within=tail)
    canvas.line(moved([(67, 84), (72, 84.5), (77, 82.5)], 0, nod), "maroon", LIGHT, within=tail)


def draw_kurta(canvas):
    """The long white shirt, flared, with a maroon hem."""
    kurta = canvas.blob([(35, 78), (48, 74), (61, 78), (66, 92), (69, 112), corner(72, 127), (61, 130),
                         (48, 131), (35, 130), corner(24, 127), (27, 112), (30, 92)])
    canvas.put(kurta, "white", canvas.cylinder(17, 79), cast=(1, 3), thresholds=(0.3, 0.62, 0.9))
    for crease in ([(31, 131), (35, 110), (37, 131)], [(45, 131), (48, 108), (50, 131)],
                   [(59, 131), (59, 110), (64, 131)]):
        canvas.fold(crease, within=kurta)
    hem = [(23, 125.5), (35, 128.5), (48, 129.5), (61, 128.5), (73, 125.5)]
    canvas.line(hem, "maroon", LIGHT, within=kurta)


def draw_waistcoat(canvas):
    """The teal waistcoat, open at the collar, with brass buttons."""
    since = canvas.last_part
    light = canvas.cylinder(22, 76)
    front = [corner(35, 77), corner(41, 74), (47, 89), corner(48, 113), (36, 116), corner(27, 112), (30, 94)]
    for points in both_sides(front):
        canvas.put(canvas.blob(points), "teal", light, thresholds=(0.36, 0.62, 0.92))
    button_key = {"H": ("brass", HIGHLIGHT), "b": ("brass", LIGHT), "d": ("brass", SHADOW)}
    for y in (93, 100, 107):
        canvas.stamp(46, y, "Hb\nbd", button_key)
    canvas.far_side(lambda x, y: (x - 48) + (y - 100) * 0.25 > 11.5, since)


def draw_head(canvas, nod):
    """Neck, ears and the face's own form."""
    neck = canvas.polygon(moved([(41, 64), (55, 64), (55, 75), (48, 81), (41, 75)], 0, nod))
    canvas.put(neck, "skin", canvas.even(0.4))
    for x, lean in ((27.5, -1), (68.5, 1)):
        ear = canvas.ellipse(x, 54 + nod, 4.5, 7)
        canvas.put(ear, "skin", canvas.sphere(x, 54 + nod, 4.5, 7))
        canvas.line(moved([(x, 51), (x + lean, 54), (x, 57)], 0, nod), "skin", SHADOW)
    head = canvas.blob(moved([(30, 36), (48, 30), (66, 36), (68.5, 50), (67, 62), (60, 70.5), (48, 74),
                              (36, 70.5), (29, 62), (27.5, 50)], 0, nod))
    light = canvas.sphere(47, 51 + nod, 27, 32) * 0.6 + canvas.cylinder(23, 73) * 0.4
    canvas.put(head, "skin", light, thresholds=(0.3, 0.56, 0.93), cast=(1, 3))
    sideburn = "wwW\nwwW\nwW.\nwW.\nwW.\nW.."
    for x, inner, flip in ((29, HIGHLIGHT, False), (64, BASE, True)):
        canvas.stamp(x, 44 + nod, sideburn, {"w": ("hair", inner), "W": ("hair", BASE)}, flip)


def draw_face(canvas, nod, eyes, happy):
    """Brows, spectacles, nose, moustache and cheeks, each a text map."""
    left = 29
    raised = 1 if happy else 0
    stamp_mirrored(canvas, left, 42 + nod - raised, BROW, FACE_KEY)
    stamp_mirrored(canvas, left, 45 + nod, SPECTACLES, FACE_KEY)
    stamp_mirrored(canvas, left, 57 + nod, SMILING_MOUSTACHE if happy else MOUSTACHE, FACE_KEY)
    canvas.stamp(50, 54 + nod, ".d\nd.\nd.", {"d": ("skin", SHADOW)})
    for x in (35, 54):
        canvas.stamp(x, 46 + nod, EYES[eyes], EYE_KEY)
    for x, flip in ((33, False), (58, True)):
        canvas.stamp(x, 58 + nod, ".cccc\nccccc", {"c": ("maroon", HIGHLIGHT)}, flip)


def stamp_mirrored(canvas, x, y, rows, key):
    """Stamps the left half of a map and its mirror image."""
    canvas.stamp(x, y, rows, key)
    width = max(map(len, rows.strip("\n").split("\n")))
    canvas.stamp(WIDTH - x - width, y, rows, key, flip=True)


def draw_turban(canvas, nod):
    """Wraps that overlap, each a volume of its own, and a brooch where they meet."""
    since = canvas.last_part

    def wrap(points, radius, bias=0):
        mask = canvas.blob(moved(points, 3, nod))
        canvas.put(mask, "mustard", canvas.inflated(mask, radius), cast=(0, 2), bias=bias,
                   thresholds=(0.36, 0.6, 0.9))

    wrap([(23, 36), (25, 20), (35, 11), (46, 9.5), (58, 12), (66, 21), (67, 36), (45, 36)], 16)
    wrap([(67, 41), (69, 33), (67, 22), (60, 13.5), (53, 11), (51, 16), (56, 24), (60, 34)], 7, -1)
    wrap([(22, 40), (20.5, 31), (25, 19), (37, 10), (47, 8.3), (53, 8.4), (59, 10.8), (49, 16),
          (36, 26), (30, 36)], 8)
    wrap([(68, 42), (69, 33), (66, 25), (58, 22), (46, 27), (34, 34), (26, 41), (36, 40), (46, 37),
          (57, 38)], 8)
    wrap([(22, 43), (20, 36), (23, 29), (31, 27), (42, 32), (52, 37), (45, 39.5), (34, 40)], 6)
    canvas.far_side(lambda x, y: ((x - 38) / 29) ** 2 + ((y - nod - 16) / 27) ** 2 > 1, since)
    brooch = canvas.ellipse(48, 33 + nod, 4.6, 5)
    canvas.put(brooch, "maroon", canvas.sphere(48, 33 + nod, 4.6, 5), cast=(1, 2))
    canvas.stamp(45, 30 + nod, ".H\nH.", {"H": ("white", HIGHLIGHT)})


def sleeve(canvas, points, creases):
    """One white sleeve with its creases."""
    mask = canvas.blob(points)
    canvas.put(mask, "white", canvas.inflated(mask, 7))
    for crease in creases:
        canvas.fold(crease, within=mask)
    return mask


def draw_far_arm(canvas):
    """The arm around the book, on the viewer's right."""
    sleeve(canvas, [(59, 79), (66, 81), (71, 92), (73, 104), (68, 113), (56, 113), (52, 106), (60, 101),
                    (58, 90)], [[(60, 99), (68, 96), (70, 102), (63, 103)]])


def draw_book(canvas, label):
    """The closed day book, held against the waistcoat."""
    cover = [(39, 87), (61, 84), (65, 110), (43, 114)]
    canvas.put(canvas.polygon(moved(cover, 2, 2)), "white", canvas.even(0.5))
    book = canvas.polygon(cover)
    canvas.put(book, "maroon", canvas.inflated(book, 2, blur=0.7) * 0.6 + 0.32, thresholds=(0.36, 0.6, 0.8))
    canvas.line([(42, 87), (46, 113)], "maroon", SHADOW, within=book)
    canvas.line([(39, 101), (50, 100), (65, 98)], "mustard", LIGHT, within=book)
    canvas.line([(39, 102), (50, 101), (65, 99)], "mustard", SHADOW, within=book)
    canvas.stamp(48, 89, label, {"m": ("maroon", LINE), "w": ("white", LIGHT), "W": ("white", HIGHLIGHT),
                                 "k": ("ink", BASE), "G": ("leaf", LIGHT), "g": ("leaf", BASE)})


LABEL = """
mmmmmmmmmm
mWWwwwwwwm
mWkkkkkkwm
mwwwwwwwwm
mwkkkkwwwm
mwwwwwwwwm
mmmmmmmmmm
"""
TICKED_LABEL = """
mmmmmmmmmm
mWWwwwwGGm
mWwwwwGGgm
mGGwwGGgwm
mwGGGGgwwm
mwwGGgwwwm
mmmmmmmmmm
"""


def draw_arms_idle(canvas):
    """One arm around the book, the pen raised in the other hand."""
    draw_far_arm(canvas)
    draw_book(canvas, LABEL)
    canvas.put_map(54, 103, BOOK_HAND, SKIN_KEY)
    sleeve(canvas, [(37, 79), (31, 80), (25, 91), (19, 102), (24, 110), (33, 106), (37, 92)],
           [[(27, 95), (34, 97), (32, 102), (27, 99)]])
    canvas.put_map(10, 84, PEN, PEN_KEY)
    canvas.put_map(14, 98, PEN_HAND, SKIN_KEY)


def draw_arms_writing(canvas):
    """The book open on one arm, the pen on its page."""
    sleeve(canvas, [(59, 79), (66, 81), (71, 92), (74, 104), (70, 112), (60, 112), (58, 104), (61, 98),
                    (58, 90)], [[(61, 99), (69, 96), (71, 102), (64, 103)]])
    cover = canvas.polygon([(27, 97), (48, 103), (69, 97), (70, 113), (48, 119), (26, 113)])
    canvas.put(cover, "maroon", canvas.even(0.7))
    left_page = [(28, 94), (40, 96), (48, 101), (48, 116), (40, 112), (27, 110)]
    for brightness, page in zip((0.95, 0.7), both_sides(left_page)):
        sheet = canvas.blob([corner(*point) for point in page])
        canvas.put(sheet, "white", canvas.even(brightness), cast=None)
    for y in (99, 102, 105, 108, 111):
        written = [(52, y + 1), (56, y - 1), (63, y - 3)]
        canvas.line(written, "ink", BASE, within=sheet & ~shifted(~sheet, -3, 0))
    canvas.put_map(64, 102, BOOK_HAND, SKIN_KEY)
    sleeve(canvas, [(37, 79), (31, 80), (25, 91), (20, 102), (24, 110), (31, 110), (37, 104), (38, 90)],
           [[(26, 95), (34, 97), (32, 102), (27, 99)]])
    turned_pen = "\n".join(row[::-1] for row in reversed(PEN.strip("\n").split("\n")))
    canvas.put_map(31, 96, turned_pen, PEN_KEY)
    canvas.put_map(28, 100, PEN_HAND, SKIN_KEY, flip=True)


def draw_arms_raised(canvas):
    """The book shut and ticked off, the free hand raised."""
    draw_far_arm(canvas)
    draw_book(canvas, TICKED_LABEL)
    canvas.put_map(54, 103, BOOK_HAND, SKIN_KEY)
    canvas.put_map(8, 74, OPEN_HAND, SKIN_KEY)
    sleeve(canvas, [(39, 80), (33, 79), (29, 85), (25, 91), corner(20, 87), corner(11, 87), (13, 97),
                    (19, 105), (29, 106), (36, 98)], [[(19, 100), (26, 92), (27, 97), (23, 102)]])


def poses():
    """File name -> picture."""
    return {
        "idle.png": draw(),
        "blink.png": draw(eyes="closed"),
        "writing.png": draw(eyes="down", pose="writing", nod=1),
        "all-done.png": draw(eyes="happy", pose="all-done"),
    }
