"""Intern Nimit, the student assistant: a grey hoodie, a rucksack, a college pass and hair that got up late."""
from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW, Canvas, Character, corner, mirrored, moved

from . import _intern_body as body
from ._intern_body import FLOOR, GROUND, HEIGHT, WIDTH, Outfit

OUTFIT = Outfit(hoodie="grey", shirt="maroon", trousers="indigo", shoes="white", stripe="maroon")

EYE_BOX = (25, 24, 48, 33)
FACE_BOX = (21, 17, 52, 42)
ABOVE_THE_LEGS = (0, 0, WIDTH, 86)

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

# Joints of an arm at the viewer's left: shoulder, elbow, wrist. The right arm mirrors them.
HANGING = ((22, 57), (17, 67), (17.5, 77))
ON_STRAP = ((22, 57), (14, 70), (22, 67))
WAVING = ((22, 58), (11, 64), (10, 51))
AT_EAR = ((22, 58), (9.5, 62), (12, 45))
OFFERING = ((22, 57), (16, 69), (10.5, 66))
AT_CHIN = ((22, 57), (18, 72), (29, 58))
FLEXED = ((23, 57), (9.5, 61), (12, 50))


def draw(eyes="open", mouth="smile", brows=(0, 0), gaze=(0, 0), left="hanging", right="strap", lean=0):
    """Nimit with this face and these arms, the head moved sideways by `lean` pixels."""
    canvas = Canvas(WIDTH, HEIGHT)
    body.draw_legs(canvas, OUTFIT)
    draw_rucksack(canvas)
    body.draw_hood_behind(canvas, OUTFIT)
    body.draw_hoodie(canvas, OUTFIT)
    draw_straps(canvas)
    body.draw_neck(canvas, OUTFIT)
    draw_lanyard(canvas)
    draw_back_hair(canvas, lean)
    body.draw_head(canvas, lean)
    body.draw_features(canvas, eyes, mouth, BROW, brows, lean, gaze=gaze)
    draw_fringe(canvas, lean)
    for name, flip in ((right, True), (left, False)):
        ARMS[name](canvas, flip)
    return canvas.render()


def draw_rucksack(canvas):
    """The rucksack's sides, seen past the hoodie."""
    bag = canvas.rounded_box(16, 53, 57, 82, 7)
    canvas.put(bag, "slate", canvas.cylinder(12, 62))


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
        canvas.line(points, "mustard", LIGHT, width=1)
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


HAIR_THRESHOLDS = (0.12, 0.62, 2)


def draw_back_hair(canvas, dx):
    """The mass of hair behind the face, its crown in tufts."""
    mass = canvas.blob(moved([(17.5, 30), (14.8, 23), (15, 15), corner(12.5, 11.5), (18, 8.5), corner(18.5, 4.5),
                              (27, 4), corner(32, 1.2), (38, 3), corner(44, 1.8), (49, 5), corner(56, 6),
                              (56.5, 11), corner(60.5, 15), (58.2, 22), (55.5, 30), (50, 22), (36, 16),
                              (23, 22)], dx, 0))
    canvas.put(mass, "ink", canvas.inflated(mass, 9), thresholds=HAIR_THRESHOLDS)


def draw_fringe(canvas, dx):
    """Locks that fall over the brow, each a volume of its own."""
    def lock(points, radius=6):
        mask = canvas.blob(moved(points, dx, 0))
        canvas.put(mask, "ink", canvas.inflated(mask, radius), cast=(1, 2), thresholds=HAIR_THRESHOLDS)

    lock([corner(17, 29), (15.5, 19), (19, 11), (28, 8), (25, 14), (21.5, 18), corner(20, 28)])
    lock([(56, 29), (57.4, 19), (54, 11), (46, 8), (49, 14), (52, 18), corner(53.5, 28)])
    lock([(34, 6), (44, 5), (52, 10), corner(54.5, 20.5), (48, 17.5), corner(46.5, 20.5), (40, 16), (35, 12)], 7)
    lock([(24, 8), (33, 4), (42, 6), (45, 12), (42, 16), corner(37.5, 20.5), (36.5, 16.5), corner(29.5, 21.5),
          (29.5, 17), corner(21.5, 20.5), (20.5, 13)], 7)


# Arms -------------------------------------------------------------------------------------------------

def joints_for(joints, flip):
    return mirrored(joints, WIDTH) if flip else list(joints)


def arm_hanging(canvas, flip):
    body.draw_hand(canvas, 13, 76, body.HANGING_HAND, flip)
    body.draw_sleeve(canvas, OUTFIT, joints_for(HANGING, flip))


def arm_strap(canvas, flip):
    body.draw_sleeve(canvas, OUTFIT, joints_for(ON_STRAP, flip))
    body.draw_hand(canvas, 22, 60, body.FIST, flip)


def arm_waving(canvas, flip):
    body.draw_hand(canvas, 3, 37, body.OPEN_HAND, flip)
    body.draw_sleeve(canvas, OUTFIT, joints_for(WAVING, flip))


def arm_at_ear(canvas, flip):
    body.draw_sleeve(canvas, OUTFIT, joints_for(AT_EAR, flip))
    body.draw_hand(canvas, 9, 31, body.CUPPED_HAND, flip)


def arm_offering(canvas, flip):
    body.draw_sleeve(canvas, OUTFIT, joints_for(OFFERING, flip))
    body.draw_hand(canvas, 1, 58, body.OFFERED_HAND, flip)


def arm_at_chin(canvas, flip):
    body.draw_sleeve(canvas, OUTFIT, joints_for(AT_CHIN, flip))
    body.draw_hand(canvas, 28, 46, body.CHIN_HAND, flip)


ARMS = {"hanging": arm_hanging, "strap": arm_strap, "waving": arm_waving, "ear": arm_at_ear,
        "offering": arm_offering, "chin": arm_at_chin}


def poses():
    """File name -> picture."""
    pictures = {
        "idle": draw(),
        "idle-blink": draw(eyes="closed"),
        "listen": draw(left="ear", mouth="flat", brows=(1, 1), gaze=(-1, 0)),
        "talk": draw(left="offering", mouth="talk", brows=(1, 1)),
        "think": draw(right="chin", left="hanging", eyes="up", mouth="flat", brows=(0, 2)),
        "wave": draw(left="waving", eyes="happy", mouth="grin", brows=(1, 1)),
    }
    return {f"intern-sprites/{pose}.png": picture for pose, picture in pictures.items()}
