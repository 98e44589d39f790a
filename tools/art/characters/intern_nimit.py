"""Intern Nimit, the student assistant: a grey hoodie, a rucksack, a college pass, hair that got up late."""
from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW, Canvas, Character, corner, mirrored, moved

from . import _intern_body as body
from ._intern_body import GROUND, HEIGHT, WIDTH, Outfit

OUTFIT = Outfit(hoodie="grey", shirt="maroon", trousers="slate", shoes="white", stripe="maroon")

EYE_BOX = (25, 24, 48, 33)
FACE_BOX = (21, 17, 52, 42)
ABOVE_THE_LEGS = (0, 0, WIDTH, 89)

CHARACTER = Character(
    identifier="intern-nimit",
    grid=(WIDTH, HEIGHT),
    ground=GROUND,
    reference="intern-sprites/idle.png",
    moves={f"intern-sprites/{pose}.png": [box] for pose, box in (
        ("idle-blink", EYE_BOX), ("listen", ABOVE_THE_LEGS), ("talk", ABOVE_THE_LEGS),
        ("think", ABOVE_THE_LEGS), ("wave", ABOVE_THE_LEGS), ("eat-almonds", ABOVE_THE_LEGS),
        ("eat-spinach", ABOVE_THE_LEGS), ("brainy", ABOVE_THE_LEGS), ("strong", ABOVE_THE_LEGS))},
    footing=24,
)

BROW = """
.kkkkk.
kkkkkk.
"""
FIERCE_BROW = """
kkk....
kkkkkk.
...kkkk
"""

# Joints of an arm at the viewer's left: shoulder, elbow, wrist. The right arm mirrors them.
HANGING = ((22, 57), (17, 66), (17.5, 74.5))
ON_STRAP = ((22, 57), (14, 70), (22, 67))
WAVING = ((22, 58), (11, 64), (10, 51))
AT_EAR = ((22, 58), (9.5, 62), (12, 45))
OFFERING = ((22, 57), (16, 69), (10.5, 66))
AT_CHIN = ((22, 57), (17, 71), (29, 57.5))
AT_MOUTH = ((22, 57), (15, 68), (24.5, 52))
HOLDING = ((22, 57), (15.5, 70), (24, 73))
FLEXED = ((23, 60), (8.5, 64), (11, 52))


def draw(eyes="open", mouth="smile", brow=BROW, brows=(0, 0), gaze=(0, 0), left="hanging", right="strap",
         spectacles=False):
    """Nimit with this face and these arms."""
    canvas = Canvas(WIDTH, HEIGHT)
    body.draw_legs(canvas, OUTFIT)
    draw_rucksack(canvas)
    body.draw_hood_behind(canvas, OUTFIT)
    body.draw_hoodie(canvas, OUTFIT)
    draw_straps(canvas)
    body.draw_neck(canvas, OUTFIT)
    draw_lanyard(canvas)
    before_hair = canvas.last_part
    draw_back_hair(canvas, 0)
    body.draw_head(canvas)
    if spectacles:
        draw_spectacles(canvas, 0)
    body.draw_features(canvas, eyes, mouth, brow, brows, gaze=gaze)
    draw_fringe(canvas, 0)
    body.rim_light(canvas, before_hair, "ink")
    before_arms = canvas.last_part
    for name, flip in ((right, True), (left, False)):
        ARMS[name](canvas, flip)
    canvas.far_side(lambda x, y: (x > 55) & (y > 40), before_arms)
    return canvas.render()


def draw_rucksack(canvas):
    """The rucksack's sides, seen past the hoodie."""
    bag = canvas.rounded_box(16, 53, 57, 82, 7)
    canvas.put(bag, "slate", canvas.cylinder(12, 62), highest=LIGHT)


def draw_straps(canvas):
    """The rucksack's two straps over the shoulders."""
    strap = [(27, 50), (28, 58), (27, 67), (22, 78)]
    for points in body.both_sides(strap):
        mask = canvas.stroke(points, [5.5, 5.5, 5, 4.5])
        canvas.put(mask, "slate", canvas.inflated(mask, 4), thresholds=(0.36, 0.7, 0.95),
                   clip=canvas.covered())


def draw_lanyard(canvas):
    """The college pass on its ribbon."""
    for points in body.both_sides([(32.5, 55), (35, 61), (36.5, 66)]):
        canvas.paint(canvas.stroke(points, 1.6), "amber", BASE)
    card = canvas.rounded_box(32, 65, 41, 75, 1)
    canvas.put(card, "white", canvas.even(0.8))
    canvas.stamp(32, 65, """
.........
...kkk...
.........
.ssbbb...
.sSb.b...
.LLbbbb..
.........
.ttttttt.
""", {"k": ("ink", LIGHT), "s": ("ink", BASE), "S": ("skin", BASE), "L": ("slate", LIGHT),
      "b": ("white", SHADOW), "t": ("slate", BASE)})


def hair(canvas, points, dx):
    """One volume of hair, lit as part of the whole head."""
    mask = canvas.blob(moved(points, dx, 0))
    light = canvas.sphere(35 + dx, 20, 27, 22) * 0.6 + canvas.inflated(mask, 6) * 0.4
    return canvas.put(mask, "ink", light, cast=(1, 2), thresholds=(0.28, 0.7, 2))


