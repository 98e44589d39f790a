#include "core/host/SettingsPersistence.h"
#include "core/base/Json.h"
#include "core/base/MemoryPreferences.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace FellowCore {
namespace {

TEST(SettingsPersistence, MigratesOnce) {
    const struct {
        const char* name;
        const char* before;
        const char* after;
    } cases[] = {
        {"a new user meets the tutorial", R"({})",
         R"({"collection.settingsPane.v2":"batti","collection.settingsVersion":2})"},
        {"someone who was here before does not", R"({"collection.activeCharacter":"mira"})",
         R"({"collection.activeCharacter":"mira","collection.settingsPane.v2":"mira","collection.settingsVersion":2,
             "collection.tutorialCompleted.v1":true})"},
        {"a tutorial left open stays open",
         R"({"collection.activeCharacter":"mira","collection.tutorialCompleted.v1":false,
             "collection.settingsPane.v2":"pump"})",
         R"({"collection.activeCharacter":"mira","collection.tutorialCompleted.v1":false,
             "collection.settingsPane.v2":"pump","collection.settingsVersion":2})"},
        {"a character that is no text is none",
         R"({"collection.activeCharacter":4,"collection.settingsVersion":1})",
         R"({"collection.activeCharacter":4,"collection.settingsPane.v2":"batti","collection.settingsVersion":2})"},
        {"the present version is left alone",
         R"({"collection.activeCharacter":"mira","collection.settingsVersion":2})",
         R"({"collection.activeCharacter":"mira","collection.settingsVersion":2})"},
        {"a later version too", R"({"collection.settingsVersion":3})", R"({"collection.settingsVersion":3})"},
    };
    for (const auto& row : cases) {
        MemoryPreferences preferences;
        preferences.load(row.before);
        SettingsPersistence::migrate(preferences);
        EXPECT_EQ(parseJson(preferences.document()), parseJson(row.after)) << row.name;
    }
}

TEST(SettingsPersistence, OpensAPaneThatExists) {
    const std::vector<std::string> all{"general", "batti", "mira", "pump"};
    const struct {
        const char* name;
        std::optional<std::string> saved, active;
        std::vector<std::string> available;
        std::optional<std::string> pane;
    } cases[] = {
        {"the saved one", "pump", "mira", all, "pump"},
        {"a saved one that is gone", "ghost", "mira", all, "mira"},
        {"none saved", {}, "mira", all, "mira"},
        {"nor active", {}, "ghost", all, "batti"},
        {"nor Batti", {}, {}, {"general", "pump"}, "general"},
        {"nothing to open", "pump", "mira", {}, {}},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(SettingsPersistence::pane(row.saved, row.active, row.available), row.pane) << row.name;
    }
}

TEST(PreferenceKeys, NameOneCharactersValues) {
    EXPECT_EQ(PreferenceKeys::frame("batti"), "sprites.batti.frame");
    EXPECT_EQ(PreferenceKeys::desktopHeight("pump"), "sprites.pump.desktopHeight");
    EXPECT_EQ(PreferenceKeys::desktopAnchor("pump"), "sprites.pump.desktopAnchor");
    EXPECT_EQ(PreferenceKeys::arrangeHeight("pump"), "sprites.pump.arrangeHeight");
    EXPECT_EQ(PreferenceKeys::previousCharacter("pump"), "sprites.pump.previousCharacter");
}

} // namespace
} // namespace FellowCore
