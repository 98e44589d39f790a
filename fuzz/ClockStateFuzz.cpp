#include "core/base/Json.h"
#include "core/base/MemoryPreferences.h"
#include "core/worldclock/WorldClockPresentation.h"
#include "core/worldclock/WorldClockStore.h"
#include "fuzz/Require.h"

#include <cstdint>
#include <set>
#include <string_view>

using namespace FellowCore;

namespace {

constexpr std::string_view here = "Asia/Kolkata";
constexpr Instant now{800000000};
// Small, so that a run costs what the state costs.
constexpr std::string_view table = "Tokyo\t\tTokyo\tJapan\tAsia/Tokyo\t8337\tTYO\n"
                                   "London\t\tEngland\tUnited Kingdom\tEurope/London\t7557\tLON\n"
                                   "Lima\t\tLima\tPeru\tAmerica/Lima\t7737\t\n"
                                   "Kolkata\t\tWest Bengal\tIndia\tAsia/Kolkata\t4631\tCalcutta\n"
                                   "Paris\t\tIle-de-France\tFrance\tEurope/Paris\t2138\tPAR\n";

// What must hold of every state that was loaded, whatever was stored.
void requireSane(const WorldClockState& state, const WorldClockCatalog& catalog) {
    std::set<std::string> shown;
    for (const WorldClockCity& city : state.orderedCities(catalog, here)) {
        require(shown.insert(city.identifier).second);
        require(city.timeZone().has_value());
    }
    require(shown.size() == state.cityIdentifiers.size() + 1);
    require(state.cityIdentifiers.size() <= WorldClockState::mostCities);
    require(state.desktopCities(catalog, here).size() == state.pinnedTimeZoneIdentifiers.size() + 1);
    require(state.pinnedTimeZoneIdentifiers.size() <= WorldClockState::mostPins);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const WorldClockCatalog catalog(table);
    MemoryPreferences preferences;
    preferences.setString(WorldClockStore::key, {reinterpret_cast<const char*>(data), size});
    WorldClockStore store(preferences, catalog);
    WorldClockState state = store.load(here);
    requireSane(state, catalog);
    store.save(state, here);
    require(store.load(here) == state);
    WorldClockFormatter formatter("en_US");
    for (const WorldClockRow& row : WorldClockPresentation::rows(state, now, catalog, here, formatter)) {
        require(!row.time.empty() && !row.difference.empty());
    }
    state.applyDefaultFacesIfNeeded(catalog, here, now);
    requireSane(state, catalog);
    return 0;
}
