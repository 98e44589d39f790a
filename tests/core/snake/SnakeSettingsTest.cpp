#include "core/base/MemoryPreferences.h"
#include "core/snake/SnakeStore.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>

namespace FellowCore {
namespace {

std::string described(const SnakeStore& store) {
    std::ostringstream text;
    text << store.bestScore() << (store.sounds() ? " sounds " : " mute ") << store.speed().level
         << (store.rampAsEating() ? " ramp " : " flat ") << store.backdropDim();
    return text.str();
}

TEST(SnakeStore, ForcesWhatItReadsIntoBounds) {
    constexpr struct {
        const char* fault;
        const char* document;
        const char* read;
    } cases[] = {
        {"nothing stored", "{}", "0 sounds 4 ramp 0.15"},
        {"everything stored",
         R"({"snake.bestScore.v1": 12, "snake.sounds.v1": false, "snake.speed.v1": 7,
             "snake.rampAsEating.v1": false, "snake.backdropDim.v1": 0.5})",
         "12 mute 7 flat 0.5"},
        {"more points than the largest board has cells", R"({"snake.bestScore.v1": 4194305})",
         "4194304 sounds 4 ramp 0.15"},
        {"numbers wider than an int",
         R"({"snake.bestScore.v1": 9223372036854775807, "snake.speed.v1": 4294967297})",
         "4194304 sounds 9 ramp 0.15"},
        {"negative numbers",
         R"({"snake.bestScore.v1": -5, "snake.speed.v1": -9223372036854775808, "snake.backdropDim.v1": -1})",
         "0 sounds 1 ramp 0"},
        {"a backdrop that hides the desktop", R"({"snake.backdropDim.v1": 1})", "0 sounds 4 ramp 0.8"},
        {"wrong types",
         R"({"snake.bestScore.v1": "12", "snake.sounds.v1": 0, "snake.speed.v1": [7],
             "snake.rampAsEating.v1": "no", "snake.backdropDim.v1": true})",
         "0 sounds 4 ramp 0.15"},
    };
    for (const auto& each : cases) {
        MemoryPreferences preferences;
        preferences.load(each.document);
        EXPECT_EQ(described(SnakeStore(preferences)), each.read) << each.fault;
    }
}

TEST(SnakeStore, TellsOfEveryChangeOnce) {
    MemoryPreferences preferences;
    int posts = 0;
    SnakeStore store(preferences, [&posts](std::string_view notification) {
        EXPECT_EQ(notification, "Deskfellow.SnakePreferencesChanged");
        ++posts;
    });
    for (int twice = 0; twice < 2; ++twice) {
        store.setSounds(false);
        store.setSpeed(SnakeSpeed(8));
        store.setRampAsEating(false);
        store.setBackdropDim(0.3);
        EXPECT_EQ(posts, 4) << "the second time nothing changes";
    }
    store.setBackdropDim(std::numeric_limits<double>::quiet_NaN());
    store.setSpeed(store.speed().nudged(1));
    store.setSpeed(store.speed().nudged(1));
    EXPECT_EQ(posts, 5) << "there is no faster than fastest";
    store.setBackdropDim(7);
    EXPECT_EQ(preferences.number(SnakeStore::dimKey), 0.8) << "what is kept is in bounds too";
    EXPECT_EQ(described(SnakeStore(preferences)), "0 mute 9 flat 0.8") << "another store reads the same";
}

TEST(SnakeStore, KeepsOnlyABetterScore) {
    MemoryPreferences preferences;
    SnakeStore store(preferences);
    EXPECT_FALSE(store.record(0)) << "nothing eaten is no record";
    EXPECT_TRUE(store.record(5));
    EXPECT_FALSE(store.record(5));
    EXPECT_FALSE(store.record(-1));
    EXPECT_EQ(store.bestScore(), 5);
    EXPECT_TRUE(store.record(std::numeric_limits<int>::max()));
    EXPECT_FALSE(store.record(std::numeric_limits<int>::max())) << "a record beyond the bound is none";
    EXPECT_EQ(store.bestScore(), 4194304);
    store.forgetBest();
    EXPECT_EQ(store.bestScore(), 0);
    EXPECT_TRUE(store.record(1)) << "after forgetting, any score is the best";
}

TEST(SnakeSpeed, HasNineLevels) {
    std::string levels;
    for (int level = 1; level <= 9; ++level) {
        levels += std::string(SnakeSpeed(level).title()) + ",";
        EXPECT_LT(SnakeSpeed(level).baseInterval(), level == 1 ? 1 : SnakeSpeed(level - 1).baseInterval());
    }
    EXPECT_EQ(levels, "Slow,Slow,Normal,Normal,Fast,Fast,Very fast,Very fast,Super fast,");
    SnakeSpeed changed;
    EXPECT_EQ(changed.baseInterval(), 0.18);
    for (const int outside : {0, 10, -7, std::numeric_limits<int>::max()}) {
        changed.level = outside;
        EXPECT_EQ(changed.title(), "Super fast");
    }
    EXPECT_EQ(SnakeSpeed(9).nudged(std::numeric_limits<int>::max()).level, 9);
    EXPECT_EQ(SnakeSpeed(2).nudged(-5).level, 1);
}

} // namespace
} // namespace FellowCore
