#pragma once

#include "core/art/CharacterManifest.h"
#include "core/art/PackArt.h"
#include "core/art/PixelImage.h"

#include <filesystem>
#include <string>
#include <vector>

namespace FellowCore {

/// Everything that can be said about a pack's folder in one look, by the very rules that loading follows.
struct PackInspection {
    CharacterManifest manifest; ///< as far as it could be read
    PackArt art;                ///< as far as it could be read
    /// Why the pack is refused, in the order of the rules; empty when it is good.
    std::vector<ManifestProblem> problems;
    /// What is odd but allowed: unknown keys, files that no pose names.
    std::vector<std::string> notes;

    /// Looks through the folder. Blocks; never throws for what it finds on disk.
    PackInspection(const std::filesystem::path& directory, const ImageDecoder& decoder);
};

} // namespace FellowCore
