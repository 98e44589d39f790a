"""Thumka the folk dancer: a rose ghagra, a mustard dupatta over her elbows, bells at her ankles."""
from dataclasses import dataclass, replace

import numpy as np
from scipy import ndimage

from kit import BASE, HIGHLIGHT, LIGHT, SHADOW, Canvas, Character, Manifest, corner, moved
from kit.light import lambert
from kit.palette import RAMP_NAMES
from kit.shapes import shifted

from ._thumka_head import MIDDLE, WIDTH, Head, draw_head
from ._thumka_maps import ANKLE, ANKLET, ANKLET_KEY, FEET, HANDS, NAMASTE, SKIN_KEY

HEIGHT = 151
FLOOR = 146  # the contour adds the last row above the ground line at 147
WAIST = 98
LEFT, RIGHT = -1, 1
SKIN_LIGHT = (0.38, 0.6, 0.93)


@dataclass(frozen=True)
class Arm:
    """Elbow and wrist as (outward, down) from the shoulder; the hand's name, or None."""

    elbow: tuple = (13, 13)
    wrist: tuple = (3, 21)
    hand: str = "hip"
    flip: bool = False


@dataclass(frozen=True)
class Foot:
    """A foot: how far out from the middle, how it is set down, how many pixels above the floor."""

    out: int = 11
    kind: str = "flat"
    lift: int = 0
    inward: bool = False


@dataclass(frozen=True)
class Skirt:
    """The hem's two ends as (from the middle, above the floor), how low it sags between them."""

    left: tuple = (-31, 15)
    right: tuple = (31, 15)
    sag: float = 4
    pleats: int = 5


@dataclass(frozen=True)
class Stance:
    """One pose. Offsets are whole pixels from the idle pose."""

    hip: int = 0
    chest: int = 0
    dip: int = 0
    lift: int = 0
    head: Head = Head()
    left: Arm = Arm()
    right: Arm = Arm()
    feet: tuple = (Foot(), Foot())
    skirt: Skirt = Skirt()
    tails: tuple = ((6, 33), (6, 33))
    braid: int = None
    namaste: bool = False
    seated: bool = False


def draw(stance):
    """Thumka in one stance, from back to front."""
    canvas = Canvas(WIDTH, HEIGHT)
    draw_dupatta_behind(canvas, stance)
    if not stance.seated:
        for side, foot in zip((LEFT, RIGHT), stance.feet):
            draw_foot(canvas, side, foot, MIDDLE + stance.hip + side * 7)
    draw_skirt(canvas, stance)
    draw_torso(canvas, stance)
    draw_belt(canvas, stance)
    for side, arm, tail in ((RIGHT, stance.right, stance.tails[1]), (LEFT, stance.left, stance.tails[0])):
        elbow_x, elbow_y = joint(stance, side, arm.elbow)
        draw_dupatta_tail(canvas, (elbow_x, elbow_y), (elbow_x + side * tail[0], elbow_y + tail[1]))
    for side, arm in ((RIGHT, stance.right), (LEFT, stance.left)):
        draw_arm(canvas, stance, side, arm)
    close_chinks(canvas)
    if stance.namaste:
        canvas.put_map(MIDDLE - 6 + stance.chest, 78 + stance.dip, NAMASTE, SKIN_KEY)
    draw_head(canvas, replace(stance.head, dx=stance.head.dx + stance.chest,
                              dy=stance.head.dy + stance.dip - stance.lift))
    if stance.braid is not None:
        draw_braid(canvas, stance)
    return canvas.render()


# Where things are in a stance -----------------------------------------------------------------------

def shoulder(stance, side):
    """The shoulder joint."""
    return MIDDLE + stance.chest + side * 12.5, 78.5 + stance.dip - stance.lift


def joint(stance, side, offset):
    """A point given as (outward, down) from a shoulder."""
    x, y = shoulder(stance, side)
    return x + side * offset[0], y + offset[1]


def waist(stance):
    """The middle of the waist."""
    return MIDDLE + round(stance.hip * 0.6), WAIST + stance.dip


# Feet and skirt ---------------------------------------------------------------------------------------

