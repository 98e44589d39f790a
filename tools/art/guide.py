"""The picture that explains a pack's points: the canvas, the face and the ground, on Munshi."""
from PIL import Image, ImageDraw

from cast import CARD, INK, PAPER, write
from kit.lettering import CAPITAL_HEIGHT, lettered

SCALE = 3
EDGE, NOTES = 12, 58  # around the canvas, and for the words at its right
SQUARE, PALE = 8, (0xDA, 0xE1, 0xDB)
MARK = (0xC4, 0x44, 0x78)


def files(character, drawn):
    """File name -> picture, of a character that is a pack."""
    return {"points.png": points_picture(character, drawn[character.reference])}


def points_picture(character, figure):
    width, height = character.grid
    picture = Image.new("RGB", (width + EDGE + NOTES, height + 2 * EDGE), PAPER)
    put_canvas(picture, width, height)
    picture.paste(figure, (EDGE, EDGE), figure)
    pen = ImageDraw.Draw(picture)
    (face_x, face_y), (ground_x, ground_y) = character.manifest.face, character.ground
    note(picture, pen, EDGE + width, EDGE + CAPITAL_HEIGHT // 2, "grid", INK)
    note(picture, pen, EDGE + face_x, EDGE + face_y, "face", MARK)
    note(picture, pen, EDGE + ground_x, EDGE + ground_y, "ground", MARK)
    for x in range(EDGE, EDGE + width, 4):
        pen.line((x, EDGE + ground_y, x + 1, EDGE + ground_y), fill=MARK)
    for x, y in ((face_x, face_y), (ground_x, ground_y)):
        put_cross(pen, EDGE + x, EDGE + y)
    return picture.resize((picture.width * SCALE, picture.height * SCALE), Image.NEAREST)


def put_canvas(picture, width, height):
    """The canvas in squares, as a pixel editor shows what is empty."""
    pen = ImageDraw.Draw(picture)
    pen.rectangle((EDGE - 1, EDGE - 1, EDGE + width, EDGE + height), fill=CARD, outline=INK)
    for y in range(0, height, SQUARE):
        for x in range(SQUARE * (y // SQUARE % 2), width, 2 * SQUARE):
            right, bottom = min(x + SQUARE, width), min(y + SQUARE, height)
            pen.rectangle((EDGE + x, EDGE + y, EDGE + right - 1, EDGE + bottom - 1), fill=PALE)


def put_cross(pen, x, y):
    pen.rectangle((x - 3, y - 1, x + 3, y + 1), fill=CARD)
    pen.rectangle((x - 1, y - 3, x + 1, y + 3), fill=CARD)
    pen.line((x - 2, y, x + 2, y), fill=MARK)
    pen.line((x, y - 2, x, y + 2), fill=MARK)


def note(picture, pen, x, y, text, colour):
    """A word at the right, with a line from the point that it names."""
    words = lettered(text).shape[1]
    start = picture.width - NOTES + 12
    pen.line((x, y, start - 3, y), fill=colour)
    write(picture, start + words / 2, y - CAPITAL_HEIGHT // 2, text, colour)
