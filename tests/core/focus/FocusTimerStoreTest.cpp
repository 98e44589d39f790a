#include "core/focus/FocusTimerStore.h"

#include "core/base/Json.h"
#include "core/base/WholeFile.h"
#include "tests/core/focus/TimerScript.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>
#include <limits>

namespace FellowCore {
namespace {

namespace fs = std::filesystem;

class FocusTimerStoreTest : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "focus-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
    }
    void TearDown() override { fs::remove_all(folder_); }

    FocusTimerStore store() { return {files_, folder_ / "sprites" / "batti" / FocusTimerStore::fileName}; }
    std::string fileText() { return readWholeFile(files_, store().url(), FocusTimerStore::sizeLimit); }

    fs::path folder_;
    PosixFileOperations files_;
};

// Focus, running, 60 seconds left of its 25 minutes.
FocusTimer almostDone() {
    FocusTimer timer;
    timer.start(scriptStart - 1440);
    timer.tick(scriptStart);
    return timer;
}

// The file of that timer with some fields changed (or removed, by null).
std::string patchedText(const char* patch) {
    Json json = Json::parse(FocusTimerStore::encoded(almostDone()));
    json.merge_patch(Json::parse(patch));
    return json.dump();
}

TEST_F(FocusTimerStoreTest, KeepsEveryFieldThroughTheFile) {
    TimerScript script{TimerSettings(50, 10, 30, 3, false)};
    script.run("start complete next +2:00.5 tick");
    store().save(script.timer);
    EXPECT_EQ(FocusTimerStore::decoded(fileText()), script.timer);
    EXPECT_TRUE(fileText().starts_with(R"({
  "completedFocusSessions": 1,
  "deadline": 800000600.0,
  "phase": "shortBreak",
  "phaseDuration": 600.0,
  "remainingSeconds": 479.5,
  "settings": {
    "focusMinutes": 50,)"))
        << fileText();
    EXPECT_EQ(described(store().load(script.now), script.now), "shortBreak running 08:00 1");
    EXPECT_EQ(described(store().loadForBatti(script.now), script.now), "shortBreak paused 08:00 1");
}

TEST_F(FocusTimerStoreTest, RepairsWhatAFileMayHold) {
    const struct {
        const char* fault;
        const char* patch;
        const char* expected;
        double phaseDuration = 1500;
    } cases[] = {
        {"three days ahead means the time that was left", R"({"deadline": 800259200})",
         "focus paused 01:00 0"},
        {"so does the end of time", R"({"deadline": 1e308})", "focus paused 01:00 0"},
        {"two hours past counts one session", R"({"deadline": 799992800})", "focus completed 00:00 1"},
        {"running without a deadline pauses", R"({"deadline": null})", "focus paused 01:00 0"},
        {"the longest phase is kept", R"({"phaseDuration": 7200})", "focus paused 01:00 0", 7200},
        {"a longer one is not", R"({"phaseDuration": 7200.5})", "focus paused 01:00 0"},
        {"the shortest phase is kept", R"({"phaseDuration": 1})", "focus paused 00:01 0", 1},
        {"a shorter one is not", R"({"phaseDuration": 0.5})", "focus paused 01:00 0"},
        {"less than nothing left", R"({"status": "paused", "remainingSeconds": -1e300})",
         "focus paused 00:00 0"},
        {"a completed phase holds no time", R"({"status": "completed"})", "focus completed 00:00 0"},
        {"idle is always focus", R"({"status": "idle", "phase": "longBreak"})", "focus idle 25:00 0"},
        {"a count below nothing", R"({"completedFocusSessions": -5})", "focus paused 01:00 0"},
        {"a count beyond 64 bits", R"({"completedFocusSessions": 1e30})",
         "focus paused 01:00 9223372036854775807"},
        {"huge settings", R"({"status": "idle", "settings": {"focusMinutes": 1000000000000000000}})",
         "focus idle 120:00 0", 7200},
        {"settings beyond 64 bits", R"({"status": "idle", "settings": {"focusMinutes": -1e40}})",
         "focus idle 01:00 0", 60},
    };
    for (const auto& each : cases) {
        FocusTimer timer = FocusTimerStore::decoded(patchedText(each.patch));
        timer.normalize(scriptStart);
        timer.normalize(scriptStart);
        timer.pause(scriptStart);
        EXPECT_EQ(described(timer, scriptStart), each.expected) << each.fault;
        EXPECT_EQ(timer.phaseDuration, each.phaseDuration) << each.fault;
    }

    const auto settings = [](const char* patch) {
        return FocusTimerStore::decoded(patchedText(patch)).settings;
    };
    EXPECT_EQ(settings(R"({"settings": {"longBreakEvery": 99}})").longBreakEvery, 12);
    EXPECT_TRUE(settings(R"({"settings": {"startRestsAutomatically": null}})").startRestsAutomatically);
}

TEST_F(FocusTimerStoreTest, RefusesWhatItCannotUnderstand) {
    using Kind = JsonError::Kind;
    const struct {
        const char* fault;
        std::string text;
        Kind kind;
        const char* field;
    } cases[] = {
        {"an empty file", "", Kind::notJson, ""},
        {"a file cut short", patchedText("{}").substr(0, 100), Kind::notJson, ""},
        {"a number no double holds", R"({"phaseDuration": 1e999})", Kind::notJson, ""},
        {"a list", "[]", Kind::wrongType, ""},
        {"a phase nobody knows", patchedText(R"({"phase": "nap"})"), Kind::outOfRange, "phase"},
        {"a status nobody knows", patchedText(R"({"status": "Running"})"), Kind::outOfRange, "status"},
        {"settings that lack a length", patchedText(R"({"settings": {"longBreakMinutes": null}})"),
         Kind::missing, "settings.longBreakMinutes"},
        {"half a minute", patchedText(R"({"settings": {"focusMinutes": 0.5}})"), Kind::wrongType,
         "settings.focusMinutes"},
        {"a date in words", patchedText(R"({"deadline": "tomorrow"})"), Kind::wrongType, "deadline"},
        {"no settings", patchedText(R"({"settings": null})"), Kind::missing, "settings"},
    };
    for (const auto& each : cases) {
        try {
            FocusTimerStore::decoded(each.text);
            ADD_FAILURE() << each.fault << ": was accepted";
        } catch (const JsonError& error) {
            EXPECT_EQ(error.kind(), each.kind) << each.fault << ": " << error.what();
            EXPECT_EQ(error.field(), each.field) << each.fault;
        }
    }
}

TEST_F(FocusTimerStoreTest, NeverWritesWhatItCouldNotRead) {
    FocusTimer broken = almostDone();
    broken.remainingSeconds = std::numeric_limits<double>::quiet_NaN();
    broken.phaseDuration = std::numeric_limits<double>::infinity();
    broken.deadline = Instant{std::numeric_limits<double>::infinity()};
    const FocusTimer read = FocusTimerStore::decoded(FocusTimerStore::encoded(broken));
    EXPECT_EQ(read.remainingSeconds, 1500);
    EXPECT_EQ(read.phaseDuration, 1500);
    EXPECT_FALSE(read.deadline);
}

TEST_F(FocusTimerStoreTest, LeavesAFileItCannotUseAlone) {
    const FocusTimerStore batti = store();
    EXPECT_THROW(batti.load(scriptStart), FileError);
    fs::create_directories(batti.url().parent_path());
    std::ofstream(batti.url()) << "{ half a";
    EXPECT_THROW(batti.loadForBatti(scriptStart), JsonError);
    EXPECT_EQ(fileText(), "{ half a");
    std::ofstream(batti.url()) << std::string(FocusTimerStore::sizeLimit + 1, ' ');
    EXPECT_THROW(batti.load(scriptStart), FileError);
}

TEST_F(FocusTimerStoreTest, TellsWhenItCannotSave) {
    std::ofstream(folder_ / "sprites") << "a file where the folder should be";
    try {
        store().save(FocusTimer());
        ADD_FAILURE() << "saved into a file's inside";
    } catch (const FileError& error) {
        EXPECT_EQ(error.kind(), FileError::Kind::notWritable);
    }
}

} // namespace
} // namespace FellowCore
