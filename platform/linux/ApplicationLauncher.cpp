#include "platform/ApplicationLauncher.h"

#include "core/base/DesktopEntry.h"
#include "platform/linux/DesktopFiles.h"

#include <QProcess>

namespace Platform {

bool launchApplication(const std::string& desktopFile, const std::vector<std::string>& paths) {
    const auto file = desktopFileWithID(desktopFile);
    const auto words = file ? FellowCore::desktopEntryCommand(file->text, paths) : std::nullopt;
    if (!words)
        return false;
    QStringList arguments;
    for (auto word = words->begin() + 1; word != words->end(); ++word)
        arguments.push_back(QString::fromStdString(*word));
    return QProcess::startDetached(QString::fromStdString(words->front()), arguments);
}

} // namespace Platform
