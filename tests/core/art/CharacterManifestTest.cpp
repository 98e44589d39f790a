#include "core/art/CharacterManifest.h"
#include "core/art/BuiltinCharacters.h"
#include "core/art/ManifestReading.h"
#include "tests/core/art/TestPack.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace FellowCore {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using TestSupport::goodManifest;
using Kind = ManifestError::Kind;

std::string repeated(std::size_t count, const std::string& text) {
    std::string all;
    for (std::size_t index = 0; index < count; ++index) {
        all += text;
    }
    return all;
}

Json posesOf(int count) {
    Json poses = {{"idle", "idle.png"}};
    for (int index = 1; index < count; ++index) {
        poses["pose" + std::to_string(index)] = "idle.png";
    }
    return poses;
}

Json without(const char* field) {
    Json manifest = goodManifest();
    manifest.erase(field);
    return manifest;
}

Json with(const char* pointer, const Json& value) {
    Json manifest = goodManifest();
    manifest[Json::json_pointer(pointer)] = value;
    return manifest;
}

struct RuleCase {
    const char* name;
    Json manifest;
    const char* rule; ///< a part of the first sentence; nothing when the manifest is good
    Kind kind = Kind::invalidManifest;
};

void expectRule(const RuleCase& row) {
    SCOPED_TRACE(row.name);
    try {
        CharacterManifest::fromJson(row.manifest.dump()).validate();
        EXPECT_EQ(row.rule, nullptr) << "was accepted";
    } catch (const ManifestError& error) {
        ASSERT_NE(row.rule, nullptr) << error.what();
        EXPECT_THAT(error.what(), HasSubstr(row.rule));
        EXPECT_EQ(error.kind(), row.kind);
        EXPECT_EQ(error.file(), "manifest.json");
    }
}

TEST(CharacterManifest, JudgesEachField) {
    const RuleCase cases[] = {
        {"a good manifest is good", goodManifest(), nullptr},
        {"order starts at one, not zero", with("/order", 0), "\"order\" must be at least 1"},
        {"one is a place", with("/order", 1), nullptr},
        {"null is absent", with("/order", nullptr), nullptr},
        {"no half places", with("/order", 1.5), "\"order\""},
        {"a reference below one pixel", with("/scaleReferenceHeight", 0.5), "\"scaleReferenceHeight\""},
        {"a reference above the canvas", with("/scaleReferenceHeight", 4.01), "\"scaleReferenceHeight\""},
        {"a reference as high as the canvas", with("/scaleReferenceHeight", 4), nullptr},
        {"an empty id", with("/id", ""), "\"id\" must not be empty"},
        {"a capital in the id", with("/id", "Moth"), "\"id\" must use only a-z"},
        {"a path in the id", with("/id", "../moth"), "\"id\" must use only a-z"},
        {"an id of 64", with("/id", repeated(64, "a")), nullptr},
        {"an id of 65", with("/id", repeated(65, "a")), "\"id\" must have at most 64"},
        {"an id that is a number", with("/id", 7), "\"id\""},
        {"a name of no-break spaces", with("/name", "\u00a0\n "), "\"name\" must not be empty"},
        {"a name of 80 people, each many bytes", with("/name", repeated(80, "\U0001F469\u200d\U0001F680")),
         nullptr},
        {"a name of 81", with("/name", repeated(81, "a")), "\"name\" must have at most 80"},
        {"spaces around the name count", with("/name", " " + repeated(80, "a")),
         "\"name\" must have at most 80"},
        {"a role of 81", with("/role", repeated(81, "a")), "\"role\" must have at most 80"},
        {"an empty role", with("/role", ""), "\"role\" must not be empty"},
        {"the largest grid", with("/grid", {{"width", 2048}, {"height", 2048}}), nullptr},
        {"a grid too wide", with("/grid/width", 2049), "\"grid.width\" must be from 1 to 2048"},
        {"a grid without height", with("/grid/height", 0), "\"grid.height\" must be from 1 to 2048"},
        {"a grid beyond integers", with("/grid/width", 1e12), "\"grid.width\" is out of range"},
        {"a grid beyond 64 bits", with("/grid/width", 1e300), "\"grid.width\""},
        {"no idle pose", with("/poses", {{"blink", "b.png"}}), "\"poses\" must hold \"idle\""},
        {"33 poses", with("/poses", posesOf(33)), "\"poses\" must hold at most 32"},
        {"a pose that is no text", with("/poses/idle", 3), "\"poses.idle\""},
        {"no behaviours", with("/behaviours", Json::array()), "\"behaviours\" must not be empty"},
        {"a behaviour twice", with("/behaviours", {"idle", "idle"}),
         "\"behaviours\" must not hold anything twice"},
        {"none is alone", with("/behaviours", {"none", "idle"}), "nothing else beside \"none\""},
        {"none alone", with("/behaviours", {"none"}), nullptr},
        {"an unknown behaviour", with("/behaviours", {"idle", "dance"}), "\"behaviours[1]\" must be"},
        {"nothing to blink with", with("/poses", {{"idle", "i.png"}}), "\"poses\" must hold \"blink\""},
        {"a face in the corner", with("/face", {{"x", 4}, {"y", 0}}), nullptr},
        {"a face beside the canvas", with("/face/x", 4.5), "\"face\" must lie within the grid"},
        {"a foot above the canvas", with("/ground/y", -0.1), "\"ground\" must lie within the grid"},
        {"a glaring accent", with("/accent/green", 1.001), "\"accent\""},
        {"half an accent", with("/accent", {{"red", 1}}), "\"accent.green\" is missing"},
        {"an empty pose path", with("/poses/idle", ""), "pose \"idle\" must not be empty",
         Kind::invalidAsset},
        {"no name at all", without("name"), "\"name\" is missing"},
        {"no grid at all", without("grid"), "\"grid\" is missing"},
        {"a list instead of a manifest", Json::array(), "the document should be an object"},
    };
    for (const RuleCase& row : cases) {
        expectRule(row);
    }
    EXPECT_EQ(CharacterManifest::fromJson(with("/poses", posesOf(32)).dump()).poses.size(), 32U);
    EXPECT_THROW(CharacterManifest::fromJson("{\"id\": "), ManifestError);
}

