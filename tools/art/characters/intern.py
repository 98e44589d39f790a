"""The intern, calendar assistant: a slate hoodie over a mustard kurta, a plait, a headset and a calendar."""
from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW, Canvas, Character, Manifest, corner, mirrored

from . import _intern_body as body
from ._intern_body import ACCENT, FACE, GROUND, HEIGHT, WIDTH, Outfit

OUTFIT = Outfit(hoodie="slate", shirt="mustard", trousers="maroon", shoes="white", stripe="mustard")

EYE_BOX = (23, 24, 50, 33)
ABOVE_THE_LEGS = (0, 0, WIDTH, 90)

CHARACTER = Character(
    identifier="intern",
    grid=(WIDTH, HEIGHT),
    ground=GROUND,
    reference="intern.png",
    moves={"blink.png": [EYE_BOX], "listen.png": [ABOVE_THE_LEGS], "think.png": [ABOVE_THE_LEGS],
           "talk.png": [ABOVE_THE_LEGS]},
    footing=24,
    manifest=Manifest(
        name="Intern",
        role="Calendar assistant",
        poses={"idle": "intern.png", "blink": "blink.png", "listen": "listen.png", "think": "think.png",
               "talk": "talk.png"},
        face=FACE,
        accent=ACCENT,
        behaviours=("idle", "blink"),
        order=7,
    ),
)

BROW = """
.kkkkk
kk....
"""
LASHES = {"open": ("k.\nkk", -2, 0), "up": ("k.\nkk", -2, 0), "closed": ("k", -1, 2), "happy": ("k", -1, 5)}

HANGING = ((22, 57), (17, 66), (17.5, 74.5))
HOLDING = ((22, 57), (15, 70), (24, 75))
AT_HEADSET = ((22, 58), (9.5, 62), (12, 46))
OFFERING = ((22, 57), (16, 69), (10.5, 66))
AT_CHIN = ((22, 57), (16, 71), (27.5, 58))


def draw(eyes="open", mouth="smile", brows=(0, 0), gaze=(0, 0), arm="hanging"):
    """The intern with this face, and this arm at the viewer's left; the other holds the calendar."""
    canvas = Canvas(WIDTH, HEIGHT)
    body.draw_legs(canvas, OUTFIT, turned_up=False)
    draw_kurta(canvas)
    body.draw_hood_behind(canvas, OUTFIT)
    body.draw_hoodie(canvas, OUTFIT)
    body.draw_neck(canvas, OUTFIT)
    before_hair = canvas.last_part
    draw_back_hair(canvas)
    body.draw_head(canvas)
    draw_bindi(canvas)
    body.draw_features(canvas, eyes, mouth, BROW, brows, gaze=gaze)
    draw_lashes(canvas, eyes, gaze)
    draw_fringe(canvas)
    body.rim_light(canvas, before_hair, "ink")
    draw_headset(canvas)
    before_arms = canvas.last_part
    draw_calendar_arm(canvas)
    draw_plait(canvas)
    ARMS[arm](canvas)
    canvas.far_side(lambda x, y: (x > 56) & (y > 52), before_arms)
    return canvas.render()


def draw_kurta(canvas):
    """The kurta's hem, below the hoodie."""
    hem = canvas.polygon([(22, 80), (51, 80), (53.5, 92.5), (19.5, 92.5)])
    canvas.put(hem, "mustard", canvas.cylinder(14, 60), cast=(1, 3), thresholds=(0.34, 0.64, 0.94))
    canvas.paint(hem & canvas.where(lambda x, y: (y > 90) & (y < 91)), "maroon", LIGHT)


def hair(canvas, points, thresholds=(0.28, 0.76, 0.93)):
    """One volume of hair, lit as part of the whole head."""
    mask = canvas.blob(points)
    light = canvas.sphere(35, 20, 27, 24) * 0.6 + canvas.inflated(mask, 6) * 0.4
    return canvas.put(mask, "ink", light, cast=(1, 2), thresholds=thresholds)


def draw_back_hair(canvas):
    """The smooth crown, and the hair that runs behind the ears."""
    hair(canvas, [(18, 34), (16, 24), (17.5, 13), (24.5, 6.4), (36.5, 4), (48.5, 6.4), (55.5, 13), (57, 24),
                  (58, 36), (56, 46), (48, 47), (36, 44), (24, 36)])


def draw_fringe(canvas):
    """Parted at the viewer's left, swept down on both sides."""
    hair(canvas, [corner(28, 5.4), (20.5, 9.4), (16.2, 18), (16, 27), (17.5, 33), corner(19, 34.5), (20, 26),
                  (22.5, 20), (27, 14)])
    hair(canvas, [corner(27, 5.4), (38, 4.4), (49.5, 7.4), (56.2, 16), (57, 27), (56.5, 35), corner(54, 37),
                  (53, 28),
                  (48.5, 22.5), (38, 18.5), (31, 13)])


def draw_bindi(canvas):
    """A small red mark between the brows."""
    canvas.stamp(36, 22, "rr\nrr", {"r": ("maroon", BASE)})


