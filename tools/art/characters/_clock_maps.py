"""Ghanta Ghar's text maps: eyes, shutters, mouths and cheeks."""
from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW

# Open, a shutter is seen from its edge; shut, its leaf fills half the window.
OPEN_SHUTTER = """
T...
Tt..
Ttt.
Tddd
Tttt
Tddd
Tttt
Tddd
Tttt
Tddd
Tttt
Tddd
Tttt
Tddd
Tttt
.ttd
..td
"""
SHUTTER_KEY = {"T": ("teal", LIGHT), "t": ("teal", BASE), "d": ("teal", SHADOW)}

# The glint is upper left in both eyes, so the map is not mirrored.
EYES = {
    "open": """
...kkkkk...
..kkkkkkk..
.kkwwkkkkk.
.kwwwkkkkk.
.kwwwkkkkk.
.kkwkkkkkk.
.kkkkkkkkk.
.kkkkkkkkk.
.kkkkkkkkk.
.kkkkkkkdk.
.kkkkkkddk.
..kkkkddk..
..kkkkkkk..
...kkkkk...
""",
    "happy": """
...........
...........
...........
....kkk....
...kkkkk...
..kkk.kkk..
.kkk...kkk.
.kk.....kk.
...........
""",
    "closed": """
...........
...........
...........
...........
...........
...........
k.........k
kk.......kk
.kkkkkkkkk.
...kkkkk...
""",
}
EYE_KEY = {"k": ("ink", LINE), "w": ("white", HIGHLIGHT), "d": ("wood", BASE)}
SMILE = """
kk...........kk
.kk.........kk.
..kkkkkkkkkkk..
....bbbbbbb....
"""
LAUGH = """
kkkkkkkkkkkkkkk
.kWWWWWWWWWWWk.
.kkmmmmmmmmmkk.
..kkmrrrrrmkk..
....kkkkkkk....
"""
CHEEK = """
.cccccc.
cccccccc
.cccccc.
"""
FACE_KEY = {"k": ("maroon", LINE), "m": ("maroon", BASE), "r": ("maroon", HIGHLIGHT),
            "W": ("white", HIGHLIGHT), "b": ("stone", BASE), "c": ("brick", LIGHT)}
