#include "cli/Cities.h"

#include "core/base/Text.h"
#include "core/worldclock/WorldClockCatalog.h"

#include <algorithm>
#include <charconv>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

namespace Fellow {

namespace {

using FellowCore::WorldClockCity;

struct Options {
    std::size_t limit = 10;
    std::string query;
    std::string complaint;
};

bool readLimit(std::string_view text, std::size_t& limit) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), limit);
    return error == std::errc() && end == text.data() + text.size() && limit > 0;
}

Options readOptions(Arguments arguments) {
    constexpr std::string_view limitOption = "--limit";
    constexpr std::string_view homeOption = "--home";
    Options options;
    bool isBehindDashes = false;
    const auto takeValue = [&](std::size_t& index, std::string_view option) {
        const std::string_view word = arguments[index];
        return word.size() > option.size()    ? word.substr(option.size() + 1)
               : index + 1 < arguments.size() ? arguments[++index]
                                              : std::string_view();
    };
    const auto isOption = [](std::string_view word, std::string_view option) {
        return word == option || (word.starts_with(option) && word[option.size()] == '=');
    };
    for (std::size_t index = 0; index < arguments.size() && options.complaint.empty(); ++index) {
        const std::string_view word = arguments[index];
        if (isBehindDashes || !word.starts_with("--")) {
            options.query.append(options.query.empty() ? "" : " ").append(word);
        } else if (word == "--") {
            isBehindDashes = true;
        } else if (isOption(word, limitOption)) {
            if (!readLimit(takeValue(index, limitOption), options.limit)) {
                options.complaint = "--limit wants a number of cities.";
            }
        } else if (isOption(word, homeOption)) {
            // Taken like everywhere else; nothing of a home folder changes what cities there are.
            if (takeValue(index, homeOption).empty()) {
                options.complaint = "--home wants a folder.";
            }
        } else {
            options.complaint = FellowCore::singleLine(word) + " is no option here.";
        }
    }
    if (options.complaint.empty() && FellowCore::trimmed(options.query).empty()) {
        options.complaint = "something to look for is wanted.";
    }
    return options;
}

std::string padded(const std::string& text, std::size_t width) {
    return text + std::string(width - FellowCore::characterCount(text) + 2, ' ');
}

void print(const std::vector<const WorldClockCity*>& cities) {
    std::size_t nameWidth = 0;
    std::size_t regionWidth = 0;
    for (const WorldClockCity* const city : cities) {
        nameWidth = std::max(nameWidth, FellowCore::characterCount(city->name));
        regionWidth = std::max(regionWidth, FellowCore::characterCount(city->region));
    }
    for (const WorldClockCity* const city : cities) {
        std::cout << padded(city->name, nameWidth) << padded(city->region, regionWidth)
                  << WorldClockCity::zoneOf(city->identifier) << '\n';
    }
}

ExitStatus run(Arguments arguments) {
    const Options options = readOptions(arguments);
    if (!options.complaint.empty()) {
        return misused(cities, options.complaint);
    }
    const FellowCore::WorldClockCatalog catalog;
    auto found = catalog.search(options.query);
    if (found.empty()) {
        std::cerr << "No city answers to \u201C" << FellowCore::singleLine(options.query) << "\u201D.\n";
        return ExitStatus::refused;
    }
    const std::size_t left = found.size() - std::min(found.size(), options.limit);
    found.resize(found.size() - left);
    print(found);
    if (left > 0) {
        std::cout << "and " << left << " more\n";
    }
    return ExitStatus::good;
}

} // namespace

const Command cities{
    "cities",
    "cities QUERY",
    "find cities by name, airport, country or time zone",
    "Each line has the city, where it lies and its time zone. Every word of the query must occur in a\n"
    "city's names or region; case and accents do not matter. Cities called exactly so come first, then\n"
    "those whose name begins so, the largest first.\n\n"
    "--limit COUNT shows that many (10 unless told). A query that begins with \"--\" goes behind \"--\".\n\n"
    "Exit status: 0 done, 1 nothing found, 2 the command line is wrong.\n",
    run,
};

} // namespace Fellow
