#include "core/art/CharacterBuildPolicy.h"

#include <gmock/gmock.h>

namespace FellowCore {
namespace {

TEST(CharacterBuildPolicy, ReadsItsFlags) {
    const struct {
        const char* name;
        const char* text;
        CharacterBuildPolicy policy;
    } cases[] = {
        {"no text", "", {true, false, true}},
        {"no JSON", "DFIncludeNori", {true, false, true}},
        {"no object", "[true]", {true, false, true}},
        {"all flags",
         R"({"DFIncludeIntern":false,"DFIncludeNori":true,"DFIncludeCustomerIntern":false})",
         {false, true, false}},
        {"a flag of the wrong type leaves the others",
         R"({"DFIncludeIntern":0,"DFIncludeNori":true})",
         {true, true, true}},
        {"null is missing", R"({"DFIncludeNori":null})", {true, false, true}},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(CharacterBuildPolicy::fromBuildJson(row.text), row.policy) << row.name;
    }
}

TEST(CharacterBuildPolicy, DecidesByIdentifier) {
    const CharacterBuildPolicy nothing{false, false, false};
    const CharacterBuildPolicy onlyNori{false, true, false};
    for (const char* id : {"intern-nimit", "nori", "intern"}) {
        EXPECT_FALSE(nothing.includes(id)) << id;
        EXPECT_TRUE((CharacterBuildPolicy{true, true, true}).includes(id)) << id;
    }
    EXPECT_TRUE(onlyNori.includes("nori"));
    EXPECT_FALSE(onlyNori.includes("intern"));
    EXPECT_TRUE(nothing.includes("batti"));
    EXPECT_TRUE(nothing.includes("pump"));
}

TEST(CharacterBuildPolicy, BringsBackWhatStillExists) {
    const CharacterBuildPolicy policy;
    const std::set<std::string> available{"batti", "mira", "nori"};
    EXPECT_EQ(policy.restoredID("mira", available), "mira");
    EXPECT_EQ(policy.restoredID("nori", available), "batti") << "excluded, though available";
    EXPECT_EQ(policy.restoredID("pump", available), "batti") << "included, though not available";
    EXPECT_EQ(policy.restoredID({}, available), "batti");
}

} // namespace
} // namespace FellowCore
