#include "app/roster/BattiLamps.h"
#include "app/roster/Companion.h"
#include "platform/image/PngDecoder.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace DeskSprites {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Log = std::vector<std::string>;

/// An installation to be spoilt: the built-in art, and packs as a test wants them.
class RosterTest : public testing::Test {
protected:
    TestSupport::TemporaryFolder resources;
    Log log;

    void SetUp() override {
        std::filesystem::copy(std::filesystem::path(DESKFELLOW_DATA) / "builtin", resources / "builtin",
                              std::filesystem::copy_options::recursive);
    }
    /// A pack with Nori's picture, in whatever folder.
    void addPack(const std::string& folder, const std::string& id, const std::string& extra = "") {
        TestSupport::writeBytes(resources / "characters" / folder / "manifest.json",
                                R"({"id": ")" + id + R"(", "name": "N", "role": "R",
            "poses": {"idle": "a.png"}, "face": {"x": 1, "y": 1}, "ground": {"x": 1, "y": 1}, "grid": {"width": 133,
            "height": 157}, "accent": {"red": 0, "green": 0, "blue": 0}, "behaviours": ["idle"])" +
                                    extra + "}");
        TestSupport::writeBytes(resources / "characters" / folder / "a.png",
                                TestSupport::bytesOf(resources / "builtin" / "cat.png"));
    }
    /// The identifiers in order; in brackets those without art.
    Log cast(const std::string& buildFile = "") {
        log.clear();
        const Roster roster(resources.path(), FellowCore::CharacterBuildPolicy::fromBuildJson(buildFile),
                            Platform::decodePng, [this](const std::string& line) { log.push_back(line); });
        Log ids;
        for (const Companion& companion : roster.allCases()) {
            ids.push_back(companion.pack ? companion.rawValue() : "(" + companion.rawValue() + ")");
            EXPECT_EQ(roster.find(companion.rawValue()), &companion)
                << "each identifier stands for one character";
            EXPECT_TRUE(!companion.pack || companion.pack->manifest() == companion.manifest);
        }
        EXPECT_EQ(roster.find("nobody"), nullptr);
        return ids;
    }
};

TEST_F(RosterTest, TheBuildFileSaysWhoIsThere) {
    struct Row {
        const char* file;
        Log cast;
    };
    for (const Row& row :
         {Row{"", {"batti", "mira", "(intern)", "intern-nimit"}},
          Row{"no JSON", {"batti", "mira", "(intern)", "intern-nimit"}},
          Row{R"({"DFIncludeNori": true, "DFIncludeIntern": false})", {"batti", "mira", "(intern)", "nori"}},
          Row{R"({"DFIncludeCustomerIntern": false, "DFIncludeNori": "yes"})",
              {"batti", "mira", "intern-nimit"}}}) {
        EXPECT_EQ(cast(row.file), row.cast) << row.file;
        EXPECT_THAT(log, IsEmpty());
    }
}

TEST_F(RosterTest, PacksStandWhereTheirOrderSaysAndNeverReplaceABuiltIn) {
    addPack("z", "zebra");
    addPack("a", "ant", R"(, "order": 2)");
    addPack("b", "bee");
    addPack("thief", "batti");
    addPack("second", "bee");
    std::filesystem::create_directory(resources / "characters" / "empty");
    EXPECT_THAT(cast(), ElementsAre("batti", "ant", "mira", "(intern)", "intern-nimit", "bee", "zebra"));
    EXPECT_THAT(log, testing::UnorderedElementsAre(HasSubstr("thief"), HasSubstr("empty")));
}

TEST_F(RosterTest, MissingArtIsQuietAndBadArtIsTold) {
    std::filesystem::remove(resources / "builtin" / "mira-breathing.png");
    TestSupport::writeBytes(resources / "builtin" / "batti.png", "no picture");
    std::filesystem::copy_file(resources / "builtin" / "cat.png",
                               resources / "builtin" / "intern-sprites" / "wave.png",
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_THAT(cast(), ElementsAre("(batti)", "(mira)", "(intern)", "(intern-nimit)"));
    EXPECT_THAT(log, testing::UnorderedElementsAre(HasSubstr("batti"), HasSubstr("intern-nimit")));
    std::filesystem::remove_all(resources / "builtin");
    EXPECT_THAT(cast(), ElementsAre("(batti)", "(mira)", "(intern)", "(intern-nimit)"));
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(RosterTest, TheCustomersInternTakesItsPackOrElseTheBuiltInPicture) {
    const std::filesystem::path intern = resources / "characters" / "intern";
    addPack("intern", "intern", R"(, "order": 1)");
    EXPECT_THAT(cast(), ElementsAre("batti", "intern", "mira", "intern-nimit"));
    EXPECT_THAT(cast(R"({"DFIncludeCustomerIntern": false})"), ElementsAre("batti", "mira", "intern-nimit"));

    std::filesystem::copy_file(resources / "builtin" / "intern-sprites" / "idle.png",
                               resources / "builtin" / "intern.png");
    TestSupport::writeBytes(intern / "a.png", "no picture");
    EXPECT_THAT(cast(), ElementsAre("batti", "mira", "intern", "intern-nimit"));
    EXPECT_THAT(log, testing::Contains(HasSubstr("intern")));
    std::filesystem::remove_all(intern);
    EXPECT_THAT(cast(), ElementsAre("batti", "mira", "intern", "intern-nimit"));
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(RosterTest, AStrangerInTheInternsFolderTakesNobodysPlace) {
    for (const char* id : {"moth", "batti", "nori"}) {
        addPack("intern", id);
        const Log ids = cast();
        EXPECT_EQ(std::ranges::count(ids, "batti"), 1) << id;
        EXPECT_EQ(std::ranges::count(ids, "nori"), 0) << "not in this build";
        EXPECT_EQ(std::ranges::count(ids, "moth"), std::string(id) == "moth" ? 1 : 0) << id;
        EXPECT_EQ(std::ranges::count(ids, "(intern)"), 1) << id;
    }
}

TEST_F(RosterTest, ALampThatCannotBeReadStaysDark) {
    const std::filesystem::path builtin = resources / "builtin";
    TestSupport::writeBytes(builtin / "batti-lamp-red.png", "no picture");
    std::filesystem::copy_file(builtin / "cat.png", builtin / "batti-lamp-green.png",
                               std::filesystem::copy_options::overwrite_existing);
    const auto lamps = loadBattiLamps(builtin, {120, 193});
    for (const QImage& lamp : lamps) {
        EXPECT_EQ(lamp.size(), QSize(120, 193));
    }
    const auto isDark = [](const QImage& lamp) {
        QImage dark(lamp.size(), lamp.format());
        dark.fill(Qt::transparent);
        return lamp == dark;
    };
    EXPECT_TRUE(isDark(lamps[0]));
    EXPECT_FALSE(isDark(lamps[1]));
    EXPECT_TRUE(isDark(lamps[2])) << "of another size";
}

} // namespace
} // namespace DeskSprites