def draw_back_hair(canvas, dx):
    """The mass of hair behind the face, its crown in tufts."""
    hair(canvas, [(17.5, 30), (15, 23), (15.4, 18), corner(11.5, 14.5), (16.5, 12), (18.5, 9),
                  (22, 6.8), (27, 5.6), corner(31.5, 2.2), (35.5, 5.2), (39, 5), corner(44.5, 2.4), (47, 6),
                  (51.5, 7.5), (55.5, 10.5), (57.5, 13), corner(61.5, 14.5), (58.2, 22),
                  (55.5, 30), (50, 22), (36, 16), (23, 22)], dx)


def draw_fringe(canvas, dx):
    """Locks that fall over the brow, each a volume of its own."""
    hair(canvas, [corner(17, 29), (15.5, 19), (19, 11), (28, 8), (25, 14), (21.5, 18), corner(20, 28)], dx)
    hair(canvas, [(56, 29), (57.4, 19), (54, 11), (46, 8), (49, 14), (52, 18), corner(53.5, 28)], dx)
    hair(canvas, [(34, 7), (44, 6), (52, 10.5), corner(54.5, 20.5), (48, 17.5), corner(46.5, 20.5), (40, 16),
                  (35, 12)], dx)
    lock = hair(canvas, [(24, 9), (33, 5.5), (42, 7), (45, 12), (42, 16), corner(37.5, 20.5), (36.5, 16.5),
                         corner(29.5, 21.5), (29.5, 17), corner(21.5, 20.5), (20.5, 13)], dx)
    for sheen in ([(23.5, 13.5), (27.5, 10), (34, 8.3)], [(27, 14), (30, 11.5), (35, 10)]):
        canvas.line(moved(sheen, dx, 0), "ink", HIGHLIGHT, within=lock)


def draw_spectacles(canvas, dx):
    """Large round reading glasses, for the pose of great learning."""
    key = {"b": ("wood", LINE), "G": ("skin", HIGHLIGHT), "g": ("white", HIGHLIGHT)}
    for x in (22, 38):
        canvas.stamp(x + dx, 22, """
...bbbbbbb...
..bgGGGGGGb..
.bgGGGGGGGGb.
.bgGGGGGGGGb.
.bGGGGGGGGGb.
.bGGGGGGGGGb.
.bGGGGGGGGGb.
.bGGGGGGGGGb.
.bGGGGGGGGGb.
..bGGGGGGGb..
...bbbbbbb...
""", key)
    canvas.stamp(34 + dx, 26, "bbbbb", key)


# Arms -------------------------------------------------------------------------------------------------

def joints_for(joints, flip):
    """The joints, for the left arm or the right one."""
    return mirrored(joints, WIDTH) if flip else list(joints)


def arm_hanging(canvas, flip):
    """At rest beside the body."""
    body.draw_hand(canvas, 13, 76, body.HANGING_HAND, flip)
    body.draw_sleeve(canvas, OUTFIT, joints_for(HANGING, flip))


def arm_strap(canvas, flip):
    """The hand on the rucksack's strap."""
    body.draw_sleeve(canvas, OUTFIT, joints_for(ON_STRAP, flip), folded=True)
    body.draw_hand(canvas, 22, 60, body.FIST, flip)


def arm_waving(canvas, flip):
    """The open hand raised."""
    body.draw_hand(canvas, 3, 37, body.OPEN_HAND, flip)
    body.draw_sleeve(canvas, OUTFIT, joints_for(WAVING, flip))


def arm_at_ear(canvas, flip):
    """The hand behind the ear."""
    body.draw_sleeve(canvas, OUTFIT, joints_for(AT_EAR, flip))
    body.draw_hand(canvas, 9, 31, body.CUPPED_HAND, flip)


def arm_offering(canvas, flip):
    """The palm up, making a point."""
    body.draw_sleeve(canvas, OUTFIT, joints_for(OFFERING, flip))
    body.draw_hand(canvas, 2, 58, body.OFFERED_HAND, flip)


def arm_at_chin(canvas, flip):
    """The knuckles under the chin."""
    body.draw_sleeve(canvas, OUTFIT, joints_for(AT_CHIN, flip), folded=True)
    body.draw_hand(canvas, 28, 46, body.CHIN_HAND, flip)


def arm_pointing(canvas, flip):
    """A finger raised, and the light that goes on above it."""
    body.draw_hand(canvas, 3, 38, body.POINTING_HAND, flip)
    body.draw_sleeve(canvas, OUTFIT, joints_for(WAVING, flip))
    canvas.put_map(3, 20, BULB, BULB_KEY)


def arm_flexed(canvas, flip):
    """The arm bent, with all the muscle a hoodie can show."""
    muscle_x = 18.5
    muscle = canvas.ellipse(WIDTH - muscle_x if flip else muscle_x, 56, 5, 6)
    body.draw_sleeve(canvas, OUTFIT, joints_for(FLEXED, flip), muscle=muscle)
    body.draw_hand(canvas, 6, 40, body.FIST, flip)


