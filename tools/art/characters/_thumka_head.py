"""Thumka's head from the front, half turned, and from behind."""
from dataclasses import dataclass

from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW, corner, mirrored, moved
from kit.palette import RAMP_NAMES
from kit.shapes import beside

from ._thumka_maps import (ANKLET_KEY, BROW, EARRING, EYE_KEY, EYES, GLINT, MARIGOLD, MARIGOLD_KEY, MOUTH_KEY,
                           MOUTHS)

WIDTH = 124
MIDDLE = 62
CROWN, CHIN = 16, 69


@dataclass(frozen=True)
class Head:
    """How the head is held: shifted, leaning (pixels at the crown), turned (pixels the features move)."""

    dx: int = 0
    dy: int = 0
    lean: int = 0
    turn: int = 0
    eyes: str = "open"
    mouth: str = "smile"
    from_behind: bool = False

    def leaning(self, y):
        """How far the lean carries something at this height."""
        return self.lean * (CHIN - y) / (CHIN - CROWN)

    def held(self, points):
        """Points of the upright head, as the head is held."""
        return [(point[0] + self.dx + self.leaning(point[1]), point[1] + self.dy) + tuple(point[2:])
                for point in points]

    def mark(self, x, y):
        """The whole pixel at which a map of the upright face goes; a leaning head lowers one side."""
        lowered = 1 if self.lean * (x - MIDDLE) > 0 and abs(self.lean) > 2 else 0
        return x + self.dx + round(self.leaning(y)), y + self.dy + lowered


def draw_head(canvas, head):
    """The head with everything on it."""
    first_part = canvas.last_part
    draw_back_hair(canvas, head)
    if head.from_behind:
        draw_hair_from_behind(canvas, head)
    else:
        draw_face_form(canvas, head)
        draw_face(canvas, head)
        draw_front_hair(canvas, head)
        draw_earrings(canvas, head)
    light_hair_rim(canvas, first_part)
    draw_marigold(canvas, head)


def hair(canvas, head, points, thresholds=(0.3, 0.74, 0.965)):
    """One volume of hair, lit as part of the whole head."""
    mask = canvas.blob(head.held(points))
    (x, y), = head.held([(60, 40)])
    light = canvas.sphere(x, y, 30, 29) * 0.6 + canvas.inflated(mask, 6) * 0.4
    return canvas.put(mask, "jet", light, thresholds=thresholds)


def draw_back_hair(canvas, head):
    """What is combed back behind the ears."""
    hair(canvas, head, [(62, 16), (76, 19), (85, 29), (87, 42), (84.5, 55), (78, 62), (62, 64), (46, 62),
                        (39.5, 55), (37, 42), (39, 29), (48, 19)])


def draw_hair_from_behind(canvas, head):
    """The parting over the crown, and the hair gathered to the nape."""
    half = [corner(62, 14.6), (76, 17.4), (85.4, 28), (87.4, 43), (81, 56), corner(66, 66), corner(62, 66)]
    for points in (half, mirrored(half, WIDTH)):
        hair(canvas, head, points)
    for points in ([(50, 34), (53, 48), (59, 61)], [(74, 34), (71, 48), (65, 61)]):
        canvas.line(head.held(points), "jet", LINE)


def draw_face_form(canvas, head):
    """Ears and the face's own form."""
    for x in (40.5, 83.5):
        if head.turn * (x - MIDDLE) > 0:
            continue
        (ear_x, ear_y), = head.held([(x, 53)])
        ear = canvas.ellipse(ear_x, ear_y, 3.4, 5)
        canvas.put(ear, "skin", canvas.sphere(ear_x, ear_y, 3.4, 5))
    form = canvas.blob(head.held([(62, 26), (75.5, 29), (82, 39), (82.4, 50), (78.5, 59.5), (70.5, 66.6),
                                  (62, 69), (53.5, 66.6), (45.5, 59.5), (41.6, 50), (42, 39), (48.5, 29)]))
    (x, y), = head.held([(61, 47)])
    light = canvas.sphere(x, y, 26, 28) * 0.6 + canvas.cylinder(x - 25, x + 27) * 0.4
    canvas.put(form, "skin", light, thresholds=(0.28, 0.54, 0.94), cast=(1, 3))


