#include "core/agents/PumpHookSettings.h"

#include "core/agents/PumpAgentHook.h"
#include "core/agents/SettingsBackup.h"
#include "core/agents/SettingsDocument.h"
#include "tests/core/agents/RunProgram.h"
#include "tests/core/agents/SettingsTexts.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace FellowCore {
namespace {

using Failure = PumpHookSettings::Failure;
constexpr std::string_view command = "'/home/u/it'\"'\"'s/hook.sh'";

std::string merged(std::string_view text, PumpProvider agent = PumpProvider::claude) {
    return PumpHookSettings::merge(text, agent, command);
}

std::string restored(const std::string& current, std::string_view original) {
    return PumpHookSettings::restore(current, original, merged(original), command);
}

TEST(PumpHookSettings, PutsInOneGroupForEachEvent) {
    EXPECT_EQ(
        PumpHookSettings::merge(R"({"z":"a/b","hooks":{"Stop":[{"hooks":[]}]}})", PumpProvider::claude, "C"),
        R"({
  "hooks": {
    "Notification": [
      {
        "hooks": [
          {
            "command": "C",
            "timeout": 2,
            "type": "command"
          }
        ],
        "matcher": "^(permission_prompt|idle_prompt)$"
      }
    ],
    "Stop": [
      {
        "hooks": []
      },
      {
        "hooks": [
          {
            "command": "C",
            "timeout": 2,
            "type": "command"
          }
        ]
      }
    ],
    "UserPromptSubmit": [
      {
        "hooks": [
          {
            "async": true,
            "command": "C",
            "timeout": 2,
            "type": "command"
          }
        ]
      }
    ]
  },
  "z": "a/b"
}
)");
    const Json codex = Json::parse(merged("", PumpProvider::codex));
    EXPECT_EQ(codex.at("hooks").size(), 4U);
    for (const char* event : {"UserPromptSubmit", "PermissionRequest", "Stop", "Interrupt"}) {
        const Json& group = codex.at("hooks").at(event).at(0);
        EXPECT_FALSE(group.contains("matcher")) << event;
        EXPECT_EQ(group.at("hooks").at(0).at("command"), command) << event;
    }
}

TEST(PumpHookSettings, KeepsEverythingAndGivesItBackByteForByte) {
    for (const std::string& text : settingsTexts()) {
        Json left = Json::parse(merged(text));
        const Json before = text.empty() ? Json::object() : Json::parse(text);
        for (const auto& [key, value] : before.items()) {
            if (key != "hooks") {
                EXPECT_EQ(left.at(key), value) << text;
            }
        }
        const Json hooksBefore = before.value("hooks", Json::object());
        for (const auto& [event, groups] : hooksBefore.items()) {
            for (std::size_t index = 0; index < groups.size(); ++index) {
                EXPECT_EQ(left.at("hooks").at(event).at(index), groups.at(index)) << text;
            }
        }
        EXPECT_EQ(restored(merged(text), text), text) << "nothing was edited";
        EXPECT_EQ(restored(left.dump(), text), text) << "reformatted, the same object";
        left["added"] = "later/on";
        Json expected = before;
        expected["added"] = "later/on";
        EXPECT_EQ(Json::parse(restored(left.dump(7), text)), expected) << text;
    }
}

