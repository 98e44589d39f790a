#include "core/worldclock/WorldClockState.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <unordered_set>
#include <utility>

namespace FellowCore {

namespace {

using Identifiers = std::vector<std::string>;

/// The catalogue's identifiers for those given, the first `most`, without unknown ones, repeats and home.
Identifiers resolved(const Identifiers& identifiers, const WorldClockCatalog& catalog,
                     const std::string& home, std::size_t most) {
    Identifiers kept;
    std::unordered_set<std::string> seen{home};
    std::unordered_set<std::string_view> asked;
    for (const std::string& identifier : identifiers) {
        if (kept.size() == most) {
            break;
        }
        if (!asked.insert(identifier).second) {
            continue;
        }
        if (auto canonical = catalog.canonicalIdentifier(identifier);
            canonical && seen.insert(*canonical).second) {
            kept.push_back(*std::move(canonical));
        }
    }
    return kept;
}

bool contains(const Identifiers& identifiers, std::string_view identifier) {
    return std::ranges::find(identifiers, identifier) != identifiers.end();
}

} // namespace

void WorldClockState::normalize(const WorldClockCatalog& catalog, std::string_view systemTimeZone) {
    if (homeTimeZoneIdentifier) {
        homeTimeZoneIdentifier = catalog.canonicalIdentifier(*homeTimeZoneIdentifier);
    }
    const std::string home = homeCity(catalog, systemTimeZone).identifier;
    cityIdentifiers = resolved(cityIdentifiers, catalog, home, mostCities);
    Identifiers pins = resolved(pinnedTimeZoneIdentifiers, catalog, home, mostCities);
    std::erase_if(pins, [&](const std::string& pin) { return !contains(cityIdentifiers, pin); });
    pins.resize(std::min(pins.size(), mostPins));
    pinnedTimeZoneIdentifiers = std::move(pins);
}

std::string WorldClockState::homeTimeZone(const WorldClockCatalog& catalog,
                                          std::string_view systemTimeZone) const {
    return std::string(WorldClockCity::zoneOf(homeCity(catalog, systemTimeZone).identifier));
}

WorldClockCity WorldClockState::homeCity(const WorldClockCatalog& catalog,
                                         std::string_view systemTimeZone) const {
    if (homeTimeZoneIdentifier) {
        if (auto city = catalog.city(*homeTimeZoneIdentifier)) {
            return *std::move(city);
        }
    }
    if (auto city = catalog.city(systemTimeZone)) {
        return *std::move(city);
    }
    // A fixed offset is no catalogue's zone, but its clock is as right as any.
    return Calendar::inTimeZone(systemTimeZone)
               ? WorldClockCity{std::string(systemTimeZone), std::string(systemTimeZone), ""}
               : WorldClockCity{"Etc/UTC", "UTC", ""};
}

bool WorldClockState::addCity(std::string_view identifier, const WorldClockCatalog& catalog,
                              std::string_view systemTimeZone) {
    auto canonical = catalog.canonicalIdentifier(identifier);
    if (!canonical || cityIdentifiers.size() >= mostCities || contains(cityIdentifiers, *canonical) ||
        *canonical == homeCity(catalog, systemTimeZone).identifier) {
        return false;
    }
    cityIdentifiers.push_back(*std::move(canonical));
    return true;
}

bool WorldClockState::removeCity(std::string_view identifier) {
    std::erase(pinnedTimeZoneIdentifiers, identifier);
    return std::erase(cityIdentifiers, identifier) > 0;
}

bool WorldClockState::moveCity(std::string_view identifier, std::size_t place) {
    const auto from = std::ranges::find(cityIdentifiers, identifier);
    if (from == cityIdentifiers.end()) {
        return false;
    }
    const auto last = cityIdentifiers.size() - 1;
    const auto to = cityIdentifiers.begin() + static_cast<std::ptrdiff_t>(std::min(place, last));
    if (from < to) {
        std::rotate(from, from + 1, to + 1);
    } else {
        std::rotate(to, from, from + 1);
    }
    return from != to;
}

bool WorldClockState::setHome(std::string_view identifier, const WorldClockCatalog& catalog,
                              std::string_view systemTimeZone) {
    const auto canonical = catalog.canonicalIdentifier(identifier);
    const std::string former = homeCity(catalog, systemTimeZone).identifier;
    if (!canonical || homeTimeZoneIdentifier == canonical) {
        return false;
    }
    homeTimeZoneIdentifier = canonical;
    std::ranges::replace(cityIdentifiers, *canonical, former);
    normalize(catalog, systemTimeZone);
    return true;
}

void WorldClockState::resetHome(const WorldClockCatalog& catalog, std::string_view systemTimeZone) {
    homeTimeZoneIdentifier.reset();
    normalize(catalog, systemTimeZone);
}

WorldClockPinResult WorldClockState::setPinned(std::string_view identifier, bool pinned,
                                               const WorldClockCatalog& catalog,
                                               std::string_view systemTimeZone) {
    const std::string canonical = catalog.canonicalIdentifier(identifier).value_or(std::string(identifier));
    if (!pinned) {
        return std::erase(pinnedTimeZoneIdentifiers, canonical) > 0 ? WorldClockPinResult::unpinned
                                                                    : WorldClockPinResult::unchanged;
    }
    if (canonical == homeCity(catalog, systemTimeZone).identifier) {
        return WorldClockPinResult::homeCity;
    }
    if (!contains(cityIdentifiers, canonical)) {
        return WorldClockPinResult::cityNotAdded;
    }
    if (isPinned(canonical)) {
        return WorldClockPinResult::unchanged;
    }
    if (pinnedTimeZoneIdentifiers.size() >= mostPins) {
        return WorldClockPinResult::limitReached;
    }
    pinnedTimeZoneIdentifiers.push_back(canonical);
    return WorldClockPinResult::pinned;
}

WorldClockPinResult WorldClockState::replaceFace(std::string_view with, const WorldClockCatalog& catalog,
                                                 std::string_view systemTimeZone) {
    WorldClockPinResult result = setPinned(with, true, catalog, systemTimeZone);
    if (result == WorldClockPinResult::limitReached) {
        pinnedTimeZoneIdentifiers.erase(pinnedTimeZoneIdentifiers.begin());
        result = setPinned(with, true, catalog, systemTimeZone);
    }
    return result;
}

void WorldClockState::applyDefaultFacesIfNeeded(const WorldClockCatalog& catalog,
                                                std::string_view systemTimeZone, Instant at) {
    if (std::exchange(defaultFacesApplied, true) || !pinnedTimeZoneIdentifiers.empty()) {
        return;
    }
    const auto faces = WorldClockDefaultFaces::choose(catalog, homeCity(catalog, systemTimeZone), at);
    for (const auto& face : {faces.west, faces.east}) {
        if (face) {
            addCity(face->identifier, catalog, systemTimeZone);
            setPinned(face->identifier, true, catalog, systemTimeZone);
        }
    }
}

std::vector<WorldClockCity> WorldClockState::desktopCities(const WorldClockCatalog& catalog,
                                                           std::string_view systemTimeZone) const {
    std::vector<WorldClockCity> shown{homeCity(catalog, systemTimeZone)};
    for (const std::string& pin : pinnedTimeZoneIdentifiers) {
        if (auto city = catalog.city(pin); city && city->identifier != shown.front().identifier) {
            shown.push_back(*std::move(city));
        }
    }
    return shown;
}

std::vector<WorldClockCity> WorldClockState::orderedCities(const WorldClockCatalog& catalog,
                                                           std::string_view systemTimeZone) const {
    std::vector<WorldClockCity> shown{homeCity(catalog, systemTimeZone)};
    for (const std::string& identifier : cityIdentifiers) {
        if (auto city = catalog.city(identifier); city && city->identifier != shown.front().identifier) {
            shown.push_back(*std::move(city));
        }
    }
    return shown;
}

bool WorldClockState::isPinned(std::string_view identifier) const {
    return contains(pinnedTimeZoneIdentifiers, identifier);
}

WorldClockDefaultFaces WorldClockDefaultFaces::choose(const WorldClockCatalog& catalog,
                                                      const WorldClockCity& home, Instant at) {
    constexpr Seconds hour = 3600;
    constexpr Seconds day = 24 * hour;
    const auto homeZone = home.timeZone();
    const auto within = [&](Seconds ahead) { return ahead >= 3 * hour && ahead <= 9 * hour; };
    std::map<std::string_view, Seconds> aheadOf; // a zone's offset is asked once, not for each of its cities
    const WorldClockCatalog::Entry* west = nullptr;
    const WorldClockCatalog::Entry* east = nullptr;
    for (const WorldClockCatalog::Entry& entry : catalog.entries()) {
        const std::string_view zone = WorldClockCity::zoneOf(entry.city.identifier);
        const auto [known, isNew] = aheadOf.try_emplace(zone, 0);
        if (const auto calendar = isNew ? entry.city.timeZone() : std::nullopt; calendar && homeZone) {
            const Seconds ahead = calendar->utcOffset(at) - homeZone->utcOffset(at);
            known->second = ahead > day / 2 ? ahead - day : ahead < -day / 2 ? ahead + day : ahead;
        }
        const WorldClockCatalog::Entry** const side = within(known->second)    ? &east
                                                      : within(-known->second) ? &west
                                                                               : nullptr;
        const auto fame = [](const WorldClockCatalog::Entry& of) {
            const auto names = static_cast<std::int64_t>(of.names.size());
            return names * names * of.population;
        };
        if (side != nullptr && (*side == nullptr || fame(entry) > fame(**side))) {
            *side = &entry;
        }
    }
    const auto cityOf = [](const WorldClockCatalog::Entry* entry) {
        return entry == nullptr ? std::nullopt : std::optional(entry->city);
    };
    return {cityOf(west), cityOf(east)};
}

} // namespace FellowCore
