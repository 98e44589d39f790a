#include "core/host/OnScreenSet.h"
#include "core/base/MemoryPreferences.h"

#include <gmock/gmock.h>

namespace FellowCore {
namespace {

using Ids = std::vector<std::string>;
using ::testing::ElementsAre;

TEST(OnScreenSet, KeepsItsInvariantsFromAnyList) {
    EXPECT_THAT(OnScreenSet({"a", "", "b", "a", "c", "d"}).ids(), ElementsAre("a", "b", "c"));
    EXPECT_TRUE(OnScreenSet(Ids{}).isEmpty());
}

TEST(OnScreenSet, AddsUntilItIsFull) {
    OnScreenSet set;
    EXPECT_FALSE(set.add(""));
    EXPECT_TRUE(set.add("a"));
    EXPECT_FALSE(set.add("a"));
    EXPECT_TRUE(set.add("b") && set.add("c"));
    EXPECT_TRUE(set.isFull());
    EXPECT_FALSE(set.add("d"));
    EXPECT_THAT(set.ids(), ElementsAre("a", "b", "c"));
    EXPECT_TRUE(set.remove("b"));
    EXPECT_FALSE(set.remove("b"));
    EXPECT_TRUE(set.add("d"));
    EXPECT_THAT(set.ids(), ElementsAre("a", "c", "d")) << "in the order of arrival";
}

TEST(OnScreenSet, SwapsInPlace) {
    const struct {
        const char* name;
        const char *id, *replacement;
        bool stands;
        Ids ids;
    } cases[] = {
        {"a newcomer takes the place", "a", "c", true, {"c", "b"}},
        {"itself changes nothing", "a", "a", true, {"a", "b"}},
        {"one that stands elsewhere is refused", "a", "b", false, {"a", "b"}},
        {"one that is absent cannot go", "x", "c", false, {"a", "b"}},
        {"an absent one is not even itself", "x", "x", false, {"a", "b"}},
        {"nobody is no replacement", "a", "", false, {"a", "b"}},
    };
    for (const auto& row : cases) {
        OnScreenSet set({"a", "b"});
        EXPECT_EQ(set.swap(row.id, row.replacement), row.stands) << row.name;
        EXPECT_EQ(set.ids(), row.ids) << row.name;
    }
}

TEST(OnScreenSet, RestoresWhatStoodThere) {
    const std::set<std::string> all{"batti", "mira", "pump", "snake", "munshi"};
    const struct {
        const char* name;
        std::optional<Ids> saved;
        std::optional<std::string> legacy;
        std::set<std::string> available;
        Ids ids;
    } cases[] = {
        {"a first launch brings Batti", {}, {}, all, {"batti"}},
        {"an older version's character comes alone", {}, "mira", all, {"mira"}},
        {"an older version's unknown character gives way", {}, "ghost", all, {"batti"}},
        {"four become three, in order",
         Ids{"snake", "mira", "pump", "munshi"},
         {},
         all,
         {"snake", "mira", "pump"}},
        {"the unknown do not take the place of the known", Ids{"x", "y", "z", "mira"}, {}, all, {"mira"}},
        {"a saved list beats the older key", Ids{"pump"}, "mira", all, {"pump"}},
        {"an empty list is a list, and still Batti comes", Ids{}, "mira", all, {"batti"}},
        {"all unknown, and Batti is locked", Ids{"x"}, {}, {"mira"}, {}},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(OnScreenSet::restore(row.saved, row.legacy, row.available, "batti").ids(), row.ids)
            << row.name;
    }
}

TEST(OnScreenSet, IsSavedUnderItsKey) {
    MemoryPreferences preferences;
    OnScreenSet({"pump", "mira"}).save(preferences);
    EXPECT_EQ(preferences.strings("collection.onScreen"), (Ids{"pump", "mira"}));
}

} // namespace
} // namespace FellowCore
