#pragma once

#include "core/worldclock/WorldClockFormatter.h"
#include "core/worldclock/WorldClockState.h"

#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// One line of the panel.
struct WorldClockRow {
    std::string identifier;
    std::string city;
    std::string region;
    std::string time;             ///< "3:30 PM"
    std::string dayLabel;         ///< "Tomorrow, Sat Nov 22"
    std::string difference;       ///< "+5:30", "−3:00", "Same time"
    std::string spokenDifference; ///< the same for a screen reader: "5 hours 30 minutes ahead"
    int dayDifference = 0;        ///< calendar days ahead of home
    int differenceSeconds = 0;    ///< ahead of home
    bool isHome = false;
    bool isPinned = false;

    friend bool operator==(const WorldClockRow&, const WorldClockRow&) = default;
};

/// What the panel and the tower say about a city.
struct WorldClockPresentation {
    /// A city whose zone this system does not know has neither time nor difference.
    static WorldClockRow row(const WorldClockCity& city, const WorldClockCity& home, Instant at,
                             bool isPinned, WorldClockFormatter& formatter);
    /// Home first, then the cities in the user's order.
    static std::vector<WorldClockRow> rows(const WorldClockState& state, Instant at,
                                           const WorldClockCatalog& catalog, std::string_view systemTimeZone,
                                           WorldClockFormatter& formatter);
    /// A row as a line of text to paste elsewhere: "Tokyo: 12:00 PM, Tomorrow, Sat Nov 22 (+5:30)".
    static std::string text(const WorldClockRow& row);
};

} // namespace FellowCore
