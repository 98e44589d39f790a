#include "tests/app/PumpHarness.h"
#include "tests/support/OtherProgram.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>

#include <fstream>

namespace PumpHarness {
namespace {

/// A real terminal that runs a command and has told the device it gave it.
class Terminal {
public:
    Terminal(const std::filesystem::path& program, const std::filesystem::path& note,
             const QStringList& command = {}) {
        QStringList words{QStringLiteral("-e")};
        const QString waits = QStringLiteral("tty > '%1'; exec sleep 60").arg(QString::fromStdString(note));
        words += command.isEmpty() ? QStringList{QStringLiteral("sh"), QStringLiteral("-c"), waits} : command;
        process_.start(QString::fromStdString(program), words);
        process_.waitForStarted();
        waitUntil([&] { return std::filesystem::exists(note) && !readDevice(note).empty(); }, 5000);
        device = readDevice(note);
    }
    ~Terminal() {
        process_.kill();
        process_.waitForFinished();
    }

    long pid() const { return static_cast<long>(process_.processId()); }
    std::string device;

    static std::string readDevice(const std::filesystem::path& note) {
        std::ifstream file(note);
        std::string line;
        std::getline(file, line);
        return line;
    }

private:
    QProcess process_;
};

class PumpJumpTest : public testing::Test {
protected:
    void jump(const std::string& device, const char* application = "debian-xterm.desktop") {
        PumpAgentEvent event{
            .agent = PumpProvider::claude, .event = PumpAgentPhase::needsYou, .sessionID = "s"};
        event.tty = device;
        event.terminalBundleID = application;
        jumper.to(event);
    }
    bool comesToTheFront(long pid) {
        return waitUntil([&] {
            const auto front = desk.system.frontmost().current();
            return front && front->pid == pid;
        });
    }

    Desk desk;
    PumpAgentJump jumper{desk.services};
};

TEST_F(PumpJumpTest, RaisesTheTerminalThatHoldsTheSession) {
    Terminal wanted("/usr/bin/xterm", desk.home / "wanted");
    Terminal other("/usr/bin/xterm", desk.home / "other");
    ASSERT_FALSE(wanted.device.empty());
    ASSERT_TRUE(comesToTheFront(other.pid()));
    jump(wanted.device);
    EXPECT_TRUE(comesToTheFront(wanted.pid()));
    jump(other.device);
    EXPECT_TRUE(comesToTheFront(other.pid()));
}

TEST_F(PumpJumpTest, GoesToTheApplicationWhenTheTerminalHasGone) {
    Terminal left("/usr/bin/xterm", desk.home / "left");
    Testing::OtherProgram editor;
    editor.openWindow({50, 50, 300, 200}, Qt::white);
    jump("/dev/pts/98765");
    EXPECT_TRUE(comesToTheFront(left.pid()));
    editor.openWindow({50, 50, 300, 200}, Qt::white);
    const auto front = desk.system.frontmost().current();
    jump("/dev/pts/98765", "org.example.NotInstalled.desktop");
    Testing::runFor(300);
    EXPECT_EQ(desk.system.frontmost().current(), front) << "where nothing is found, nothing happens";
}

TEST_F(PumpJumpTest, BringsTheRightPaneOfTmuxToTheFront) {
    const auto note = [&](const char* name) { return QString::fromStdString(desk.home / name); };
    const QString socket = note("socket, with a comma");
    const auto pane = [&](const char* name) {
        return QStringLiteral("tty > '%1'; exec sleep 60").arg(note(name));
    };
    const QStringList tmux{QStringLiteral("tmux"), QStringLiteral("-f"), QStringLiteral("/dev/null"),
                           QStringLiteral("-S"), socket};
    Terminal terminal("/usr/bin/xterm", desk.home / "second",
                      tmux + QStringList{QStringLiteral("new-session"), pane("first"), QStringLiteral(";"),
                                         QStringLiteral("new-window"), pane("second")});
    const auto answer = [&](const QStringList& words) {
        QProcess process;
        process.start(tmux.first(), tmux.mid(1) + words);
        process.waitForFinished();
        return process.readAllStandardOutput().trimmed();
    };
    const auto window = [&] {
        return answer(
            {QStringLiteral("display-message"), QStringLiteral("-p"), QStringLiteral("#{window_index}")});
    };
    ASSERT_EQ(window(), "1");
    Terminal other("/usr/bin/xterm", desk.home / "other");
    ASSERT_TRUE(comesToTheFront(other.pid()));
    jump(Terminal::readDevice(desk.home / "first"));
    EXPECT_TRUE(comesToTheFront(terminal.pid()));
    EXPECT_EQ(window(), "0");
    answer({QStringLiteral("kill-server")});
}

TEST_F(PumpJumpTest, OpensTheProjectInItsEditorAndTheApplicationOtherwise) {
    const std::filesystem::path applications =
        std::filesystem::path(qEnvironmentVariable("XDG_DATA_HOME").toStdString()) / "applications";
    const std::string note = desk.home / "opened";
    TestSupport::writeBytes(desk.home / "editor", "#!/bin/sh\necho \"$#:$1\" > '" + note + ".new'\nmv '" +
                                                      note + ".new' '" + note + "'\n");
    std::filesystem::permissions(desk.home / "editor", std::filesystem::perms::owner_all);
    TestSupport::writeBytes(applications / "codium.desktop", "[Desktop Entry]\nType=Application\nExec=\"" +
                                                                 (desk.home / "editor").string() + "\" %F\n");
    PumpAgentEvent event{.agent = PumpProvider::codex, .event = PumpAgentPhase::done, .sessionID = "s"};
    event.terminalBundleID = "codium.desktop";
    const auto opened = [&](const PumpAgentEvent& session) {
        std::filesystem::remove(note);
        jumper.to(session);
        waitUntil([&] { return std::filesystem::exists(note); });
        return std::filesystem::exists(note) ? TestSupport::bytesOf(note) : "nothing";
    };
    EXPECT_EQ(opened(event), "0:\n");
    event.cwd = "/home/u/a project; rm";
    EXPECT_EQ(opened(event), "1:/home/u/a project; rm\n");
    event.cwd = "a project's name";
    EXPECT_EQ(opened(event), "0:\n") << "a name is no folder";
    std::filesystem::remove(applications / "codium.desktop");
    EXPECT_EQ(opened(event), "nothing");
}

/// What Konsole answers on the session bus, for two tabs of one window.
class TabsOfKonsole final : public QDBusVirtualObject {
public:
    long wantedShell = 0;
    int chosen = 0;

