"""Dhiru's face, hands and lantern, pixel by pixel.

Maps of the face show its left half (as seen) and are stamped again mirrored; the eyes keep their glint on
the left and are mapped one by one.
"""
from kit import BASE, HIGHLIGHT, LIGHT, LINE, SHADOW

FACE_KEY = {"k": ("ink", LINE), "w": ("white", HIGHLIGHT), "v": ("white", LIGHT), "d": ("ink", BASE),
            "s": ("skin", BASE), "h": ("ink", SHADOW), "H": ("ink", LIGHT), "g": ("ink", HIGHLIGHT),
            "c": ("maroon", HIGHLIGHT), "m": ("maroon", SHADOW), "r": ("maroon", LIGHT),
            "n": ("skin", SHADOW), "L": ("skin", HIGHLIGHT), "l": ("skin", LIGHT)}

# Eyes: left and right, 9 wide. "tired" is how he looks by night: a heavy lid, a shade below.
EYES = {
    "tired": ("""
..sssss..
.sssssss.
.kkkkkkk.
kkkwwkkk.
k.kwwkkk.
..kkkkkk.
..kkkddk.
...kkkk..
.........
..ssss...
""", """
..sssss..
.sssssss.
.kkkkkkk.
.kkwwkkkk
.kkwwkk.k
.kkkkkk..
.kkkddk..
..kkkk...
.........
...ssss..
"""),
    "closed": ("""
.........
..sssss..
.sssssss.
.sssssss.
.........
.k.....k.
.kk...kk.
..kkkkk..
.........
..sssss..
""",) * 2,
    "alert": ("""
...kkkk..
..kkkkkk.
.kkwwkkk.
.kwwwkkk.
.kwwkkkk.
.kkkkkkk.
.kkkkkdk.
..kkkddk.
...kkkk..
""", """
..kkkk...
.kkkkkk..
kkwwkkkk.
kwwwkkkk.
kwwkkkkk.
kkkkkkkk.
kkkkkkdk.
.kkkkdd..
..kkkk...
"""),
    "startled": ("""
...kkkk..
..kvvvvk.
.kvvvvvvk
.kvwkkvvk
.kvkkkkvk
.kvkkkkvk
.kvvkkvvk
.kvvvvvvk
..kvvvvk.
...kkkk..
""", """
..kkkk...
.kvvvvk..
kvvvvvvk.
kvwkkvvk.
kvkkkkvk.
kvkkkkvk.
kvvkkvvk.
kvvvvvvk.
.kvvvvk..
..kkkk...
"""),
    "down": ("""
.........
..sssss..
.sssssss.
.sssssss.
kkkkkkkk.
k.kwwkkk.
..kkkkkk.
...kkkk..
.........
..ssss...
""", """
.........
..sssss..
.sssssss.
.sssssss.
.kkkkkkkk
.kkwwkk.k
.kkkkkk..
..kkkk...
.........
...ssss..
"""),
}
BROW = """
....hhhhh..
..hHHHhhhhh
.hhHhh..hhh
hhh........
"""
WORRIED_BROW = """
.......hhhh
....hhhhhhh
..hhhhhh...
hhhhh......
hh.........
"""
NOSE = """
.....L
....LL
...LLL
..lLLL
.nlLLl
.nllll
..nnnn
"""
MOUSTACHE = """
.hh..................
hHHh.................
hHHh.................
hHHhh.............hhh
hhHHhh........hhhhHHH
.hHHHhhh....hhHHHHHHh
.hhHHHHHhhhhHHHHHHHhh
..hhHHHHHHHHHHHHhhhhh
...hhhHHHHHHHhhhhhhhh
....hhhhhhhhhhhhhhhhh
......hhhhhhhhhhhh...
"""
LIP = """
.mmmm.
..rr..
"""
ROUND_MOUTH = """
.mmmm.
mmmmmm
mmmmmm
.mmmm.
"""
CHEEK = """
..ccc
.cccc
..ccc
"""
SIDEBURN = """
hhh
hhh
hhg
hgg
hg.
g..
"""
SMALL_SWEAT = """
..w.
.ww.
.wb.
wwbB
wbbB
.bB.
"""
SWEAT = """
..w..
..w..
.wwb.
.wwb.
wwbbB
wwbbB
wbbBB
.bBB.
"""
SWEAT_KEY = {"w": ("white", HIGHLIGHT), "b": ("slate", HIGHLIGHT), "B": ("slate", LIGHT)}

# A fist around something upright, seen from the knuckles.
FIST = """
..HLLLLb...
.HLLLLLLLb.
HLLLLLLLLLb
HbbbbbbbLLb
HLLLLLLLbLb
HbbbbbbbLLb
HLLLLLLLbLb
HbbbbbbbLLb
.LLLLLLLbb.
..bbbbbbb..
"""
# A hand with its back to us, fingers down, from which something hangs.
CARRYING_HAND = """
..HLLLLb..
.HLLLLLLb.
HLLLLLLLLb
HLLLLLLLLb
HLLbLLbLLb
HLLbLLbLLb
HLLbLLbLLb
.LLbLLbLb.
..bbbbbb..
"""
# The forearm's hand turned to look at the watch: knuckles to the left.
WATCH_HAND = """
..HHLLL...
.HLLLLLLLL
HLLLLLLLLL
HbbbLLLLLL
HLLLLLLLLL
HbbbLLLLLb
.LLLLLLLbb
..bbbbbb..
"""
WATCH = """
.kkkkk.
kSwwwsk
kwwkwwk
kwwkkwk
kwwwwwk
kswwwsk
.kkkkk.
"""
WATCH_KEY = {"k": ("brass", SHADOW), "S": ("brass", HIGHLIGHT), "s": ("brass", LIGHT),
             "w": ("white", HIGHLIGHT)}
HAND_KEY = {"b": ("skin", BASE), "L": ("skin", LIGHT), "H": ("skin", HIGHLIGHT), "d": ("skin", SHADOW)}

LANTERN = """
.....bbbbb.....
...bb.....bb...
..b.........b..
..b...Bbb...b..
..b..BBbbd..b..
..b.BBbbbdd.b..
..bBBBbbbbddb..
..bkkkkkkkkkb..
..bkYYYYYYokb..
..bYYHHHYYyob..
..bYHHHHHYyob..
..bYHWWHHYyob..
..bYHWWWHYyob..
..bYHWWHHYyob..
..bYYHHHYyyob..
..bkYYYYYyokb..
..bkkkkkkkkkb..
.BBBBBbbbbbddd.
BBBBbbbbbbbbddd
BBBbbbbbbbbbddd
Bbbbbbbbbbbbddd
.bbbbbbbbbbbdd.
"""
LANTERN_KEY = {"b": ("brass", LIGHT), "B": ("brass", HIGHLIGHT), "d": ("brass", BASE), "k": ("brass", SHADOW),
               "Y": ("amber", LIGHT), "y": ("amber", LIGHT), "o": ("amber", BASE), "H": ("amber", HIGHLIGHT),
               "W": ("white", HIGHLIGHT)}
