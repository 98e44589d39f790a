#pragma once

#include "core/worldclock/CitySearchIndex.h"
#include "core/worldclock/CityTable.h"
#include "core/worldclock/WorldClockCity.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace FellowCore {

/// The time zone identifiers that are valid on this system.
std::vector<std::string> systemTimeZones();

/// A table of cities with their time zones, and the search over it. The table is read at the first question,
/// and made ready for searching at the first search; both may be asked for ahead on another thread, for every
/// function may be called from any. Nothing of it throws: a bad row is skipped.
class WorldClockCatalog {
public:
    /// The search form of a row.
    struct Entry {
        WorldClockCity city;
        std::string_view key;                    ///< every folded name, the region and the country, in lines
        std::span<const std::string_view> names; ///< folded: name, plain name, alternate names, aliases
        std::int64_t population = 0;             ///< in thousands
    };

    /// The table must outlive the catalogue. Rows whose zone is not among `zones` are skipped, and so is a
    /// row whose zone, name and region stand already.
    explicit WorldClockCatalog(std::string_view table = builtInCityTable(),
                               std::vector<std::string> zones = systemTimeZones());
    ~WorldClockCatalog();
    WorldClockCatalog(const WorldClockCatalog&) = delete;
    WorldClockCatalog& operator=(const WorldClockCatalog&) = delete;

    /// In table order.
    const std::vector<Entry>& entries() const;
    std::vector<WorldClockCity> cities() const;
    /// Other words for a zone, as they are written: old identifiers ("Asia/Calcutta"), abbreviations of times
    /// ("IST"; where several are called the same, that of most people), countries ("Norway").
    const std::map<std::string, std::string>& aliases() const;

    /// The city of an identifier or of a zone; a valid zone in which no city lies gives one of the zone's own
    /// name. Nothing for what names neither.
    std::optional<WorldClockCity> city(std::string_view identifier) const;
    /// The catalogue's identifier for a stored identifier, which may be an older table's, or for a zone,
    /// which gives the city that the zone is named after, else its largest one. A valid zone in which no city
    /// lies is its own identifier. Nothing for what names neither.
    std::optional<std::string> canonicalIdentifier(std::string_view text) const;

    /// The cities whose key holds every word of the query: those called exactly so first, then those whose
    /// name begins so, then the rest, the largest first in each group. All of them, in table order, for a
    /// query without words. When there is none, the cities of the zones whose identifier or alias holds the
    /// query. Cities whose identifier is in `excluding` are left out. The answers live as long as the
    /// catalogue.
    std::vector<const WorldClockCity*> search(std::string_view query,
                                              std::span<const std::string> excluding = {}) const;
    /// Does now what the first search would have to do first. Blocks for a good part of a second.
    void prepareSearch() const;

private:
    struct Table;
    struct Search;

    const Table& table() const;
    const Search& searcher() const;
    std::vector<const WorldClockCity*>
    searchZones(const std::string& folded, const std::unordered_set<std::string_view>& excluding) const;

    struct State;
    std::unique_ptr<State> state_;
};

} // namespace FellowCore
