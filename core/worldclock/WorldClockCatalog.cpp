#include "core/worldclock/WorldClockCatalog.h"

#include "core/worldclock/CityTableReader.h"
#include "core/worldclock/WorldClockAliases.h"
#include "core/worldclock/WorldClockFolding.h"

#include <unicode/strenum.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <deque>
#include <mutex>
#include <numeric>
#include <set>
#include <unordered_map>
#include <utility>

namespace FellowCore {

namespace {

using Aliases = std::map<std::string, std::string>;

/// What a zone and all its older identifiers have in common; the zone itself when ICU knows nothing of it.
std::string equivalenceClass(std::string_view zone) {
    const icu::StringPiece bytes(zone.data(), static_cast<std::int32_t>(zone.size()));
    icu::UnicodeString canonical;
    UErrorCode status = U_ZERO_ERROR;
    icu::TimeZone::getCanonicalID(icu::UnicodeString::fromUTF8(bytes), canonical, status);
    std::string text;
    return U_SUCCESS(status) ? canonical.toUTF8String(text) : std::string(zone);
}

/// "New York" of "America/New_York".
std::string placeOf(std::string_view zone) {
    std::string place(zone.substr(zone.rfind('/') + 1));
    std::ranges::replace(place, '_', ' ');
    return place;
}

std::string regionText(const CityTableRow& row) {
    std::string text(row.region);
    if (!row.country.empty() && row.country != row.region) {
        text.append(text.empty() ? "" : ", ").append(row.country);
    }
    return text;
}

} // namespace

std::vector<std::string> systemTimeZones() {
    std::vector<std::string> zones;
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::StringEnumeration> all(
        icu::TimeZone::createTimeZoneIDEnumeration(UCAL_ZONE_TYPE_ANY, nullptr, nullptr, status));
    while (all && U_SUCCESS(status)) {
        std::int32_t length = 0;
        const char* const zone = all->next(&length, status);
        if (zone == nullptr) {
            break;
        }
        zones.emplace_back(zone, static_cast<std::size_t>(length));
    }
    return zones;
}

struct WorldClockCatalog::Table {
    Table(std::string_view text, const std::vector<std::string>& validZones) {
        for (const std::string& zone : validZones) {
            zones.insert(zone);
        }
        read(text);
        chooseLeads();
        nameAliases();
        for (const auto& [alias, zone] : aliases) {
            const auto lead = leads.find(zone);
            if (alias.find('/') == std::string::npos && lead != leads.end()) {
                const std::string name = worldClockFolded(alias);
                auto& names = folded[lead->second];
                if (std::ranges::find(names, name) == names.end()) {
                    names.push_back(name);
                }
            }
        }
        makeKeys();
    }

    void read(std::string_view text) {
        for (std::string_view rest = text; !rest.empty();) {
            const auto row = CityTableRow::parse(takeField(rest, '\n'));
            if (row && zones.contains(row->zone)) {
                add(*row);
            }
        }
    }

    void add(const CityTableRow& row) {
        const std::string region = regionText(row);
        std::string identifier =
            std::string(row.zone).append("|").append(row.name).append("|").append(region);
        const auto position = static_cast<std::uint32_t>(entries.size());
        if (!byIdentifier.emplace(identifier, position).second) {
            return;
        }
        entries.push_back({{std::move(identifier), std::string(row.name), region}, {}, {}, row.population});
        countries.push_back(row.country);
        std::vector<std::string>& names = folded.emplace_back();
        const auto addName = [&](std::string_view name) {
            std::string text = worldClockFolded(name);
            if (!text.empty() && std::ranges::find(names, text) == names.end()) {
                names.push_back(std::move(text));
            }
        };
        addName(row.name);
        addName(row.plainName);
        for (std::string_view rest = row.alternates; !rest.empty();) {
            addName(takeField(rest, '|'));
        }
    }

    /// The city that stands for each zone: the largest of those that are called like the zone, else of all.
    void chooseLeads() {
        std::map<std::string_view, std::pair<bool, std::uint32_t>> best;
        for (std::uint32_t position = 0; position < entries.size(); ++position) {
            const std::string_view zone = WorldClockCity::zoneOf(entries[position].city.identifier);
            const bool isNamesake = std::ranges::find(folded[position], worldClockFolded(placeOf(zone))) !=
                                    folded[position].end();
            const auto [held, isFirst] = best.try_emplace(zone, isNamesake, position);
            const bool isLarger = entries[position].population > entries[held->second.second].population;
            if (!isFirst && (isNamesake == held->second.first ? isLarger : isNamesake)) {
                held->second = {isNamesake, position};
            }
        }
        for (const auto& [zone, choice] : best) {
            leads.emplace(zone, choice.second);
        }
    }

