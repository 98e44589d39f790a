// What a key pressed in the city search costs, beside a plain scan of the same entries in the same run.

#include "bench/support/Figures.h"
#include "bench/support/Options.h"

#include "core/worldclock/WorldClockCatalog.h"
#include "core/worldclock/WorldClockFolding.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <malloc.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using FellowCore::WorldClockCatalog;
using FellowCore::WorldClockCity;
using Microseconds = std::chrono::duration<double, std::micro>;
using Cities = std::vector<const WorldClockCity*>;
using Search = std::function<Cities(const std::string&)>;

constexpr double budgetMicroseconds = 100;
constexpr std::size_t cityCount = 200;

/// One pass over all entries, the matches sorted: what needs no index.
Cities scan(const WorldClockCatalog& catalog, const std::string& query) {
    struct Match {
        int rank;
        const WorldClockCatalog::Entry* entry;
    };
    const std::string folded = FellowCore::worldClockFolded(query);
    const auto words = FellowCore::worldClockWords(folded);
    std::vector<Match> matches;
    for (const auto& entry : catalog.entries()) {
        const auto isHeld = [&](std::string_view word) {
            return entry.key.find(word) != std::string_view::npos;
        };
        if (!std::ranges::all_of(words, isHeld)) {
            continue;
        }
        int rank = 2;
        for (const std::string_view name : entry.names) {
            rank = std::min(rank, name == folded ? 0 : name.starts_with(folded) ? 1 : 2);
        }
        matches.push_back({rank, &entry});
    }
    // The table stands by falling population.
    std::ranges::stable_sort(matches, {}, &Match::rank);
    Cities cities;
    for (const Match& match : matches) {
        cities.push_back(&match.entry->city);
    }
    return cities;
}

/// Every prefix, at a character's end, of names spread over the whole table.
std::vector<std::string> typedQueries(const WorldClockCatalog& catalog) {
    std::vector<std::string> queries;
    const auto& entries = catalog.entries();
    for (std::size_t number = 0; number < cityCount; ++number) {
        const std::string& name = entries[number * entries.size() / cityCount].city.name;
        for (std::size_t length = 1; length <= name.size(); ++length) {
            if (length == name.size() || (name[length] & 0xC0) != 0x80) {
                queries.push_back(name.substr(0, length));
            }
        }
    }
    return queries;
}

/// The quickest of a few runs of each query, so that a figure is the query's and not the machine's.
std::vector<double> measured(const std::vector<std::string>& queries, int times, const Search& search) {
    std::vector<double> each;
    for (const std::string& query : queries) {
        double best = 0;
        for (int round = 0; round < times; ++round) {
            const auto start = Clock::now();
            const Cities found = search(query);
            const double took = Microseconds(Clock::now() - start).count();
            if (found.empty()) {
                throw std::runtime_error("nothing was found for " + query);
            }
            best = round == 0 ? took : std::min(best, took);
        }
        each.push_back(best);
    }
    return each;
}

std::vector<double> milliseconds(int times, const std::function<void()>& once) {
    std::vector<double> each;
    for (int round = 0; round < times; ++round) {
        const auto start = Clock::now();
        once();
        each.push_back(Microseconds(Clock::now() - start).count() / 1000);
    }
    return each;
}

double heapMegabytes() {
    const struct mallinfo2 heap = ::mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd) / 1e6;
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const int times = options.quick ? 2 : 7;
    Bench::Figures figures;
    const WorldClockCatalog catalog;
    const double before = heapMegabytes();
    const std::size_t cities = catalog.entries().size();
    const double parsed = heapMegabytes();
    catalog.prepareSearch();
    figures.add({"city table: memory of the entries", {parsed - before}, "MB", std::nullopt, 1});
    figures.add({"city table: memory of the index", {heapMegabytes() - parsed}, "MB", std::nullopt, 1});
    const auto queries = typedQueries(catalog);
    for (const std::string& query : queries) {
        if (catalog.search(query) != scan(catalog, query)) {
            throw std::runtime_error("the index and the scan differ on " + query);
        }
    }
    const auto indexed =
        measured(queries, times, [&](const std::string& query) { return catalog.search(query); });
    const auto scanned =
        measured(queries, times, [&](const std::string& query) { return scan(catalog, query); });
    figures.note(std::to_string(queries.size()) + " prefixes of " + std::to_string(cityCount) + " of " +
                 std::to_string(cities) + " cities");
    figures.add({"city search per key: median", indexed, "us", budgetMicroseconds, 1});
    figures.add({"city search per key: worst", {std::ranges::max(indexed)}, "us", budgetMicroseconds, 1});
    figures.add({"plain scan per key: median", scanned, "us", std::nullopt, 1});
    figures.add({"plain scan per key: worst", {std::ranges::max(scanned)}, "us", std::nullopt, 1});
    figures.add({"city table: parsing", milliseconds(times, [] { WorldClockCatalog().entries(); }), "ms",
                 std::nullopt, 1});
    figures.add({"city table: parsing and indexing",
                 milliseconds(times, [] { WorldClockCatalog().prepareSearch(); }), "ms", std::nullopt, 1});
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
