#pragma once

#include "app/characters/dhiru/DevWatchController.h"
#include "tests/app/AppHarness.h"

#include <QProcess>

#include <algorithm>
#include <csignal>
#include <sys/prctl.h>

namespace DevWatchHarness {

using namespace AppHarness;
using FellowCore::DevWatchProcessConfirmation;

/// A real program that says on its first line which port it listens on.
class Program {
public:
    /// `preparation` runs before the port is told, with the listening socket as `server`. What it forks calls
    /// `follow`, so that it ends with its parent.
    explicit Program(const QString& preparation = {}, const QString& folder = QStringLiteral("/")) {
        const QString script = QStringLiteral("import os, signal, socket, sys, time\n"
                                              "server = socket.create_server(('127.0.0.1', 0))\n"
                                              "def say(word): os.write(1, (word + '\\n').encode())\n"
                                              "def follow(): import ctypes; ctypes.CDLL(None).prctl(1, 9)\n"
                                              "%1\n"
                                              "say(str(server.getsockname()[1]))\n"
                                              "while True: signal.pause()\n");
        process_.setWorkingDirectory(folder);
        process_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        process_.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-ISc"), script.arg(preparation)});
        port_ = static_cast<std::uint16_t>(nextLine().toInt());
        pid_ = static_cast<std::int32_t>(process_.processId());
    }
    ~Program() {
        process_.kill();
        process_.waitForFinished();
    }

    /// Also once it has ended.
    std::int32_t pid() const { return pid_; }
    std::uint16_t port() const { return port_; }
    bool isRunning() const { return process_.state() == QProcess::Running; }
    /// The signal that ended it; 0 for none, or while it runs.
    int endedBy() {
        const bool ended = waitUntil([this] { return !isRunning(); });
        return ended && process_.exitStatus() == QProcess::CrashExit ? process_.exitCode() : 0;
    }
    /// What it said next, without the line's end.
    QString nextLine() {
        waitUntil([this] { return process_.canReadLine(); });
        return QString::fromUtf8(process_.readLine()).trimmed();
    }
    /// Sends it a signal that it answers with a line.
    void tell(int signal) {
        ::kill(pid(), signal);
        nextLine();
    }
    bool hasSpoken() { return process_.canReadLine(); }

private:
    QProcess process_;
    std::uint16_t port_ = 0;
    std::int32_t pid_ = 0;
};

/// Dhiru's watch over the real system with its panel open, at a time that stands still until told.
class WatchDesk : public Desk {
public:
    WatchDesk() {
        QObject::connect(&watch, &DevWatchController::noticed,
                         [this](const QString& sentence) { notices.push_back(sentence.toStdString()); });
    }
    void comeOut() {
        watch.setDesktopActive(true);
        watch.setPanelOpen(true);
    }

    const DevWatchServerRow* row(std::int32_t pid, std::uint16_t port) const {
        const auto& servers = watch.view().servers;
        const auto found = std::ranges::find_if(servers, [&](const DevWatchServerRow& each) {
            return each.listener.process.identity.pid == pid && each.listener.port == port;
        });
        return found == servers.end() ? nullptr : &*found;
    }
    const DevWatchServerRow* row(const Program& program) const { return row(program.pid(), program.port()); }
    /// Does not wait for the next look that is due.
    bool lists(const Program& program) {
        return waitUntil([&] {
            watch.refresh();
            return row(program) != nullptr;
        });
    }
    bool dropped(const Program& program) {
        return waitUntil([&] { return row(program) == nullptr; });
    }
    bool reaches(const Program& program, DevWatchStage stage) {
        return waitUntil([&] { return row(program) != nullptr && row(program)->stage == stage; });
    }
    /// What the user sees and confirms, once it is listed.
    DevWatchProcessConfirmation confirm(const Program& program) {
        return lists(program) ? DevWatchProcessConfirmation(row(program)->listener)
                              : DevWatchProcessConfirmation({});
    }

    Log notices;
    DevWatchController watch{services};
};

} // namespace DevWatchHarness
