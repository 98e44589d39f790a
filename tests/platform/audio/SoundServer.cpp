#include "tests/platform/audio/SoundServer.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QStandardPaths>
#include <QTimer>

#include <sys/prctl.h>

#include <csignal>
#include <cstring>
#include <stdexcept>

namespace TestSupport {

namespace {

constexpr int patience = 20'000;

/// The energy of 16-bit stereo.
Heard heardIn(const QByteArray& stereo) {
    Heard heard;
    for (qsizetype at = 0; at + 4 <= stereo.size(); at += 4) {
        std::int16_t frame[2];
        std::memcpy(frame, stereo.constData() + at, sizeof frame);
        const double left = frame[0] / 32768.0;
        const double right = frame[1] / 32768.0;
        heard.left += left * left;
        heard.right += right * right;
    }
    return heard;
}

} // namespace

void runFor(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

bool SoundServer::isInstalled() {
    for (const auto* program : {"pulseaudio", "parec", "pactl"}) {
        if (QStandardPaths::findExecutable(QString::fromLatin1(program)).isEmpty())
            return false;
    }
    return true;
}

SoundServer::SoundServer() {
    const auto folder = QByteArray::fromStdString(folder_.path().string());
    qputenv("XDG_RUNTIME_DIR", folder);
    qputenv("PULSE_SERVER", "unix:" + folder + "/native");
    qputenv("PULSE_COOKIE", folder + "/cookie");
    dieWithParent(server_);
    dieWithParent(recorder_);
    start();
}

SoundServer::~SoundServer() {
    kill();
}

void SoundServer::start() {
    const auto socket = QString::fromStdString((folder_ / "native").string());
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("PULSE_SERVER"));
    environment.insert(QStringLiteral("HOME"), QString::fromStdString(folder_.path().string()));
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("disabled:"));
    server_.setProcessEnvironment(environment);
    server_.setStandardErrorFile(QString::fromStdString((folder_ / "log").string()));
    server_.start(QStringLiteral("pulseaudio"),
                  {QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
                   QStringLiteral("--use-pid-file=no"), QStringLiteral("--exit-idle-time=-1"),
                   QStringLiteral("--disable-shm=yes"),
                   QStringLiteral("--load=module-null-sink sink_name=test rate=48000 channels=2"),
                   QStringLiteral("--load=module-native-protocol-unix auth-anonymous=1 socket=") + socket});
    QElapsedTimer waiting;
    waiting.start();
    while (ask({QStringLiteral("info")}).isEmpty()) {
        if (waiting.hasExpired(patience))
            throw std::runtime_error("no sound server: " + bytesOf(folder_ / "log"));
        runFor(50);
    }
    startRecorder();
}

void SoundServer::kill() {
    for (auto* process : {&recorder_, &server_}) {
        process->kill();
        process->waitForFinished(patience);
    }
    // The socket of a server that crashed would keep the next one from starting.
    std::error_code ignored;
    std::filesystem::remove(folder_ / "native", ignored);
}

void SoundServer::suspend() const {
    ::kill(static_cast<pid_t>(server_.processId()), SIGSTOP);
}

void SoundServer::dieWithParent(QProcess& process) {
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

void SoundServer::startRecorder() {
    recorder_.start(QStringLiteral("parec"),
                    {QStringLiteral("--device=test.monitor"), QStringLiteral("--format=s16le"),
                     QStringLiteral("--rate=48000"), QStringLiteral("--channels=2"),
                     QStringLiteral("--latency-msec=20")});
    // Before anyone listens, the null sink plays two seconds ahead; it is in step once the recording flows.
    QElapsedTimer waiting;
    waiting.start();
    constexpr qint64 halfASecond = 48'000 * 4 / 2;
    while (recorder_.bytesAvailable() < halfASecond) {
        if (waiting.hasExpired(patience))
            throw std::runtime_error("the recorder hears nothing, not even silence");
        runFor(50);
    }
    recorder_.readAllStandardOutput();
}

Heard SoundServer::hear(int milliseconds) {
    runFor(milliseconds);
    return heardIn(recorder_.readAllStandardOutput());
}

int SoundServer::openStreams() const {
    return static_cast<int>(
        ask({QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("sink-inputs")}).count('\n'));
}

QByteArray SoundServer::ask(const QStringList& arguments) const {
    QProcess pactl;
    pactl.start(QStringLiteral("pactl"), arguments);
    pactl.waitForFinished(patience);
    return pactl.exitCode() == 0 ? pactl.readAllStandardOutput() : QByteArray();
}

} // namespace TestSupport
