"""Light: how bright each pixel of a part is, from 0 (turned away) to 1 (facing the light).

One light from the upper left falls on everything. A part's surface is guessed from its mask
(`inflated`), or said to be a ball, a drum or a glowing disc.
"""
import numpy as np
from scipy import ndimage

LIGHT_DIRECTION = np.array([-0.52, -0.62, 0.59])
LIGHT_DIRECTION = LIGHT_DIRECTION / np.linalg.norm(LIGHT_DIRECTION)
LEAST_DEPTH = 0.02


def lambert(normal_x, normal_y, normal_z):
    """Brightness of a surface with these normals (of any length), half-wrapped around the form."""
    length = np.sqrt(normal_x**2 + normal_y**2 + normal_z**2)
    towards = (normal_x * LIGHT_DIRECTION[0] + normal_y * LIGHT_DIRECTION[1]
               + normal_z * LIGHT_DIRECTION[2])
    return np.clip(towards / length * 0.5 + 0.5, 0, 1)


class LightMaker:
    """Makes light of one canvas size; wants `width`, `height` and `_grid()` of `ShapeMaker`."""

    def inflated(self, mask, radius=8, relief=1.0, blur=1.6):
        """A pillow: the mask rises in a quarter circle of this radius from its edge.

        6 to 8 suits limbs, 14 to 16 masses. `relief` below 1 flattens it.
        """
        inside = ndimage.distance_transform_edt(np.pad(mask, 1))[1:-1, 1:-1]
        inside = np.minimum(inside, radius)
        rise = np.sqrt(np.maximum(radius**2 - (radius - inside) ** 2, 0))
        weight = ndimage.gaussian_filter(mask.astype(float), blur) + 1e-6
        rise = ndimage.gaussian_filter(rise * mask, blur) / weight
        slope_y, slope_x = np.gradient(rise)
        return lambert(-slope_x * relief, -slope_y * relief, np.ones_like(slope_x))

    def sphere(self, centre_x, centre_y, radius_x, radius_y=None):
        """A ball or egg: heads, beads, bulbs."""
        x, y = self._grid()
        across = (x - centre_x) / radius_x
        down = (y - centre_y) / (radius_y or radius_x)
        depth = np.sqrt(np.maximum(1 - across**2 - down**2, LEAST_DEPTH))
        return lambert(across, down, depth)

    def cylinder(self, left, right):
        """An upright drum between two edges: cloth, posts, legs. Nothing bands from top to bottom."""
        x, _ = self._grid()
        across = np.clip((x - (left + right) / 2) / ((right - left) / 2), -1, 1)
        depth = np.sqrt(np.maximum(1 - across**2, LEAST_DEPTH))
        return lambert(across * 0.95, np.full_like(across, -0.15), depth)

    def radial(self, centre_x, centre_y, radius):
        """1 at the centre, 0 at the radius: something that glows."""
        x, y = self._grid()
        return 1 - np.hypot(x - centre_x, y - centre_y) / radius

    def slope(self, along_x, along_y, at_origin):
        """A flat plane of light: `at_origin` plus so much for each pixel right and down."""
        x, y = self._grid()
        return at_origin + along_x * x + along_y * y

    def even(self, brightness):
        """The same brightness everywhere."""
        return np.full((self.height, self.width), float(brightness))
