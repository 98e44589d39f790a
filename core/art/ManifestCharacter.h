#pragma once

#include "core/art/AlphaMask.h"
#include "core/art/ArtPixelGrid.h"
#include "core/art/CharacterBuildPolicy.h"
#include "core/art/CharacterManifest.h"
#include "core/art/ManifestCharacterLayout.h"
#include "core/art/PackArt.h"
#include "core/art/PixelImage.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// A manifest whose images were read and measured. Immutable, so it may be shared.
class ManifestCharacter {
public:
    /// Reads "manifest.json" in the folder and loads the pack. Blocks. Throws `ManifestError`.
    ManifestCharacter(const std::filesystem::path& directory, const ImageDecoder& decoder);
    /// Loads the images of a manifest that is already decoded; its pose paths are relative to `directory`.
    /// Blocks. Throws `ManifestError`.
    ManifestCharacter(CharacterManifest manifest, const std::filesystem::path& directory,
                      const ImageDecoder& decoder);

    /// The packs in the folder "characters" under `root`, in the order of the roster. A pack that cannot be
    /// loaded is left out and `onSkip` gets a line for the log; one that the policy excludes is left out
    /// quietly. Of two packs with one identifier the first by path is taken. Blocks; never throws for what it
    /// finds on disk.
    static std::vector<std::shared_ptr<const ManifestCharacter>>
    discover(const std::filesystem::path& root, const CharacterBuildPolicy& policy,
             const ImageDecoder& decoder, const std::function<void(const std::string& line)>& onSkip);

    const CharacterManifest& manifest() const { return manifest_; }
    /// Absolute, links resolved.
    const std::filesystem::path& directory() const { return directory_; }
    /// Pose name to picture; each is exactly the grid's size. Poses of one file share their picture.
    const std::map<std::string, std::shared_ptr<const PixelImage>>& images() const { return art_.images; }
    /// Pose name to alpha bytes, row by row from the top.
    const std::map<std::string, std::shared_ptr<const std::vector<std::uint8_t>>>& alpha() const {
        return art_.alpha;
    }
    /// Around the opaque art of all poses, in art pixels, y upwards from the bottom of the canvas.
    const Rect& visibleBounds() const { return art_.visibleBounds; }

    /// The alpha of one pose; empty for an unknown pose.
    AlphaMask mask(std::string_view pose) const;
    /// Whether a pose is opaque at a point from 0 (inclusive) to 1 (exclusive), y upwards; never for an
    /// unknown pose.
    bool opaque(std::string_view pose, Point normalized) const;
    /// The opaque pixels of a pose as few disjoint blocks; see `AlphaMask::alphaRuns`.
    std::vector<AlphaRun> alphaRuns(std::string_view pose) const;

    /// The art-pixel height that maps to the desktop height: the manifest's, or else that of the visible art.
    double scaleReferenceHeight() const;
    ManifestCharacterLayout layout(double visibleHeight, double backingScale, Sizing sizing) const;

private:
    CharacterManifest manifest_;
    std::filesystem::path directory_;
    PackArt art_;
};

} // namespace FellowCore
