#include "app/services/BackgroundSaver.h"

#include <gmock/gmock.h>

#include <latch>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace DeskSprites {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A saver whose queue can be held up, with what it wrote and what it said. Both are touched on the queue
/// only, and read after `flush`.
struct Saves {
    std::vector<std::string> written;
    std::vector<std::string> failures;
    BackgroundSaver saver{[this](const std::string& line) { failures.push_back(line); }};

    void save(const std::string& store, const std::string& value) {
        saver.save(store, "could not save " + store,
                   [this, store, value] { written.push_back(store + "=" + value); });
    }
    /// Holds the queue up until the latch opens.
    void block(std::latch& until) {
        std::latch begun(1);
        saver.save("block", "", [&begun, &until] {
            begun.count_down();
            until.wait();
        });
        begun.wait();
    }
};

TEST(BackgroundSaverTest, OfWhatWaitsOnlyTheLatestOfEachStoreIsWritten) {
    Saves saves;
    std::latch open(1);
    saves.block(open);
    for (int i = 0; i < 100; ++i) {
        saves.save("timer", std::to_string(i));
        saves.save("settings", std::to_string(-i));
    }
    open.count_down();
    saves.saver.flush();
    EXPECT_THAT(saves.written, ElementsAre("timer=99", "settings=-99"));
    saves.save("timer", "100");
    saves.saver.flush();
    EXPECT_THAT(saves.written, ElementsAre("timer=99", "settings=-99", "timer=100"));
}

TEST(BackgroundSaverTest, AStateThatComesWhileTheSameStoreIsWrittenIsNotLost) {
    Saves saves;
    std::latch begun(1);
    std::latch open(1);
    saves.saver.save("timer", "", [&] {
        begun.count_down();
        open.wait();
        saves.written.push_back("first");
    });
    begun.wait();
    saves.save("timer", "second");
    open.count_down();
    saves.saver.flush();
    EXPECT_THAT(saves.written, ElementsAre("first", "timer=second"));
}

TEST(BackgroundSaverTest, TwoStoresWithOneSentenceAreBothWritten) {
    Saves saves;
    std::latch open(1);
    saves.block(open);
    // Two packs may bear one name, and so fail with one sentence.
    saves.saver.save("a/focus-timer.json", "Moth could not save its timer",
                     [&] { saves.written.push_back("a"); });
    saves.saver.save("b/focus-timer.json", "Moth could not save its timer",
                     [&] { saves.written.push_back("b"); });
    open.count_down();
    saves.saver.flush();
    EXPECT_THAT(saves.written, ElementsAre("a", "b"));
}

TEST(BackgroundSaverTest, AFailureIsToldAndTheNextSaveIsTriedAllTheSame) {
    Saves saves;
    saves.saver.save("timer", "Batti could not save its timer",
                     [] { throw std::runtime_error("disk full"); });
    saves.saver.flush();
    saves.save("timer", "later");
    saves.saver.flush();
    EXPECT_THAT(saves.failures, ElementsAre("Batti could not save its timer: disk full"));
    EXPECT_THAT(saves.written, ElementsAre("timer=later"));
}

TEST(BackgroundSaverTest, TheEndWritesWhatStillWaits) {
    std::vector<std::string> written;
    {
        Saves saves;
        std::latch open(1);
        saves.block(open);
        saves.saver.save("timer", "", [&written] { written.push_back("timer"); });
        std::thread opener([&open] { open.count_down(); });
        saves.saver.flush();
        opener.join();
        EXPECT_THAT(saves.failures, IsEmpty());
        saves.saver.save("settings", "", [&written] { written.push_back("settings"); });
    }
    EXPECT_THAT(written, ElementsAre("timer", "settings"));
}

} // namespace
} // namespace DeskSprites