def draw_foot(canvas, side, foot, knee_x):
    """A bare foot with a red rim and bells around the ankle, below a knee that the skirt covers."""
    rows = FEET[foot.kind].strip("\n").split("\n")
    width = max(map(len, rows))
    rows = [row.ljust(width, ".") for row in rows]
    flip = (side == RIGHT) != foot.inward
    ankle_x = MIDDLE + side * foot.out
    top = FLOOR - len(rows) - foot.lift
    shin = canvas.polygon([(knee_x - 3, 114), (knee_x + 3, 114), (ankle_x + 3, top + 1),
                           (ankle_x - 3, top + 1)])
    canvas.put(shin, "skin", canvas.cylinder(ankle_x - 4, ankle_x + 4), thresholds=(0.3, 0.56, 0.95))
    left = ankle_x - (width - ANKLE if flip else ANKLE)
    canvas.put_map(left, top, "\n".join(rows), SKIN_KEY, flip=flip)
    canvas.put_map(ankle_x - 4, top - 1, ANKLET, ANKLET_KEY, flip=flip, cast=None)


def pleated_light(canvas, mask, pleats):
    """A drum's light that follows the mask's own edges, row by row, with pleats fanning out in it."""
    columns = np.arange(canvas.width)
    left = np.where(mask.any(1), mask.argmax(1), 0)[:, None]
    right = np.where(mask.any(1), canvas.width - 1 - mask[:, ::-1].argmax(1), 1)[:, None]
    across = np.clip((columns - left) / np.maximum(right - left, 1) * 2 - 1, -1, 1)
    depth = np.sqrt(np.maximum(1 - across**2, 0.03))
    drum = lambert(across * 0.95, np.full_like(across, -0.15), depth)
    return drum + 0.12 * np.sin((across + 1) * np.pi * pleats)


def dyed(canvas, mask, ramp):
    """Changes the material under a mask and keeps its light."""
    canvas.ramp[mask] = RAMP_NAMES.index(ramp)


def hanging_skirt(canvas, stance):
    """The outline of the ghagra of somebody who stands: waist, hips, and a hem that swings."""
    x, y = waist(stance)
    skirt = stance.skirt
    left_x, left_y = MIDDLE + skirt.left[0], FLOOR - skirt.left[1]
    right_x, right_y = MIDDLE + skirt.right[0], FLOOR - skirt.right[1]
    hips = MIDDLE + stance.hip
    middle_x, middle_y = (left_x + right_x) / 2, (left_y + right_y) / 2 + skirt.sag
    mask = canvas.blob([corner(x - 11, y - 1), corner(x + 11, y - 1), (hips + 17, y + 8),
                        ((hips + 17 + right_x) / 2 + 1, (y + 8 + right_y) / 2 - 1), corner(right_x, right_y),
                        ((right_x + middle_x) / 2 + 2, (right_y + middle_y) / 2 + skirt.sag / 3),
                        (middle_x, middle_y),
                        ((left_x + middle_x) / 2 - 2, (left_y + middle_y) / 2 + skirt.sag / 3),
                        corner(left_x, left_y), ((hips - 17 + left_x) / 2 - 1, (y + 8 + left_y) / 2 - 1),
                        (hips - 17, y + 8)])
    return mask & canvas.where(lambda px, py: py < FLOOR)


def spread_skirt(canvas, stance):
    """The outline of the ghagra of somebody who sits on the floor in the middle of it."""
    x, y = waist(stance)
    return canvas.blob([corner(x - 11, y - 1), corner(x + 11, y - 1), (x + 22, y + 3), (x + 35, y + 9),
                        (x + 47, y + 16), corner(x + 51, FLOOR), corner(x - 51, FLOOR), (x - 47, y + 16),
                        (x - 35, y + 9), (x - 22, y + 3)])


def draw_skirt(canvas, stance):
    """The ghagra: pleated, with a gold border at the hem."""
    mask = spread_skirt(canvas, stance) if stance.seated else hanging_skirt(canvas, stance)
    light, plain_light = (pleated_light(canvas, mask, pleats) for pleats in (stance.skirt.pleats, 0))
    canvas.put(mask, "rose", light, thresholds=(0.26, 0.82, 1.05), cast=(1, 3))
    border = mask & ~shifted(mask, 0, -7)
    gold = mask & ~shifted(mask, 0, -5)
    canvas.paint(border, "rose", SHADOW)
    dyed(canvas, gold, "mustard")
    canvas.level[gold] = (BASE + sum((plain_light > step).astype(int) for step in (0.36, 0.78)))[gold]


