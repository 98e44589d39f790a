"""The canvas: parts are put on it back to front as (ramp, level) pairs, and rendered at the end."""
import numpy as np
from PIL import Image
from scipy import ndimage

from .light import LIGHT_DIRECTION, LightMaker
from .palette import HIGHLIGHT, LINE, OUTLINE, RAMP_NAMES, RAMPS, SHADOW
from .shapes import ShapeMaker, beside, shifted

EMPTY = -1
# Light at which a surface steps from shadow to base, base to light, light to highlight.
THRESHOLDS = (0.36, 0.66, 0.93)
SIDES = ((1, 0), (-1, 0), (0, 1), (0, -1))
CORNERS = ((1, 1), (1, -1), (-1, 1), (-1, -1))


class Canvas(ShapeMaker, LightMaker):
    """A grid of pixels, each a material (ramp) at a level (LINE to HIGHLIGHT), or empty.

    `part` numbers the part that covers a pixel, 1 and up; `last_part` is the number of the newest.
    """

    def __init__(self, width, height):
        super().__init__(width, height)
        self.ramp = np.full((height, width), EMPTY)
        self.level = np.zeros((height, width), int)
        self.part = np.zeros((height, width), int)
        self.by_hand = np.zeros((height, width), bool)
        self.last_part = 0

    # Putting parts ------------------------------------------------------------------------------

    def put(self, mask, ramp, light=None, thresholds=THRESHOLDS, edge="line", cast=(1, 2),
            cast_steps=1, bias=0, lowest=SHADOW, highest=HIGHLIGHT, clip=None):
        """Paints a part over what is there and returns its mask.

        `light` defaults to `inflated(mask)` and is cut into levels at `thresholds`; `bias` moves all
        levels, `lowest` and `highest` limit them. `cast` is the length of its shadow on the parts
        below in pixels right and down (None for none). `edge` draws where it meets them: "line" all
        around, "low" only away from the light, "none" nowhere. `clip` limits the part to a mask.
        """
        if clip is not None:
            mask = mask & clip
        if light is None:
            light = self.inflated(mask)
        levels = SHADOW + sum((light > threshold).astype(int) for threshold in thresholds)
        levels = self._without_specks(np.clip(levels + bias, lowest, highest), mask)
        if cast:
            self.cast_shadow(mask, cast, cast_steps)
        self._draw_edge(mask, edge)
        self.last_part += 1
        self.ramp[mask] = RAMP_NAMES.index(ramp)
        self.level[mask] = levels[mask]
        self.part[mask] = self.last_part
        self.by_hand[mask] = False
        return mask

    def cast_shadow(self, mask, offset=(1, 2), steps=1):
        """Darkens what lies below and beside a mask, as far as the offset reaches."""
        reach = max(abs(offset[0]), abs(offset[1]))
        shadow = np.zeros_like(mask)
        for step in range(1, reach + 1):
            shadow |= shifted(mask, round(offset[0] * step / reach), round(offset[1] * step / reach))
        shadow &= ~mask & self.covered()
        self.level[shadow] = np.maximum(SHADOW, self.level[shadow] - steps)

    def _draw_edge(self, mask, edge):
        """The inner line where a part meets those below, in their own line colour."""
        if edge == "none":
            return
        ring = beside(mask) if edge == "line" else shifted(mask, 1, 0) | shifted(mask, 0, 1)
        self.level[ring & ~mask & self.covered()] = LINE

    @staticmethod
    def _without_specks(levels, mask):
        """Replaces single pixels of a level by the median around them."""
        levels = levels.copy()
        for _ in range(2):
            alike = sum((shifted(levels, *side) == levels) & shifted(mask, *side) for side in SIDES)
            specks = mask & (alike == 0)
            if not specks.any():
                break
            levels[specks] = ndimage.median_filter(levels, 3)[specks]
        return levels

    # Working on what is there ---------------------------------------------------------------------

    def covered(self):
        """The mask of all pixels painted so far."""
        return self.ramp != EMPTY

    def showing(self, *parts):
        """The mask of the pixels of these part numbers that nothing later covers."""
        return np.isin(self.part, parts) & self.covered()

    def line(self, points, ramp, level, width=1, within=None):
        """Draws a line one pixel (or `width` pixels) thick, only `within` a mask when one is given."""
        mask = self.stroke(points, width * 1.25) if width > 1 else self.thin_line(points)
        if within is not None:
            mask &= within
        return self.paint(mask, ramp, level)

    def paint(self, mask, ramp, level):
        """Gives a mask one flat colour; it belongs to the part that it lies on."""
        self.part[mask & ~self.covered()] = self.last_part
        self.ramp[mask] = RAMP_NAMES.index(ramp)
        self.level[mask] = level
        return mask

    def adjust(self, mask, steps):
        """Makes a mask lighter or darker by whole steps of its own ramps; lines stay lines."""
        mask = mask & (self.level > LINE)
        self.level[mask] = np.clip(self.level[mask] + steps, SHADOW, HIGHLIGHT)

    def fold(self, points, within, lit=True):
        """A crease in cloth: a wedge one step down with a lit edge on its left."""
        crease = self.blob(points) & within
        self.adjust(crease, -1)
        if lit:
            self.adjust(shifted(crease, -1, 0) & ~crease & within, +1)

    def far_side(self, condition, since=0, lowest=SHADOW):
        """One shadow over many parts: drops pixels where `condition(x, y)` of parts after `since`."""
        mask = self.where(condition) & (self.part > since) & (self.level > lowest)
        self.level[mask] -= 1

    def stamp(self, x, y, rows, key, flip=False):
        """Sets pixels from a text map, its upper left at x, y.

        `key` maps a character to (ramp, level); any other character leaves the pixel alone.
        """
        for row_index, row in enumerate(rows.strip("\n").split("\n")):
            for column, character in enumerate(reversed(row) if flip else row):
                if character in key:
                    self._set_by_hand(x + column, y + row_index, *key[character])

    def put_map(self, x, y, rows, key, edge="line", cast=(1, 2), flip=False):
        """Puts a text map as a part of its own, with an edge and a shadow on what lies below.

        For hands and things held: leave the outer line out of the map, or it is drawn twice where
        the part is at the figure's rim. Returns the mask.
        """
        mask = self.nowhere()
        for row_index, row in enumerate(rows.strip("\n").split("\n")):
            for column, character in enumerate(reversed(row) if flip else row):
                mask[y + row_index, x + column] = character in key
        if cast:
            self.cast_shadow(mask, cast)
        self._draw_edge(mask, edge)
        self.last_part += 1
        self.part[mask] = self.last_part
        self.stamp(x, y, rows, key, flip)
        return mask

    def _set_by_hand(self, x, y, ramp, level):
        if self.ramp[y, x] == EMPTY:
            self.part[y, x] = self.last_part
        self.ramp[y, x] = RAMP_NAMES.index(ramp)
        self.level[y, x] = level
        self.by_hand[y, x] = True

    def erase(self, mask):
        """Empties pixels again: a gap between two legs, the hole of a handle."""
        self.ramp[mask] = EMPTY
        self.part[mask] = 0
        self.by_hand[mask] = False

    # Rendering --------------------------------------------------------------------------------------

    def render(self):
        """The finished picture, outlined, as an RGBA image with alpha 0 or 255."""
        self._tidy()
        covered = self.covered()
        pixels = np.zeros((self.height, self.width, 4), np.uint8)
        colours = np.array([RAMPS[name] for name in RAMP_NAMES], np.uint8)
        pixels[covered, :3] = colours[self.ramp[covered], self.level[covered]]
        pixels[covered, 3] = 255
        contour = beside(covered) & ~covered
        pixels[contour] = (*OUTLINE, 255)
        self._light_contour(pixels, contour, covered, colours)
        return Image.fromarray(pixels)

    def render_only(self, mask):
        """The pixels of a mask alone, without a contour: an overlay for the same canvas."""
        whole = np.array(self.render())
        whole[~mask] = 0
        return Image.fromarray(whole)

    def _tidy(self):
        """Gives every pixel that is alone among its eight neighbours the colour most of them have."""
        for _ in range(2):
            colour = np.where(self.covered(), self.ramp * 8 + self.level, EMPTY)
            alone = self.covered() & ~self.by_hand
            for side in SIDES + CORNERS:
                alone &= shifted(colour + 1, *side) - 1 != colour
            for y, x in np.argwhere(alone):
                self._blend_in(x, y)

    def _blend_in(self, x, y):
        window = (slice(max(y - 1, 0), y + 2), slice(max(x - 1, 0), x + 2))
        ramps, levels = self.ramp[window].ravel(), self.level[window].ravel()
        near = [(ramp, level) for ramp, level in zip(ramps, levels)
                if ramp != EMPTY and (ramp, level) != (self.ramp[y, x], self.level[y, x])]
        if near:
            self.ramp[y, x], self.level[y, x] = max(sorted(set(near)), key=near.count)

    def _light_contour(self, pixels, contour, covered, colours):
        """On the lit side the contour takes the line colour of the material it borders.

        The side is judged from a blurred mask: flags from neighbours would make dashes.
        """
        rise_y, rise_x = np.gradient(ndimage.gaussian_filter(covered.astype(float), 2.2))
        steepness = np.hypot(rise_x, rise_y) + 1e-6
        towards = np.hypot(*LIGHT_DIRECTION[:2])
        facing = -(rise_x * LIGHT_DIRECTION[0] + rise_y * LIGHT_DIRECTION[1]) / steepness / towards
        for y, x in np.argwhere(contour & (facing > 0.35)):
            neighbour = self._neighbour(x, y, covered)
            if neighbour is not None:
                pixels[y, x, :3] = colours[self.ramp[neighbour], LINE]

    def _neighbour(self, x, y, covered):
        """The covered pixel a contour pixel belongs to, as (row, column)."""
        for dx, dy in ((0, 1), (1, 0), (-1, 0), (0, -1)):
            if 0 <= x + dx < self.width and 0 <= y + dy < self.height and covered[y + dy, x + dx]:
                return y + dy, x + dx
        return None
