"""The one set of colour ramps that every character is drawn from.

A ramp is a material: five colours from its own line colour to its highlight. Shadows lean cooler or
redder, lights lean yellower, so no ramp is one hue made darker. Add a ramp only when no material
here will do, and look at it beside the others first.
"""

LINE, SHADOW, BASE, LIGHT, HIGHLIGHT = range(5)
LEVEL_NAMES = ("line", "shadow", "base", "light", "highlight")

# The contour around a whole figure: dark, warm, never black.
OUTLINE = (0x2C, 0x17, 0x1A)


def _ramp(colours):
    """Turns 'rrggbb rrggbb ...' into a list of (red, green, blue)."""
    return [tuple(bytes.fromhex(colour)) for colour in colours.split()]


RAMPS = {
    #                line   shadow base   light  highlight
    "skin":    _ramp("4a2420 8e4c34 b9724a d8966a f0bf90"),
    "white":   _ramp("56424c 9c8a94 cdbfb4 ede2cc fff9e8"),
    "hair":    _ramp("5a5058 938a90 c2bcb8 e6e1d6 fffdf2"),
    "maroon":  _ramp("38101a 601828 8c2634 b43e3e d66a50"),
    "teal":    _ramp("0f2a34 17464f 1f6a6a 3a938a 78c4aa"),
    "mustard": _ramp("4f2a14 93561a cb8726 e9b23e fbdc7a"),
    "wood":    _ramp("35190f 5c3020 86492b ab6a3e ce9560"),
    "brass":   _ramp("442413 7f4d1c b5802e dfb250 fbe9a0"),
    "steel":   _ramp("26222e 474a58 737a86 a6aeb0 e0e4d8"),
    "leaf":    _ramp("152d1e 25502a 417a34 70a446 aed264"),
    "ink":     _ramp("20141a 33232a 4a363a 66504c 8a7464"),
    "red":     _ramp("4a0c14 a01c22 dc3e2e f8744c ffc49c"),
    "amber":   _ramp("5a2a08 bc660e f29e20 ffca50 fff2b0"),
    "green":   _ramp("0c3324 14724a 2eaa62 74da86 d8f8b8"),
    # Cloth, fur and scales of the wider cast.
    "grey":    _ramp("2c2a36 565668 82848e aab0b0 d6dace"),
    "indigo":  _ramp("1a1a3a 2c3266 44529a 7080c2 aab4de"),
    "rose":    _ramp("4a1434 8a2456 c44478 e67c98 fab8b4"),
    "ginger":  _ramp("4a2012 924018 cf6c26 ec9a48 fbcb82"),
    "stone":   _ramp("4a3034 8c5e52 bd8a6a dcb48c f4dcb4"),
    "jet":     _ramp("140e18 241a2c 3a2c42 584660 86728a"),
    "sage":    _ramp("1a332f 2f5a4d 457a6b 72a68c b2d8b0"),
    "slate":   _ramp("1e2240 35426c 4f639a 8094c0 bccadc"),
    "khaki":   _ramp("3c2c1c 75603c a48c58 c9b37c ead9a8"),
    "brick":   _ramp("43161a 7e3029 ae4e38 cb7150 e9a27c"),
}

RAMP_NAMES = list(RAMPS)


def colour(ramp, level):
    """The (red, green, blue) of one step of a ramp."""
    return RAMPS[ramp][level]


def named_colours():
    """Every colour there is, as (name, (red, green, blue)): the outline, and each step of each ramp."""
    yield "outline", OUTLINE
    for ramp, steps in RAMPS.items():
        yield from ((f"{ramp} {level}", value) for level, value in zip(LEVEL_NAMES, steps))
