#include "core/base/MemoryPreferences.h"

#include "core/base/Json.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <limits>

namespace FellowCore {
namespace {

using Strings = std::vector<std::string>;

constexpr std::string_view everyType = R"({
    "text": "7", "yes": true, "whole": 7, "part": 0.5, "list": ["a", "b"], "none": [],
    "mixed": ["a", 1], "object": {"deep": [1, {"er": null}]}, "null": null, "huge": 18446744073709551615
})";

TEST(Preferences, AValueOfTheWrongTypeReadsAsAbsent) {
    MemoryPreferences preferences;
    preferences.load(everyType);
    for (const char* key :
         {"text", "yes", "whole", "part", "list", "none", "mixed", "object", "null", "huge"}) {
        const std::string_view name = key;
        EXPECT_TRUE(preferences.contains(key)) << key;
        EXPECT_EQ(preferences.string(key).has_value(), name == "text") << key;
        EXPECT_EQ(preferences.boolean(key).has_value(), name == "yes") << key;
        EXPECT_EQ(preferences.integer(key).has_value(), name == "whole") << key;
        EXPECT_EQ(preferences.number(key).has_value(), name == "whole" || name == "part") << key;
        EXPECT_EQ(preferences.strings(key).has_value(), name == "list" || name == "none") << key;
    }
    EXPECT_EQ(preferences.number("whole"), 7.0);
    EXPECT_FALSE(preferences.contains("absent"));
}

TEST(Preferences, KeepForeignValuesThroughASave) {
    MemoryPreferences preferences;
    preferences.load(everyType);
    preferences.setBoolean("yes", false);
    Json expected = parseJson(everyType);
    expected["yes"] = false;
    EXPECT_EQ(parseJson(preferences.document()), expected);
}

TEST(Preferences, ReadBackWhatWasSet) {
    MemoryPreferences preferences;
    preferences.setString("s", "l\u00E9\n\"");
    preferences.setInteger("i", std::numeric_limits<std::int64_t>::min());
    preferences.setNumber("whole number", 3);
    preferences.setNumber("n", 0.1);
    preferences.setStrings("collection.onScreen", {});
    MemoryPreferences again;
    again.load(preferences.document());
    EXPECT_EQ(again.string("s"), "l\u00E9\n\"");
    EXPECT_EQ(again.integer("i"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(again.number("whole number"), 3.0);
    EXPECT_EQ(again.number("n"), 0.1);
    EXPECT_EQ(again.strings("collection.onScreen"), Strings{}) << "an empty list is not an absent one";
}

TEST(Preferences, TellOfRealChangesOnly) {
    MemoryPreferences preferences;
    int changes = 0;
    preferences.onChange = [&changes] { ++changes; };
    const auto expectChanges = [&](const char* fault, int expected) {
        EXPECT_EQ(changes, expected) << fault;
        changes = 0;
    };
    preferences.setNumber("size", 1.5);
    expectChanges("a new value", 1);
    preferences.setNumber("size", 1.5);
    expectChanges("the same value would save for nothing", 0);
    preferences.setNumber("size", std::numeric_limits<double>::quiet_NaN());
    preferences.setNumber("size", -std::numeric_limits<double>::infinity());
    expectChanges("not finite", 0);
    EXPECT_EQ(preferences.number("size"), 1.5) << "the old value stays";
    preferences.setString("size", "x");
    expectChanges("another type", 1);
    preferences.remove("size");
    preferences.remove("size");
    expectChanges("gone once", 1);
    preferences.load(R"({"a": 1})");
    expectChanges("what came from the file needs no saving", 0);
}

TEST(Preferences, KeepTheirValuesWhenADocumentIsRefused) {
    MemoryPreferences preferences;
    preferences.setBoolean("kept", true);
    for (const char* document : {"", "{", "[]", "null", R"("text")", R"({"a": 1e999})"}) {
        EXPECT_THROW(preferences.load(document), JsonError) << document;
        EXPECT_EQ(preferences.boolean("kept"), true) << document;
    }
}

} // namespace
} // namespace FellowCore
