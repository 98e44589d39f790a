#include "platform/InstalledApplications.h"

#include "core/base/DesktopEntry.h"
#include "platform/linux/DesktopFiles.h"

#include <QByteArray>

namespace Platform {
namespace {

/// The locale of the user's messages, by the order of POSIX.
std::string messagesLocale() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (QByteArray locale = qgetenv(variable); !locale.isEmpty())
            return locale.toStdString();
    }
    return {};
}

std::optional<InstalledApplication> described(const std::optional<DesktopFile>& file) {
    const auto name =
        file ? FellowCore::desktopEntryName(file->text, messagesLocale()) : std::optional<std::string>();
    return name ? std::optional(InstalledApplication{file->id, *name, file->path}) : std::nullopt;
}

} // namespace

std::optional<InstalledApplication> installedApplication(const std::string& idOrWindowClass) {
    if (auto application = described(desktopFileWithID(idOrWindowClass)))
        return application;
    return described(desktopFileWithWindowClass(idOrWindowClass));
}

} // namespace Platform
