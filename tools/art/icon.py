"""The program's icon: Batti's lamp, lit amber, and a one-colour form of it for the tray.

The large sizes are whole multiples of one picture of 64 pixels, from which the SVG is made as well. The
small ones are drawn for their own size, 16 pixel by pixel.
"""
import numpy as np
from PIL import Image

from kit import BASE, HIGHLIGHT, LIGHT, LINE, Canvas
from kit.palette import OUTLINE, colour
from kit.shapes import shifted

NAME = "deskfellow"
MULTIPLES = {64: 1, 128: 2, 256: 4, 512: 8}
# The tray glyph for a dark bar, and for a light one.
TRAY_COLOURS = {"light": (0xF4, 0xEE, 0xE2), "dark": (0x2C, 0x17, 0x1A)}

SIXTEEN = """
......oYyo......
...oooooooooo...
..oTTTTTttttto..
.oRRRRRRRrrrrro.
oRRRRRRRRRrrrrro
oRRRoooooooorrro
oRRoAAHAAAAAorro
oRoAHAAAAAAAAoro
oooAAkAAAAkAAooo
oToAAkAAAAkAAodo
oToAAAAAAAAAAodo
oTtoAAkAAkAAotdo
oTtoaAAkkAAaotdo
oTTtoaaaaaaotddo
.oTttoooooottdo.
..oooooooooooo..
"""
SIXTEEN_KEY = {
    "o": OUTLINE, "k": colour("ink", LINE), "Y": colour("brass", HIGHLIGHT), "y": colour("brass", LIGHT),
    "T": colour("teal", HIGHLIGHT), "t": colour("teal", LIGHT), "d": colour("teal", BASE),
    "R": colour("maroon", HIGHLIGHT), "r": colour("maroon", LIGHT), "H": colour("amber", HIGHLIGHT),
    "A": colour("amber", LIGHT), "a": colour("amber", BASE),
}

TRAY_SIXTEEN = """
.......##.......
.......##.......
....########....
..############..
.##############.
####........####
###..........###
##............##
##...#....#...##
.#...#....#...#.
.#............#.
.#...#....#...#.
.##...####...##.
..##........##..
...##......##...
....########....
"""
# Size -> the right-hand eye's map, its left edge and its top; the left eye mirrors the place, not the glint.
EYES = {
    22: ("wk\nkk\nkk", 13, 12),
    32: (".kk.\nkwkk\nkwkk\nkkkk\n.kk.", 18, 17),
    48: (".kkk.\nkwwkk\nkwwkk\nkkkkk\nkkkkk\nkkkdk\n.kkk.", 27, 26),
    64: ("..kk..\n.kkkk.\nkkwwkk\nkwwwkk\nkwwkkk\nkkkkkk\nkkkddk\n.kkdd.\n..kk..", 36, 34),
}
# Size -> the mouth's map and its top.
MOUTHS = {
    22: ("k..k\n.kk.", 16),
    32: ("k....k\n.kkkk.", 23),
    48: ("k......k\nkk....kk\n..kkkk..", 34),
    64: ("k........k\nkk......kk\n.kkk..kkk.\n...kkkk...", 45),
}
FACE_KEY = {"k": ("ink", LINE), "w": ("white", HIGHLIGHT), "d": ("ink", BASE)}


def draw_mark(size):
    """The lamp's head on a square canvas of this size, 22 to 64."""
    canvas = Canvas(size, size)
    unit = size / 64

    def ellipse(x, y, radius_x, radius_y):
        return canvas.ellipse(x * unit, y * unit, radius_x * unit, radius_y * unit)

    housing = canvas.rounded_box(6.5 * unit, 9 * unit, 57.5 * unit, size - 1, 14 * unit)
    light = canvas.inflated(housing, 7 * unit) * 0.7 + canvas.cylinder(0, size) * 0.3
    canvas.put(housing, "teal", light, thresholds=(0.4, 0.64, 0.84))
    draw_knob(canvas, size, ellipse)
    draw_lens(canvas, size, ellipse)
    draw_hood(canvas, size, ellipse)
    draw_features(canvas, size)
    return canvas.render()


