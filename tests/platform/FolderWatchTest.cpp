#include "platform/FolderWatch.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Waiting.h"

#include <gmock/gmock.h>

#include <fstream>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Testing::runFor;
using Testing::waitUntil;

struct Watched {
    TestSupport::TemporaryFolder place;
    std::filesystem::path folder = place / "watched";
    std::vector<std::string> told;
    std::unique_ptr<Platform::FolderWatch> watch;

    Watched() {
        std::filesystem::create_directory(folder);
        TestSupport::writeBytes(folder / "old", "1");
        TestSupport::writeBytes(place / "outside", "2");
        watch = std::make_unique<Platform::FolderWatch>(
            folder, [this](const std::string& name) { told.push_back(name); });
    }
};

TEST(FolderWatchTest, EveryWayOfChangingAFileIsTold) {
    using Act = std::function<void(const Watched&)>;
    struct Case {
        const char* fault;
        Act act;
        const char* name;
    };
    const Case cases[] = {
        {"written in place", [](const Watched& at) { TestSupport::writeBytes(at.folder / "old", "3"); },
         "old"},
        {"replaced by another",
         [](const Watched& at) { std::filesystem::rename(at.place / "outside", at.folder / "old"); }, "old"},
        {"made", [](const Watched& at) { TestSupport::writeBytes(at.folder / "new", "3"); }, "new"},
        {"removed", [](const Watched& at) { std::filesystem::remove(at.folder / "old"); }, "old"},
        {"moved away",
         [](const Watched& at) { std::filesystem::rename(at.folder / "old", at.place / "elsewhere"); },
         "old"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.fault);
        Watched at;
        ASSERT_TRUE(at.watch->isWatching());
        for (int time = 0; time < 2; ++time) {
            at.told.clear();
            each.act(at);
            EXPECT_TRUE(waitUntil([&] { return !at.told.empty(); }));
            EXPECT_THAT(at.told, ElementsAre(each.name));
            // Again, because a watch on the file itself would have lost it.
            TestSupport::writeBytes(at.folder / each.name, "4");
            TestSupport::writeBytes(at.place / "outside", "5");
            runFor(30);
        }
    }
}

TEST(FolderWatchTest, ReadingIsNoChange) {
    Watched at;
    EXPECT_EQ(TestSupport::bytesOf(at.folder / "old"), "1");
    runFor(60);
    EXPECT_THAT(at.told, IsEmpty());
}

TEST(FolderWatchTest, AFolderThatGoesIsToldOnceAndNoMore) {
    Watched at;
    std::filesystem::remove_all(at.folder);
    EXPECT_TRUE(waitUntil([&] { return !at.watch->isWatching(); }));
    runFor(30);
    EXPECT_THAT(at.told, testing::Contains(""));
    const auto before = at.told.size();
    std::filesystem::create_directory(at.folder);
    TestSupport::writeBytes(at.folder / "old", "6");
    runFor(30);
    EXPECT_EQ(at.told.size(), before);
    EXPECT_FALSE(Platform::FolderWatch(at.place / "nowhere", [](const std::string&) {}).isWatching());
}

TEST(FolderWatchTest, ItMayBeDestroyedByItsOwnNews) {
    Watched at;
    bool told = false;
    at.watch = std::make_unique<Platform::FolderWatch>(at.folder, [&](const std::string&) {
        told = true;
        at.watch.reset();
    });
    TestSupport::writeBytes(at.folder / "a", "1");
    TestSupport::writeBytes(at.folder / "b", "1");
    EXPECT_TRUE(waitUntil([&] { return told; }));
    runFor(30);
}

} // namespace
