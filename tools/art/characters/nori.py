"""Nori the cat: a ginger street cat with a notched ear, sitting as if the lane were hers."""
from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW, Canvas, Character, corner, mirrored

WIDTH, HEIGHT = 133, 157
FLOOR = 150  # the contour adds the last row above the ground line at 151
MIDDLE = WIDTH / 2

EYES_BOX = (40, 48, 93, 66)

CHARACTER = Character(
    identifier="nori",
    grid=(WIDTH, HEIGHT),
    ground=(66.5, 151),
    reference="cat.png",
    moves={"cat-blink.png": [EYES_BOX]},
    footing=60,
    stray=16,
)

FUR = (0.3, 0.66, 0.95)
CREAM = (0.24, 0.5, 0.84)


def draw(blink=False):
    """Nori with her eyes open, or shut for a moment."""
    canvas = Canvas(WIDTH, HEIGHT)
    haunch = draw_haunches(canvas)
    draw_chest_and_forelegs(canvas)
    draw_tail(canvas, haunch)
    canvas.far_side(lambda x, y: (x - 66) - (y - 100) * 0.22 > 21)
    draw_thread_and_bell(canvas)
    draw_ears(canvas)
    draw_head(canvas)
    draw_muzzle(canvas)
    draw_eyes(canvas, blink)
    return canvas.render()


def both_sides(points):
    """The points, and their mirror image."""
    return points, mirrored(points, WIDTH)


def fur(canvas, points, radius, thresholds=FUR, **how):
    """A part in ginger; returns its mask."""
    mask = canvas.blob(points)
    return canvas.put(mask, "ginger", canvas.inflated(mask, radius), thresholds=thresholds, **how)


def stripes(canvas, shapes, within):
    """Tabby stripes: wedges of darker fur."""
    for points in shapes:
        canvas.adjust(canvas.blob(points) & within, -1)


def draw_haunches(canvas):
    """The back, and the two folded hind legs with their toes; returns the mask of all ginger in it."""
    haunches = fur(canvas, [(66.5, 76), (84, 82), (92, 98), (100, 116), (103, 134), corner(99, FLOOR),
                            corner(34, FLOOR), (30, 134), (33, 116), (41, 98), (49, 82)], 22)
    thigh = [(41, 108), (50, 117), (53, 134), corner(50, FLOOR), corner(29, FLOOR), (22.5, 143), (23, 127),
             (30, 113)]
    toes = [(28, 143), (37, 141), (46, 143.5), corner(49, FLOOR), corner(26, FLOOR), (24.5, 147)]
    flank = ([(20, 122), (30, 122), corner(38, 126), (30, 125.5)], [(20, 130), (30, 130.5), corner(40, 134.5),
             (30, 134.5)])
    for flip in (False, True):
        side = (lambda points: mirrored(points, WIDTH)) if flip else list
        leg = fur(canvas, side(thigh), 13)
        haunches |= leg
        stripes(canvas, [side(points) for points in flank], leg)
        foot = canvas.blob(side(toes))
        canvas.put(foot, "white", canvas.inflated(foot, 6), thresholds=CREAM)
        for x in (32, 39):
            canvas.line(side([(x, 146), (x, FLOOR)]), "white", SHADOW, within=foot)
    return haunches