    QString introspect(const QString& path) const override {
        return path == QLatin1String("/Windows") ? QStringLiteral("<node name=\"1\"/>") : QString();
    }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        QVariant answer;
        if (message.member() == QLatin1String("sessionList")) {
            answer = QStringList{QStringLiteral("4"), QStringLiteral("7")};
        } else if (message.member() == QLatin1String("processId")) {
            answer = message.path() == QLatin1String("/Sessions/7") ? static_cast<int>(wantedShell) : 1;
        } else if (message.member() == QLatin1String("setCurrentSession")) {
            chosen = message.arguments().value(0).toInt();
            return bus.send(message.createReply());
        } else {
            return false;
        }
        return bus.send(message.createReply(answer));
    }
};

TEST_F(PumpJumpTest, BringsTheRightTabOfKonsoleToTheFront) {
    std::filesystem::create_symlink("/usr/bin/xterm", desk.home / "konsole");
    Terminal terminal(desk.home / "konsole", desk.home / "tab");
    ASSERT_FALSE(terminal.device.empty());
    std::ifstream children("/proc/" + std::to_string(terminal.pid()) + "/task/" +
                           std::to_string(terminal.pid()) + "/children");
    TabsOfKonsole tabs;
    ASSERT_TRUE(children >> tabs.wantedShell);
    QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("konsole"));
    ASSERT_TRUE(bus.registerService(QStringLiteral("org.kde.konsole-%1").arg(terminal.pid())));
    ASSERT_TRUE(bus.registerVirtualObject(QStringLiteral("/"), &tabs, QDBusConnection::SubPath));
    Terminal other("/usr/bin/xterm", desk.home / "other");
    ASSERT_TRUE(comesToTheFront(other.pid()));
    jump(terminal.device, "org.kde.konsole.desktop");
    EXPECT_TRUE(comesToTheFront(terminal.pid()));
    EXPECT_EQ(tabs.chosen, 7);
    QDBusConnection::disconnectFromBus(QStringLiteral("konsole"));
}

} // namespace
} // namespace PumpHarness