def draw_knob(canvas, size, ellipse):
    """The brass knob and its foot."""
    unit = size / 64
    foot = canvas.rounded_box(24 * unit, 9 * unit, 40 * unit, 14 * unit, 2 * unit)
    canvas.put(foot, "brass", canvas.cylinder(22 * unit, 42 * unit), cast=None)
    knob = ellipse(32, 6, 4.8, 4.8)
    canvas.put(knob, "brass", canvas.sphere(32 * unit, 6 * unit, 5 * unit), cast=None)


def draw_lens(canvas, size, ellipse):
    """Brass rim and lit lens, with a thin arc of glint where there is room for one."""
    unit = size / 64
    if size >= 32:
        rim = ellipse(32, 40.5, 20.4, 20.4)
        canvas.put(rim, "brass", canvas.sphere(32 * unit, 40.5 * unit, 22 * unit), cast=None)
    lens = ellipse(32, 40.5, 17.8, 17.8)
    glow = canvas.radial(28.5 * unit, 36.5 * unit, 25 * unit)
    canvas.put(lens, "amber", glow, thresholds=(0.02, 0.18, 9), cast=None)
    ring = ellipse(32, 40.5, 15.8, 15.8) & ~ellipse(33.6, 42.4, 16.1, 16.1)
    canvas.paint(ring & (canvas.radial(20 * unit, 30 * unit, 10 * unit) > 0), "amber", HIGHLIGHT)


def draw_hood(canvas, size, ellipse):
    """The visor, a crescent with a brass lip."""
    unit = size / 64
    inner = ellipse(32, 44.5, 23.6, 22.5)
    hood = ellipse(32, 34.5, 30.4, 20) & ~inner & canvas.where(lambda x, y: y < 43 * unit)
    ball = canvas.sphere(32 * unit, 38 * unit, 35 * unit, 31 * unit)
    light = canvas.inflated(hood, 5 * unit) * 0.5 + ball * 0.5
    canvas.put(hood, "maroon", light, thresholds=(0.3, 0.5, 0.76), cast=None if size < 32 else (1, 2))
    if size >= 48:
        canvas.paint(hood & ~shifted(~inner, 0, -1), "brass", LIGHT)


