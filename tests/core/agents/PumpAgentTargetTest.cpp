#include "core/agents/PumpAgentTarget.h"

#include "core/agents/LinuxHostApplication.h"

#include <gmock/gmock.h>

namespace FellowCore {
namespace {

using ::testing::HasSubstr;
using Kind = PumpAgentTarget::Kind;
using Text = std::optional<std::string>;
constexpr auto none = std::nullopt;

TEST(PumpAgentTarget, LeadsToTheTabTheProjectOrTheApplication) {
    const struct {
        const char* fault;
        Text bundleID;
        Text tty;
        Text cwd;
        std::optional<PumpAgentTarget> target;
    } cases[] = {
        {"nothing is known", none, "/dev/pts/1", "/p", none},
        {"a tab", "com.apple.Terminal", "ttys001", "/p",
         PumpAgentTarget{Kind::terminal, "com.apple.Terminal", "/dev/ttys001"}},
        {"a tab asked for in another way", "com.googlecode.iterm2", "/dev/ttys001", none,
         PumpAgentTarget{Kind::iTerm, "com.googlecode.iterm2", "/dev/ttys001"}},
        {"a terminal on Linux", "org.kde.konsole.desktop", "/dev/pts/4", "/p",
         PumpAgentTarget{Kind::terminal, "org.kde.konsole.desktop", "/dev/pts/4"}},
        {"a terminal without a tty", "org.kde.konsole.desktop", none, "/p",
         PumpAgentTarget{Kind::application, "org.kde.konsole.desktop"}},
        {"a tty that is none", "com.apple.Terminal", "ttys001; rm", "/p",
         PumpAgentTarget{Kind::application, "com.apple.Terminal"}},
        {"an editor's helper", "com.microsoft.VSCode.helper", none, "/p",
         PumpAgentTarget{.kind = Kind::project, .bundleID = "com.microsoft.VSCode", .path = "/p"}},
        {"an editor's own terminal is no terminal", "code.desktop", "/dev/pts/4", "/p",
         PumpAgentTarget{.kind = Kind::project, .bundleID = "code.desktop", .path = "/p"}},
        {"an editor's second entry", "cursor-url-handler.desktop", none, "/p",
         PumpAgentTarget{.kind = Kind::project, .bundleID = "cursor.desktop", .path = "/p"}},
        {"a relative folder", "com.microsoft.VSCode", none, "relative/path",
         PumpAgentTarget{Kind::application, "com.microsoft.VSCode"}},
        {"a bare name", "code.desktop", none, "project", PumpAgentTarget{Kind::application, "code.desktop"}},
        {"a folder with a newline", "code.desktop", none, "/a\nb",
         PumpAgentTarget{Kind::application, "code.desktop"}},
        {"a name that only begins like an editor's", "com.microsoft.VSCodeX", none, "/p",
         PumpAgentTarget{Kind::application, "com.microsoft.VSCodeX"}},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(PumpAgentTarget::choose(row.bundleID, row.tty, row.cwd), row.target) << row.fault;
    }
}

TEST(PumpAgentTarget, TakesOnlyTerminalDevices) {
    const struct {
        const char* text;
        Text device;
    } cases[] = {
        {" ttys001\n", "/dev/ttys001"},
        {"/dev/tty1", "/dev/tty1"},
        {"pts/0", "/dev/pts/0"},
        {"/dev/pts/12", "/dev/pts/12"},
        {"", none},
        {"tty", none},
        {"/dev/", none},
        {"/dev//dev/tty1", none},
        {"pts/", none},
        {"pts/1/2", none},
        {"pts/x", none},
        {"pts/12345678901", none},
        {"tty_1", none},
        {"tty1 2", none},
        {"../tty1", none},
        {"sda", none},
        {"tty\u00e9", none},
        {"/etc/tty1", none},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(PumpAgentTarget::parseTTY(row.text), row.device) << row.text;
    }
    EXPECT_TRUE(PumpAgentTarget::parseTTY("tty" + std::string(32, 'a')));
    EXPECT_FALSE(PumpAgentTarget::parseTTY("tty" + std::string(33, 'a')));
}

TEST(PumpAgentTarget, KeepsFoldersWithinBounds) {
    EXPECT_TRUE(PumpAgentTarget::validDirectoryMetadata("/" + std::string(1023, 'a')));
    EXPECT_FALSE(PumpAgentTarget::validDirectoryMetadata("/" + std::string(1024, 'a')));
    EXPECT_TRUE(PumpAgentTarget::validDirectoryMetadata(std::string(160, 'a')));
    EXPECT_FALSE(PumpAgentTarget::validDirectoryMetadata(std::string(161, 'a')));
    for (const char* bad : {"", "a/b", "/a\x1b[2J", "/a\x7f", "/a\xc2\x9b"}) {
        EXPECT_FALSE(PumpAgentTarget::validDirectoryMetadata(bad)) << bad;
    }
    EXPECT_TRUE(PumpAgentTarget::validDirectoryMetadata("/\u00df\u00a0\u0430"))
        << "their bytes hold 9F and A0";
}

TEST(PumpAgentTarget, WritesAScriptOnlyAroundACheckedTerminal) {
    const auto scriptFor = [](Kind kind, const char* tty) {
        return PumpAgentTarget{.kind = kind, .bundleID = "x", .tty = tty, .path = "/p"}.appleScript();
    };
    EXPECT_THAT(scriptFor(Kind::terminal, "/dev/ttys001").value(), HasSubstr("\"/dev/ttys001\""));
    EXPECT_THAT(scriptFor(Kind::iTerm, "/dev/ttys001").value(), HasSubstr("com.googlecode.iterm2"));
    for (const char* tty : {"ttys001", "/dev/tty001; rm", "/dev/tty\" & x & \"", "", " /dev/tty1"}) {
        EXPECT_FALSE(scriptFor(Kind::terminal, tty)) << tty;
        EXPECT_FALSE(scriptFor(Kind::iTerm, tty)) << tty;
    }
    EXPECT_FALSE(scriptFor(Kind::project, "/dev/tty1") || scriptFor(Kind::application, "/dev/tty1"));
}

TEST(LinuxHostApplication, ReadsTheDesktopsUnitNames) {
    const struct {
        const char* fault;
        const char* group;
        Text id;
    } cases[] = {
        {"a scope with a launcher", "/user.slice/app.slice/app-gnome-org.gnome.Terminal-1234.scope",
         "org.gnome.Terminal.desktop"},
        {"a scope without one", "/app.slice/app-org.kde.konsole-1234.scope", "org.kde.konsole.desktop"},
        {"a service of several", "/app.slice/app-org.kde.konsole@5f3a.service", "org.kde.konsole.desktop"},
        {"a terminal's child in its slice", "/app.slice/app-org.gnome.Terminal.slice/vte-spawn-a-b.scope",
         "org.gnome.Terminal.desktop"},
        {"a dash of its own", "/app-gnome-xfce4\\x2dterminal-77.scope", "xfce4-terminal.desktop"},
        {"the nearest counts", "/app-a.b-1.scope/app-c.d-2.scope", "c.d.desktop"},
        {"bytes no id has", "/app-a\\x2fb-1.scope", none},
        {"an escape that is none", "/app-a\\xzz-1.scope", none},
        {"a session", "/user.slice/user-1000.slice/session-2.scope", none},
        {"the slice of all", "/user.slice/app.slice", none},
        {"too short", "/app-1.scope", none},
        {"nothing", "", none},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(LinuxHostApplication::fromControlGroup(row.group), row.id) << row.fault;
    }
    EXPECT_EQ(LinuxHostApplication::fromDesktopFile("/usr/share/applications/kitty.desktop"),
              "kitty.desktop");
    EXPECT_EQ(LinuxHostApplication::fromDesktopFile("/usr/share/applications/.desktop"), none);
    EXPECT_EQ(LinuxHostApplication::fromDesktopFile("/usr/bin/kitty"), none);
    EXPECT_EQ(LinuxHostApplication::fromProcessName("gnome-terminal-"), "org.gnome.Terminal.desktop");
    EXPECT_EQ(LinuxHostApplication::fromProcessName("bash"), none);
}

TEST(LinuxHostApplication, NamesTerminalsByTheirDeviceNumbers) {
    const struct {
        const char* fault;
        int device;
        Text name;
    } cases[] = {
        {"no terminal", 0, none},
        {"the first console", 0x0401, "tty1"},
        {"a serial line", 0x0441, "ttyS1"},
        {"the present console is no terminal's name", 0x0400, none},
        {"pseudo terminal 3", 0x8803, "pts/3"},
        {"beyond 255 within one major", 0x108801, "pts/257"},
        {"a second major", 0x8901, "pts/257"},
        {"another device", 0x0801, none},
        {"nonsense", -1, none},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(LinuxHostApplication::terminalName(row.device), row.name) << row.fault;
    }
}

} // namespace
} // namespace FellowCore
