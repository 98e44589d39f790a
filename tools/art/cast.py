"""The pictures of the whole cast for the documentation: everybody in a row, and every pose with its name."""
from typing import NamedTuple

import numpy as np
from PIL import Image, ImageDraw

from kit.lettering import CAPITAL_HEIGHT, lettered
from kit.sheet import as_seen, enlarged

SCALE = 2  # screen pixels for one art pixel
INK = (0x4A, 0x36, 0x3A)
PALE_INK = (0x66, 0x56, 0x5A)
WALL, FLOOR, HORIZON, SHADOW = (0xD9, 0xE0, 0xDA), (0xC6, 0xCF, 0xC8), (0xB8, 0xC3, 0xBC), (0xA3, 0xB1, 0xAB)
PAPER, CARD = (0xC6, 0xCF, 0xC8), (0xE4, 0xE9, 0xE3)


class Member(NamedTuple):
    """One of the cast, by the name of its file under characters/."""

    file: str
    name: str
    lit: str = None  # what is laid over it, or stands in for it, in the row


# In the order of the roster.
CAST = (
    Member("batti", "Batti", lit="batti-lamp-amber.png"), Member("mira", "Mira"), Member("munshi", "Munshi"),
    Member("snake", "Snake"), Member("pump", "Pump"), Member("devwatch", "Dhiru"), Member("intern", "Intern"),
    Member("intern_nimit", "Intern Nimit"), Member("nori", "Nori"), Member("thumka", "Thumka"),
    Member("clock", "Ghanta Ghar"),
)
# The cards of the sheet of poses, row by row; Thumka's dance has a row of its own.
CARDS = (("batti", "clock"), ("mira",), ("munshi", "snake"), ("pump",), ("devwatch",), ("intern", "nori"),
         ("intern_nimit",), ("thumka",))
MOST_IN_A_LINE = {"thumka": 7}


def files(characters):
    """File name -> picture. `characters` maps each file's name to its (description, pictures)."""
    if set(characters) != {member.file for member in CAST}:
        raise ValueError("cast.py names other characters than there are files for")
    return {"cast.png": cast_row(characters), "poses.png": pose_sheet(characters)}


def cut_out(picture, character, box):
    """The columns and the rows of a box, down to the ground line."""
    return picture.crop((box[0], box[1], box[2], int(character.ground[1])))


def common_box(pictures):
    """The smallest box around what any of the pictures shows."""
    boxes = np.array([picture.getbbox() for picture in pictures])
    return (*boxes[:, :2].min(0).tolist(), *boxes[:, 2:].max(0).tolist())


def write(picture, centre, top, text, colour, factor=1):
    """Letters a line of text around a centre, so many times the size of the letters."""
    ink = np.kron(lettered(text), np.ones((factor, factor), bool))
    stencil = Image.fromarray(ink.astype(np.uint8) * 255)
    picture.paste(colour, (round(centre - ink.shape[1] / 2), top), stencil)


# The row --------------------------------------------------------------------------------------------

GAP, MARGIN, HEADROOM, BELOW = 11, 22, 24, 36


def cast_row(characters):
    """Everybody beside each other on one floor, at one scale, with their names below."""
    figures = []
    for member in CAST:
        character, drawn = characters[member.file]
        picture = as_seen(character, drawn)[member.lit or character.reference]
        figures.append((member.name, cut_out(picture, character, picture.getbbox())))
    width = 2 * MARGIN + sum(figure.width for _, figure in figures) + GAP * (len(figures) - 1)
    ground = HEADROOM + max(figure.height for _, figure in figures)
    scene = empty_room(width, ground)
    left = MARGIN
    for name, figure in figures:
        cast_shadow(scene, figure, left, ground)
        scene.paste(figure, (left, ground - figure.height), figure)
        write(scene, left + figure.width / 2, ground + 14, name, INK)
        left += figure.width + GAP
    return enlarged(scene, SCALE)


def empty_room(width, ground):
    scene = Image.new("RGB", (width, ground + BELOW), WALL)
    pen = ImageDraw.Draw(scene)
    pen.rectangle((0, ground - 12, width, ground + BELOW), fill=FLOOR)
    pen.line((0, ground - 12, width, ground - 12), fill=HORIZON)
    return scene


