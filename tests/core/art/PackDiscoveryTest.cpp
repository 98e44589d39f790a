#include "core/art/ManifestCharacter.h"
#include "tests/core/art/TestPack.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace FellowCore {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using TestSupport::goodManifest;
using TestSupport::TemporaryFolder;
using TestSupport::writeBytes;
using TestSupport::writePack;

/// A folder of characters, and what discovering it brought.
class PackDiscovery : public ::testing::Test {
protected:
    fs::path characters() const { return root_ / "characters"; }

    void addPack(const std::string& folder, const std::string& id, std::optional<int> order = {}) {
        Json manifest = goodManifest();
        manifest["id"] = id;
        if (order) {
            manifest["order"] = *order;
        }
        writePack(characters() / folder, manifest);
    }

    std::vector<std::string> discover(const CharacterBuildPolicy& policy = {}) {
        std::vector<std::string> ids;
        log_.clear();
        for (const auto& pack :
             ManifestCharacter::discover(root_.path(), policy, TestSupport::decodeMap,
                                         [this](const std::string& line) { log_.push_back(line); })) {
            ids.push_back(pack->manifest().id);
        }
        return ids;
    }

    TemporaryFolder root_;
    std::vector<std::string> log_;
};

TEST_F(PackDiscovery, SortsPacksForTheRoster) {
    addPack("a", "late", 9);
    addPack("b", "unordered");
    addPack("c", "early", 3);
    addPack("d", "also-unordered");
    EXPECT_THAT(discover(), ElementsAre("early", "late", "also-unordered", "unordered"));
    EXPECT_THAT(log_, IsEmpty());
}

TEST_F(PackDiscovery, GoesOnAfterABadPackAndSaysWhy) {
    addPack("a-good", "good");
    addPack("b-capital", "Bad");
    addPack("c-reserved", "mira");
    writeBytes(characters() / "d-broken/manifest.json", "{");
    fs::create_directories(characters() / "e-empty\nline");
    writeBytes(characters() / "f-file.txt", "no pack");
    writeBytes(characters() / ".hidden", "nobody meant this as a pack");
    addPack("z-good", "better");
    EXPECT_THAT(discover(), ElementsAre("better", "good"));
    const auto skipped = [](const std::string& folder, const std::string& why) {
        return AllOf(StartsWith("Deskfellow skipped character pack " + folder + ": "), HasSubstr(why));
    };
    EXPECT_THAT(log_,
                ElementsAre(skipped("b-capital", "\"id\" must use only"), skipped("c-reserved", "\"mira\""),
                            skipped("d-broken", "cannot be read"), skipped("e-empty line", "is missing"),
                            skipped("f-file.txt", "is missing")));
}

TEST_F(PackDiscovery, FollowsNoLinkOutOfItsFolder) {
    addPack("a-good", "good");
    addPack("../elsewhere", "stranger");
    addPack("b-manifest", "linked");
    fs::create_directory_symlink(root_ / "elsewhere", characters() / "c-pack");
    fs::remove(characters() / "b-manifest/manifest.json");
    fs::create_symlink(root_ / "elsewhere/manifest.json", characters() / "b-manifest/manifest.json");
    EXPECT_THAT(discover(), ElementsAre("good"));
    EXPECT_THAT(log_, ElementsAre(HasSubstr("manifest.json: the file leads out"),
                                  HasSubstr("c-pack: the folder leads out")));
}

TEST_F(PackDiscovery, TakesTheFirstOfTwoPacksWithOneIdentifier) {
    addPack("b", "twin", 5);
    addPack("a", "twin", 7);
    ASSERT_THAT(discover(), ElementsAre("twin"));
    const auto packs = ManifestCharacter::discover(root_.path(), {}, TestSupport::decodeMap, {});
    EXPECT_EQ(packs.front()->directory(), characters() / "a");
}

TEST_F(PackDiscovery, IsQuietAboutWhatTheBuildLeavesOutAndAboutBuiltinArt) {
    addPack("any", "nori");      // excluded by the policy before it could be refused as reserved
    addPack("intern", "intern"); // the art of the built-in of that name
    fs::create_directories(characters() / "batti"); // likewise, with its manifest compiled in
    addPack("other", "good");
    EXPECT_THAT(discover(), ElementsAre("good"));
    EXPECT_THAT(log_, IsEmpty());
    EXPECT_THAT(discover({.includeNori = true}), ElementsAre("good"));
    EXPECT_THAT(log_, ElementsAre(HasSubstr("\"nori\"")));
}

TEST_F(PackDiscovery, FindsNothingWithoutAFolder) {
    EXPECT_THAT(discover(), IsEmpty());
    writeBytes(characters(), "a file in its place");
    EXPECT_THAT(discover(), IsEmpty());
    EXPECT_THAT(log_, IsEmpty());
}

} // namespace
} // namespace FellowCore