def draw_face(canvas, head):
    """Brows, eyes, nose and its ring, mouth, cheeks, bindi."""
    turn = head.turn
    for x, flip in ((47, False), (69, True)):
        x, y = head.mark(x + turn, 43)
        canvas.stamp(x, y, EYES[head.eyes], EYE_KEY, flip)
        if head.eyes == "open":
            canvas.stamp(x + GLINT[0] - (1 if flip else 0), y + GLINT[1], "ww\nww", EYE_KEY)
        canvas.stamp(x - (1 if flip else 0), y - 5, BROW, {"k": ("ink", SHADOW)}, flip)
    canvas.stamp(*head.mark(61 + turn, 37), "rr\nrr\nrr", {"r": ("maroon", BASE)})
    canvas.stamp(*head.mark(61 + turn, 52), "..d\n.dd", {"d": ("skin", SHADOW)})
    canvas.stamp(*head.mark(64 + turn, 53), ".H.\nH.B\nBBB", ANKLET_KEY)
    canvas.stamp(*head.mark(56 + turn, 58), MOUTHS[head.mouth], MOUTH_KEY)
    for x, flip in ((44, False), (74, True)):
        if abs(x + 3 + turn - MIDDLE) < 19:
            canvas.stamp(*head.mark(x + turn, 54), ".ccc.\nccccc", {"c": ("maroon", HIGHLIGHT)}, flip)


def draw_front_hair(canvas, head):
    """Two smooth wings from the parting, and the jewel that hangs in it."""
    part = MIDDLE + head.turn
    temple = head.turn * 0.6
    left = [corner(part, 14.6), (48, 17.4), (38.6, 28), (36.6, 42), corner(39.5, 53), (43, 46),
            (47 + temple, 36), corner(part, 28)]
    right = [corner(part, 14.6), (76, 17.4), (85.4, 28), (87.4, 42), corner(84.5, 53), (81, 46),
             (77 + temple, 36), corner(part, 28)]
    for points, strand in ((left, [(57, 21), (49, 25), (43.5, 33), (41, 43)]),
                           (right, [(67, 21), (75, 25), (80.5, 33), (83, 43)])):
        wing = hair(canvas, head, points)
        canvas.line(head.held(moved(strand, head.turn * 0.5)), "jet", SHADOW, within=wing)
    for y in range(17, 28, 2):
        canvas.stamp(*head.mark(61 + head.turn, y), "Hb\nHb", ANKLET_KEY)
    canvas.put_map(*head.mark(59 + head.turn, 28), "..bb..\n.HbbB.\nHbrrBd\n.brrd.\n..Bd..", {
        **ANKLET_KEY, "r": ("maroon", LIGHT)}, cast=(0, 1))


def draw_earrings(canvas, head):
    """Bell-shaped earrings, which swing a pixel against the head's lean."""
    swing = -1 if head.lean > 2 else 1 if head.lean < -2 else 0
    for x in (38, 81):
        if head.turn * (x + 2 - MIDDLE) > 0:
            continue
        x, y = head.mark(x, 57)
        canvas.put_map(x + swing, y, EARRING, ANKLET_KEY, cast=None)


def draw_marigold(canvas, head):
    """The marigold over her left ear; seen from behind it is on the other side."""
    x = 36 if head.from_behind else 74 + min(0, head.turn)
    if head.turn > 0:
        x = 77
    canvas.put_map(*head.mark(x, 24), MARIGOLD, MARIGOLD_KEY, flip=head.from_behind)


def light_hair_rim(canvas, first_part):
    """Lifts the outermost ring of the dark hair, so that it stands out from a dark desktop."""
    dark = canvas.covered() & (canvas.part > first_part) & (canvas.ramp == RAMP_NAMES.index("jet"))
    rim = dark & beside(~canvas.covered())
    canvas.adjust(rim & (canvas.level == SHADOW), 1)
    canvas.adjust(rim & (canvas.level == BASE), 1)
