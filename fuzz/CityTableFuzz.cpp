#include "core/worldclock/WorldClockCatalog.h"
#include "fuzz/Require.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using namespace FellowCore;

// A query, a line's end, and a table.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::string_view query = text.substr(0, text.find('\n'));
    const WorldClockCatalog catalog(text.substr(std::min(query.size() + 1, size)),
                                    {"Asia/Kolkata", "America/New_York", "Europe/Berlin", "EST"});
    const auto& entries = catalog.entries();
    require(static_cast<std::size_t>(std::ranges::count(text, '\n')) >= entries.size());
    for (const auto& entry : entries) {
        require(entry.city.timeZone().has_value());
        require(catalog.city(entry.city.identifier) == entry.city);
        for (const std::string_view name : entry.names) {
            require(entry.key.find(name) != std::string_view::npos);
        }
    }
    require(catalog.search("").size() == entries.size());
    const auto found = catalog.search(query);
    require(found.size() <= entries.size());
    for (const WorldClockCity* const city : found) {
        const std::vector<std::string> left = {city->identifier};
        const auto others = catalog.search(query, left);
        require(std::ranges::find(others, city) == others.end());
    }
    return 0;
}