def cast_shadow(scene, figure, left, ground):
    """A flat pool of shade under the feet; the light comes from the upper left."""
    feet = np.where(np.asarray(figure)[-6:, :, 3].any(0))[0]
    pool = (left + feet[0] - 1, ground - 6, left + feet[-1] + 7, ground + 3)
    ImageDraw.Draw(scene).ellipse(pool, fill=SHADOW)


# The sheet ------------------------------------------------------------------------------------------

WIDTH, EDGE, PADDING, CELL_GAP, TITLE_SIZE = 880, 12, 12, 8, 2
TITLE = PADDING + TITLE_SIZE * CAPITAL_HEIGHT
ABOVE_LABEL, LABEL_LINE = 6, CAPITAL_HEIGHT + 4


class Cell(NamedTuple):
    """A pose, and its name in one line or two."""

    picture: Image.Image
    label: list

    def width(self):
        return max([self.picture.width] + [lettered(line).shape[1] for line in self.label])


class Card(NamedTuple):
    """All poses of a character, in one line or several."""

    name: str
    lines: list

    def width(self):
        return max(sum(cell.width() + CELL_GAP for cell in line) for line in self.lines) + 2 * PADDING

    def height(self):
        return TITLE + sum(line_height(line) for line in self.lines) + PADDING


def label_height(line):
    return ABOVE_LABEL + LABEL_LINE * max(len(cell.label) for cell in line)


def line_height(line):
    return PADDING + max(cell.picture.height for cell in line) + label_height(line)


def pose_sheet(characters):
    """Every picture as the desktop shows it, in a card for each character."""
    rows = [[card_of(name, *characters[name]) for name in names] for names in CARDS]
    heights = [max(card.height() for card in row) for row in rows]
    sheet = Image.new("RGB", (WIDTH, sum(heights) + EDGE * (len(rows) + 1)), PAPER)
    top = EDGE
    for row, height in zip(rows, heights):
        put_row(sheet, row, top, height)
        top += height + EDGE
    return enlarged(sheet, SCALE)


def card_of(file, character, drawn):
    box = common_box(drawn.values())
    cells = [Cell(cut_out(picture, character, box), wrapped(name.rpartition("/")[2].removesuffix(".png"), box))
             for name, picture in as_seen(character, drawn).items()]
    name = next(member.name for member in CAST if member.file == file)
    lines = [cells] if file not in MOST_IN_A_LINE else split(cells, MOST_IN_A_LINE[file])
    return Card(name, lines)


def split(cells, most):
    """The first line takes what is left over when the others are full."""
    first = len(cells) % most or most
    return [cells[:first]] + [cells[at:at + most] for at in range(first, len(cells), most)]


def wrapped(label, box):
    """A label in one line, or broken at the hyphen nearest its middle when the picture is narrower."""
    breaks = [at + 1 for at, character in enumerate(label) if character == "-"]
    if not breaks or lettered(label).shape[1] <= box[2] - box[0]:
        return [label]
    at = min(breaks, key=lambda place: abs(place - len(label) / 2))
    return [label[:at], label[at:]]


def put_row(sheet, cards, top, height):
    """Cards side by side; what is left of the width is shared out among them."""
    spare = WIDTH - EDGE * (len(cards) + 1) - sum(card.width() for card in cards)
    left = EDGE
    for index, card in enumerate(cards):
        width = card.width() + (spare + index) // len(cards)
        ImageDraw.Draw(sheet).rounded_rectangle((left, top, left + width - 1, top + height - 1), 5, fill=CARD)
        put_card(sheet, card, left, top, width, height)
        left += width + EDGE


def put_card(sheet, card, left, top, width, height):
    title = lettered(card.name).shape[1] * TITLE_SIZE
    write(sheet, left + PADDING + title / 2, top + PADDING, card.name, INK, TITLE_SIZE)
    pitch = (width - 2 * PADDING) / max(len(line) for line in card.lines)
    bottom = top + height - card.height() + TITLE
    for line in card.lines:
        bottom += line_height(line)
        first = left + (width - pitch * (len(line) - 1)) / 2
        for index, cell in enumerate(line):
            put_cell(sheet, cell, first + index * pitch, bottom - label_height(line))


def put_cell(sheet, cell, centre, ground):
    sheet.paste(cell.picture, (round(centre - cell.picture.width / 2), ground - cell.picture.height), cell.picture)
    for index, line in enumerate(cell.label):
        write(sheet, centre, ground + ABOVE_LABEL + index * LABEL_LINE, line, PALE_INK)
