#include "app/AppController.h"
#include "app/CommandLine.h"
#include "platform/Display.h"
#include "platform/SingleInstance.h"
#include "platform/System.h"
#include "platform/TerminationSignals.h"

#include <QApplication>
#include <QDir>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

std::optional<std::filesystem::path> folderFrom(const char* variable) {
    const QByteArray value = qgetenv(variable);
    return value.isEmpty() ? std::nullopt : std::optional<std::filesystem::path>(value.toStdString());
}

FellowCore::SupportFolders readFolders() {
    return FellowCore::SupportFolders({QDir::homePath().toStdString(), folderFrom("XDG_DATA_HOME"),
                                       folderFrom("XDG_CACHE_HOME"), folderFrom("XDG_CONFIG_HOME"),
                                       folderFrom("XDG_RUNTIME_DIR")});
}

/// An installation and a build tree have the same layout: bin, share/deskfellow and lib/deskfellow side by
/// side.
DeskSprites::AppSurroundings surroundings(const DeskSprites::CommandLine& commandLine) {
    const std::filesystem::path program = QCoreApplication::applicationFilePath().toStdString();
    const std::filesystem::path root = program.parent_path().parent_path();
    return {readFolders(), root / "share" / "deskfellow", root / "lib" / "deskfellow", program,
            commandLine.muted ? DeskSprites::InterfaceAudio::Playback::silent
                              : DeskSprites::InterfaceAudio::Playback::audible};
}

bool checkDisplay() {
    switch (Platform::displayState()) {
    case Platform::DisplayState::reachable:
        return true;
    case Platform::DisplayState::notSet:
        std::fputs("Deskfellow needs an X11 display; none is set.\n", stderr);
        return false;
    case Platform::DisplayState::unreachable:
        std::fputs("Deskfellow needs an X11 display; the one that is set does not answer.\n", stderr);
        return false;
    }
    return false;
}

int runDesktop(QApplication& application, const DeskSprites::CommandLine& commandLine) {
    const DeskSprites::AppSurroundings around = surroundings(commandLine);
    Platform::SingleInstance instance(around.folders.runtime().value_or(around.folders.deskfellow()));
    switch (instance.claim(commandLine.forwarded)) {
    case Platform::InstanceOutcome::forwarded:
        return 0;
    case Platform::InstanceOutcome::alreadyRunning:
        std::fputs("Deskfellow is already running.\n", stderr);
        return 1;
    case Platform::InstanceOutcome::first:
        break;
    }
    const std::unique_ptr<Platform::System> system = Platform::makeSystem();
    DeskSprites::AppController controller(*system, around);
    const Platform::TerminationSignals signals([&controller] { controller.quit(); });
    QObject::connect(&application, &QApplication::aboutToQuit, &application,
                     [&controller] { controller.applicationWillTerminate(); });
    controller.applicationDidFinishLaunching(commandLine.forwarded);
    instance.onArguments = [&controller](const QStringList& arguments) {
        controller.applicationShouldHandleReopen(arguments);
    };
    instance.deliverPending();
    return QApplication::exec();
}

int runApplication(int& count, char** values, const DeskSprites::CommandLine& commandLine) {
    QApplication application(count, values);
    QApplication::setApplicationName(QStringLiteral("deskfellow"));
    QApplication::setApplicationDisplayName(QStringLiteral("Deskfellow"));
    QApplication::setApplicationVersion(QStringLiteral(DESKFELLOW_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("deskfellow"));
    QApplication::setQuitOnLastWindowClosed(false);
    return runDesktop(application, commandLine);
}

} // namespace

int main(int count, char** values) {
    QStringList arguments;
    for (int i = 1; i < count; ++i) {
        arguments.push_back(QString::fromLocal8Bit(values[i]));
    }
    const DeskSprites::CommandLine commandLine(arguments);
    if (commandLine.answer) {
        std::fputs(commandLine.answer->c_str(), commandLine.status == 0 ? stdout : stderr);
        return commandLine.status;
    }
    // Only X11 lets a program say where its windows stand; under Wayland it is reached through Xwayland.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    if (!checkDisplay()) {
        return 1;
    }
    const int status = runApplication(count, values, commandLine);
    // At exit the toolkit's sound engine leaves its server without holding off the thread that still listens
    // to it, which now and then ends in an abort. Everything of ours has ended here, so nothing is lost.
    std::fflush(nullptr);
    std::_Exit(status);
}