    void nameAliases() {
        std::map<std::string, std::string> zoneOfClass;
        for (const auto& [zone, lead] : leads) {
            zoneOfClass.emplace(equivalenceClass(zone), zone);
        }
        for (const std::string_view zone : zones) {
            const auto found = zoneOfClass.find(equivalenceClass(zone));
            if (found != zoneOfClass.end() && found->second != zone) {
                formerZones.emplace(zone, found->second);
            }
        }
        for (const auto& [word, zone] : worldClockWordAliases()) {
            if (leads.contains(zone)) {
                aliases.emplace(word, zone);
            }
        }
        for (const auto& [former, zone] : formerZones) {
            // ICU has some of three letters, made up before abbreviations were agreed on, that nobody means.
            constexpr std::size_t abbreviation = 3;
            if (former.size() != abbreviation) {
                aliases.emplace(former, zone);
            }
        }
        addCountries();
    }

    /// A country stands for its largest city's zone, unless that is named after a city of another country.
    void addCountries() {
        std::unordered_map<std::string_view, std::uint32_t> largest;
        for (std::uint32_t position = 0; position < entries.size(); ++position) {
            const auto [held, isFirst] = largest.try_emplace(countries[position], position);
            if (!isFirst && entries[position].population > entries[held->second].population) {
                held->second = position;
            }
        }
        for (const auto& [country, position] : largest) {
            const std::string_view zone = WorldClockCity::zoneOf(entries[position].city.identifier);
            if (!country.empty() && countries[leads.find(zone)->second] == country) {
                aliases.emplace(country, zone);
            }
        }
    }

    /// All names of all entries in one text, so that an entry costs no allocation for each.
    void makeKeys() {
        for (std::size_t position = 0; position < entries.size(); ++position) {
            std::string key;
            std::vector<std::pair<std::size_t, std::size_t>> places;
            for (const std::string& name : folded[position]) {
                places.emplace_back(key.size(), name.size());
                key.append(name).append("\n");
            }
            key += worldClockFolded(entries[position].city.region);
            key.shrink_to_fit();
            const std::string& kept = keys.emplace_back(std::move(key));
            std::vector<std::string_view>& names = nameLists.emplace_back();
            names.reserve(places.size());
            for (const auto& [begin, length] : places) {
                names.push_back(std::string_view(kept).substr(begin, length));
            }
            entries[position].key = kept;
            entries[position].names = names;
        }
        folded.clear();
        folded.shrink_to_fit();
        countries.clear();
        countries.shrink_to_fit();
    }

    std::unordered_set<std::string_view> zones;
    std::vector<Entry> entries;
    std::unordered_map<std::string, std::uint32_t> byIdentifier;
    std::map<std::string, std::uint32_t, std::less<>> leads; ///< by zone
    Aliases formerZones;                                     ///< other identifiers of zones with cities
    Aliases aliases;

private:
    std::deque<std::string> keys;
    std::deque<std::vector<std::string_view>> nameLists;
    std::vector<std::vector<std::string>> folded; ///< while the table is read
    std::vector<std::string_view> countries;      ///< while the table is read
};

/// The index, its items by falling population, equal ones in table order.
struct WorldClockCatalog::Search {
    explicit Search(const Table& table) : order(byPopulation(table)), index(items(table, order)) {}

    static std::vector<std::uint32_t> byPopulation(const Table& table) {
        std::vector<std::uint32_t> order(table.entries.size());
        std::iota(order.begin(), order.end(), 0U);
        std::ranges::stable_sort(order, std::greater(),
                                 [&](std::uint32_t position) { return table.entries[position].population; });
        return order;
    }

    static std::vector<CitySearchIndex::Item> items(const Table& table,
                                                    const std::vector<std::uint32_t>& order) {
        std::vector<CitySearchIndex::Item> items;
        for (const std::uint32_t position : order) {
            items.push_back({table.entries[position].key, table.entries[position].names});
        }
        return items;
    }