def draw_lashes(canvas, eyes, gaze):
    """The outer corner of each eye, drawn out."""
    rows, dx, dy = LASHES[eyes]
    key = {"k": ("ink", LINE)}
    nearer = 1 if len(rows) == 1 else 0  # a single pixel touches the eye
    canvas.stamp(26 + dx + gaze[0] + nearer, 25 + dy + gaze[1], rows, key)
    canvas.stamp(47 + gaze[0], 25 + dy + gaze[1], rows, key, flip=True)


def draw_headset(canvas):
    """A light headset: the band over the hair, one cup, the microphone before the cheek."""
    band = canvas.stroke([(16.5, 27), (17, 14.5), (25, 6.4), (36.5, 3.6), (48, 6.4), (56, 14.5), (56.6, 27)],
                         2.5)
    canvas.put(band, "white", canvas.slope(-0.012, -0.012, 1.2), cast=(0, 2))
    boom = canvas.stroke([(18, 33), (20, 38.6), (27, 41.2)], 1.9)
    canvas.put(boom, "steel", canvas.even(0.8), cast=(0, 1))
    canvas.put_map(26, 39, ".ss\nsdd\nsdd\n.ss", {"s": ("steel", SHADOW), "d": ("steel", BASE)},
                   cast=None)
    for x, lit in ((17, True), (56, False)):
        cup = canvas.rounded_box(x - 3.5, 23, x + 3.5, 35, 3)
        canvas.put(cup, "white", canvas.inflated(cup, 4))
        canvas.put(canvas.rounded_box(x - 2, 26, x + 2, 32, 2), "slate", canvas.even(0.7 if lit else 0.5),
                   edge="none", cast=None)


def draw_plait(canvas):
    """The plait over the far shoulder, tied in mustard."""
    for x, y, radius in ((54, 45.5, 4.6), (56, 51.5, 4.6), (56, 57.5, 4.3)):
        strand = canvas.ellipse(x, y, radius, radius - 0.2)
        canvas.put(strand, "ink", canvas.sphere(x, y, radius), cast=(1, 2), thresholds=(0.1, 0.6, 0.95))
    end = canvas.blob([(52.5, 63), (58, 62), (58.5, 67), corner(54.5, 72), (52, 67)])
    canvas.put(end, "ink", canvas.inflated(end, 4), thresholds=(0.1, 0.55, 2))
    tie = canvas.rounded_box(52, 60.5, 59, 64, 1.4)
    canvas.put(tie, "mustard", canvas.even(0.8))


CALENDAR = """
..ss....ss...
RRssRRRRssRRr
RRRRRRRRRRRRr
RRRRRRRRRRRrr
WWWWWWWWWWWWw
WkkWkkWkkWkkw
WkkWkkWkkWkkw
WWWWWWWWWWWWw
WkkWTTWkkWkkw
WkkWTTWkkWkkw
WWWWWWWWWWWWw
WkkWkkWkkWwww
WkkWkkWkkWwww
wwwwwwwwwwwww
"""
CALENDAR_KEY = {"s": ("steel", HIGHLIGHT), "R": ("red", BASE), "r": ("red", SHADOW),
                "W": ("white", HIGHLIGHT), "w": ("white", BASE), "k": ("white", SHADOW), "T": ("red", BASE)}


def draw_calendar_arm(canvas):
    """The far arm, the calendar held against the hoodie."""
    body.draw_sleeve(canvas, OUTFIT, mirrored(HOLDING, WIDTH))
    canvas.put_map(33, 62, CALENDAR, CALENDAR_KEY)
    body.draw_hand(canvas, 22, 70, body.FIST, flip=True)


def arm_hanging(canvas):
    """At rest beside the body."""
    body.draw_hand(canvas, 13, 76, body.HANGING_HAND)
    body.draw_sleeve(canvas, OUTFIT, HANGING)


def arm_at_headset(canvas):
    """Two fingers on the cup of the headset."""
    body.draw_sleeve(canvas, OUTFIT, AT_HEADSET)
    body.draw_hand(canvas, 9, 32, body.CUPPED_HAND)


def arm_offering(canvas):
    """The palm up, making a point."""
    body.draw_sleeve(canvas, OUTFIT, OFFERING)
    body.draw_hand(canvas, 2, 58, body.OFFERED_HAND)


def arm_at_chin(canvas):
    """The knuckles under the chin."""
    body.draw_sleeve(canvas, OUTFIT, AT_CHIN, folded=True)
    body.draw_hand(canvas, 27, 46, body.CHIN_HAND)


ARMS = {"hanging": arm_hanging, "headset": arm_at_headset, "offering": arm_offering, "chin": arm_at_chin}


def poses():
    """File name -> picture."""
    return {
        "intern.png": draw(),
        "blink.png": draw(eyes="closed"),
        "listen.png": draw(arm="headset", mouth="soft", brows=(1, 1), gaze=(-1, 0)),
        "think.png": draw(arm="chin", eyes="up", mouth="flat", brows=(1, 0)),
        "talk.png": draw(arm="offering", mouth="talk", brows=(1, 1)),
    }
