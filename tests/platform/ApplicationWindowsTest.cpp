#include "platform/ApplicationWindows.h"

#include "platform/System.h"
#include "tests/support/OtherProgram.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Waiting.h"

#include <QProcess>
#include <QSysInfo>

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <unistd.h>

namespace Platform {
namespace {

using Testing::waitUntil;

class ApplicationWindowsTest : public testing::Test {
protected:
    std::vector<unsigned long long> numbers() {
        std::vector<unsigned long long> found;
        for (const RunningApplication& each : windows.list()) {
            found.push_back(each.window);
        }
        return found;
    }
    const std::unique_ptr<System> system = makeSystem();
    ApplicationWindows& windows = system->windows();
    Testing::OtherProgram other;
};

TEST_F(ApplicationWindowsTest, ListsFromTheTopmostDownAndRaises) {
    const unsigned long long lower = other.openWindow({10, 10, 200, 100}, Qt::white);
    const unsigned long long upper = other.openWindow({20, 20, 200, 100}, Qt::white);
    ASSERT_TRUE(waitUntil([&] { return numbers() == std::vector{upper, lower}; }));
    RunningApplication wanted = windows.list().at(1);
    EXPECT_EQ(wanted.pid, ::getpid()) << "what a window says of itself may be another process here";
    EXPECT_FALSE(wanted.isOurs);
    EXPECT_TRUE(windows.activate(wanted));
    EXPECT_TRUE(waitUntil([&] { return other.activeWindow() == lower; }));
    EXPECT_TRUE(waitUntil([&] { return numbers() == std::vector{lower, upper}; }));
    other.closeWindow(static_cast<xcb_window_t>(lower));
    ASSERT_TRUE(waitUntil([&] { return numbers() == std::vector{upper}; }));
    EXPECT_FALSE(windows.activate(wanted)) << "it is gone";
    EXPECT_FALSE(windows.close(wanted));
}

TEST_F(ApplicationWindowsTest, ANumberOnAnotherMachineIsNoneHere) {
    const std::string here = QSysInfo::machineHostName().toStdString();
    const auto window = static_cast<xcb_window_t>(other.openWindow({10, 10, 200, 100}, Qt::white));
    ASSERT_TRUE(waitUntil([&] { return numbers().size() == 1; }));
    const long us = ::getpid();
    constexpr long nobody = 0;
    for (const auto& [machine, pid] : {std::pair(here, us),
                                       {here + ".example.org", us},
                                       {here + "er", nobody},
                                       {"elsewhere." + here, nobody},
                                       {"", us}}) {
        xcb_change_property(other.connection(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLIENT_MACHINE,
                            XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(machine.size()), machine.data());
        other.sync();
        EXPECT_EQ(windows.list().at(0).pid, pid)
            << machine << " would be taken for a process of this machine";
    }
}

TEST_F(ApplicationWindowsTest, AsksAWindowToCloseAndTellsWhoseItIs) {
    const TestSupport::TemporaryFolder scratch;
    const std::filesystem::path ready = scratch / "ready"; // before that a terminal has nothing to hang up on
    QProcess terminal;
    terminal.start(QStringLiteral("xterm"),
                   {QStringLiteral("-e"), QStringLiteral("sh"), QStringLiteral("-c"),
                    QStringLiteral("touch '%1'; exec sleep 60").arg(QString::fromStdString(ready))});
    ASSERT_TRUE(terminal.waitForStarted());
    const auto own = [&] {
        const auto all = windows.list();
        const auto found =
            std::ranges::find(all, static_cast<long>(terminal.processId()), &RunningApplication::pid);
        return found == all.end() ? std::nullopt : std::optional(*found);
    };
    ASSERT_TRUE(waitUntil([&] { return own().has_value() && std::filesystem::exists(ready); }, 5000));
    EXPECT_EQ(own()->windowClass, "XTerm");
    EXPECT_TRUE(windows.close(*own()));
    EXPECT_TRUE(waitUntil([&] { return terminal.state() == QProcess::NotRunning; }, 5000));
}

} // namespace
} // namespace Platform
