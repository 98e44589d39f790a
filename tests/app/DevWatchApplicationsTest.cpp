#include "app/characters/dhiru/DevWatchApplications.h"

#include "platform/Processes.h"
#include "platform/System.h"
#include "tests/core/devwatch/FakeSystem.h"
#include "tests/support/OtherProgram.h"
#include "tests/support/Waiting.h"

#include <QProcess>

#include <gmock/gmock.h>

#include <algorithm>
#include <unistd.h>

namespace DeskSprites {
namespace {

using FellowCore::DevWatchApp;
using Platform::InstalledApplication;
using Platform::RunningApplication;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Windows = std::vector<RunningApplication>;

RunningApplication window(unsigned long long number, long pid, const std::string& windowClass,
                          const std::optional<std::string>& desktopFile = std::nullopt) {
    RunningApplication made;
    made.window = number;
    made.pid = pid;
    made.windowClass = windowClass;
    made.desktopFile = desktopFile;
    return made;
}

class DevWatchApplicationsTest : public testing::Test {
protected:
    DevWatchApplicationsTest() {
        for (const std::int32_t pid : {500, 501, 502, TestSupport::self})
            system.processes[pid] = {};
    }
    std::vector<std::string> names(const Windows& windows) {
        std::vector<std::string> names;
        for (const DevWatchApp& app : applications.list(windows))
            names.push_back(app.name);
        return names;
    }

