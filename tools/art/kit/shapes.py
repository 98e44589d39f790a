"""Masks: where a part is. Every mask is a boolean array at the art's own resolution.

Curved outlines are drawn eight times too large and cut at half cover, so their edges are clean steps
without anti-aliasing. Coordinates are continuous: pixel (0, 0) covers 0 to 1 in both directions, y
runs down, and a figure's mirror axis is half the canvas width.
"""
import numpy as np
from PIL import Image, ImageDraw

OVERSAMPLING = 8
CORNER = 1


def corner(x, y):
    """A point at which a smooth outline turns sharply instead of flowing through."""
    return (x, y, CORNER)


def mirrored(points, width):
    """The points reflected in the canvas's vertical middle; corners stay corners."""
    return [(width - point[0],) + tuple(point[1:]) for point in points]


def moved(points, dx=0, dy=0):
    """The points shifted; use whole pixels, or the part will be redrawn differently."""
    return [(point[0] + dx, point[1] + dy) + tuple(point[2:]) for point in points]


def turned(points, degrees, about):
    """The points turned clockwise (as seen) about a point."""
    angle = np.radians(degrees)
    cosine, sine = np.cos(angle), np.sin(angle)
    result = []
    for point in points:
        dx, dy = point[0] - about[0], point[1] - about[1]
        turned_point = (about[0] + dx * cosine - dy * sine, about[1] + dx * sine + dy * cosine)
        result.append(turned_point + tuple(point[2:]))
    return result


def shifted(mask, dx, dy):
    """A copy of an array moved by whole pixels, with nothing (zero) coming in at the edges."""
    result = np.zeros_like(mask)
    height, width = mask.shape
    target = (slice(max(dy, 0), height + min(dy, 0)), slice(max(dx, 0), width + min(dx, 0)))
    source = (slice(max(-dy, 0), height + min(-dy, 0)), slice(max(-dx, 0), width + min(-dx, 0)))
    result[target] = mask[source]
    return result


def beside(mask):
    """The pixels that share an edge with the mask, or lie in it beside another of its pixels."""
    return shifted(mask, 1, 0) | shifted(mask, -1, 0) | shifted(mask, 0, 1) | shifted(mask, 0, -1)


def spline(points, steps=14, closed=True):
    """A Catmull-Rom curve through the points, as a list of (x, y); see `corner`."""
    count = len(points)
    result = []
    for index in range(count if closed else count - 1):
        result += _segment(_controls(points, index, closed), steps)
    if not closed:
        result.append(tuple(points[-1][:2]))
    return result


def _controls(points, index, closed):
    """The four control points of one segment; a corner cuts the tangent that would run through it."""
    count = len(points)
    following = (index + 1) % count
    is_corner = [len(point) > 2 for point in points]
    at = [np.array(point[:2], float) for point in points]
    start, end = at[index], at[following]
    before = at[index - 1] if closed or index > 0 else start
    after = at[(index + 2) % count] if closed or index + 2 < count else end
    if is_corner[index]:
        before = 2 * start - end if is_corner[following] else start
    if is_corner[following]:
        after = 2 * end - start if is_corner[index] else end
    return before, start, end, after


def _segment(controls, steps):
    a, b, c, d = controls
    result = []
    for step in range(steps):
        t = step / steps
        point = 0.5 * (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t**2
                       + (3 * b - a - 3 * c + d) * t**3)
        result.append(tuple(point))
    return result


class ShapeMaker:
    """Makes masks of one canvas size."""

    def __init__(self, width, height):
        self.width, self.height = width, height

    def _grid(self):
        """The x and y of every pixel's centre."""
        y, x = np.mgrid[:self.height, :self.width]
        return x + 0.5, y + 0.5

    def _supersampled(self, draw):
        """Runs `draw(pen, scale)` on an enlarged bitmap and cuts it at half cover."""
        scale = OVERSAMPLING
        bitmap = Image.new("L", (self.width * scale, self.height * scale))
        draw(ImageDraw.Draw(bitmap), scale)
        cover = np.asarray(bitmap, float).reshape(self.height, scale, self.width, scale).mean((1, 3))
        return cover > 127

    def nowhere(self):
        """An empty mask."""
        return np.zeros((self.height, self.width), bool)

    def blob(self, points):
        """A closed smooth outline through the points; `corner(x, y)` makes a sharp one."""
        return self.polygon(spline(points))

    def polygon(self, points):
        """A closed outline of straight lines."""
        def draw(pen, scale):
            pen.polygon([(point[0] * scale, point[1] * scale) for point in points], fill=255)
        return self._supersampled(draw)

    def stroke(self, points, widths):
        """A smooth open line; `widths` is one width, or several from its start to its end (a taper)."""
        path = spline(points, 24, closed=False)
        stations = np.atleast_1d(np.asarray(widths, float))
        along = np.interp(np.linspace(0, 1, len(path)), np.linspace(0, 1, len(stations)), stations)

        def draw(pen, scale):
            for (x, y), width in zip(path, along):
                radius = width * scale / 2
                x, y = x * scale, y * scale
                pen.ellipse((x - radius, y - radius, x + radius, y + radius), fill=255)
        return self._supersampled(draw)

    def ellipse(self, centre_x, centre_y, radius_x, radius_y=None):
        """An ellipse, or a circle when only one radius is given."""
        x, y = self._grid()
        radius_y = radius_y or radius_x
        return ((x - centre_x) / radius_x) ** 2 + ((y - centre_y) / radius_y) ** 2 <= 1

    def rounded_box(self, left, top, right, bottom, radius):
        """A box whose corners are quarter circles."""
        x, y = self._grid()
        across = abs(x - (left + right) / 2) - (right - left) / 2 + radius
        down = abs(y - (top + bottom) / 2) - (bottom - top) / 2 + radius
        outside = np.hypot(np.maximum(across, 0), np.maximum(down, 0))
        return outside + np.minimum(np.maximum(across, down), 0) <= radius

    def box(self, left, top, right, bottom):
        """The pixels from left, top up to but not including right, bottom."""
        x, y = self._grid()
        return (x > left) & (x < right) & (y > top) & (y < bottom)

    def where(self, condition):
        """The pixels whose centre fulfils `condition(x, y)`, given arrays."""
        return condition(*self._grid())

    def thin_line(self, points):
        """A line of single pixels along a smooth open path, without doubled corners."""
        mask = self.nowhere()
        path = _without_elbows(_pixels_along(points))
        for x, y in path:
            if 0 <= x < self.width and 0 <= y < self.height:
                mask[y, x] = True
        return mask


def _pixels_along(points):
    """The pixels a path runs through, in order, each once."""
    result = []
    for x, y in spline(points, 40, closed=False):
        pixel = (int(np.floor(x)), int(np.floor(y)))
        if not result or pixel != result[-1]:
            result.append(pixel)
    return result


def _without_elbows(path):
    """Drops the middle pixel of every L, so that a diagonal stays one pixel thick."""
    path = list(path)
    index = 1
    while index < len(path) - 1:
        (ax, ay), (bx, by), (cx, cy) = path[index - 1:index + 2]
        if abs(ax - cx) == 1 and abs(ay - cy) == 1 and (ax == bx or ay == by):
            path.pop(index)
        else:
            index += 1
    return path
