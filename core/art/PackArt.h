#pragma once

#include "core/art/CharacterManifest.h"
#include "core/art/PixelImage.h"
#include "core/base/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace FellowCore {

/// The images of a pack, read and measured.
struct PackArt {
    static constexpr std::size_t fileSizeLimit = 16U << 20U; ///< bytes of one image file

    std::map<std::string, std::shared_ptr<const PixelImage>> images;               ///< by pose
    std::map<std::string, std::shared_ptr<const std::vector<std::uint8_t>>> alpha; ///< by pose, from the top
    Rect visibleBounds; ///< art pixels, y upwards from the bottom of the canvas

    /// Reads the images of all poses; `directory` is standardised and the grid is valid. Each image is read
    /// once, however many poses use it. What is wrong is put into `problems` in the order in which it was
    /// met, and the rest is read all the same; poses whose path breaks the rule for paths are left out.
    /// Blocks.
    static PackArt read(const CharacterManifest& manifest, const std::filesystem::path& directory,
                        const ImageDecoder& decoder, std::vector<ManifestProblem>& problems);
};

} // namespace FellowCore
