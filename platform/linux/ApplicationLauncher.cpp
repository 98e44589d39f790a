#include "platform/ApplicationLauncher.h"

#include "core/base/DesktopEntry.h"
#include "core/base/FileOperations.h"
#include "core/base/WholeFile.h"

#include <QProcess>
#include <QStandardPaths>

#include <string_view>

namespace Platform {
namespace {
constexpr std::size_t desktopFileLimit = 1 << 20;
constexpr std::string_view ending = ".desktop";
} // namespace

bool launchApplication(const std::string& desktopFile, const std::vector<std::string>& paths) {
    const std::string name = desktopFile.ends_with(ending) ? desktopFile : desktopFile + std::string(ending);
    const QString file =
        QStandardPaths::locate(QStandardPaths::ApplicationsLocation, QString::fromStdString(name));
    if (file.isEmpty() || name.find('/') != std::string::npos) {
        return false;
    }
    try {
        FellowCore::PosixFileOperations files;
        const auto words = FellowCore::desktopEntryCommand(
            FellowCore::readWholeFile(files, file.toStdString(), desktopFileLimit), paths);
        if (!words) {
            return false;
        }
        QStringList arguments;
        for (auto word = words->begin() + 1; word != words->end(); ++word) {
            arguments.push_back(QString::fromStdString(*word));
        }
        return QProcess::startDetached(QString::fromStdString(words->front()), arguments);
    } catch (const FellowCore::FileError&) {
        return false; // gone since it was found, or not ours to read: as good as not installed
    }
}

} // namespace Platform
