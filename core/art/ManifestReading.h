#pragma once

#include "core/art/CharacterManifest.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// A manifest's text as far as it can be understood, for telling everything that is wrong with it at once.
struct ManifestReading {
    CharacterManifest manifest;            ///< fields that could not be read keep their defaults
    std::set<std::string> unreadable;      ///< top-level fields that could not be read
    std::vector<ManifestProblem> problems; ///< why not; empty when the manifest was understood
    std::vector<std::string> unknownKeys;  ///< top-level keys that mean nothing here

    explicit ManifestReading(std::string_view text);
};

} // namespace FellowCore