# Body -------------------------------------------------------------------------------------------------

def draw_torso(canvas, stance):
    """The midriff, the short blouse, the neck and a string of beads."""
    x, y = MIDDLE + stance.chest, stance.dip - stance.lift
    waist_x, waist_y = waist(stance)
    midriff = canvas.polygon([(x - 10.5, 88 + y), (x + 10.5, 88 + y), (waist_x + 11, waist_y + 1),
                              (waist_x - 11, waist_y + 1)])
    canvas.put(midriff, "skin", canvas.cylinder(x - 15, x + 14), thresholds=(0.34, 0.58, 0.97))
    neck = canvas.polygon([(x - 5.5, 64 + y), (x + 5.5, 64 + y), (x + 6, 73 + y), (x + 13, 77 + y),
                           (x + 8, 84 + y), (x - 8, 84 + y), (x - 13, 77 + y), (x - 6, 73 + y)])
    canvas.put(neck, "skin", canvas.even(0.5), cast=None)
    blouse = canvas.blob(moved([corner(-13, 75), corner(-8, 74), (-5, 80), (0, 82.5), (5, 80), corner(8, 74),
                                corner(13, 75), (13.5, 82), corner(11.5, 92), (0, 93), corner(-11.5, 92),
                                (-13.5, 82)], x, y))
    canvas.put(blouse, "teal", canvas.cylinder(x - 17, x + 15), thresholds=(0.3, 0.5, 0.88))
    canvas.paint(blouse & ~shifted(blouse, 0, -2), "mustard", LIGHT)
    if stance.head.from_behind:
        return
    for reach, drop in ((6, 79), (8, 85)):
        beads = [(-reach, 74), (-reach + 2, drop - 2), (0, drop), (reach - 2, drop - 2), (reach, 74)]
        canvas.line(moved(beads, x, y), "brass", LIGHT, within=neck | blouse)


def draw_belt(canvas, stance):
    """A belt of gold over the skirt's top."""
    x, y = waist(stance)
    belt = canvas.blob([corner(x - 11.5, y - 2), (x, y - 1), corner(x + 11.5, y - 2), corner(x + 12, y + 1.5),
                        (x, y + 2.5), corner(x - 12, y + 1.5)])
    canvas.put(belt, "brass", canvas.cylinder(x - 14, x + 13), thresholds=(0.3, 0.56, 0.9), cast=(0, 1))


def draw_arm(canvas, stance, side, arm):
    """A bare arm in a short sleeve, the forearm with its bangles, and the hand."""
    start = shoulder(stance, side)
    elbow, wrist = joint(stance, side, arm.elbow), joint(stance, side, arm.wrist)
    upper, lower = canvas.stroke([start, elbow], [8.5, 7.5]), canvas.stroke([elbow, wrist], [7.5, 6])
    canvas.put(upper | lower, "skin", canvas.inflated(upper | lower, 5), thresholds=SKIN_LIGHT)
    middle = tuple(a * 0.45 + b * 0.55 for a, b in zip(start, elbow))
    sleeve = canvas.stroke([start, middle], [10, 9.5])
    canvas.put(sleeve, "teal", canvas.inflated(sleeve, 6), thresholds=(0.42, 0.62, 0.9))
    if arm.wrist[0] < 0:  # folded across the chest: the forearm is in front of everything
        canvas.put(lower, "skin", canvas.inflated(lower, 5), thresholds=SKIN_LIGHT)
    draw_bangles(canvas, elbow, wrist, lower)
    if arm.hand:
        draw_hand(canvas, side, wrist, arm)


