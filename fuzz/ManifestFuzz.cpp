// Any bytes as a manifest.json: reading it for loading and reading it for the report must come to the same
// verdict, and what is accepted must keep the promises that the rest of the program builds on.

#include "core/art/CharacterManifest.h"
#include "core/art/ManifestReading.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

using namespace FellowCore;

bool loads(std::string_view text) {
    try {
        CharacterManifest::fromJson(text).validate();
        return true;
    } catch (const ManifestError&) {
        return false;
    }
}

bool keepsPromises(const CharacterManifest& manifest) {
    for (const auto& [pose, path] : manifest.poses) {
        if (path.empty() || path.front() == '/' || path.find('\0') != std::string::npos) {
            return false;
        }
    }
    return manifest.hasUsableGrid() && manifest.poses.contains("idle") &&
           manifest.face.x <= manifest.grid.width && manifest.ground.y >= 0 &&
           manifest.id.find('/') == std::string::npos && !manifest.id.empty();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const ManifestReading reading(text);
    const bool good = reading.problems.empty() && reading.manifest.problems(reading.unreadable).empty();
    for (const ManifestProblem& problem : reading.manifest.problems(reading.unreadable)) {
        if (problem.sentence().find('\n') != std::string::npos) {
            std::abort();
        }
    }
    if (good != loads(text) || (good && !keepsPromises(reading.manifest))) {
        std::abort();
    }
    return 0;
}
