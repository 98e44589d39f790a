#include "app/roster/Companion.h"

#include "core/art/BuiltinCharacters.h"
#include "core/art/ManifestError.h"

#include <algorithm>
#include <array>
#include <system_error>

namespace DeskSprites {

using FellowCore::BuiltinCharacters;
using FellowCore::CharacterManifest;
using FellowCore::ManifestCharacter;

namespace {

using Pack = std::shared_ptr<const ManifestCharacter>;

Pack loadBuiltin(const CharacterManifest& manifest, const std::filesystem::path& folder,
                 const FellowCore::ImageDecoder& decoder) {
    // An edition may leave out a built-in character's art; then the character is simply not offered.
    std::error_code ignored;
    if (!std::filesystem::exists(folder / manifest.poses.at("idle"), ignored)) {
        return nullptr;
    }
    return std::make_shared<const ManifestCharacter>(manifest, folder, decoder);
}

/// The pack in "characters/intern" stands in for the compiled-in picture when it loads and is the intern's.
Pack loadCustomerIntern(const std::filesystem::path& resources, const FellowCore::ImageDecoder& decoder,
                        const Roster::Log& log) {
    const std::filesystem::path folder = resources / "characters" / "intern";
    std::error_code ignored;
    if (std::filesystem::exists(folder / CharacterManifest::fileName, ignored)) {
        try {
            auto pack = std::make_shared<const ManifestCharacter>(folder, decoder);
            if (pack->manifest().id == BuiltinCharacters::customerIntern().id) {
                return pack;
            }
        } catch (const FellowCore::ManifestError& error) {
            log(std::string("Deskfellow could not load the pack of intern: ") + error.what());
        }
    }
    return loadBuiltin(BuiltinCharacters::customerIntern(), resources / "builtin", decoder);
}

} // namespace

Roster::Roster(const std::filesystem::path& resources, const FellowCore::CharacterBuildPolicy& policy,
               const FellowCore::ImageDecoder& decoder, const Log& log) {
    const std::array builtins{&BuiltinCharacters::batti(), &BuiltinCharacters::nori(),
                              &BuiltinCharacters::mira(), &BuiltinCharacters::intern(),
                              &BuiltinCharacters::customerIntern()};
    for (const CharacterManifest* manifest : builtins) {
        if (!policy.includes(manifest->id)) {
            continue;
        }
        try {
            const bool isCustomerIntern = manifest->id == BuiltinCharacters::customerIntern().id;
            Pack pack = isCustomerIntern ? loadCustomerIntern(resources, decoder, log)
                                         : loadBuiltin(*manifest, resources / "builtin", decoder);
            companions_.push_back({pack && isCustomerIntern ? pack->manifest() : *manifest, std::move(pack)});
        } catch (const FellowCore::ManifestError& error) {
            log("Deskfellow could not load the art of " + manifest->id + ": " + error.what());
            companions_.push_back({*manifest, nullptr});
        }
    }
    for (Pack& pack : ManifestCharacter::discover(resources, policy, decoder, log)) {
        companions_.push_back({pack->manifest(), pack});
    }
    std::ranges::stable_sort(companions_, [](const Companion& first, const Companion& second) {
        return first.manifest.precedes(second.manifest);
    });
}

const Companion* Roster::find(std::string_view rawValue) const {
    const auto found = std::ranges::find(companions_, rawValue, &Companion::rawValue);
    return found == companions_.end() ? nullptr : &*found;
}

} // namespace DeskSprites
