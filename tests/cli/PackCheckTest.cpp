#include "tests/cli/RunFellow.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

namespace {

using FellowTest::Answer;
using FellowTest::runFellow;
namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A copy of a pack that comes with the program, to be spoilt.
class PackCheck : public ::testing::Test {
protected:
    PackCheck() {
        fs::copy(fs::path(DESKFELLOW_DATA) / "characters/munshi", pack(), fs::copy_options::recursive);
    }

    fs::path pack() const { return folder_ / "a pack"; }
    Answer check() const { return runFellow("pack check '" + pack().string() + "'"); }

    TestSupport::TemporaryFolder folder_;
};

TEST_F(PackCheck, AcceptsAGoodPack) {
    const Answer answer = check();
    EXPECT_EQ(answer.status, 0) << answer.err;
    EXPECT_THAT(answer.out, HasSubstr("Munshi (munshi) is good"));
    EXPECT_THAT(answer.err, IsEmpty());
}

TEST_F(PackCheck, TellsEveryFaultOnStandardError) {
    std::string manifest = TestSupport::bytesOf(pack() / "manifest.json");
    manifest.replace(manifest.find("\"munshi\""), 8, "\"Munshi\"");
    TestSupport::writeBytes(pack() / "manifest.json", manifest);
    const std::string picture = TestSupport::bytesOf(pack() / "idle.png");
    TestSupport::writeBytes(pack() / "idle.png", picture.substr(0, picture.size() / 2));
    fs::remove(pack() / "blink.png");
    TestSupport::writeBytes(pack() / "read me.txt", "");
    const Answer answer = check();
    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.err, AllOf(HasSubstr("manifest.json: \"id\" must use only a-z, 0-9 and \"-\".\n"),
                                  HasSubstr("idle.png: the image is damaged"),
                                  HasSubstr("blink.png: the file is missing.\n")));
    EXPECT_THAT(answer.out, HasSubstr("note: read me.txt: no pose names this file."));
}

TEST_F(PackCheck, RefusesAFolderThatIsNone) {
    const Answer answer = runFellow("pack check '" + folder_.path().string() + "/none'");
    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.err, HasSubstr("/none is no folder."));
}

TEST(Fellow, TellsHowItIsUsed) {
    const struct {
        const char* words;
        int status;
        const char* out;
        const char* err;
    } cases[] = {
        {"", 2, "", "usage: fellow"},
        {"pack", 2, "", "\"pack\" is no complete command"},
        {"pack chekc x", 2, "", "usage: fellow"},
        {"pack check", 2, "", "usage: fellow pack check DIR"},
        {"pack check a b", 2, "", "usage: fellow pack check DIR"},
        {"pack check --strict", 2, "", "usage: fellow pack check DIR"},
        {"--help", 0, "pack check DIR", ""},
        {"pack check --help", 0, "Exit status:", ""},
        {"pack --help", 0, "pack check DIR", ""},
        {"--version", 0, "fellow " DESKFELLOW_VERSION "\n", ""},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.words);
        const Answer answer = runFellow(row.words);
        EXPECT_EQ(answer.status, row.status);
        EXPECT_THAT(answer.out, HasSubstr(row.out));
        EXPECT_THAT(answer.err, HasSubstr(row.err));
        EXPECT_EQ(answer.out.empty(), row.status != 0) << "help goes out, complaints go to standard error";
        EXPECT_EQ(answer.err.empty(), row.status == 0);
    }
}

} // namespace
