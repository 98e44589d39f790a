#include "core/base/Json.h"
#include "core/base/MemoryPreferences.h"
#include "core/worldclock/WorldClockStore.h"

#include <gmock/gmock.h>

#include <string>

namespace FellowCore {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Pin = WorldClockPinResult;

constexpr std::string_view here = "Asia/Kolkata";
const Instant noon = *instantFromIso8601("2026-11-21T12:00:00Z");

const WorldClockCatalog& catalog() {
    static const WorldClockCatalog built;
    return built;
}

std::string id(std::string_view zone) {
    return catalog().canonicalIdentifier(zone).value();
}

const std::string home = id(here);
const std::string tokyo = id("Asia/Tokyo");
const std::string paris = id("Europe/Paris");
const std::string lima = id("America/Lima");

/// A state whose list is what is given, of which the first `pins` are pinned.
WorldClockState with(std::vector<std::string> cities, std::size_t pins = 0) {
    WorldClockState state;
    for (const std::string& city : cities) {
        EXPECT_TRUE(state.addCity(city, catalog(), here)) << city;
    }
    for (std::size_t index = 0; index < pins; ++index) {
        EXPECT_EQ(state.setPinned(cities[index], true, catalog(), here), Pin::pinned);
    }
    return state;
}

TEST(WorldClockState, PinsAtMostTwoAndSaysWhy) {
    const WorldClockState full = with({tokyo, paris, lima}, 2);
    struct Case {
        const char* fault;
        std::string city;
        bool pinned;
        Pin result;
    };
    const Case cases[] = {
        {"a third face", lima, true, Pin::limitReached},
        {"home twice on the tower", home, true, Pin::homeCity},
        {"home by its zone twice on the tower", std::string(here), true, Pin::homeCity},
        {"a face without a row", id("Africa/Cairo"), true, Pin::cityNotAdded},
        {"a face of nowhere", "Mars/Olympus", true, Pin::cityNotAdded},
        {"a pin that counts twice", tokyo, true, Pin::unchanged},
        {"unpinning what was not pinned", lima, false, Pin::unchanged},
    };
    for (const Case& row : cases) {
        WorldClockState state = full;
        EXPECT_EQ(state.setPinned(row.city, row.pinned, catalog(), here), row.result) << row.fault;
        EXPECT_EQ(state, full) << row.fault;
    }
    WorldClockState state = full;
    EXPECT_EQ(state.setPinned(tokyo, false, catalog(), here), Pin::unpinned);
    EXPECT_EQ(state.setPinned(lima, true, catalog(), here), Pin::pinned);
    EXPECT_EQ(state.replaceFace(tokyo, catalog(), here), Pin::pinned);
    EXPECT_THAT(state.pinnedTimeZoneIdentifiers, ElementsAre(lima, tokyo));
    EXPECT_EQ(state.replaceFace("Mars/Olympus", catalog(), here), Pin::cityNotAdded);
    EXPECT_THAT(state.pinnedTimeZoneIdentifiers, ElementsAre(lima, tokyo)) << "a refusal costs a face";
}

TEST(WorldClockState, KeepsListAndPinsInStep) {
    WorldClockState state = with({tokyo, paris, lima}, 2);
    EXPECT_FALSE(state.addCity(tokyo, catalog(), here));
    EXPECT_FALSE(state.addCity(home, catalog(), here));
    EXPECT_FALSE(state.addCity("Mars/Olympus", catalog(), here));
    EXPECT_TRUE(state.moveCity(lima, 0));
    EXPECT_TRUE(state.moveCity(tokyo, 99));
    EXPECT_FALSE(state.moveCity(tokyo, 2));
    EXPECT_THAT(state.cityIdentifiers, ElementsAre(lima, paris, tokyo));
    EXPECT_TRUE(state.removeCity(tokyo));
    EXPECT_FALSE(state.removeCity(tokyo));
    EXPECT_THAT(state.pinnedTimeZoneIdentifiers, ElementsAre(paris));
}

TEST(WorldClockState, MovesHome) {
    WorldClockState state = with({tokyo, paris}, 2);
    ASSERT_TRUE(state.setHome(tokyo, catalog(), here));
    EXPECT_THAT(state.cityIdentifiers, ElementsAre(home, paris)) << "the former home takes its place";
    EXPECT_THAT(state.pinnedTimeZoneIdentifiers, ElementsAre(paris));
    EXPECT_EQ(state.homeTimeZone(catalog(), here), "Asia/Tokyo");
    EXPECT_EQ(state.desktopCities(catalog(), here).front().identifier, tokyo);
    EXPECT_EQ(state.orderedCities(catalog(), here).size(), 3U);
    EXPECT_FALSE(state.setHome("Mars/Olympus", catalog(), here));
    state.resetHome(catalog(), here);
    EXPECT_EQ(state.homeCity(catalog(), here).identifier, home);
    EXPECT_THAT(state.cityIdentifiers, ElementsAre(paris)) << "home stands in the list";
    EXPECT_EQ(WorldClockState().homeTimeZone(catalog(), "GMT+05:45"), "GMT+05:45");
    EXPECT_EQ(WorldClockState().homeTimeZone(catalog(), "nowhere"), "Etc/UTC");
}

TEST(WorldClockState, ChoosesOneFaceOnEitherSideOnce) {
    for (const char* zone : {"Asia/Kolkata", "America/Los_Angeles", "Europe/London", "Pacific/Kiritimati",
                             "Pacific/Honolulu", "Asia/Kathmandu", "Etc/UTC"}) {
        SCOPED_TRACE(zone);
        WorldClockState state;
        state.applyDefaultFacesIfNeeded(catalog(), zone, noon);
        const auto shown = state.desktopCities(catalog(), zone);
        ASSERT_EQ(shown.size(), 3U);
        std::vector<Seconds> ahead;
        for (const WorldClockCity& city : shown) {
            const Seconds hours =
                (city.timeZone()->utcOffset(noon) - shown[0].timeZone()->utcOffset(noon)) / 3600;
            ahead.push_back(hours > 12 ? hours - 24 : hours < -12 ? hours + 24 : hours);
        }
        EXPECT_TRUE(ahead[1] <= -3 && ahead[1] >= -9) << shown[1].identifier;
        EXPECT_TRUE(ahead[2] >= 3 && ahead[2] <= 9) << shown[2].identifier;
        state.removeCity(shown[1].identifier);
        state.removeCity(shown[2].identifier);
        state.applyDefaultFacesIfNeeded(catalog(), zone, noon);
        EXPECT_THAT(state.cityIdentifiers, IsEmpty()) << "a removal is respected";
    }
    WorldClockState own = with({tokyo}, 1);
    own.applyDefaultFacesIfNeeded(catalog(), here, noon);
    EXPECT_THAT(own.pinnedTimeZoneIdentifiers, ElementsAre(tokyo));
    EXPECT_TRUE(own.defaultFacesApplied);
}

TEST(WorldClockStore, MakesSenseOfWhateverIsStored) {
    struct Case {
        const char* fault;
        std::string stored;
        std::vector<std::string> cities;
        std::vector<std::string> pins;
    };
    const std::string deep(200'000, '[');
    const Case cases[] = {
        {"nothing", "", {}, {}},
        {"no JSON", "{", {}, {}},
        {"nested too deep", deep, {}, {}},
        {"a list", "[]", {}, {}},
        {"wrong types",
         R"({"cityIdentifiers":7,"pinnedTimeZoneIdentifiers":{},"defaultFacesApplied":"x"})",
         {},
         {}},
        {"members of other types",
         R"({"cityIdentifiers":[null,3,"Asia/Tokyo",["Europe/Paris"]]})",
         {tokyo},
         {}},
        {"bare zones, old and new",
         R"({"cityIdentifiers":["Japan","Asia/Tokyo","Europe/Paris"]})",
         {tokyo, paris},
         {}},
        {"home in both lists",
         R"({"cityIdentifiers":["Asia/Calcutta"],"pinnedTimeZoneIdentifiers":["Asia/Kolkata"]})",
         {},
         {}},
        {"pins without cities, too many, twice",
         R"({"cityIdentifiers":["Asia/Tokyo","Europe/Paris","America/Lima"],"pinnedTimeZoneIdentifiers":)"
         R"(["Africa/Cairo","Europe/Paris","Europe/Paris","America/Lima","Asia/Tokyo"]})",
         {tokyo, paris, lima},
         {paris, lima}},
        {"unknown places",
         R"({"homeTimeZoneIdentifier":"Mars","cityIdentifiers":["Mars|X|","\u0000","|"]})",
         {},
         {}},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.fault);
        MemoryPreferences preferences;
        preferences.setString(WorldClockStore::key, row.stored);
        WorldClockStore store(preferences, catalog());
        const WorldClockState state = store.load(here);
        EXPECT_EQ(state.cityIdentifiers, row.cities);
        EXPECT_EQ(state.pinnedTimeZoneIdentifiers, row.pins);
        EXPECT_EQ(state.homeCity(catalog(), here).identifier, home);
        store.save(state, here);
        EXPECT_EQ(store.load(here), state);
    }
}

TEST(WorldClockStore, HoldsAFloodToItsLimit) {
    WorldClockState state;
    for (const auto& entry : catalog().entries()) {
        state.cityIdentifiers.push_back(entry.city.identifier);
    }
    MemoryPreferences preferences;
    WorldClockStore store(preferences, catalog());
    state.homeTimeZoneIdentifier = tokyo;
    state.defaultFacesApplied = true;
    store.save(state, here);
    const WorldClockState held = store.load(here);
    EXPECT_EQ(held.cityIdentifiers.size(), WorldClockState::mostCities);
    EXPECT_EQ(held.homeTimeZoneIdentifier, tokyo);
    EXPECT_TRUE(held.defaultFacesApplied);
    EXPECT_FALSE(WorldClockState(held).addCity(lima, catalog(), here));
    preferences.setString(WorldClockStore::key, std::string(WorldClockStore::mostBytes + 1, ' ') + "{}");
    EXPECT_EQ(store.load(here), WorldClockState());
}

} // namespace
} // namespace FellowCore