def draw_chest_and_forelegs(canvas):
    """Two straight forelegs under a white shirt front, planted side by side."""
    front = fur(canvas, [(66.5, 78), (83, 86), (86, 102), (83, 122), (82, 138), corner(82, 146),
                         corner(51, 146),
                         (51, 138), (50, 122), (47, 102), (50, 86)], 14, edge="none")
    for points in both_sides([(46.5, 107), (49, 114), (50, 124), (51, 139)]):
        canvas.line(points, "ginger", LINE)
    stripes(canvas, [points for wedge in (
        [corner(48, 117), corner(48, 120), corner(59, 121.5)], [corner(48, 126), corner(48, 129),
                                                                corner(59, 130)])
        for points in both_sides(wedge)], front)
    bib = canvas.blob([corner(48, 82), (66.5, 78), corner(85, 82), (83, 96), corner(79, 106), (77, 104),
                       corner(73, 115), (71, 113), corner(66.5, 126), (62, 113), corner(60, 115), (56, 104),
                       corner(54, 106), (50, 96)])
    canvas.put(bib, "white", canvas.cylinder(44, 94), thresholds=CREAM, edge="none", cast=None)
    canvas.line([(66.5, 118), (66.5, 147)], "ginger", LINE)
    paw = [(50, 140.5), (58, 137), (65, 139.5), corner(66, 144), corner(66, FLOOR), corner(49, FLOOR),
           (46.5, 145.5)]
    for flip in (False, True):
        foot = canvas.blob(mirrored(paw, WIDTH) if flip else paw)
        canvas.put(foot, "white", canvas.inflated(foot, 7), thresholds=CREAM)
        for x in (53.5, 60):
            toe = [(x, 144.5), (x, FLOOR)]
            canvas.line(mirrored(toe, WIDTH) if flip else toe, "white", SHADOW, within=foot)


def draw_tail(canvas, haunch):
    """The tail: out from behind the haunch, then around the paws, ringed, its tip curled up."""
    whole = canvas.stroke([(92, 126), (107, 120.5), (118.5, 126), (120, 137), (112, 143.8), (100, 144.4),
                           (88, 144),
                           (76, 143.6), (69, 140.5), (66.5, 134.5)],
                          [11, 12.5, 13, 12.5, 12, 11.5, 11, 10.5, 9.5, 6.5])
    whole &= canvas.where(lambda x, y: y < FLOOR)
    tail = canvas.put(whole & ~(haunch & canvas.where(lambda x, y: y < 135)),
                      "ginger", canvas.inflated(whole, 7),
                      thresholds=FUR)
    chink = canvas.box(98, 124, 114, 142) & ~canvas.covered()
    canvas.paint(chink, "ginger", SHADOW)
    for x in (106, 96, 86):
        ring = tail & canvas.where(lambda px, py: (abs(px - x - (144 - py) * 0.3) < 2) & (py > 136))
        canvas.paint(ring, "ginger", BASE)
    canvas.paint(tail & canvas.where(lambda x, y: (x < 77) & (y < 144.5 + (x - 70) * 0.8)), "ginger", BASE)


def draw_thread_and_bell(canvas):
    """A red thread around the neck, and the bell that somebody hung on it."""
    thread = canvas.stroke([(45, 84), (55, 92.5), (66.5, 95.5), (78, 92.5), (88, 84)], 4)
    canvas.put(thread, "maroon", canvas.inflated(thread, 3), clip=canvas.covered(),
               thresholds=(0.2, 0.5, 0.8))
    bell = canvas.ellipse(66.5, 101, 5.6, 5.6)
    canvas.put(bell, "brass", canvas.sphere(66.5, 101, 5.6))
    canvas.stamp(62, 101, "kkkkkkkkk\n.HHHHHHH.\n....k....\n...kkk...", {
        "k": ("brass", LINE), "H": ("brass", LIGHT)})


def draw_ears(canvas):
    """Two ears, one of them notched as a street cat's is once the vet has seen her."""
    ear = [corner(30, 52), (25.5, 32), corner(29, 7.5), (43, 17), corner(62, 34)]
    hollow = [corner(36, 44), (32, 31), corner(33.5, 16.5), (42, 24), corner(54, 37)]
    tuft = [corner(42, 46), corner(37, 28), (43, 31), corner(44, 25), (48, 31), corner(58, 36)]
    for flip in (False, True):
        side = (lambda points: mirrored(points, WIDTH)) if flip else list
        fur(canvas, side(ear), 7)
        shell = canvas.blob(side(hollow))
        canvas.put(shell, "rose", canvas.slope(0, -0.02, 1.55), edge="none", cast=None)
        canvas.put(canvas.blob(side(tuft)), "white", canvas.even(0.75), edge="none", cast=None)
    canvas.erase(canvas.polygon([(109, 19), (109, 29), (99.5, 23.5)]))


