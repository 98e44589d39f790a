#include "core/agents/ClaudeStatusLineConnector.h"

#include "core/agents/PumpAgentConnector.h"
#include "tests/core/agents/ConnectorHome.h"
#include "tests/core/agents/RunProgram.h"
#include "tests/core/agents/SettingsTexts.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace FellowCore {
namespace {

using ::testing::HasSubstr;
using ::testing::UnorderedElementsAre;
using Case = ClaudeStatusLineConnector::ConnectionError::Case;
using Status = ClaudeStatusLineConnector::Status;

class ClaudeStatusLineConnectorTest : public ConnectorHome {
protected:
    ClaudeStatusLineConnector connector_{files_, folders_, FELLOW_HOOK_PROGRAM};
    std::filesystem::path settings_ = claudeSettingsFile(folders_);

    std::pair<Case, std::string> failureOf(const std::function<void()>& call) {
        try {
            call();
        } catch (const ClaudeStatusLineConnector::ConnectionError& error) {
            return {error.failure(), error.what()};
        }
        throw std::logic_error("nothing was thrown");
    }
    Json statusLine() const { return Json::parse(bytesOf(settings_)).at("statusLine"); }
    /// What Claude Code shows: the output of its status line's command.
    TestSupport::Ended shown(std::string_view input) const {
        return TestSupport::runProgram(
            temporary_.path(), {"/bin/sh", "-c", statusLine().at("command").get<std::string>()}, input);
    }
};

TEST_F(ClaudeStatusLineConnectorTest, GivesBackEverySettingsFileByteForByte) {
    std::vector<std::string> texts = settingsTexts();
    texts.emplace_back(R"({"statusLine":{"type":"command","command":"echo 'it''s'","padding":0},"a":1})");
    for (const std::string& text : texts) {
        writeBytes(settings_, text);
        connector_.connect();
        EXPECT_EQ(connector_.status(), Status::connected);
        const std::string once = bytesOf(settings_);
        connector_.connect();
        EXPECT_EQ(bytesOf(settings_), once);
        connector_.disconnect();
        EXPECT_EQ(bytesOf(settings_), text);
        EXPECT_EQ(connector_.status(), Status::disconnected);
    }
    std::filesystem::remove(settings_);
    connector_.connect();
    EXPECT_EQ(modeOf(ClaudeStatusLineConnector::backupFile(folders_)), 0600U);
    connector_.disconnect();
    EXPECT_THAT(filesBelow(home_.path()), UnorderedElementsAre("deskfellow-statusline.sh"));
}

TEST_F(ClaudeStatusLineConnectorTest, SavesTheLimitsAndShowsTheModel) {
    connector_.connect();
    const auto ended =
        shown(R"({"model":{"display_name":"Opus é"},"rate_limits":{"five_hour":{"used_percentage":42.5,)"
              R"("resets_at":1800000000},"seven_day":null},"transcript_path":"/secret"})");
    EXPECT_EQ(ended.output, "Opus é");
    EXPECT_EQ(ended.errors, "");
    EXPECT_EQ(ended.status, 0);
    const std::string text = bytesOf(claudeRateLimitsFile(folders_));
    Json saved = Json::parse(text);
    EXPECT_GT(saved.at("saved_at").get<std::int64_t>(), 1'700'000'000);
    saved.erase("saved_at");
    EXPECT_EQ(saved, Json::parse(R"({"five_hour":{"used_percentage":42.5,"resets_at":1800000000},)"
                                 R"("seven_day":null})"));
    EXPECT_THAT(text, HasSubstr(R"("five_hour":{"used_percentage":42.5,"resets_at":1800000000})"));
    EXPECT_EQ(modeOf(claudeRateLimitsFile(folders_)), 0600U);
    EXPECT_EQ(filesBelow(folders_.deskSprites()).size(), 1U) << "no temporary file stays";
}

TEST_F(ClaudeStatusLineConnectorTest, TheUsersOwnLineIsShownByteForByte) {
    std::string bytes = "\x1b[31m odd\t'\"\\ \xff\n\n";
    bytes.push_back('\0');
    writeBytes(temporary_ / "bytes", bytes);
    const std::string own = "cat '" + (temporary_ / "bytes").string() + "' -; echo told >&2; exit 3";
    writeBytes(settings_, Json({{"statusLine", {{"type", "command"}, {"command", own}}}}).dump());
    connector_.connect();
    for (const std::size_t size : {std::size_t{10}, std::size_t{65536}, std::size_t{65537},
                                   std::size_t{1048576}, std::size_t{3000001}}) {
        std::string input = R"({"rate_limits":{"seven_day":{"a":1}},"x":")";
        input.resize(size, 'x');
        const auto ended = shown(input);
        EXPECT_TRUE(ended.output == bytes + input) << size << " became " << ended.output.size();
        EXPECT_EQ(ended.errors, "told\n");
        EXPECT_EQ(ended.status, 3);
    }
    const Json saved = Json::parse(bytesOf(claudeRateLimitsFile(folders_)));
    EXPECT_TRUE(saved.at("five_hour").is_null() && saved.at("seven_day").is_null())
        << "broken input says nothing";
}

TEST_F(ClaudeStatusLineConnectorTest, WithoutTheProgramTheUsersOwnLineStillShows) {
    const std::string own = R"({"statusLine":{"type":"command","command":"cat; echo ' mine'"}})";
    writeBytes(settings_, own);
    const ClaudeStatusLineConnector gone(files_, folders_, "/nowhere/fellow-hook");
    gone.connect();
    const std::string command = statusLine().at("command");
    EXPECT_EQ(shown("in").output, "in mine\n");
    EXPECT_FALSE(std::filesystem::exists(claudeRateLimitsFile(folders_)));
    gone.disconnect();
    EXPECT_EQ(bytesOf(settings_), own);
    const auto cached = TestSupport::runProgram(temporary_.path(), {"/bin/sh", "-c", command}, "in");
    EXPECT_EQ(cached.output, "in mine\n") << "in a session that kept the command";
}

TEST_F(ClaudeStatusLineConnectorTest, AnInputThatSaysNothingSavesNulls) {
    connector_.connect();
    const struct {
        const char* fault;
        std::string input;
        const char* shown;
    } cases[] = {
        {"nothing", "", ""},
        {"no JSON", "{\"model\":", ""},
        {"no object", "[1]", ""},
        {"limits that are none", R"({"rate_limits":5,"model":{"display_name":"M"}})", "M"},
        {"a limit that is a number", R"({"rate_limits":{"five_hour":7},"model":"M"})", ""},
        {"a zero byte", std::string("{\"model\":{\"display_name\":\"M\"}}\0", 31), ""},
        {"nested too deeply",
         R"({"rate_limits":{"five_hour":{"a":)" + std::string(100000, '[') + std::string(100000, ']') + "}}}",
         ""},
    };
    for (const auto& row : cases) {
        std::filesystem::remove(claudeRateLimitsFile(folders_));
        EXPECT_EQ(shown(row.input).output, row.shown) << row.fault;
        const Json saved = Json::parse(bytesOf(claudeRateLimitsFile(folders_)));
        EXPECT_TRUE(saved.at("five_hour").is_null() && saved.at("seven_day").is_null()) << row.fault;
    }
}

TEST_F(ClaudeStatusLineConnectorTest, RefusesWhatItDoesNotUnderstand) {
    const std::string notJson =
        settings_.string() + " is not a valid JSON object. Fix it before connecting Claude Code.";
    const std::string notCommand =
        "The existing Claude Code status line is not a command. It has been left unchanged.";
    const std::string noBackup =
        "The original Claude Code settings backup is missing. Restore your status line "
        "manually before reconnecting.";
    connector_.connect();
    const std::string orphaned = bytesOf(settings_);
    connector_.disconnect();
    const struct {
        const char* fault;
        std::string text;
        Case failure;
        std::string sentence;
    } cases[] = {
        {"a comment", "// mine\n{}", Case::invalidSettings, notJson},
        {"an array", "[]", Case::invalidSettings, notJson},
        {"a key given twice", R"({"a":1,"a":2})", Case::invalidSettings, notJson},
        {"another type", R"({"statusLine":{"type":"text","command":"x"}})", Case::notACommand, notCommand},
        {"no type", R"({"statusLine":{"command":"x"}})", Case::notACommand, notCommand},
        {"a list of commands", R"({"statusLine":{"type":"command","command":["x"]}})", Case::notACommand,
         notCommand},
        {"a string", R"({"statusLine":"x"})", Case::notACommand, notCommand},
        {"null", R"({"statusLine":null})", Case::notACommand, notCommand},
        {"Pump's own, its backup gone", orphaned, Case::missingBackup, noBackup},
    };
    for (const auto& row : cases) {
        writeBytes(settings_, row.text);
        const auto [failure, sentence] = failureOf([&] { connector_.connect(); });
        EXPECT_EQ(failure, row.failure) << row.fault;
        EXPECT_EQ(sentence, row.sentence) << row.fault;
        EXPECT_EQ(bytesOf(settings_), row.text) << row.fault;
        EXPECT_EQ(connector_.status(), Status::disconnected) << row.fault;
    }
}

TEST_F(ClaudeStatusLineConnectorTest, KeepsLaterEdits) {
    const struct {
        const char* fault;
        const char* before;
        const char* edit; ///< a merge patch
        const char* left;
    } cases[] = {
        {"another setting", R"({"a":1})", R"({"b":2})", R"({"a":1,"b":2})"},
        {"the line's padding", R"({"statusLine":{"type":"command","command":"x"}})",
         R"({"statusLine":{"padding":3}})", R"({"statusLine":{"type":"command","command":"x","padding":3}})"},
        {"a line of the user's own since", R"({})", R"({"statusLine":{"command":"mine"}})",
         R"({"statusLine":{"type":"command","command":"mine"}})"},
        {"the line taken out", R"({"a":1})", R"({"statusLine":null,"b":1})", R"({"a":1,"b":1})"},
    };
    for (const auto& row : cases) {
        writeBytes(settings_, row.before);
        connector_.connect();
        Json edited = Json::parse(bytesOf(settings_));
        edited.merge_patch(Json::parse(row.edit));
        writeBytes(settings_, edited.dump());
        connector_.disconnect();
        EXPECT_EQ(Json::parse(bytesOf(settings_)), Json::parse(row.left)) << row.fault;
    }
    connector_.connect();
    writeBytes(connector_.script(), "mine");
    EXPECT_EQ(failureOf([&] { connector_.connect(); }).first, Case::editedScript);
}

TEST_F(ClaudeStatusLineConnectorTest, HooksAndStatusLineComeAndGoInAnyOrder) {
    const PumpAgentConnector hooks(files_, folders_, PumpProvider::claude, FELLOW_HOOK_PROGRAM);
    const auto toggleHooks = [&] { hooks.connected() ? hooks.disconnect() : hooks.connect({}); };
    const auto toggleLine = [&] {
        connector_.status() == Status::connected ? connector_.disconnect() : connector_.connect();
    };
    const std::optional<std::string> texts[] = {
        std::nullopt, "{ }",
        R"({"z" : 1, "statusLine":{"type":"command", "command":"mine"},"hooks":{"Stop":[]}})"};
    for (const auto& text : texts) {
        for (int order = 0; order < 64; ++order) {
            std::filesystem::remove(settings_);
            if (text) {
                writeBytes(settings_, *text);
            }
            for (int step = 0; step < 6; ++step) {
                ((order >> step & 1) != 0 ? toggleHooks : std::function<void()>(toggleLine))();
            }
            hooks.disconnect();
            connector_.disconnect();
            EXPECT_EQ(std::filesystem::exists(settings_), text.has_value()) << order;
            if (text) {
                EXPECT_EQ(bytesOf(settings_), *text) << order;
            }
        }
    }
}

} // namespace
} // namespace FellowCore
