#include "core/art/BuiltinCharacters.h"
#include "core/art/ManifestCharacter.h"
#include "core/art/PackFolder.h"
#include "core/base/Text.h"
#include "core/base/WholeFile.h"

#include <algorithm>

namespace FellowCore {

namespace {

using Path = std::filesystem::path;
using Pack = std::shared_ptr<const ManifestCharacter>;
using Kind = ManifestError::Kind;

std::vector<Path> sortedEntries(const Path& folder) {
    std::vector<Path> entries;
    std::error_code failure;
    for (auto entry = std::filesystem::directory_iterator(folder, failure);
         !failure && entry != std::filesystem::directory_iterator(); entry.increment(failure)) {
        // File managers and version control leave hidden entries; none of them is meant as a pack.
        if (!entry->path().filename().string().starts_with('.')) {
            entries.push_back(entry->path());
        }
    }
    std::ranges::sort(entries);
    return entries;
}

bool holdsManifest(const PackFolder& folder) {
    std::error_code failure;
    return std::filesystem::exists(folder.directory() / CharacterManifest::fileName, failure);
}

/// One entry of the folder: a pack, nothing when it is none of ours to show, or an error when it is refused.
Pack loadEntry(const Path& entry, const Path& charactersFolder, const CharacterBuildPolicy& policy,
               const ImageDecoder& decoder) {
    const std::string name = entry.filename().string();
    const PackFolder folder(entry);
    if (!liesBelow(folder.directory(), charactersFolder)) {
        throw ManifestError({Kind::invalidAsset, name, "the folder leads out of the folder of characters."});
    }
    if (BuiltinCharacters::contains(name) && !holdsManifest(folder)) {
        return {}; // the art of that character, whose manifest is compiled in
    }
    CharacterManifest manifest = CharacterManifest::fromJson(
        folder.read(CharacterManifest::fileName, CharacterManifest::fileSizeLimit, Kind::invalidManifest));
    if (!policy.includes(manifest.id) || BuiltinCharacters::takesArtFrom(name, manifest.id)) {
        return {};
    }
    if (BuiltinCharacters::contains(manifest.id)) {
        throw ManifestError(BuiltinCharacters::reservedProblem(manifest.id));
    }
    return std::make_shared<const ManifestCharacter>(std::move(manifest), folder.directory(), decoder);
}

} // namespace

std::vector<Pack> ManifestCharacter::discover(const Path& root, const CharacterBuildPolicy& policy,
                                              const ImageDecoder& decoder,
                                              const std::function<void(const std::string& line)>& onSkip) {
    std::vector<Pack> packs;
    std::error_code failure;
    const Path folder = std::filesystem::canonical(root / "characters", failure);
    if (failure) {
        return packs;
    }
    std::set<std::string> taken;
    for (const Path& entry : sortedEntries(folder)) {
        try {
            Pack pack = loadEntry(entry, folder, policy, decoder);
            if (pack && taken.insert(pack->manifest().id).second) {
                packs.push_back(std::move(pack));
            }
        } catch (const std::exception& error) {
            // Whatever is wrong with one pack, the others must still come.
            if (onSkip) {
                onSkip(singleLine("Deskfellow skipped character pack " + entry.filename().string() + ": " +
                                  error.what()));
            }
        }
    }
    std::ranges::stable_sort(packs, [](const Pack& one, const Pack& other) {
        return one->manifest().precedes(other->manifest());
    });
    return packs;
}

} // namespace FellowCore