def draw_features(canvas, size):
    """Eyes, mouth and, where there is room, cheeks."""
    rows, left, top = EYES[size]
    width = len(rows.split("\n")[0])
    canvas.stamp(left, top, rows, FACE_KEY)
    canvas.stamp(size - left - width, top, rows, FACE_KEY)
    rows, top = MOUTHS[size]
    canvas.stamp((size - len(rows.split("\n")[0])) // 2, top, rows, FACE_KEY)
    if size >= 48:
        width, left = size // 14, round(size * 0.285)
        for x in (left, size - left - width):
            canvas.stamp(x, top - 1, "\n".join(["c" * width] * 2), {"c": ("red", LIGHT)})


def draw_tray(size):
    """The tray glyph's mask, for sizes with more room than 16."""
    canvas = Canvas(size, size)
    unit = size / 32
    opening = canvas.ellipse(16 * unit, 20.5 * unit, 9 * unit)
    lens = canvas.ellipse(16 * unit, 20.5 * unit, 11.5 * unit)
    hood = canvas.ellipse(16 * unit, 19 * unit, 15.7 * unit, 14.5 * unit)
    hood &= canvas.where(lambda x, y: y < 20 * unit)
    knob = canvas.ellipse(16 * unit, 3 * unit, 2.6 * unit)
    eye = canvas.rounded_box(round(11 * unit), round(17 * unit), round(14 * unit), round(22 * unit), 1)
    smile = [(12.5 * unit, 24 * unit), (16 * unit, 25.6 * unit), (19.5 * unit, 24 * unit)]
    mouth = canvas.stroke(smile, 1.9 * unit)
    return ((lens | hood) & ~opening) | knob | eye | eye[:, ::-1] | mouth


def tinted(mask, ink):
    """A mask as a picture of one colour."""
    pixels = np.zeros((*mask.shape, 4), np.uint8)
    pixels[mask] = (*ink, 255)
    return Image.fromarray(pixels)


def picture_of(rows, key):
    """A picture from a text map of colours."""
    lines = rows.strip("\n").split("\n")
    picture = Image.new("RGBA", (len(lines[0]), len(lines)))
    for y, line in enumerate(lines):
        for x, character in enumerate(line):
            if character in key:
                picture.putpixel((x, y), (*key[character], 255))
    return picture


def padded(picture, size):
    """The picture in the middle of a larger square."""
    result = Image.new("RGBA", (size, size))
    result.paste(picture, ((size - picture.width) // 2, (size - picture.height) // 2))
    return result


def rectangles(colours):
    """Covers an array of colour numbers (0 is empty) with few rectangles: (x, y, width, height, number)."""
    left_over = colours.copy()
    for y, x in np.argwhere(colours):
        number = left_over[y, x]
        if not number:
            continue
        width = height = 1
        while x + width < left_over.shape[1] and left_over[y, x + width] == number:
            width += 1
        while y + height < left_over.shape[0] and (left_over[y + height, x:x + width] == number).all():
            height += 1
        left_over[y:y + height, x:x + width] = 0
        yield int(x), int(y), width, height, int(number)


def vector_of(picture):
    """The picture as an SVG of crisp rectangles, one path for each colour."""
    pixels = np.asarray(picture).astype(int)
    numbers = np.where(pixels[..., 3] > 0, (pixels[..., :3] @ [65536, 256, 1]) + 1, 0)
    paths = {}
    for x, y, width, height, number in rectangles(numbers):
        paths.setdefault(number - 1, []).append(f"M{x} {y}h{width}v{height}h-{width}z")
    lines = [f'  <path fill="#{value:06x}" d="{"".join(steps)}"/>' for value, steps in sorted(paths.items())]
    width, height = picture.size
    opening = (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" '
               f'height="{height}" shape-rendering="crispEdges">')
    return "\n".join([opening, *lines, "</svg>"]) + "\n"


# The tray glyph as clean shapes on a grid of 16, for panels of any size and colour.
TRAY_VECTOR = """<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16" width="16" height="16">
  <style id="current-color-scheme" type="text/css">.ColorScheme-Text { color: #2c171a; }</style>
  <g class="ColorScheme-Text" fill="currentColor">
    <circle cx="8" cy="1.25" r="1.25"/>
    <path d="M.2 9.8C.2 5.3 3.6 2.4 8 2.4s7.8 2.9 7.8 7.4H13a5 5 0 0 0-10 0z"/>
    <circle cx="8" cy="10.25" r="5" fill="none" stroke="currentColor" stroke-width="1.5"/>
    <ellipse cx="6.3" cy="9.6" rx="0.75" ry="1.15"/>
    <ellipse cx="9.7" cy="9.6" rx="0.75" ry="1.15"/>
    <path fill="none" stroke="currentColor" stroke-linecap="round" d="M6.5 12.3q1.5 1.1 3 0"/>
  </g>
</svg>
"""


def files():
    """File name -> picture or text."""
    marks = {size: draw_mark(size) for size in (22, 32, 48, 64)}
    marks[16] = picture_of(SIXTEEN, SIXTEEN_KEY)
    marks[24] = padded(marks[22], 24)
    for size, factor in MULTIPLES.items():
        marks[size] = marks[64].resize((64 * factor, 64 * factor), Image.NEAREST)
    result = {f"{NAME}-{size}.png": picture for size, picture in marks.items()}
    result[f"{NAME}.svg"] = vector_of(marks[64])
    for tone, ink in TRAY_COLOURS.items():
        result[f"{NAME}-tray-{tone}-16.png"] = picture_of(TRAY_SIXTEEN, {"#": ink})
        for size in (22, 32):
            result[f"{NAME}-tray-{tone}-{size}.png"] = tinted(draw_tray(size), ink)
    result[f"{NAME}-tray.svg"] = TRAY_VECTOR
    return result
