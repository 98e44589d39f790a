#include "app/characters/dhiru/DevWatchApplications.h"

#include "core/base/Text.h"
#include "core/devwatch/DevWatchAppIdentityProbe.h"

#include <QString>

#include <algorithm>
#include <limits>
#include <utility>

namespace DeskSprites {

using FellowCore::DevWatchApp;
using FellowCore::DevWatchProcessIdentity;
using Platform::InstalledApplication;
using Platform::RunningApplication;

namespace {

using Windows = std::vector<RunningApplication>;

std::int32_t pidOf(const RunningApplication& window) {
    const bool isNumber = window.pid > 0 && window.pid <= std::numeric_limits<std::int32_t>::max();
    return isNumber ? static_cast<std::int32_t>(window.pid) : 0;
}

bool isOfAnApplication(const RunningApplication& window) {
    return pidOf(window) != 0 && !window.isOurs && !window.isPartOfDesktop;
}

/// The window by which each process is known: the oldest, whatever is on top.
std::map<std::int32_t, const RunningApplication*> firstWindows(const Windows& windows) {
    std::map<std::int32_t, const RunningApplication*> first;
    for (const RunningApplication& window : windows) {
        if (isOfAnApplication(window)) {
            const RunningApplication*& kept = first[pidOf(window)];
            kept = kept == nullptr || window.window < kept->window ? &window : kept;
        }
    }
    return first;
}

/// "gimp-2.10" as "Gimp-2.10", and "org.gnome.Maps" as "Maps".
std::string presentable(const std::string& bytes) {
    QString name = QString::fromStdString(FellowCore::trimmed(FellowCore::singleLine(bytes)));
    const QString last = name.section(QLatin1Char('.'), -1);
    if (name.count(QLatin1Char('.')) >= 2 && !last.isEmpty() && last.front().isLetter()) {
        name = last;
    }
    if (!name.isEmpty()) {
        name.front() = name.front().toUpper();
    }
    return name.toStdString();
}

std::string fallbackName(const RunningApplication& window, const std::string& executable) {
    const std::string program = executable.substr(executable.rfind('/') + 1);
    for (const std::string& candidate : {window.windowClass, window.windowInstance, program}) {
        if (std::string name = presentable(candidate); !name.empty()) {
            return name;
        }
    }
    return {};
}

} // namespace

DevWatchApplications::DevWatchApplications(const FellowCore::DevWatchOperations& processes, std::uint32_t uid,
                                           std::int32_t selfPID, Lookup lookup)
    : processes_(processes), uid_(uid), selfPID_(selfPID), lookup_(std::move(lookup)) {}

std::vector<DevWatchApp> DevWatchApplications::list(const Windows& windows) {
    std::map<DevWatchProcessIdentity, Known> seen;
    std::vector<DevWatchApp> apps;
    for (const auto& [pid, window] : firstWindows(windows)) {
        const auto identity = FellowCore::DevWatchAppIdentityProbe::identity(processes_, pid, uid_);
        if (!identity) {
            continue;
        }
        const auto executable = processes_.executablePath(pid);
        const auto known = known_.find(*identity);
        const bool isSame = known != known_.end() && known->second.executable == executable;
        const Known& now = seen.emplace(*identity, isSame ? std::move(known->second)
                                                          : described(*identity, *window, executable))
                               .first->second;
        apps.push_back(now.app);
    }
    known_ = std::move(seen);
    return DevWatchApp::filtered(apps, uid_, selfPID_, std::nullopt);
}

Windows DevWatchApplications::windowsOf(const DevWatchApp& app, const Windows& windows) const {
    const std::int32_t pid = app.identity.pid;
    if (FellowCore::DevWatchAppIdentityProbe::identity(processes_, pid, uid_) != app.identity) {
        return {};
    }
    Windows own;
    std::ranges::copy_if(windows, std::back_inserter(own), [&](const RunningApplication& window) {
        return isOfAnApplication(window) && pidOf(window) == pid;
    });
    return own;
}

DevWatchApplications::Known
DevWatchApplications::described(const DevWatchProcessIdentity& identity, const RunningApplication& window,
                                const std::optional<std::string>& executable) const {
    std::optional<InstalledApplication> installed;
    for (const std::string& key : {window.desktopFile.value_or(""), window.windowClass}) {
        if (!installed && !key.empty()) {
            installed = lookup_(key);
        }
    }
    DevWatchApp app;
    app.identity = identity;
    app.regular = true;
    if (installed) {
        app.name = installed->name;
        app.bundleIdentifier = installed->id;
        app.bundlePath = installed->path;
    } else {
        app.name = fallbackName(window, executable.value_or(""));
        app.bundleIdentifier = window.desktopFile;
        app.bundlePath = executable.value_or("");
    }
    return {std::move(app), executable};
}

} // namespace DeskSprites