def draw_hand(canvas, side, wrist, arm):
    """The hand from its map, its wrist at the end of the arm."""
    rows, (anchor_x, anchor_y) = HANDS[arm.hand]
    lines = rows.strip("\n").split("\n")
    width = max(map(len, lines))
    flip = (side == RIGHT) != arm.flip
    anchor_x = width - 1 - anchor_x if flip else anchor_x
    rows = "\n".join(line.ljust(width, ".") for line in lines)
    canvas.put_map(int(wrist[0]) - anchor_x, int(wrist[1]) - anchor_y, rows, SKIN_KEY, flip=flip)


def draw_bangles(canvas, elbow, wrist, forearm):
    """Three bangles above the wrist, across the arm."""
    along = np.subtract(wrist, elbow)
    along = along / np.hypot(*along)
    for distance, ramp, level in ((3, "maroon", LIGHT), (4.5, "brass", HIGHLIGHT), (6, "maroon", LIGHT)):
        ring = canvas.where(lambda x, y: abs((wrist[0] - x) * along[0] + (wrist[1] - y) * along[1]
                                             - distance) < 0.75)
        canvas.paint(ring & forearm, ramp, level)


def close_chinks(canvas):
    """Fills the specks of background that arms and scarf happen to enclose; larger gaps stay open."""
    regions, count = ndimage.label(~canvas.covered())
    for region in range(1, count + 1):
        chink = regions == region
        if chink.sum() < 24:
            canvas.paint(chink, "mustard", SHADOW)


# The dupatta --------------------------------------------------------------------------------------------

def draw_dupatta_behind(canvas, stance):
    """The scarf's middle, slung behind the back from elbow to elbow."""
    left, right = joint(stance, LEFT, stance.left.elbow), joint(stance, RIGHT, stance.right.elbow)
    x, y = waist(stance)
    scarf = canvas.stroke([left, (x - 12, y - 4), (x + 12, y - 4), right], [8, 11, 11, 8])
    canvas.put(scarf, "mustard", canvas.inflated(scarf, 6), bias=-1, lowest=SHADOW)


def draw_dupatta_tail(canvas, start, end):
    """One end of the scarf, falling from the elbow: narrow at the elbow, wide and cut straight at the end."""
    start, end = np.array(start, float), np.array(end, float)
    along = end - start
    length = np.hypot(*along)
    along /= length
    bow = np.array([along[1], -along[0]]) * (2.5 if along[0] < 0 else -2.5)
    path = [start, start + along * length * 0.35 + bow, start + along * length * 0.7 - bow * 0.4,
            end + along * 6 - bow * 0.4]
    tail = canvas.stroke([tuple(point) for point in path], [5, 8, 11.5, 13])

    def beyond(x, y):
        return (x - end[0]) * along[0] + (y - end[1]) * along[1]

    tail &= canvas.where(lambda x, y: (beyond(x, y) < 0) & (y < FLOOR))
    canvas.put(tail, "mustard", canvas.inflated(tail, 7), thresholds=(0.36, 0.6, 0.88))
    crease = [tuple(path[0] + bow * 0.3), tuple(path[1] + bow * 0.4), tuple(path[2] + bow * 0.6)]
    canvas.line(crease, "mustard", SHADOW, within=tail)
    for distance in (2.5, 5.5):
        canvas.paint(tail & canvas.where(lambda x, y: abs(beyond(x, y) + distance) < 0.7), "rose", BASE)


def draw_braid(canvas, stance):
    """A plait down the back with a tassel, swung to one side."""
    x, y = MIDDLE + stance.chest, stance.dip
    for step in range(6):
        centre = (x + stance.braid * (step / 6) ** 1.5, 67 + y + step * 5.5)
        bead = canvas.ellipse(*centre, 4.6 - step * 0.25, 4)
        canvas.put(bead, "jet", canvas.sphere(*centre, 6, 5), thresholds=(0.2, 0.5, 0.9), cast=(1, 1))
    tassel = canvas.blob(moved([(0, 1), (3, 5), (3, 11), (-3, 11), (-3, 5)], *centre))
    canvas.put(tassel, "rose", canvas.inflated(tassel, 4), highest=LIGHT)


# The poses ------------------------------------------------------------------------------------------------

IDLE = Stance(left=Arm((13, 10), (2, 19), "hip"), right=Arm((12, 13), (16, 26), "pinch"))


