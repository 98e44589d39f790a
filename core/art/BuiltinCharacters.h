#pragma once

#include "core/art/CharacterManifest.h"

#include <string_view>
#include <vector>

namespace FellowCore {

/// The manifests that are compiled in. The paths of their poses are relative to the installation's resources.
struct BuiltinCharacters {
    static const CharacterManifest& batti();
    static const CharacterManifest& mira();
    static const CharacterManifest& intern();
    static const CharacterManifest& customerIntern();
    static const CharacterManifest& nori();

    /// All of them, in the order above.
    static const std::vector<CharacterManifest>& all();
    /// Whether a built-in character has this identifier, so that no pack may.
    static bool contains(std::string_view id);
    /// What to say of a pack that claims such an identifier.
    static ManifestProblem reservedProblem(std::string_view id);
    /// Whether a pack in this folder is the art of a built-in character rather than a character of its own:
    /// the customer intern's, in the folder of that name.
    static bool takesArtFrom(std::string_view folderName, std::string_view id);
};

} // namespace FellowCore
