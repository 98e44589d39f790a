#include "app/services/BackgroundSaver.h"

#include <gmock/gmock.h>

#include <latch>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace DeskSprites {
namespace {

using testing::ElementsAre;

/// A saver that notes what it wrote and what it said. Both are touched on its queue only, and read after
/// `flush`.
class BackgroundSaverTest : public testing::Test {
protected:
    std::vector<std::string> written;
    std::vector<std::string> failures;
    std::optional<BackgroundSaver> saver;

    void SetUp() override {
        saver.emplace([this](const std::string& line) { failures.push_back(line); });
    }
    void save(const std::string& store, const std::string& value) {
        saver->save(store, "Moth could not save its timer", [this, value] { written.push_back(value); });
    }
    /// Saves a store and returns while its write is under way, which lasts until the latch opens.
    void saveSlowly(const std::string& store, std::latch& until) {
        const auto begun = std::make_shared<std::latch>(1);
        saver->save(store, "", [begun, &until] {
            begun->count_down();
            until.wait();
        });
        begun->wait();
    }
};

TEST_F(BackgroundSaverTest, OfWhatWaitsOnlyTheLatestOfEachStoreIsWritten) {
    std::latch open(1);
    saveSlowly("slow", open);
    // The two fail with one sentence, as two packs of one name do, and are two stores all the same.
    for (int i = 0; i < 100; ++i) {
        save("a/focus-timer.json", "a" + std::to_string(i));
        save("b/focus-timer.json", "b" + std::to_string(i));
    }
    open.count_down();
    saver->flush();
    save("a/focus-timer.json", "a100");
    saver->flush();
    EXPECT_THAT(written, ElementsAre("a99", "b99", "a100"));
}

TEST_F(BackgroundSaverTest, AStateThatComesWhileItsStoreIsWrittenIsNotLost) {
    std::latch open(1);
    saveSlowly("timer", open);
    save("timer", "second");
    open.count_down();
    saver->flush();
    EXPECT_THAT(written, ElementsAre("second"));
}

TEST_F(BackgroundSaverTest, AFailureIsToldAndTheNextSaveIsTriedAllTheSame) {
    saver->save("timer", "Batti could not save its timer", [] { throw std::runtime_error("disk full"); });
    saver->flush();
    save("timer", "later");
    saver->flush();
    EXPECT_THAT(failures, ElementsAre("Batti could not save its timer: disk full"));
    EXPECT_THAT(written, ElementsAre("later"));
}

TEST_F(BackgroundSaverTest, TheEndWritesWhatStillWaits) {
    std::latch open(1);
    saveSlowly("slow", open);
    save("timer", "last");
    std::thread opener([&open] { open.count_down(); });
    saver.reset();
    opener.join();
    EXPECT_THAT(written, ElementsAre("last"));
}

} // namespace
} // namespace DeskSprites
