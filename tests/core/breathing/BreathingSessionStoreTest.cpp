#include "core/breathing/BreathingSessionStore.h"

#include "core/base/Json.h"
#include "tests/core/breathing/BreathingScript.h"
#include "tests/support/FailingFileOperations.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace FellowCore {
namespace {

using TestSupport::bytesOf;
using TestSupport::writeBytes;

// Box, 9 rounds, run for 20 seconds.
BreathingSession underWay() {
    BreathingSession session(settings(BreathingMode::box, 9));
    session.start(scriptStart - 20);
    return session;
}

// The file of that session with some fields changed (or removed, by null).
std::string patchedText(const char* patch) {
    Json json = Json::parse(BreathingSessionStore::encoded(underWay(), scriptStart));
    json.merge_patch(Json::parse(patch));
    return json.dump();
}

class BreathingSessionStoreTest : public testing::Test {
protected:
    std::filesystem::path file() const {
        return folder_ / "sprites" / "mira" / BreathingSessionStore::fileName;
    }
    BreathingSessionStore store() { return {files_, file()}; }

    TestSupport::TemporaryFolder folder_;
    TestSupport::FailingFileOperations files_;
};

TEST_F(BreathingSessionStoreTest, KeepsARunningSessionPaused) {
    const BreathingSession session = underWay();
    EXPECT_EQ(store().load(), BreathingSession()) << "there is no file yet";
    store().save(session, scriptStart);
    EXPECT_EQ(store().load(), session.pausedSnapshot(scriptStart));
    EXPECT_EQ(Json::parse(bytesOf(file())), Json::parse(R"({
        "settings": {"inhale": 4, "hold": 4, "exhale": 4, "rounds": 9, "rest": 4, "sip": 0},
        "status": "paused", "accumulatedSeconds": 20, "settlingDuration": 3})"));
    EXPECT_EQ(bytesOf(file()).find('\n'), std::string::npos);
}

TEST_F(BreathingSessionStoreTest, RestoresWhatAFileMayHold) {
    const struct {
        const char* fault;
        const char* patch;
        const char* expected;
        Seconds total = 147;
    } cases[] = {
        {"no file makes a session run", R"({"status": "running", "startedAt": 799996400})",
         "paused 20.0 inhale 2"},
        {"idle holds no time", R"({"status": "idle", "accumulatedSeconds": 40})", "idle 0.0 settle 1"},
        {"completed is complete", R"({"status": "completed"})", "completed 147.0 exhale 9"},
        {"more than there is", R"({"accumulatedSeconds": 1e308})", "completed 147.0 exhale 9"},
        {"idle and over", R"({"status": "idle", "accumulatedSeconds": 147})", "completed 147.0 exhale 9"},
        {"less than nothing", R"({"accumulatedSeconds": -5})", "paused 0.0 settle 1"},
        {"from before there was a settling", R"({"settlingDuration": null})", "paused 20.0 hold 2", 144},
        {"from before there were rest and sip", R"({"settings": {"rest": null, "sip": null}})",
         "paused 20.0 hold 2", 111},
        {"rounds beyond counting", R"({"settings": {"rounds": 1e300}})", "paused 20.0 inhale 2", 1203},
        {"rounds below nothing", R"({"settings": {"rounds": -9223372036854775808}})",
         "completed 19.0 exhale 1", 19},
        {"lengths out of bounds", R"({"settings": {"inhale": 1e300, "hold": -1, "exhale": 0.1, "rest": 99}})",
         "paused 20.0 rest 1", 165},
        {"what another version added", R"({"mood": ["calm"]})", "paused 20.0 inhale 2"},
    };
    for (const auto& each : cases) {
        writeBytes(file(), patchedText(each.patch));
        const BreathingSession session = store().load();
        EXPECT_EQ(described(session, scriptStart), each.expected) << each.fault;
        EXPECT_EQ(session.totalDuration(), each.total) << each.fault;
        EXPECT_EQ(session.startedAt, std::nullopt) << each.fault;
    }
}

TEST_F(BreathingSessionStoreTest, BeginsAnewWhenItCannotUnderstandAndLeavesTheFileAlone) {
    std::vector<std::pair<std::string, std::string>> cases{
        {"a number no double holds", patchedText("{}").replace(0, 1, R"({"accumulatedSeconds": 1e999,)")},
        {"a status nobody knows", patchedText(R"({"status": "Running"})")},
        {"half a round", patchedText(R"({"settings": {"rounds": 2.5}})")},
        {"a date in words", patchedText(R"({"startedAt": "tomorrow"})")},
        {"rest in words", patchedText(R"({"settings": {"rest": "long"}})")},
        {"settings that are a list", patchedText(R"({"settings": []})")},
        {"a file of ten megabytes", patchedText("{}") + std::string(10'000'000, ' ')},
        {"nesting without end", std::string(100'000, '[')},
    };
    for (const char* patch :
         {R"({"settings": null})", R"({"status": null})", R"({"accumulatedSeconds": null})",
          R"({"settings": {"inhale": null}})", R"({"settings": {"hold": null}})",
          R"({"settings": {"exhale": null}})", R"({"settings": {"rounds": null}})"}) {
        cases.emplace_back(patch, patchedText(patch));
    }
    const std::string whole = patchedText("{}");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        cases.emplace_back("cut short at " + std::to_string(length), whole.substr(0, length));
    }
    for (const auto& [fault, text] : cases) {
        writeBytes(file(), text);
        EXPECT_EQ(store().load(), BreathingSession()) << fault;
        EXPECT_THROW(store().read(), std::runtime_error) << fault << ": the caller can tell";
        EXPECT_TRUE(bytesOf(file()) == text) << fault << ": the file was touched";
    }
}

TEST_F(BreathingSessionStoreTest, NeverWritesWhatItCouldNotRead) {
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    BreathingSession broken = underWay();
    broken.settings.inhale = notANumber;
    broken.settlingDuration = notANumber;
    broken.accumulatedSeconds = notANumber;
    broken.status = BreathingStatus::paused;
    broken.startedAt = Instant{notANumber};
    const BreathingSession read =
        BreathingSessionStore::decoded(BreathingSessionStore::encoded(broken, scriptStart));
    EXPECT_EQ(read.settings, settings(BreathingMode::box, 9));
    EXPECT_EQ(read.accumulatedSeconds, 0);
    EXPECT_EQ(read.startedAt, std::nullopt);
}

TEST_F(BreathingSessionStoreTest, LeavesTheOldFileOrTheNewOneWhateverFails) {
    const std::string before = BreathingSessionStore::encoded(BreathingSession(), scriptStart);
    const std::string after = BreathingSessionStore::encoded(underWay(), scriptStart);
    for (int call = 1;; ++call) {
        writeBytes(file(), before);
        files_ = {};
        files_.failAt = call;
        bool told = false;
        try {
            store().save(underWay(), scriptStart);
        } catch (const FileError& error) {
            told = true;
            EXPECT_EQ(error.kind(), FileError::Kind::notWritable) << files_.failed;
        }
        EXPECT_EQ(bytesOf(file()), told ? before : after) << files_.failed;
        if (files_.failed.empty()) {
            EXPECT_GT(call, 5) << "every call has failed once";
            break;
        }
    }
    files_ = {};
    files_.failAt = 1;
    EXPECT_EQ(store().load(), BreathingSession()) << "a disk that cannot be read";
}

} // namespace
} // namespace FellowCore
