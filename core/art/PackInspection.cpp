#include "core/art/PackInspection.h"

#include "core/art/BuiltinCharacters.h"
#include "core/art/ManifestReading.h"
#include "core/art/PackFolder.h"

#include <algorithm>
#include <set>

namespace FellowCore {

namespace {

using Path = std::filesystem::path;

/// Where the files that the manifest names stand, and where their links stand.
std::set<Path> namedFiles(const CharacterManifest& manifest, const PackFolder& folder) {
    std::set<Path> named{folder.directory() / CharacterManifest::fileName};
    for (const auto& [pose, path] : manifest.poses) {
        if (posePathFault(path)) {
            continue;
        }
        named.insert((folder.directory() / path).lexically_normal());
        try {
            named.insert(folder.locate(path));
        } catch (const ManifestError&) {
            // A path that leads nowhere has been told as a problem and names no file.
        }
    }
    return named;
}

std::vector<std::string> unnamedFileNotes(const CharacterManifest& manifest, const PackFolder& folder) {
    constexpr std::size_t listed = 20;
    const std::set<Path> named = namedFiles(manifest, folder);
    std::vector<std::string> unnamed;
    std::error_code failure;
    using Walk = std::filesystem::recursive_directory_iterator;
    constexpr auto options = std::filesystem::directory_options::skip_permission_denied;
    for (Walk entry(folder.directory(), options, failure); !failure && entry != Walk();
         entry.increment(failure)) {
        std::error_code unknownType;
        if (!entry->is_directory(unknownType) && !named.contains(entry->path())) {
            unnamed.push_back(entry->path().lexically_relative(folder.directory()).string());
        }
    }
    std::ranges::sort(unnamed);
    std::vector<std::string> notes;
    for (std::size_t index = 0; index < std::min(listed, unnamed.size()); ++index) {
        notes.push_back(unnamed[index] + ": no pose names this file.");
    }
    if (unnamed.size() > listed) {
        notes.push_back("and " + std::to_string(unnamed.size() - listed) + " more files that no pose names.");
    }
    return notes;
}

void append(std::vector<ManifestProblem>& problems, const std::vector<ManifestProblem>& more) {
    problems.insert(problems.end(), more.begin(), more.end());
}

void inspectFolder(PackInspection& found, const PackFolder& folder, const ImageDecoder& decoder) {
    const ManifestReading reading(folder.read(CharacterManifest::fileName, CharacterManifest::fileSizeLimit,
                                              ManifestError::Kind::invalidManifest));
    found.manifest = reading.manifest;
    append(found.problems, reading.problems);
    const std::string& id = found.manifest.id;
    if (BuiltinCharacters::contains(id) &&
        !BuiltinCharacters::takesArtFrom(folder.directory().filename().string(), id)) {
        found.problems.push_back(BuiltinCharacters::reservedProblem(id));
    }
    append(found.problems, found.manifest.problems(reading.unreadable));
    for (const std::string& key : reading.unknownKeys) {
        found.notes.push_back("manifest.json: \"" + key + "\" means nothing here.");
    }
    if (reading.unreadable.contains("grid") || !found.manifest.hasUsableGrid()) {
        found.notes.emplace_back("The images were not looked at, because the grid is not known.");
        return;
    }
    found.art = PackArt::read(found.manifest, folder.directory(), decoder, found.problems);
    for (std::string& note : unnamedFileNotes(found.manifest, folder)) {
        found.notes.push_back(std::move(note));
    }
}

} // namespace

PackInspection::PackInspection(const Path& directory, const ImageDecoder& decoder) {
    try {
        inspectFolder(*this, PackFolder(directory), decoder);
    } catch (const ManifestError& error) {
        problems.push_back({error.kind(), error.file(), error.rule()});
    }
}

} // namespace FellowCore
