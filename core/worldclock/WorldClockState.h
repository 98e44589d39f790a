#pragma once

#include "core/base/Instant.h"
#include "core/worldclock/WorldClockCatalog.h"
#include "core/worldclock/WorldClockPinResult.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// What the user chose for the tower. The identifiers are those of `WorldClockCity`. `systemTimeZone` is the
/// machine's zone, an IANA identifier; a change is refused, never half done.
struct WorldClockState {
    static constexpr std::size_t mostPins = 2;
    static constexpr std::size_t mostCities = 100;

    std::optional<std::string> homeTimeZoneIdentifier;  ///< absent means wherever the system is
    std::vector<std::string> cityIdentifiers;           ///< in the user's order, without home
    std::vector<std::string> pinnedTimeZoneIdentifiers; ///< the oldest pin first
    bool defaultFacesApplied = false;

    /// Makes the state hold what it promises: every identifier the catalogue's own, none twice, home in no
    /// list, every pin a city of the list, no more than `mostPins` and `mostCities`. The first of what is too
    /// many stays.
    void normalize(const WorldClockCatalog& catalog, std::string_view systemTimeZone);
    /// Home's zone, an IANA identifier; UTC when even the system's is none.
    std::string homeTimeZone(const WorldClockCatalog& catalog, std::string_view systemTimeZone) const;
    WorldClockCity homeCity(const WorldClockCatalog& catalog, std::string_view systemTimeZone) const;

    /// Puts a city at the end of the list. False for an unknown one, home, one that stands there already, and
    /// one too many.
    bool addCity(std::string_view identifier, const WorldClockCatalog& catalog,
                 std::string_view systemTimeZone);
    /// Takes a city and its pin away.
    bool removeCity(std::string_view identifier);
    /// Moves a city to another place of the list; a place behind the last one is the last one.
    bool moveCity(std::string_view identifier, std::size_t place);
    /// Makes a city, or a zone, home. The former home takes its place in the list if it stood there.
    bool setHome(std::string_view identifier, const WorldClockCatalog& catalog,
                 std::string_view systemTimeZone);
    /// Home is wherever the system is.
    void resetHome(const WorldClockCatalog& catalog, std::string_view systemTimeZone);

    WorldClockPinResult setPinned(std::string_view identifier, bool pinned, const WorldClockCatalog& catalog,
                                  std::string_view systemTimeZone);
    /// Pins a city; where no face is free the oldest pin makes room. Never `limitReached`.
    WorldClockPinResult replaceFace(std::string_view with, const WorldClockCatalog& catalog,
                                    std::string_view systemTimeZone);
    /// Adds and pins the default faces once in a state's life, and only while nothing is pinned, so that a
    /// later removal is respected.
    void applyDefaultFacesIfNeeded(const WorldClockCatalog& catalog, std::string_view systemTimeZone,
                                   Instant at);

    /// What the tower shows: home, then the pinned cities.
    std::vector<WorldClockCity> desktopCities(const WorldClockCatalog& catalog,
                                              std::string_view systemTimeZone) const;
    /// What the panel shows: home, then every city in the user's order.
    std::vector<WorldClockCity> orderedCities(const WorldClockCatalog& catalog,
                                              std::string_view systemTimeZone) const;

    bool isPinned(std::string_view identifier) const;

    friend bool operator==(const WorldClockState&, const WorldClockState&) = default;
};

/// The two cities that a new tower shows beside home.
struct WorldClockDefaultFaces {
    std::optional<WorldClockCity> west;
    std::optional<WorldClockCity> east;

    /// The best-known city (its population times the square of how many names the catalogue has for it)
    /// whose clocks are three to nine hours behind home at that moment, and the one three to nine hours
    /// ahead, the date aside.
    static WorldClockDefaultFaces choose(const WorldClockCatalog& catalog, const WorldClockCity& home,
                                         Instant at);
};

} // namespace FellowCore