    TestSupport::FakeSystem system;
    std::map<std::string, InstalledApplication> installed{
        {"org.example.Web", {"org.example.Web", "Web", "/apps/org.example.Web.desktop"}},
        {"Navigator", {"org.example.Web", "Web", "/apps/org.example.Web.desktop"}},
        {"deskfellow", {"deskfellow", "Deskfellow", "/apps/deskfellow.desktop"}},
    };
    int lookups = 0;
    DevWatchApplications applications{
        system, TestSupport::me, TestSupport::self, [this](const std::string& key) {
            ++lookups;
            const auto found = installed.find(key);
            return found == installed.end() ? std::nullopt : std::optional(found->second);
        }};
};

TEST_F(DevWatchApplicationsTest, NamesAnApplicationAsTheUserKnowsIt) {
    system.processes[500].path = "/opt/some thing/bin\u202e/paint";
    RunningApplication instanceOnly = window(1, 500, " ");
    instanceOnly.windowInstance = "draw";
    const struct {
        const char* fault;
        RunningApplication window;
        std::string name;
        std::optional<std::string> identifier;
        std::string path;
    } cases[] = {
        {"by its desktop file", window(1, 500, "x", "org.example.Web"), "Web", "org.example.Web",
         "/apps/org.example.Web.desktop"},
        {"by the class of its window", window(1, 500, "Navigator"), "Web", "org.example.Web",
         "/apps/org.example.Web.desktop"},
        {"by the class when its desktop file is not installed", window(1, 500, "Navigator", "own"), "Web",
         "org.example.Web", "/apps/org.example.Web.desktop"},
        {"not installed", window(1, 500, "gimp-2.10", "own"), "Gimp-2.10", "own", system.processes[500].path},
        {"a class like an id", window(1, 500, "org.example.maps"), "Maps", std::nullopt,
         system.processes[500].path},
        {"a class like a version", window(1, 500, "Tool-2.10.34"), "Tool-2.10.34", std::nullopt,
         system.processes[500].path},
        {"a class that breaks the line", window(1, 500, "a\nb\u202e"), "A b", std::nullopt,
         system.processes[500].path},
        {"an empty class", instanceOnly, "Draw", std::nullopt, system.processes[500].path},
        {"nothing but the program", window(1, 500, ""), "Paint", std::nullopt, system.processes[500].path},
    };
    for (const auto& each : cases) {
        DevWatchApplications fresh = applications;
        const DevWatchApp expected{{500, TestSupport::me, system.processes[500].started},
                                   each.name,
                                   each.identifier,
                                   each.path,
                                   true,
                                   false};
        EXPECT_THAT(fresh.list({each.window}), ElementsAre(expected)) << each.fault;
    }
}

TEST_F(DevWatchApplicationsTest, LeavesOutWhatIsNoneOrNotToBeTouched) {
    system.processes[99] = {};
    system.processes[501].uid = 0;
    system.processes[502].realUid = 0;
    system.processes[503] = {.zombie = true};
    RunningApplication panel = window(1, 500, "Panel");
    panel.isPartOfDesktop = true;
    RunningApplication ours = window(1, 500, "Deskfellow");
    ours.isOurs = true;
    const struct {
        const char* fault;
        RunningApplication window;
    } cases[] = {
        {"tells no process", window(1, 0, "x")},
        {"no number of a process", window(1, -7, "x")},
        {"would be 500 in fewer digits", window(1, 500 + (1L << 32), "x")},
        {"the system's", window(1, 99, "x")},
        {"another user's", window(1, 501, "x")},
        {"began as another user's", window(1, 502, "x")},
        {"a zombie", window(1, 503, "x")},
        {"gone", window(1, 504, "x")},
        {"a panel", panel},
        {"a window of ours", ours},
        {"this process", window(1, TestSupport::self, "x")},
        {"this program, started by somebody else", window(1, 500, "deskfellow")},
        {"the desktop's shell", window(1, 500, "gnome-shell", "org.gnome.Shell")},
    };
    for (const auto& each : cases) {
        EXPECT_THAT(applications.list({each.window}), IsEmpty()) << each.fault;
    }
}

TEST_F(DevWatchApplicationsTest, IsTheSameApplicationWhateverItsWindowsDo) {
    const Windows first{window(9, 500, "Writer"), window(4, 500, "Start"), window(7, 501, "Navigator")};
    const auto before = applications.list(first);
    EXPECT_THAT(names(first), ElementsAre("Start", "Web"));
    const int asked = lookups;
    EXPECT_EQ(applications.list({window(7, 501, "Navigator"), window(9, 500, "Writer")}), before)
        << "its first window was closed; it would count as another application, and force be refused";
    EXPECT_EQ(lookups, asked) << "reads every desktop file every five seconds";
    EXPECT_THAT(applications.windowsOf(before.front(), first), ElementsAre(first[0], first[1]));

    system.processes[500].path = "/usr/bin/other"; // it became another program
    EXPECT_THAT(names({window(9, 500, "Writer")}), ElementsAre("Writer"));
    system.processes[500].started += 1; // another process under the same number
    EXPECT_THAT(names({window(11, 500, "Solitaire")}), ElementsAre("Solitaire"));
    EXPECT_THAT(applications.windowsOf(before.front(), first), IsEmpty()) << "closes a stranger's windows";
}

TEST(DevWatchApplicationsDesktop, ListsARealApplicationAndNotThePanel) {
    const auto desktop = Platform::makeSystem();
    const auto processes = Platform::processOperations();
    DevWatchApplications applications(*processes, getuid(), getpid());
    Testing::OtherProgram other;
    const auto panel = other.openPanel({0, 0, 300, 20}, {0, 0, 20, 0, 0, 0, 0, 0, 0, 299, 0, 0});
    QProcess terminal;
    terminal.start(QStringLiteral("xterm"),
                   {QStringLiteral("-e"), QStringLiteral("sleep"), QStringLiteral("60")});
    ASSERT_TRUE(terminal.waitForStarted());
    std::vector<DevWatchApp> found;
    const auto isListed = [&] {
        found = applications.list(desktop->windows().list());
        return !found.empty();
    };
    ASSERT_TRUE(Testing::waitUntil(isListed, 5000));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].identity.pid, terminal.processId());
    EXPECT_FALSE(found[0].name.empty());

    const Windows windows = desktop->windows().list();
    const auto bar = std::ranges::find(windows, panel, &RunningApplication::window);
    ASSERT_NE(bar, windows.end()) << "the window manager lists panels, too";
    EXPECT_TRUE(bar->isPartOfDesktop);
    for (const RunningApplication& each : applications.windowsOf(found[0], windows))
        EXPECT_TRUE(desktop->windows().close(each));
    EXPECT_TRUE(Testing::waitUntil([&] { return terminal.state() == QProcess::NotRunning; }, 5000));
}

} // namespace
} // namespace DeskSprites
