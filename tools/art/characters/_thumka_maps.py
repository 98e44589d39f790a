"""Thumka's text maps: eyes, mouths, hands, feet and the marigold."""
from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW

SKIN_KEY = {"d": ("skin", SHADOW), "b": ("skin", BASE), "L": ("skin", LIGHT), "H": ("skin", HIGHLIGHT),
            "r": ("maroon", LIGHT), "R": ("maroon", BASE)}

# The eye on the viewer's left; the other mirrors it, but for the glint.
EYES = {
    "open": """
...kkkk.
..kkkkkk
kkkkkkkk
.kkkkkkk
..kkkkkk
..kkkkkk
..kkkddk
...kddk.
""",
    "closed": """
........
........
........
........
k......k
kkk...kk
.kkkkkk.
k.k.kk..
""",
    "happy": """
........
........
...kkk..
.kkkkkk.
kkk..kkk
k......k
........
........
""",
}
GLINT = (3, 1)
EYE_KEY = {"k": ("ink", LINE), "w": ("white", HIGHLIGHT), "d": ("wood", BASE)}
BROW = """
...kkkkk.
.kkkk..kk
kk.......
"""
MOUTHS = {
    "smile": """
k..........k
kk........kk
.kkkkkkkkkk.
...bbbbbb...
""",
    "laugh": """
kkkkkkkkkkkk
kWWWWWWWWWWk
.kmmmmmmmmk.
..kmrrrrmk..
...kkkkkk...
""",
    "sleep": """
............
....kkkk....
....kmmk....
.....kk.....
""",
}
MOUTH_KEY = {"k": ("maroon", LINE), "m": ("maroon", BASE), "r": ("maroon", HIGHLIGHT),
             "W": ("white", HIGHLIGHT), "b": ("skin", BASE)}

MARIGOLD = """
.....ggGG......
...GGGYYGGG....
..GYYGYYGYYG...
.GYYGGGGGGYYGg.
.GGGGYYYYGGGGg.
GYYGYYyyYYGYYGg
GYYGYyyyyYGYYGg
GGGGYyyyyYGGGGg
GYYGYYyyYYGYYGg
.GYYGYYYYGYYGg.
.GGGGGGGGGGGGg.
..GYYGYYGYYGg..
...GGGYYGGGg...
.....gggg......
"""
MARIGOLD_KEY = {"g": ("ginger", SHADOW), "G": ("ginger", BASE), "Y": ("amber", BASE), "y": ("amber", LIGHT)}

# Hands of the arm on the viewer's left, as (the map, the column and row where the wrist joins).
HANDS = {
    # Opened like a lotus, the fingers spread upward.
    "lotus": ("""
.....rr......
.rr..HL..rr..
.HL..HL..HL..
..HL.HLd.HL.r
r.HLdHLdHLdHr
HLdHLHLLHLHL.
.HLLHLLLLLLb.
.HHLLLLLLLLb.
..HHLLLLLLb..
...HLLLLLb...
....LLLbb....
""", (6, 9)),
    # Bent back at the wrist, the fingers pointing outward.
    "wing": ("""
rrHL.........
..HHLL.HL....
rHLdHHLHL....
.HHLLdLLLL...
rHLddLLLLLL..
.HHLLLLLLLLb.
rHLddLLLLLLb.
.HHLLLLLLLb..
...bbLLLbb...
""", (9, 6)),
    # Thumb and first finger together, as if holding a thread.
    "thread": ("""
...rr.....
.r.HL..rr.
.HLHLd.HL.
.HLHLdHL..
.HHLHLdHL.
.HLLLLHLL.
.HLLLLLLrr
.HHLLLLHLr
..HLLLLLL.
..HLLLLb..
...LLbb...
""", (5, 9)),
    # A fist of knuckles set on the hip.
    "hip": ("""
..LLLLL...
.HLLLLLL..
HLLLLLLLb.
HLLLbLLLL.
.LLbLbLLb.
.LbLbLLb..
..bLbbb...
""", (4, 2)),
    # Hanging, fingers down, pinching the skirt.
    "pinch": ("""
..HLLL...
.HLLLLL..
HLLLLLLb.
HLLLLLLb.
HLbLbLLb.
.LbLbLb..
.rbrbrb..
..r.r....
""", (4, 1)),
    # Resting flat in the lap, fingers towards the middle.
    "lap": ("""
..LLLLLL....
.HLLLLLLLLr.
HLLLLbbbbbr.
HLLLLLLLLLr.
.LLLLbbbbbr.
..bLLLLLLr..
...bbbbb....
""", (3, 3)),
}

# Both palms pressed together before the chest.
NAMASTE = """
.....rr.....
....rHLr....
....HLdL....
....HLdL....
...HHLdLb...
...HLLdLb...
...HLLdLLb..
..HHLLdLLb..
.HHLLLdLLLb.
.HLLLLdLLLb.
HHLLLLdLLLLb
HLLLLLdLLLLb
.LLLLbdLLLb.
"""

# Feet on the viewer's left, toes outward; the ankle's middle is column 9.
FEET = {
    "flat": """
.......HLLLb..
......HLLLLb..
...HHHLLLLLLb.
.HHLLLLLLLLLb.
HLLLLLLLLLLLb.
HbLbLLLLLLLLb.
rrrrrrrrrrrrr.
""",
    "toe": """
.......HLLLb..
.......HLLLb..
......HHLLLb..
.....HHLLLb...
.....HLLLLb...
....HLLLLb....
...HLbLLLb....
...HbLLLb.....
...rrrrr......
""",
    "heel": """
.rH....HLLLb..
.rHL..HLLLLb..
.rHLLHLLLLLb..
..rHLLLLLLLb..
...rHLLLLLLLb.
....rrLLLLLLb.
.......rrrrrr.
""",
}
ANKLE = 9

ANKLET = """
bbbbbbbb
dbbddbbd
"""
ANKLET_KEY = {"H": ("brass", HIGHLIGHT), "b": ("brass", LIGHT), "B": ("brass", BASE), "d": ("brass", SHADOW)}
EARRING = """
..b..
.HbB.
HbbBd
HbBbd
.d.d.
"""