TEST(CharacterManifest, JudgesPaths) {
    const struct {
        std::string path;
        bool good;
    } cases[] = {
        {"idle.png", true},
        {"sub/idle.png", true},
        {"IDLE.PNG", true},
        {"..idle.png", true},
        {"sub/../idle.png", false},
        {"../idle.png", false},
        {"/etc/idle.png", false},
        {"sub\\idle.png", false},
        {"idle.gif", false},
        {"png", false},
        {"", false},
        {std::string("idle\0.png", 9), false},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(!posePathFault(row.path), row.good) << row.path;
    }
}

TEST(CharacterManifest, TellsEverythingAtOnceAndThrowsTheFirst) {
    Json manifest = goodManifest();
    manifest["accent"] = 3;
    manifest["poses"] = {{"blink", "b.gif"}};
    manifest["id"] = "A" + repeated(64, "a");
    manifest["order"] = 0;
    manifest["colour"] = "red";
    const ManifestReading reading(manifest.dump());
    std::vector<std::string> sentences;
    for (const auto& problem : reading.problems) {
        sentences.push_back(problem.sentence());
    }
    for (const auto& problem : reading.manifest.problems(reading.unreadable)) {
        sentences.push_back(problem.sentence());
    }
    EXPECT_THAT(sentences, ElementsAre("manifest.json: \"accent\" should be an object but is number.",
                                       "manifest.json: \"order\" must be at least 1.",
                                       "manifest.json: \"id\" must have at most 64 characters.",
                                       "manifest.json: \"id\" must use only a-z, 0-9 and \"-\".",
                                       "manifest.json: \"poses\" must hold \"idle\".",
                                       "manifest.json: the path of pose \"blink\" must end in \".png\"."));
    EXPECT_THAT(reading.unknownKeys, ElementsAre("colour"));
    EXPECT_THROW(reading.manifest.validate(), ManifestError);
}

TEST(CharacterManifest, OrdersTheRoster) {
    const auto entry = [](std::optional<int> order, const char* id) {
        CharacterManifest manifest;
        manifest.order = order;
        manifest.id = id;
        return manifest;
    };
    const struct {
        const char* name;
        CharacterManifest one, other;
        bool precedes;
    } cases[] = {
        {"a smaller order first, whatever the id", entry(1, "z"), entry(2, "a"), true},
        {"a larger order never", entry(2, "a"), entry(1, "z"), false},
        {"an order before none", entry(900, "z"), entry({}, "a"), true},
        {"none after an order", entry({}, "a"), entry(900, "z"), false},
        {"a tie goes to the id", entry(3, "a"), entry(3, "b"), true},
        {"without orders the id decides", entry({}, "b"), entry({}, "a"), false},
        {"equals do not precede", entry(3, "a"), entry(3, "a"), false},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(row.one.precedes(row.other), row.precedes) << row.name;
    }
}

TEST(BuiltinCharacters, KeepTheirOwnRules) {
    std::vector<std::string> ids;
    for (const CharacterManifest& manifest : BuiltinCharacters::all()) {
        EXPECT_THAT(manifest.problems(), ElementsAre()) << manifest.id;
        EXPECT_TRUE(BuiltinCharacters::contains(manifest.id));
        ids.push_back(manifest.id);
    }
    EXPECT_THAT(ids, ElementsAre("batti", "mira", "intern-nimit", "intern", "nori"));
    EXPECT_FALSE(BuiltinCharacters::contains("munshi"));
    EXPECT_EQ(BuiltinCharacters::intern().poses.size(), 10U);
}

} // namespace
} // namespace FellowCore
