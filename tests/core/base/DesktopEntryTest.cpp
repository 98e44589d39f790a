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

TEST(DesktopEntry, NamesTheApplicationInTheClosestLanguage) {
    const std::string text = "[Desktop Entry]\nType=Application\nName=Files\nName[sr]=a\nName[sr@latin]=b\n"
                             "Name[sr_RS]=c\nName[sr_RS@latin]=d\nName[de]=Dateien\nName[pt_BR]=Arquivos\n"
                             "Name[ca@valencia]=Fitxers\nName[fi]=  \n[Desktop Action x]\nName[nl]=wrong\n";
    const struct {
        const char* fault;
        const char* locale;
        const char* name;
    } cases[] = {
        {"no locale", "", "Files"},
        {"the locale for programs", "C.UTF-8", "Files"},
        {"everything matches", "sr_RS.UTF-8@latin", "d"},
        {"the encoding counts for nothing", "sr_RS.ISO8859-5", "c"},
        {"a modifier that nobody translated for", "sr_RS@cyrillic", "c"},
        {"the country goes before the modifier, and another country for nothing", "sr_ME@latin", "b"},
        {"another country", "sr_ME", "a"},
        {"only the language is translated", "de_AT.UTF-8@euro", "Dateien"},
        {"a translation for another country is none", "pt_PT", "Files"},
        {"a translation for a modifier is none without it", "ca_ES", "Files"},
        {"a language that begins like another", "des", "Files"},
        {"an empty translation is none", "fi_FI", "Files"},
        {"translated in another group", "nl", "Files"},
        {"no language", "_DE.UTF-8@x", "Files"},
        {"only signs", "@._", "Files"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(desktopEntryName(text, each.locale), each.name) << each.fault;
    }
}

TEST(DesktopEntry, TellsANameAndAClassOfApplicationsOnly) {
    const std::string head = "[Desktop Entry]\nType=Application\n";
    const struct {
        const char* fault;
        std::string text;
        std::optional<std::string> name;
        std::optional<std::string> windowClass;
    } cases[] = {
        {"empty", "", std::nullopt, std::nullopt},
        {"both", head + "Name = Web \nStartupWMClass= Firefox-esr\n", "Web", "Firefox-esr"},
        {"an application for a terminal has windows too", head + "Name=top\nTerminal=true\n", "top",
         std::nullopt},
        {"removed", head + "Name=x\nStartupWMClass=x\nHidden=true\n", std::nullopt, std::nullopt},
        {"a link", "[Desktop Entry]\nType=Link\nName=x\nStartupWMClass=x\n", std::nullopt, std::nullopt},
        {"names nothing", head + "Name=\nStartupWMClass=\n", std::nullopt, std::nullopt},
        {"breaks its line",
         head + "Name=a\\nb\tc\xE2\x80\xAE"
                "d\n",
         "a b c d", std::nullopt},
        {"not UTF-8", head + "Name=a\xFF\n", "a\xEF\xBF\xBD", std::nullopt},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(desktopEntryName(each.text, "de"), each.name) << each.fault;
        EXPECT_EQ(desktopEntryWindowClass(each.text), each.windowClass) << each.fault;
    }
}

} // namespace
} // namespace FellowCore