    std::vector<std::uint32_t> order;
    CitySearchIndex index;
};

struct WorldClockCatalog::State {
    std::string_view text;
    std::vector<std::string> zones;
    std::once_flag tableOnce;
    std::once_flag searchOnce;
    std::unique_ptr<const Table> table;
    std::unique_ptr<const Search> search;
};

WorldClockCatalog::WorldClockCatalog(std::string_view table, std::vector<std::string> zones)
    : state_(std::make_unique<State>()) {
    state_->text = table;
    state_->zones = std::move(zones);
}

WorldClockCatalog::~WorldClockCatalog() = default;

const WorldClockCatalog::Table& WorldClockCatalog::table() const {
    std::call_once(state_->tableOnce,
                   [this] { state_->table = std::make_unique<Table>(state_->text, state_->zones); });
    return *state_->table;
}

const WorldClockCatalog::Search& WorldClockCatalog::searcher() const {
    std::call_once(state_->searchOnce, [this] { state_->search = std::make_unique<Search>(table()); });
    return *state_->search;
}

const std::vector<WorldClockCatalog::Entry>& WorldClockCatalog::entries() const {
    return table().entries;
}

std::vector<WorldClockCity> WorldClockCatalog::cities() const {
    std::vector<WorldClockCity> cities;
    for (const Entry& entry : entries()) {
        cities.push_back(entry.city);
    }
    return cities;
}

const std::map<std::string, std::string>& WorldClockCatalog::aliases() const {
    return table().aliases;
}

std::optional<WorldClockCity> WorldClockCatalog::city(std::string_view identifier) const {
    const auto canonical = canonicalIdentifier(identifier);
    if (!canonical) {
        return std::nullopt;
    }
    const auto found = table().byIdentifier.find(*canonical);
    return found != table().byIdentifier.end()
               ? table().entries[found->second].city
               : WorldClockCity{*canonical, placeOf(*canonical), std::string()};
}

std::optional<std::string> WorldClockCatalog::canonicalIdentifier(std::string_view text) const {
    const Table& held = table();
    std::string_view rest = text;
    std::string zone(takeField(rest, '|'));
    if (const auto former = held.formerZones.find(zone); former != held.formerZones.end()) {
        zone = former->second;
    }
    if (zone.size() == text.size() || text.find('|') == std::string_view::npos) {
        if (const auto lead = held.leads.find(zone); lead != held.leads.end()) {
            return held.entries[lead->second].city.identifier;
        }
        return held.zones.contains(zone) ? std::optional(zone) : std::nullopt;
    }
    const std::string identifier = zone + "|" + std::string(rest);
    if (held.byIdentifier.contains(identifier)) {
        return identifier;
    }
    // A region may have been renamed since the identifier was stored.
    const std::string beginning = zone + "|" + std::string(takeField(rest, '|')) + "|";
    const auto namesake = std::ranges::find_if(
        held.entries, [&](const Entry& entry) { return entry.city.identifier.starts_with(beginning); });
    return namesake != held.entries.end() ? std::optional(namesake->city.identifier) : std::nullopt;
}

std::vector<const WorldClockCity*> WorldClockCatalog::search(std::string_view query,
                                                             std::span<const std::string> excluding) const {
    const Table& held = table();
    const std::unordered_set<std::string_view> left(excluding.begin(), excluding.end());
    const std::string folded = worldClockFolded(query);
    std::vector<const WorldClockCity*> found;
    const auto add = [&](std::uint32_t position) {
        const WorldClockCity& city = held.entries[position].city;
        if (left.empty() || !left.contains(city.identifier)) {
            found.push_back(&city);
        }
    };
    if (worldClockWords(folded).empty()) {
        for (std::uint32_t position = 0; position < held.entries.size(); ++position) {
            add(position);
        }
        return found;
    }
    const Search& search = searcher();
    const auto matches = search.index.search(folded);
    found.reserve(matches.size());
    for (const std::uint32_t match : matches) {
        add(search.order[match]);
    }
    return matches.empty() ? searchZones(folded, left) : found;
}

std::vector<const WorldClockCity*>
WorldClockCatalog::searchZones(const std::string& folded,
                               const std::unordered_set<std::string_view>& excluding) const {
    const Table& held = table();
    std::set<std::uint32_t> leads;
    const auto consider = [&](std::string_view text, const std::string& zone) {
        const auto lead = held.leads.find(zone);
        if (lead != held.leads.end() && worldClockFolded(text).find(folded) != std::string::npos) {
            leads.insert(lead->second);
        }
    };
    for (const auto& [alias, zone] : held.aliases) {
        consider(alias, zone);
    }
    for (const auto& [zone, lead] : held.leads) {
        consider(zone, zone);
    }
    std::vector<const Entry*> found;
    for (const std::uint32_t lead : leads) {
        if (!excluding.contains(held.entries[lead].city.identifier)) {
            found.push_back(&held.entries[lead]);
        }
    }
    std::ranges::stable_sort(found, std::greater(), &Entry::population);
    std::vector<const WorldClockCity*> cities;
    for (const Entry* const entry : found) {
        cities.push_back(&entry->city);
    }
    return cities;
}

void WorldClockCatalog::prepareSearch() const {
    searcher();
}

} // namespace FellowCore
