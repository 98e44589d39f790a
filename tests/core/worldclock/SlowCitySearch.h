#pragma once

#include "core/worldclock/WorldClockCatalog.h"
#include "core/worldclock/WorldClockFolding.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace FellowCore {

/// The search told as plainly as it can be: every entry is looked at, and matches are sorted.
inline std::vector<const WorldClockCity*> slowCitySearch(const WorldClockCatalog& catalog,
                                                         const std::string& query,
                                                         const std::vector<std::string>& excluding = {}) {
    const std::string folded = worldClockFolded(query);
    const auto words = worldClockWords(folded);
    std::vector<std::pair<int, const WorldClockCatalog::Entry*>> matches;
    for (const auto& entry : catalog.entries()) {
        const auto isIn = [&](std::string_view word) {
            return entry.key.find(word) != std::string_view::npos;
        };
        if (std::ranges::find(excluding, entry.city.identifier) != excluding.end() ||
            !std::ranges::all_of(words, isIn)) {
            continue;
        }
        const auto begins = [&](std::string_view name) { return name.starts_with(folded); };
        const bool isExact = std::ranges::find(entry.names, folded) != entry.names.end();
        matches.emplace_back(isExact ? 0 : std::ranges::any_of(entry.names, begins) ? 1 : 2, &entry);
    }
    std::ranges::stable_sort(matches, [](const auto& one, const auto& other) {
        return std::pair(one.first, -one.second->population) <
               std::pair(other.first, -other.second->population);
    });
    std::vector<const WorldClockCity*> cities;
    for (const auto& match : matches) {
        cities.push_back(&match.second->city);
    }
    return cities;
}

} // namespace FellowCore