def mirrored_stance(stance, head):
    """The same step to the other side; the head is given, since its flower does not change sides."""
    skirt = stance.skirt
    skirt = replace(skirt, left=(-skirt.right[0], skirt.right[1]), right=(-skirt.left[0], skirt.left[1]))
    return replace(stance, hip=-stance.hip, chest=-stance.chest, head=head, left=stance.right,
                   right=stance.left, feet=stance.feet[::-1], skirt=skirt, tails=stance.tails[::-1])


def dance():
    """The seven steps of the dance."""
    up = Arm((15, 4), (23, -12), "lotus")
    low = Arm((15, 9), (27, 13), "wing")
    folded = Arm((13, 12), (-8, 11), None)
    one = Stance(hip=-7, chest=-2, dip=1, head=Head(lean=5, dx=1, mouth="laugh"), left=low, right=up,
                 feet=(Foot(13), Foot(21, "toe")), skirt=Skirt((-43, 19), (27, 13)),
                 tails=((12, 29), (14, 30)))
    two = Stance(dip=4, head=Head(dy=1, eyes="happy"), left=folded, right=folded, namaste=True,
                 feet=(Foot(14), Foot(14)), skirt=Skirt((-35, 13), (35, 13)), tails=((9, 30), (9, 30)))
    three = mirrored_stance(one, Head(lean=-5, dx=-1, mouth="laugh"))
    four = Stance(hip=3, chest=3, head=Head(turn=6, lean=2), left=Arm((13, 11), (-7, 9), "lap"),
                  right=Arm((16, 5), (29, 0), "wing"), feet=(Foot(15, "toe", 5), Foot(6)),
                  skirt=Skirt((-47, 27), (36, 16)), tails=((22, 22), (4, 30)))
    five = Stance(head=Head(from_behind=True), lift=1, left=Arm((16, 2), (27, -10), "lotus"),
                  right=Arm((16, 2), (27, -10), "lotus"), feet=(Foot(7), Foot(9, "toe")),
                  skirt=Skirt((-50, 25), (50, 25), 9, 7), tails=((24, 20), (24, 20)), braid=9)
    six = Stance(hip=-3, chest=-3, head=Head(turn=-6, lean=-2), left=Arm((16, 5), (29, 0), "wing"),
                 right=Arm((15, 4), (22, -12), "thread"), feet=(Foot(6), Foot(15, "toe", 5)),
                 skirt=Skirt((-36, 16), (47, 27)), tails=((4, 30), (22, 22)))
    seven = Stance(hip=5, chest=1, head=Head(lean=-4, eyes="happy", mouth="laugh"), left=up, right=up,
                   feet=(Foot(19, "heel"), Foot(10)), skirt=Skirt((-30, 15), (40, 18)),
                   tails=((10, 30), (16, 27)))
    return one, two, three, four, five, six, seven


DOZE = Stance(dip=24, head=Head(lean=11, dx=1, dy=1, eyes="closed", mouth="sleep"),
              left=Arm((9, 13), (-3, 21), "lap"), right=Arm((9, 13), (-3, 21), "lap"), seated=True,
              tails=((14, 25), (14, 25)))

POSES = ("idle", "idle-breathe", "blink", *(f"dance-{step}" for step in range(1, 8)), "doze")

CHARACTER = Character(
    identifier="thumka",
    grid=(WIDTH, HEIGHT),
    ground=(MIDDLE, FLOOR + 1),
    moves={"blink.png": [(45, 38, 80, 53)], "idle-breathe.png": [(0, 0, WIDTH, 130)]},
    stray=26,
    manifest=Manifest(
        name="Thumka",
        role="Now playing",
        poses={name: f"{name}.png" for name in POSES},
        face=(MIDDLE, 50),
        accent=(0.77, 0.27, 0.47),
        behaviours=("idle", "blink"),
        order=9,
    ),
)


def poses():
    """File name -> picture."""
    pictures = {
        "idle.png": draw(IDLE),
        "idle-breathe.png": draw(replace(IDLE, lift=1)),
        "blink.png": draw(replace(IDLE, head=Head(eyes="closed"))),
        "doze.png": draw(DOZE),
    }
    for number, stance in enumerate(dance(), 1):
        pictures[f"dance-{number}.png"] = draw(stance)
    return pictures
