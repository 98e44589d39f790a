"""What a character's file says about itself, besides its pictures."""
from dataclasses import dataclass, field


@dataclass(frozen=True)
class Manifest:
    """The manifest.json of a pack. `poses` maps a pose's name to its file; points and grid are the
    character's own."""

    name: str
    role: str
    poses: dict
    face: tuple
    accent: tuple
    behaviours: tuple
    order: int = None
    scale_reference_height: float = None


@dataclass(frozen=True)
class Character:
    """One character: its canvas, where it stands, and what its pictures must keep to.

    identifier   folder under data/characters, and a pack's id
    grid         width and height of every picture
    ground       the foot point, y down; the art's lowest row ends exactly there
    reference    the file that the others are compared with
    moves        file -> boxes (left, top, right, bottom) in which alone it differs from the reference
    overlays     files with only some pixels, laid over another picture: no ground, no contour
    stray        how many isolated pixels a picture may have (glints, stitches set by hand)
    margin       empty pixels that must remain at the left, the right and the top
    footing      how many pixels of the lowest row must at least be covered
    airborne     files that do not touch the ground
    manifest     a pack's manifest, or None for a built-in character
    places       what the program draws over the art: name -> a named tuple in art pixels, y down;
                 written beside the pictures as places.json
    """

    identifier: str
    grid: tuple
    ground: tuple
    reference: str = "idle.png"
    moves: dict = field(default_factory=dict)
    overlays: tuple = ()
    stray: int = 12
    margin: int = 1
    footing: int = 8
    airborne: tuple = ()
    manifest: Manifest = None
    places: dict = field(default_factory=dict)

    def manifest_json(self):
        """The pack's manifest as a dictionary, in the order in which the fields are documented."""
        pack = self.manifest
        content = {
            "id": self.identifier,
            "name": pack.name,
            "role": pack.role,
            "poses": dict(pack.poses),
            "face": {"x": pack.face[0], "y": pack.face[1]},
            "ground": {"x": self.ground[0], "y": self.ground[1]},
            "grid": {"width": self.grid[0], "height": self.grid[1]},
            "accent": dict(zip(("red", "green", "blue"), pack.accent)),
            "behaviours": list(pack.behaviours),
        }
        if pack.order is not None:
            content["order"] = pack.order
        if pack.scale_reference_height is not None:
            content["scaleReferenceHeight"] = pack.scale_reference_height
        return content
