"""Contact sheets, for looking: a picture is not done before it was seen enlarged and at size."""
from PIL import Image

from .checks import DARK_DESKTOP, LIGHT_DESKTOP, stray_pixels

GAP = 16
ENLARGED = 4
MIDDLE_DESKTOP = (120, 150, 180)
POINT_HEIGHTS = (140, 320, 600)


def as_seen(character, drawn):
    """The pictures as the desktop shows them: an overlay lies on the reference picture."""
    seen = {}
    for file, picture in drawn.items():
        if file in character.overlays:
            whole = drawn[character.reference].copy()
            whole.alpha_composite(picture)
            picture = whole
        seen[file] = picture
    return seen


def enlarged(picture, factor):
    """The picture with every pixel a square."""
    return picture.resize((picture.width * factor, picture.height * factor), Image.NEAREST)


def at_height(picture, visible_height):
    """The picture as a screen shows it when its visible part is so many points high.

    Enlarged to the next whole multiple and shrunk by area, which keeps lines even.
    """
    box = picture.getbbox()
    scale = visible_height / (box[3] - box[1])
    whole = max(1, -int(-scale // 1))
    size = (max(1, round(picture.width * scale)), max(1, round(picture.height * scale)))
    return enlarged(picture, whole).convert("RGBa").resize(size, Image.BOX).convert("RGBA")


def silhouette(picture, colour=(44, 23, 26)):
    """The picture's outline filled with one colour."""
    filled = Image.new("RGBA", picture.size, (*colour, 255))
    filled.putalpha(picture.getchannel("A"))
    return filled


def row(pictures, background):
    """Pictures side by side, standing on one line."""
    width = sum(picture.width for picture in pictures) + GAP * (len(pictures) + 1)
    height = max(picture.height for picture in pictures) + 2 * GAP
    strip = Image.new("RGB", (width, height), background)
    left = GAP
    for picture in pictures:
        strip.paste(picture, (left, height - GAP - picture.height), picture)
        left += picture.width + GAP
    return strip


def stack(strips):
    """Strips one below the other, aligned left."""
    result = Image.new("RGB", (max(strip.width for strip in strips), sum(strip.height for strip in strips)),
                       LIGHT_DESKTOP)
    top = 0
    for strip in strips:
        result.paste(strip, (0, top))
        top += strip.height
    return result


def contact_sheet(pictures):
    """Everything there is to look at: x4 on light and dark, x1, silhouettes, sizes on the desktop."""
    large = [enlarged(picture, ENLARGED) for picture in pictures]
    plain = pictures + [silhouette(picture) for picture in pictures]
    sizes = [at_height(pictures[0], height) for height in POINT_HEIGHTS]
    strips = [row(large, LIGHT_DESKTOP), row(large, DARK_DESKTOP)]
    strips += [row(plain, background) for background in (LIGHT_DESKTOP, MIDDLE_DESKTOP, DARK_DESKTOP)]
    strips += [row(sizes, LIGHT_DESKTOP), row(sizes, DARK_DESKTOP)]
    return stack(strips)


def marked_strays(picture, factor=ENLARGED):
    """The picture enlarged, with every isolated pixel framed in magenta."""
    import numpy as np
    large = enlarged(picture, factor)
    for x, y in stray_pixels(np.asarray(picture)):
        frame = Image.new("RGBA", (factor + 2, factor + 2), (255, 0, 255, 255))
        inner = large.crop((x * factor, y * factor, (x + 1) * factor, (y + 1) * factor))
        frame.paste(inner, (1, 1))
        large.paste(frame, (x * factor - 1, y * factor - 1))
    return large
