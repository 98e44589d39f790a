"""The drawing kit for the cast: masks, light, ramps and text-map stamps at the art's own resolution.

A character is drawn part by part, back to front, on a `Canvas`. See README.md beside this folder.
"""
from .canvas import Canvas
from .character import Character, Manifest
from .palette import BASE, HIGHLIGHT, LIGHT, LINE, OUTLINE, RAMPS, SHADOW
from .shapes import corner, mirrored, moved, turned

__all__ = [
    "Canvas", "Character", "Manifest", "RAMPS", "OUTLINE",
    "LINE", "SHADOW", "BASE", "LIGHT", "HIGHLIGHT",
    "corner", "mirrored", "moved", "turned",
]
