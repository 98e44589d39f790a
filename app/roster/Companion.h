#pragma once

#include "core/art/CharacterBuildPolicy.h"
#include "core/art/ManifestCharacter.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace DeskSprites {

/// One entry of the roster: who the character is and, when its art is installed, its pictures. Two are equal
/// when their identifiers are.
struct Companion {
    FellowCore::CharacterManifest manifest;
    std::shared_ptr<const FellowCore::ManifestCharacter> pack; ///< absent when there is no art for it

    const std::string& rawValue() const { return manifest.id; }
    friend bool operator==(const Companion& first, const Companion& second) {
        return first.rawValue() == second.rawValue();
    }
};

/// Everyone in this build, in the order of the roster. Made once at start and immutable afterwards.
class Roster {
public:
    using Log = std::function<void(const std::string& line)>;

    /// `resources` is the installation's data folder; built-in art stands in its "builtin" folder and packs
    /// in "characters". What cannot be loaded is told to `log` and left out. Blocks.
    Roster(const std::filesystem::path& resources, const FellowCore::CharacterBuildPolicy& policy,
           const FellowCore::ImageDecoder& decoder, const Log& log);

    const std::vector<Companion>& allCases() const { return companions_; }
    /// Nothing for an unknown identifier.
    const Companion* find(std::string_view rawValue) const;

private:
    std::vector<Companion> companions_;
};

} // namespace DeskSprites
