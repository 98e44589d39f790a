#include "core/art/CharacterManifest.h"

#include "core/art/ManifestReading.h"

#include <algorithm>
#include <utility>

namespace FellowCore {

CharacterManifest CharacterManifest::fromJson(std::string_view text) {
    ManifestReading reading(text);
    if (!reading.problems.empty()) {
        throw ManifestError(reading.problems.front());
    }
    return std::move(reading.manifest);
}

void CharacterManifest::validate() const {
    const std::vector<ManifestProblem> found = problems();
    if (!found.empty()) {
        throw ManifestError(found.front());
    }
}

bool CharacterManifest::precedes(const CharacterManifest& other) const {
    if (order.has_value() != other.order.has_value()) {
        return order.has_value();
    }
    return order == other.order ? id < other.id : order < other.order;
}

bool CharacterManifest::has(Behaviour behaviour) const {
    return std::ranges::find(behaviours, behaviour) != behaviours.end();
}

} // namespace FellowCore
