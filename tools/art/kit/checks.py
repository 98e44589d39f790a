"""What every picture must keep to. Each check yields sentences about what is wrong."""
import numpy as np

from .shapes import beside, shifted

MOST_COLOURS = 48
LIGHT_DESKTOP = (236, 232, 224)
DARK_DESKTOP = (24, 26, 34)
# How much of the rim must stand out, by contrast of luminance, from a light and from a dark desktop.
# The contour itself carries the edge on a light one, the first ring inside it on a dark one.
RIM_SHARE = 0.80
RIM_CONTRAST = 1.6
AROUND = ((1, 0), (-1, 0), (0, 1), (0, -1), (1, 1), (-1, -1), (1, -1), (-1, 1))


def check_character(character, pictures):
    """All findings for one character, each as 'file: sentence'."""
    findings = []
    for name, picture in pictures.items():
        findings += [f"{name}: {text}" for text in _check_picture(character, name, picture)]
    findings += _check_colours(pictures)
    findings += _check_names(character, pictures)
    if not findings:
        findings += _check_moves(character, pictures)
    return findings


def _check_picture(character, name, picture):
    pixels = np.asarray(picture)
    if picture.size != tuple(character.grid):
        yield f"is {picture.size}, the grid is {character.grid}"
        return
    opaque = pixels[..., 3] == 255
    if not (opaque | (pixels[..., 3] == 0)).all():
        yield "has pixels that are neither opaque nor empty"
    if not opaque.any():
        yield "is empty"
        return
    strays = stray_pixels(pixels)
    if len(strays) > character.stray:
        yield f"has {len(strays)} isolated pixels, {character.stray} are allowed: {strays[:12]}"
    if name not in character.overlays:
        yield from _check_stance(character, opaque, name in character.airborne)
        yield from _check_rim(pixels, opaque)


def _check_stance(character, opaque, airborne):
    """Feet on the ground line, and room around the figure for its contour."""
    rows, columns = np.where(opaque.any(1))[0], np.where(opaque.any(0))[0]
    ground_row = int(character.ground[1]) - 1
    if airborne:
        if rows[-1] > ground_row:
            yield f"reaches down to row {rows[-1]}, below the ground row {ground_row}"
    elif rows[-1] != ground_row:
        yield f"ends in row {rows[-1]}, the ground asks for row {ground_row}"
    elif opaque[ground_row].sum() < character.footing:
        yield f"stands on {opaque[ground_row].sum()} pixels, {character.footing} are wanted"
    room = min(rows[0], columns[0], opaque.shape[1] - 1 - columns[-1])
    if room < character.margin:
        yield f"leaves {room} empty pixels at an edge, {character.margin} are wanted"


def _check_rim(pixels, opaque):
    contour = opaque & (beside(~opaque) | _canvas_edge(opaque))
    inner = opaque & ~contour & beside(contour)
    for desktop, ring, words in ((LIGHT_DESKTOP, contour, "contour on a light desktop"),
                                 (DARK_DESKTOP, inner, "first ring inside the contour on a dark desktop")):
        contrast = _contrast(_luminance(pixels[ring][:, :3]), _luminance(np.array(desktop)))
        share = (contrast >= RIM_CONTRAST).mean()
        if share < RIM_SHARE:
            yield f"only {share:.0%} of the {words} stands out, {RIM_SHARE:.0%} is wanted"


def _canvas_edge(mask):
    edge = np.zeros_like(mask)
    edge[0], edge[-1], edge[:, 0], edge[:, -1] = True, True, True, True
    return edge


def _check_colours(pictures):
    used = set()
    for picture in pictures.values():
        pixels = np.asarray(picture)
        used |= set(map(tuple, np.unique(pixels[pixels[..., 3] > 0][:, :3], axis=0)))
    if len(used) > MOST_COLOURS:
        yield f"{len(used)} colours in all pictures together, {MOST_COLOURS} are allowed"


def _check_names(character, pictures):
    """Everything that the description names must be drawn, and a pack's face lie on its canvas."""
    named = {character.reference, *character.moves, *character.overlays, *character.airborne}
    if character.manifest is not None:
        named |= set(character.manifest.poses.values())
        x, y = character.manifest.face
        if not (0 <= x <= character.grid[0] and 0 <= y <= character.grid[1]):
            yield f"the face point {x}, {y} lies outside the grid"
    for name in sorted(named - set(pictures)):
        yield f"{name}: is named, but not drawn"


def _check_moves(character, pictures):
    """A pose may differ from the reference only where it says that the body moves."""
    reference = np.asarray(pictures[character.reference])
    for name, boxes in character.moves.items():
        differs = (np.asarray(pictures[name]) != reference).any(2)
        for left, top, right, bottom in boxes:
            differs[top:bottom, left:right] = False
        if differs.any():
            rows, columns = np.where(differs)
            yield (f"{name}: differs from {character.reference} outside its moves, in columns "
                   f"{columns.min()} to {columns.max()}, rows {rows.min()} to {rows.max()}")


def stray_pixels(pixels):
    """The (x, y) of opaque pixels whose colour none of their eight neighbours shares."""
    colour = pixels.astype(int) @ np.array([1 << 24, 1 << 16, 1 << 8, 1])
    alone = pixels[..., 3] > 0
    for side in AROUND:
        alone &= shifted(colour, *side) != colour
    return [(int(x), int(y)) for y, x in np.argwhere(alone)]


def _luminance(colours):
    """Relative luminance of sRGB colours, 0 to 1, as WCAG 2.1 defines it."""
    channel = np.asarray(colours, float) / 255
    linear = np.where(channel <= 0.04045, channel / 12.92, ((channel + 0.055) / 1.055) ** 2.4)
    return linear @ np.array([0.2126, 0.7152, 0.0722])


def _contrast(one, other):
    """Contrast ratio of two luminances, 1 to 21, as WCAG 2.1 defines it."""
    return (np.maximum(one, other) + 0.05) / (np.minimum(one, other) + 0.05)
