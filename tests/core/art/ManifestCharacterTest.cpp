#include "core/art/ManifestCharacter.h"
#include "core/art/BuiltinCharacters.h"
#include "core/art/PackInspection.h"
#include "tests/core/art/TestPack.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>

#include <functional>

namespace FellowCore {
namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using TestSupport::decodeMap;
using TestSupport::goodFiles;
using TestSupport::goodManifest;
using TestSupport::pictureOf;
using TestSupport::TemporaryFolder;
using TestSupport::writeBytes;
using TestSupport::writePack;
using Kind = ManifestError::Kind;

const std::string emptyPicture = "map\n....\n....\n....\n....\n";

/// Makes the canvas so high that its art of `height` pixels is to be judged by its height alone.
void writeTallPack(const fs::path& pack, std::size_t height) {
    Json manifest = goodManifest();
    manifest["grid"] = {{"width", 1}, {"height", height}};
    manifest["face"] = manifest["ground"] = {{"x", 0}, {"y", 0}};
    const std::string picture = pictureOf(height, "#");
    writePack(pack, manifest, {{"idle.png", picture}, {"blink.png", picture}});
}

Json withIdle(const char* path) {
    Json manifest = goodManifest();
    manifest["poses"]["idle"] = path;
    return manifest;
}

struct PackCase {
    const char* name;
    std::function<void(const fs::path& pack)> change; ///< from a good pack
    std::optional<Kind> kind;                         ///< nothing when the pack stays good
    const char* file = "idle.png";
};

const PackCase packCases[] = {
    {"a good pack is good", [](const fs::path&) {}, {}},
    {"the manifest is missing", [](const fs::path& pack) { fs::remove(pack / "manifest.json"); },
     Kind::invalidManifest, "manifest.json"},
    {"the manifest is larger than any manifest",
     [](const fs::path& pack) {
         writeBytes(pack / "manifest.json", goodManifest().dump() + std::string(1U << 20U, ' '));
     },
     Kind::invalidManifest, "manifest.json"},
    {"an image is missing", [](const fs::path& pack) { fs::remove(pack / "idle.png"); }, Kind::invalidAsset},
    {"an image is no image", [](const fs::path& pack) { writeBytes(pack / "idle.png", "GIF89a"); },
     Kind::invalidAsset},
    {"an image is one pixel off the grid",
     [](const fs::path& pack) { writeBytes(pack / "idle.png", pictureOf(4, "#####")); }, Kind::invalidCanvas},
    {"an image is a folder",
     [](const fs::path& pack) {
         fs::remove(pack / "idle.png");
         fs::create_directory(pack / "idle.png");
     },
     Kind::invalidAsset},
    {"an image is a pipe that nobody writes to",
     [](const fs::path& pack) {
         fs::remove(pack / "idle.png");
         ASSERT_EQ(mkfifo((pack / "idle.png").c_str(), 0600), 0);
     },
     Kind::invalidAsset},
    {"a link leads out of the pack",
     [](const fs::path& pack) {
         fs::rename(pack / "idle.png", pack.parent_path() / "idle.png");
         fs::create_symlink("../idle.png", pack / "idle.png");
     },
     Kind::invalidAsset},
    {"a link leads to a neighbour whose name begins like the pack's",
     [](const fs::path& pack) {
         fs::create_directory(pack.string() + "-2");
         fs::rename(pack / "idle.png", pack.string() + "-2/idle.png");
         fs::create_symlink(pack.string() + "-2/idle.png", pack / "idle.png");
     },
     Kind::invalidAsset},
    {"a linked folder leads out of the pack",
     [](const fs::path& pack) {
         writePack(pack, withIdle("sub/idle.png"));
         fs::create_directory(pack.parent_path() / "elsewhere");
         fs::rename(pack / "idle.png", pack.parent_path() / "elsewhere/idle.png");
         fs::create_directory_symlink("../elsewhere", pack / "sub");
     },
     Kind::invalidAsset, "sub/idle.png"},
    {"a link inside the pack is followed",
     [](const fs::path& pack) {
         fs::rename(pack / "idle.png", pack / "real.png");
         fs::create_symlink("real.png", pack / "idle.png");
     },
     {}},
    {"links in a circle",
     [](const fs::path& pack) {
         fs::remove(pack / "idle.png");
         fs::create_symlink("idle.png", pack / "idle.png");
     },
     Kind::invalidAsset},
    {"an image in a folder of the pack",
     [](const fs::path& pack) {
         writePack(pack, withIdle("sub/idle.png"));
         fs::create_directory(pack / "sub");
         fs::rename(pack / "idle.png", pack / "sub/idle.png");
     },
     {}},
    {"an image that no pose names may be anything",
     [](const fs::path& pack) { writeBytes(pack / "x.png", "?"); },
     {}},
    {"nothing is to be seen",
     [](const fs::path& pack) {
         writePack(pack, goodManifest(), {{"idle.png", emptyPicture}, {"blink.png", emptyPicture}});
     },
     Kind::emptyArtwork, "manifest.json"},
    {"alpha 20 is nothing to be seen",
     [](const fs::path& pack) {
         writePack(pack, goodManifest(), {{"idle.png", pictureOf(4, "----")}, {"blink.png", emptyPicture}});
     },
     Kind::emptyArtwork, "manifest.json"},
    {"one pixel of alpha 21 in one pose is something",
     [](const fs::path& pack) {
         writePack(pack, goodManifest(), {{"idle.png", emptyPicture}, {"blink.png", pictureOf(4, "---+")}});
     },
     {}},
    {"art of 600 pixels", [](const fs::path& pack) { writeTallPack(pack, 600); }, {}},
    {"art of 601 pixels", [](const fs::path& pack) { writeTallPack(pack, 601); }, Kind::invalidCanvas,
     "manifest.json"},
    {"art higher than its reference, by one pose alone",
     [](const fs::path& pack) {
         Json manifest = goodManifest();
         manifest["scaleReferenceHeight"] = 2;
         writePack(pack, manifest);
     },
     Kind::invalidCanvas, "manifest.json"},
};

TEST(ManifestCharacter, LoadsGoodPacksAndRefusesOthersAsTheInspectionDoes) {
    for (const PackCase& row : packCases) {
        SCOPED_TRACE(row.name);
        const TemporaryFolder folder;
        const fs::path pack = folder / "moth";
        writePack(pack, goodManifest());
        row.change(pack);
        const PackInspection inspection(pack, decodeMap);
        EXPECT_EQ(inspection.problems.empty(), !row.kind.has_value());
        try {
            const ManifestCharacter character(pack, decodeMap);
            EXPECT_FALSE(row.kind) << "was accepted";
        } catch (const ManifestError& error) {
            EXPECT_EQ(error.kind(), row.kind) << error.what();
            EXPECT_EQ(error.file(), row.file);
            ASSERT_FALSE(inspection.problems.empty());
            EXPECT_EQ(error.what(), inspection.problems.front().sentence());
        }
    }
}

TEST(ManifestCharacter, MeasuresTheArtOfAllPoses) {
    const TemporaryFolder folder;
    writePack(folder / "moth", goodManifest());
    const ManifestCharacter character(folder / "moth", decodeMap);
    // Row 1 to row 3 from the top of a canvas of 4 is y 0 to 3 from its bottom.
    EXPECT_EQ(character.visibleBounds(), (Rect{1, 0, 2, 3}));
    EXPECT_EQ(character.scaleReferenceHeight(), 3);
    EXPECT_TRUE(character.opaque("idle", {0.6, 0.6}));
    EXPECT_FALSE(character.opaque("blink", {0.6, 0.6}));
    EXPECT_FALSE(character.opaque("sleep", {0.6, 0.6})) << "no such pose";
    EXPECT_EQ(character.alphaRuns("blink"), (std::vector<AlphaRun>{{1, 1, 2, 4}}));
    EXPECT_EQ(character.alphaRuns("sleep"), std::vector<AlphaRun>{});
    EXPECT_EQ(character.images().at("idle")->size(), (PixelSize{4, 4}));
}

TEST(ManifestCharacter, LaysOutTheArtInItsWindow) {
    const TemporaryFolder folder;
    writePack(folder / "moth", goodManifest());
    const ManifestCharacter character(folder / "moth", decodeMap);
    const auto layout = character.layout(300, 1, Sizing::snapped); // three pixels of art: 100 points each
    EXPECT_DOUBLE_EQ(layout.unit, 100);
    EXPECT_EQ(layout.size, (Size{432, 432}));
    EXPECT_EQ(layout.artwork, (Rect{16, 16, 400, 400}));
    EXPECT_EQ(layout.visible, (Rect{116, 16, 200, 300}));
    EXPECT_EQ(layout.face, (Point{216, 316})) << "y 1 from the top is 3 from the bottom";
    EXPECT_EQ(layout.ground, (Point{166, 16}));
    EXPECT_EQ(layout.anchorRect(), (Rect{66, 16, 200, 300}));
    EXPECT_DOUBLE_EQ(character.layout(301, 1, Sizing::snapped).unit, 100);
    EXPECT_NEAR(character.layout(301, 1, Sizing::continuous).unit, 301 / 3.0, 1e-9);

    Json manifest = goodManifest();
    manifest["scaleReferenceHeight"] = 4;
    writePack(folder / "moth", manifest);
    EXPECT_DOUBLE_EQ(ManifestCharacter(folder / "moth", decodeMap).layout(400, 1, Sizing::snapped).unit, 100);
}

TEST(ManifestCharacter, ReadsAFileOnceHoweverManyPosesUseIt) {
    const TemporaryFolder folder;
    Json manifest = goodManifest();
    manifest["poses"] = {
        {"idle", "idle.png"}, {"blink", "./idle.png"}, {"sit", "idle.png"}, {"run", "blink.png"}};
    writePack(folder / "moth", manifest);
    int decoded = 0;
    const auto counting = [&](std::string_view bytes, std::optional<PixelSize> expected) {
        ++decoded;
        EXPECT_EQ(expected, (PixelSize{4, 4})) << "a decoder that is not told the size cannot refuse a bomb";
        return decodeMap(bytes, expected);
    };
    const ManifestCharacter character(folder / "moth", counting);
    EXPECT_EQ(decoded, 2);
    EXPECT_EQ(character.images().size(), 4U);
    EXPECT_EQ(character.images().at("idle"), character.images().at("sit"));
}

TEST(ManifestCharacter, BringsOnlyTheCustomerInternsArtToItsGrid) {
    const TemporaryFolder folder;
    writeBytes(folder / "intern.png", "map\n.#\n..\n");
    const ManifestCharacter intern(BuiltinCharacters::customerIntern(), folder.path(), decodeMap);
    EXPECT_EQ(intern.images().at("idle")->size(), (PixelSize{73, 116}));
    EXPECT_EQ(intern.visibleBounds(), (Rect{37, 58, 36, 58}));

    CharacterManifest other = BuiltinCharacters::customerIntern();
    other.name = "Somebody";
    EXPECT_THROW(ManifestCharacter(other, folder.path(), decodeMap), ManifestError);
}

TEST(PackInspection, TellsEveryFaultAndWhatIsOdd) {
    const TemporaryFolder folder;
    Json manifest = goodManifest();
    manifest["id"] = "batti";
    manifest["role"] = "";
    manifest["poses"]["walk"] = "walk.png";
    manifest["poses"]["back"] = "walk.png";
    manifest["poses"]["out"] = "../out.png";
    manifest["sound"] = "chirp";
    writePack(folder / "moth", manifest,
              {{"idle.png", pictureOf(5, "####")}, {"blink.png", "?"}, {"notes/a.txt", ""}});
    const PackInspection inspection(folder / "moth", decodeMap);
    std::vector<std::string> told;
    for (const ManifestProblem& problem : inspection.problems) {
        told.push_back(problem.sentence());
    }
    EXPECT_THAT(told, ElementsAre(HasSubstr("built-in"), HasSubstr("\"role\""), HasSubstr("pose \"out\""),
                                  "walk.png: the file is missing.", "blink.png: the image is no picture.",
                                  "idle.png: the image has another size."));
    EXPECT_THAT(inspection.notes, ElementsAre(HasSubstr("\"sound\""), HasSubstr("notes/a.txt")));
}

TEST(PackInspection, DoesNotListThousandsOfFiles) {
    const TemporaryFolder folder;
    writePack(folder / "moth", goodManifest());
    for (int index = 0; index < 1000; ++index) {
        writeBytes(folder / "moth" / ("spare" + std::to_string(index)), "");
    }
    const PackInspection inspection(folder / "moth", decodeMap);
    EXPECT_TRUE(inspection.problems.empty());
    EXPECT_EQ(inspection.notes.size(), 21U);
    EXPECT_THAT(inspection.notes, Contains(HasSubstr("980 more")));
}

} // namespace
} // namespace FellowCore
