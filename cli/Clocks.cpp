#include "cli/Clocks.h"

#include "cli/MomentOptions.h"
#include "core/base/Json.h"
#include "core/base/MemoryPreferences.h"
#include "core/base/PreferencesFile.h"
#include "core/base/Text.h"
#include "core/base/WholeFile.h"
#include "core/worldclock/WorldClockPresentation.h"
#include "core/worldclock/WorldClockStore.h"
#include "platform/LocalCalendar.h"
#include "platform/LocalLanguage.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <iostream>
#include <string>
#include <vector>

namespace Fellow {

namespace {

using FellowCore::Instant;
using FellowCore::Json;
using FellowCore::WorldClockRow;
using FellowCore::WorldClockState;
using Rows = std::vector<WorldClockRow>;

/// The running program's clocks. Its file is only looked at; one that cannot be understood counts as none.
WorldClockState storedState(const MomentOptions& options, const FellowCore::WorldClockCatalog& catalog,
                            const std::string& zone) {
    FellowCore::PosixFileOperations files;
    FellowCore::MemoryPreferences stored;
    try {
        stored.load(
            readWholeFile(files, options.folders->preferencesFile(), FellowCore::PreferencesFile::sizeLimit));
    } catch (const std::runtime_error&) {
        stored = FellowCore::MemoryPreferences();
    }
    return FellowCore::WorldClockStore(stored, catalog).load(zone);
}

Rows rowsAt(const MomentOptions& options) {
    const FellowCore::WorldClockCatalog catalog;
    const std::string zone = Platform::localCalendar().timeZone();
    FellowCore::WorldClockFormatter formatter(Platform::localTimeLocale());
    return FellowCore::WorldClockPresentation::rows(storedState(options, catalog, zone), options.at, catalog,
                                                    zone, formatter);
}

Json rowJson(const WorldClockRow& row, Instant at) {
    return {{"identifier", row.identifier},
            {"city", row.city},
            {"region", row.region},
            {"time_zone", std::string(FellowCore::WorldClockCity::zoneOf(row.identifier))},
            {"time", row.time},
            {"day", row.dayLabel},
            {"day_difference", row.dayDifference},
            {"difference", row.isHome ? Json() : Json(row.difference)},
            {"difference_seconds", row.differenceSeconds},
            {"home", row.isHome},
            {"pinned", row.isPinned},
            {"at", jsonDate(at, FellowCore::JsonDateForm::iso8601)}};
}

void printJson(const Rows& rows, Instant at) {
    Json list = Json::array();
    for (const WorldClockRow& row : rows) {
        list.push_back(rowJson(row, at));
    }
    std::cout << list.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

std::string padded(const std::string& text, std::size_t width) {
    return text + std::string(width - FellowCore::characterCount(text) + 2, ' ');
}

void printText(const Rows& rows) {
    std::array<std::size_t, 3> widths{};
    const auto columns = [](const WorldClockRow& row) {
        return std::array{row.city, row.time, row.isHome ? std::string("home") : row.difference};
    };
    for (const WorldClockRow& row : rows) {
        for (std::size_t column = 0; column < widths.size(); ++column) {
            widths[column] = std::max(widths[column], FellowCore::characterCount(columns(row)[column]));
        }
    }
    for (const WorldClockRow& row : rows) {
        for (std::size_t column = 0; column < widths.size(); ++column) {
            std::cout << padded(columns(row)[column], widths[column]);
        }
        std::cout << row.dayLabel << '\n';
    }
}

ExitStatus run(Arguments arguments) {
    const MomentOptions options = readMomentOptions(arguments);
    if (options.complaint) {
        return misused(clocks, *options.complaint);
    }
    const Rows rows = rowsAt(options);
    if (options.json) {
        printJson(rows, options.at);
    } else {
        printText(rows);
    }
    return ExitStatus::good;
}

} // namespace

const Command clocks{
    "clocks",
    "clocks [--json]",
    "tell the times of Ghanta Ghar's clocks",
    "Home comes first, then every city in the order of the clocks: its time, how far it is ahead of home, "
    "and\n"
    "the day. With --json the same as an array.\n\n"
    "--home DIR looks beneath another home folder, and --at ISO8601 takes another moment for now.\n\n"
    "Exit status: 0 done, 2 the command line is wrong.\n",
    run,
};

} // namespace Fellow
