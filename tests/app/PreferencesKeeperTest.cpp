#include "app/services/PreferencesKeeper.h"
#include "tests/app/AppHarness.h"

namespace AppHarness {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class PreferencesKeeperTest : public testing::Test {
protected:
    Desk desk;
    const std::filesystem::path path = desk.folders.preferencesFile();
    std::unique_ptr<PreferencesKeeper> keeper;

    PreferencesKeeper& make() {
        keeper = std::make_unique<PreferencesKeeper>(desk.files, path, desk.saver);
        return *keeper;
    }
    /// What is in the file, once the queue is idle; empty without one.
    std::string written() {
        desk.saver.flush();
        return std::filesystem::is_regular_file(path) ? TestSupport::bytesOf(path) : "";
    }
    /// File calls that a wait costs: as many for one write as for any other.
    int callsWhile(int milliseconds) {
        desk.saver.flush();
        const int before = desk.files.calls;
        Testing::runFor(milliseconds);
        desk.saver.flush();
        return desk.files.calls - before;
    }
};

TEST_F(PreferencesKeeperTest, ABurstIsOneWriteAndIdlenessIsNone) {
    make().preferences().setInteger("a", 1);
    EXPECT_EQ(written(), "") << "not within the change";
    const int one = callsWhile(600);
    ASSERT_GT(one, 0);
    for (int i = 0; i < 1000; ++i) {
        keeper->preferences().setInteger("a", i);
        keeper->preferences().setInteger("b", i);
    }
    EXPECT_EQ(callsWhile(600), one);
    EXPECT_THAT(written(), HasSubstr("\"b\": 999"));
    keeper->preferences().setInteger("b", 999);
    EXPECT_EQ(callsWhile(600), 0) << "the same value again is no change";
}

TEST_F(PreferencesKeeperTest, ChangesThatDoNotEndAreWrittenMeanwhile) {
    make();
    int i = 0;
    EXPECT_TRUE(waitUntil([&] {
        keeper->preferences().setInteger("drag", ++i);
        return std::filesystem::exists(path);
    }));
}

TEST_F(PreferencesKeeperTest, TheEndAndSaveNowWriteWhatIsOutstanding) {
    make().preferences().setString("who", "moth");
    keeper->saveNow();
    EXPECT_THAT(written(), HasSubstr("moth"));
    keeper->preferences().setString("who", "bee");
    keeper.reset();
    EXPECT_THAT(written(), HasSubstr("bee"));
    EXPECT_EQ(make().preferences().string("who"), "bee");
    EXPECT_EQ(keeper->loadProblem(), std::nullopt);
    const int before = desk.files.calls;
    keeper.reset();
    desk.saver.flush();
    EXPECT_EQ(desk.files.calls, before) << "nothing was changed, so nothing is written";
}

TEST_F(PreferencesKeeperTest, AFileThatCannotBeReadIsNeverWritten) {
    TestSupport::writeBytes(path, R"({"who": "moth"})");
    desk.files.failAt = 1;
    desk.files.code = EACCES;
    EXPECT_THAT(make().loadProblem().value_or(""), HasSubstr("cannot be read"));
    keeper->preferences().setString("who", "bee");
    EXPECT_EQ(keeper->preferences().string("who"), "bee") << "in memory it works all the same";
    EXPECT_EQ(callsWhile(500), 0);
    keeper->saveNow();
    keeper.reset();
    EXPECT_EQ(written(), R"({"who": "moth"})");
    EXPECT_THAT(desk.failures, IsEmpty());
}

TEST_F(PreferencesKeeperTest, AFailedWriteIsToldAndTriedAgainWithTheNextChange) {
    make().preferences().setString("who", "moth");
    std::filesystem::create_directories(path); // no file can take a folder's place
    keeper->saveNow();
    desk.saver.flush();
    EXPECT_THAT(desk.failures, ElementsAre(HasSubstr("Deskfellow could not save its settings: ")));
    std::filesystem::remove(path);
    keeper->preferences().setString("role", "light");
    keeper->saveNow();
    EXPECT_THAT(written(), testing::AllOf(HasSubstr("moth"), HasSubstr("light")));
}

} // namespace
} // namespace AppHarness
