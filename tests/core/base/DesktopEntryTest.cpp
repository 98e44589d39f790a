#include "core/base/DesktopEntry.h"

#include <gmock/gmock.h>

namespace FellowCore {
namespace {

using ::testing::ElementsAre;
using Words = std::vector<std::string>;

std::string entry(const std::string& exec) {
    return "[Desktop Entry]\nType=Application\nExec=" + exec + "\n";
}

TEST(DesktopEntry, PutsThePathsWhereTheCommandWantsThem) {
    const struct {
        const char* fault;
        const char* exec;
        Words command;
    } cases[] = {
        {"several paths", "/usr/share/code/code %F", {"/usr/share/code/code", "/a b", "/c"}},
        {"one path where one is taken", "zed %u --wait", {"zed", "/a b", "--wait"}},
        {"inside a word", "ed --file=%f", {"ed", "--file=/a b"}},
        {"none where none is taken", "xterm", {"xterm"}},
        {"a code for what we have not leaves no empty word", "code %i --new %k", {"code", "--new"}},
        {"a percent sign", "run 100%%", {"run", "100%"}},
        {"a percent sign at the end", "run 100%", {"run", "100%"}},
        {"quotes keep a word together",
         "\"/opt/My Editor/ed\" -x \"a \\\\\"b\\\\\"\"",
         {"/opt/My Editor/ed", "-x", "a \"b\""}},
        {"no codes inside quotes", "ed \"%F\"", {"ed", "%F"}},
        {"an empty word in quotes stays", "ed \"\" %F", {"ed", "", "/a b", "/c"}},
        {"spaces around", "  ed   -x  ", {"ed", "-x"}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(desktopEntryCommand(entry(each.exec), {"/a b", "/c"}), each.command) << each.fault;
    }
    EXPECT_EQ(desktopEntryCommand(entry("ed --file=%f %U"), {}), (Words{"ed", "--file="}));
}

TEST(DesktopEntry, ReadsTheMainGroupOnly) {
    const std::string text = "# a comment\r\n[Other]\nExec=wrong\n[Desktop Entry]\r\nType = Application\r\n"
                             "Exec[de]=falsch\nExec=right\r\nExec=later\n[Desktop Action new]\nExec=wrong\n";
    EXPECT_THAT(desktopEntryCommand(text, {}).value_or(Words{}), ElementsAre("right"));
}

TEST(DesktopEntry, WhatCannotBeStartedHereHasNoCommand) {
    const struct {
        const char* fault;
        std::string text;
    } cases[] = {
        {"empty", ""},
        {"no command", "[Desktop Entry]\nType=Application\n"},
        {"a link", "[Desktop Entry]\nType=Link\nExec=x\n"},
        {"removed", entry("x") + "Hidden=true\n"},
        {"wants a terminal", entry("x") + "Terminal=true\n"},
        {"quotes without an end", entry("\"x")},
        {"only a code", entry("%F")},
        {"no group", "Type=Application\nExec=x\n"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(desktopEntryCommand(each.text, {}), std::nullopt) << each.fault;
    }
}

} // namespace
} // namespace FellowCore