def draw_head(canvas):
    """A broad head with ruffled cheeks and a tabby's mark on the brow."""
    cheek = [corner(108, 67), (103, 70), corner(104.5, 76), (98, 79), corner(96, 83.5)]
    head = canvas.blob([(66.5, 25), (84, 28), (97, 38), (102, 52), *cheek, (82, 88), (66.5, 90), (51, 88),
                        *reversed(mirrored(cheek, WIDTH)), (31, 52), (36, 38), (49, 28)])
    light = canvas.sphere(62, 54, 46, 40) * 0.7 + canvas.inflated(head, 14) * 0.3
    canvas.put(head, "ginger", light, thresholds=(0.34, 0.68, 0.97), cast=(1, 4))
    stripes(canvas, [
        [corner(64, 24), corner(69, 24), corner(67.4, 44), corner(65.6, 44)],
        *both_sides([corner(54, 26), corner(58.5, 25), (61, 34), corner(61.5, 42), (57, 35)]),
        *both_sides([corner(45, 30), corner(48.5, 28), (52, 35), corner(54, 42), (48, 37)]),
        *both_sides([corner(26, 58), (33, 59), corner(41, 63.5), (33, 62.5)]),
        *both_sides([corner(22, 66), (32, 67), corner(40, 69.5), (32, 70)]),
    ], head)


def draw_muzzle(canvas):
    """White muzzle, nose and mouth, and whiskers where they cross the cheeks."""
    muzzle = canvas.blob([(66.5, 48), (70, 60), (79, 67), (83, 75), (79, 83), (66.5, 88), (54, 83), (50, 75),
                          (54, 67), (63, 60)])
    canvas.put(muzzle, "white", canvas.inflated(muzzle, 12), thresholds=(0.24, 0.46, 0.76),
               edge="none", cast=None)
    canvas.stamp(61, 66, """
.kkkkkkkkk.
kRRRRRrrrrk
kRRRrrrrrrk
.krrrrrrrk.
..kkrrrkk..
....kkk....
.....k.....
""", {"k": ("maroon", LINE), "R": ("rose", LIGHT), "r": ("rose", BASE)})
    canvas.stamp(54, 72, """
............k............
............k............
............k............
...k.......kkk.......k...
...kk....kkk.kkk....kk...
....kkkkkkk...kkkkkkk....
......kkk.......kkk......
""", {"k": ("maroon", LINE)})
    for whisker in ([(49, 72), (41, 70.5), (33, 71.5)], [(49, 76), (42, 77), (36, 79.5)]):
        for points in both_sides(whisker):
            canvas.line(points, "white", HIGHLIGHT)


EYE_OPEN = """
................
...kkkkkkkkkk...
.kkkkkkkkkkkkkk.
kkkkGkkkkkkGkkkk
kkGGkkkkkkkkGGkk
.kGGkkkkkkkkGGGk
.kGGkkkkkkkkGGGk
.kHGkkkkkkkkGGHk
.kHGGkkkkkkGGHHk
..kHGkkkkkkGHHk.
..kHHGkkkkGHHkk.
...kkHHHHHHkkk..
.....kkkkkkk....
"""
GLINT = """
.ww
www
ww.
"""
EYE_SHUT = """
................
................
................
................
................
................
kk............kk
.kk..........kk.
.kkkk......kkk..
...kkkkkkkkkk...
.....kkkkkk.....
................
................
"""
EYE_KEY = {"k": ("ink", LINE), "w": ("white", HIGHLIGHT), "G": ("leaf", LIGHT), "H": ("leaf", HIGHLIGHT),
           "g": ("leaf", BASE)}


def draw_eyes(canvas, blink):
    """Green eyes with wide pupils, the upper lid drawn long."""
    rows = EYE_SHUT if blink else EYE_OPEN
    for x, flip in ((40, False), (WIDTH - 40 - 16, True)):
        canvas.stamp(x, 47, rows, EYE_KEY, flip)
        if not blink:
            canvas.stamp(x + 5, 51, GLINT, EYE_KEY)


def poses():
    """File name -> picture."""
    return {"cat.png": draw(), "cat-blink.png": draw(blink=True)}