def arm_with_almond(canvas, flip):
    """The next almond on its way to the mouth."""
    body.draw_sleeve(canvas, OUTFIT, joints_for(AT_MOUTH, flip), folded=True)
    almond_x = 25
    canvas.put_map(WIDTH - almond_x - 7 if flip else almond_x, 35, ALMOND, ALMOND_KEY)
    body.draw_hand(canvas, 22, 42, body.CHIN_HAND, flip)


def arm_with_almonds(canvas, flip):
    """More of them in the hollow of the hand."""
    body.draw_sleeve(canvas, OUTFIT, joints_for(HOLDING, flip))
    for x, y in ((25, 59), (21, 63), (28, 63)):
        canvas.put_map(x, y, LYING_ALMOND, ALMOND_KEY)
    body.draw_hand(canvas, 21, 67, CUPPED_PALM, flip)


def arm_with_spinach(canvas, flip):
    """A bunch of spinach, held like an ice-cream."""
    body.draw_sleeve(canvas, OUTFIT, joints_for(AT_MOUTH, flip), folded=True)
    for stalk, leaf in SPINACH:
        stalk, leaf = (mirrored(stalk, WIDTH), mirrored(leaf, WIDTH)) if flip else (stalk, leaf)
        canvas.put(canvas.stroke(stalk, 3), "leaf", canvas.even(0.95), cast=None)
        blade = canvas.blob(leaf)
        canvas.put(blade, "leaf", canvas.inflated(blade, 6), cast=(1, 1), thresholds=(0.4, 0.74, 2))
        canvas.line([leaf[0], (leaf[3][0] * 0.8 + leaf[0][0] * 0.2, leaf[3][1] * 0.8 + leaf[0][1] * 0.2)],
                    "leaf", HIGHLIGHT, within=blade)
    body.draw_hand(canvas, 21, 50, body.FIST, flip)


BULB = """
..AAAAA..
.AHHAAAa.
AHHAAAAAa
AHAAAAAAa
AHAAaAAAa
.AAAaAAa.
.AAAaAaa.
..AAaaa..
..ssSSd..
..ssSSd..
...dd....
"""
BULB_KEY = {"A": ("amber", LIGHT), "H": ("amber", HIGHLIGHT), "a": ("amber", BASE), "s": ("grey", HIGHLIGHT),
            "S": ("grey", LIGHT), "d": ("grey", BASE)}
ALMOND = """
...H...
..HLb..
.HHLLb.
.HLbLb.
HHLbLLb
HLLbLLb
HLLLLbb
.LLbbb.
"""
LYING_ALMOND = """
..HHHH..
HHLLLLLb
LLbbbLLb
.bbLLbb.
"""
ALMOND_KEY = {"H": ("wood", HIGHLIGHT), "L": ("wood", LIGHT), "b": ("wood", BASE)}
CUPPED_PALM = """
HL..........LL
HLL........LLb
HLLLLLLLLLLLLb
.HLLLLLLLLLLb.
.HLLbbbbbbLLb.
..LLLLLLLLLb..
...bbbbbbbb...
"""
# Each a stalk, from the fist up, and the leaf on it.
SPINACH = (
    ([(25, 53), (22, 47)], [(22, 49), (17.5, 46), (16, 39.5), (19, 34), (24, 37.5), (25, 44)]),
    ([(27, 53), (33, 45)], [(29, 48), (29.5, 43), (34, 38.5), (39.5, 38), (40, 43), (35.5, 48)]),
    ([(26, 53), (27, 44)], [(26, 47), (21.5, 42), (22.5, 35.5), (28, 32), (32.5, 37), (31, 44)]),
)

ARMS = {"hanging": arm_hanging, "strap": arm_strap, "waving": arm_waving, "ear": arm_at_ear,
        "offering": arm_offering, "chin": arm_at_chin, "pointing": arm_pointing, "flexed": arm_flexed,
        "almond": arm_with_almond, "almonds": arm_with_almonds, "spinach": arm_with_spinach}


def poses():
    """File name -> picture."""
    pictures = {
        "idle": draw(),
        "idle-blink": draw(eyes="closed"),
        "listen": draw(left="ear", mouth="soft", brows=(1, 1), gaze=(-1, 0)),
        "talk": draw(left="offering", mouth="talk", brows=(1, 1)),
        "think": draw(right="chin", left="hanging", eyes="up", mouth="flat", brows=(0, 1)),
        "wave": draw(left="waving", eyes="happy", mouth="grin", brows=(1, 1)),
        "eat-almonds": draw(left="almonds", right="almond", eyes="happy", mouth="chew", brows=(1, 1)),
        "eat-spinach": draw(right="spinach", eyes="happy", mouth="chew", brows=(1, 1)),
        "brainy": draw(left="pointing", mouth="smile", brows=(0, 1), spectacles=True),
        "strong": draw(left="flexed", right="flexed", mouth="grin", brow=FIERCE_BROW, brows=(-1, -1)),
    }
    return {f"intern-sprites/{pose}.png": picture for pose, picture in pictures.items()}