TEST(PumpHookSettings, TakesOutItsOwnHooksAlone) {
    const std::string ours = R"({"type":"command","command":")" + std::string("'x'") + R"(","timeout":2})";
    const auto without = [](const std::string& hooks, const char* original) {
        return Json::parse(PumpHookSettings::restore(R"({"hooks":)" + hooks + "}", original, "", "'x'"))
            .dump();
    };
    const struct {
        const char* fault;
        std::string hooks;
        const char* original;
        const char* left;
    } cases[] = {
        {"the user's own hook in our group", R"({"Stop":[{"hooks":[)" + ours + R"(,{"command":"mine"}]}]})",
         "{}", R"({"hooks":{"Stop":[{"hooks":[{"command":"mine"}]}]}})"},
        {"a group of the user's beside it", R"({"Stop":[{"hooks":[]},{"hooks":[)" + ours + "]}]}", "{}",
         R"({"hooks":{"Stop":[{"hooks":[]}]}})"},
        {"ours copied to another event", R"({"Pre":[{"hooks":[)" + ours + "]}]}", "{}", "{}"},
        {"a command that only begins like ours", R"({"Stop":[{"hooks":[{"command":"'x' y"}]}]})", "{}",
         R"({"hooks":{"Stop":[{"hooks":[{"command":"'x' y"}]}]}})"},
        {"an event that was there and empty", R"({"Stop":[{"hooks":[)" + ours + R"(]}],"A":[]})",
         R"({"hooks":{"Stop":[]}})", R"({"hooks":{"A":[],"Stop":[]}})"},
        {"hooks that were there and empty", R"({"Stop":[{"hooks":[)" + ours + R"(]}]})",
         R"({"hooks":{}, "b":1})", R"({"hooks":{}})"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(without(row.hooks, row.original), row.left) << row.fault;
    }
    const std::string none = "{ \"hooks\" : {} , \"by\":\"hand\" }";
    EXPECT_EQ(PumpHookSettings::restore(none, "{}", "", command), none) << "taken out by hand already";
}

TEST(PumpHookSettings, RefusesWhatItDoesNotUnderstand) {
    const std::string good = merged(R"({"hooks":{"Stop":[{"hooks":[{"command":"a"}]}]}})");
    ASSERT_FALSE(PumpHookSettings::holdsCommand(R"({"hooks":{"Stop":[{},{"hooks":[{}]}]}})", command));
    ASSERT_TRUE(PumpHookSettings::holdsCommand(good, command));
    for (const std::string& text : refusedSettingsTexts()) {
        const auto expectRefusal = [&text](const std::function<void()>& call) {
            try {
                call();
                ADD_FAILURE() << text.substr(0, 80);
            } catch (const Failure& failure) {
                EXPECT_EQ(failure.failure(), Failure::Case::invalid);
                EXPECT_STREQ(failure.what(),
                             "Agent settings or hooks are invalid. They were left unchanged.");
            }
        };
        expectRefusal([&] { merged(text); });
        expectRefusal([&] { PumpHookSettings::restore(text, "{}", good, command); });
        expectRefusal([&] { PumpHookSettings::holdsCommand(text, command); });
    }
}

TEST(SettingsDocument, RefusesOnlyNumbersThatWouldChange) {
    const struct {
        const char* number;
        bool isKept;
    } cases[] = {
        {"0.1", true},
        {"1.50", true},
        {"-12e-3", true},
        {"1E5", true},
        {"0.0", true},
        {"0.30000000000000004", true},
        {"9223372036854775808", true},
        {"18446744073709551616", false},
        {"18446744073709551617", false},
        {"3.14159265358979323846", false},
        {"1e-400", false},
        {"1e99999999999", false},
    };
    for (const auto& row : cases) {
        const std::string text = std::string(R"({"n":)") + row.number + "}";
        if (row.isKept) {
            EXPECT_NO_THROW(SettingsDocument::parsed(text)) << text;
        } else {
            EXPECT_THROW(SettingsDocument::parsed(text), JsonError) << text;
        }
    }
}

TEST(SettingsBackup, KeepsAnyBytes) {
    SettingsBackup backup{.original = std::string("\0\xff\"", 3),
                          .installed = "\n",
                          .command = "'\"",
                          .script = "#!",
                          .includeProject = true};
    EXPECT_EQ(SettingsBackup::decoded(backup.encoded()), backup);
    EXPECT_EQ(Json::parse(backup.encoded()).at("original"), "AP8i");
    for (const char* bad : {"", "[]", "{}", R"({"original":"AP8","installed":"","existed":true})"}) {
        EXPECT_THROW(SettingsBackup::decoded(bad), JsonError) << bad;
    }
    EXPECT_THROW(SettingsBackup::decoded(R"({"original":"A","installed":"","existed":true,"command":"",)"
                                         R"("script":"","includeProject":false})"),
                 JsonError);
}

TEST(PumpAgentHook, IsTheOtherSystemsScriptToTheByte) {
    const TestSupport::TemporaryFolder folder;
    const auto digest = [&folder](const std::string& script) {
        const auto ended = TestSupport::runProgram(folder.path(), {"/usr/bin/sha256sum"}, script);
        return ended.output.substr(0, 64);
    };
    EXPECT_EQ(digest(PumpAgentHook::script(PumpProvider::claude, PumpProjectConsent::included)),
              "f56b474a6e5fe9cb135d0ea0fbc31136cd9d666a60703acdc9fef4242c8a8ab6");
    const std::string codex = PumpAgentHook::script(PumpProvider::codex, PumpProjectConsent::excluded);
    EXPECT_TRUE(codex.starts_with("#!/bin/sh\nDF_AGENT='codex'\nDF_PROJECT='0'\numask 077\n"));
    EXPECT_EQ(TestSupport::runProgram(folder.path(), {"/bin/sh", "-n"}, codex).errors, "");
}

TEST(PumpAgentHook, QuotesAnyPathForTheShell) {
    const TestSupport::TemporaryFolder folder;
    for (const char* text : {"/a b", "/it's", "''", "$HOME `id` \"\\", "/new\nline", "-n"}) {
        const std::string script = "printf %s " + PumpAgentHook::shellQuoted(text);
        EXPECT_EQ(TestSupport::runProgram(folder.path(), {"/bin/sh", "-c", script}).output, text);
    }
    EXPECT_EQ(PumpAgentHook::shellQuoted("it's"), R"('it'"'"'s')");
}

} // namespace
} // namespace FellowCore
