#include "core/devwatch/DevWatchApp.h"

#include "core/base/Text.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <unordered_set>

namespace FellowCore {

namespace {

// What draws the desktop itself, and we.
constexpr auto leftOut = std::to_array<std::string_view>({
    "com.apple.finder",
    "com.deskfellow.app",
    // Linux: desktop entries of the same role
    "deskfellow",
    "org.gnome.Shell",
    "org.kde.plasmashell",
    "xfdesktop",
    "xfce4-panel",
    "nemo-desktop",
    "nautilus-desktop",
    "pcmanfm-desktop",
    "pcmanfm-qt-desktop",
});

std::string_view withoutEnding(std::string_view identifier) {
    constexpr std::string_view ending = ".desktop";
    return identifier.ends_with(ending) ? identifier.substr(0, identifier.size() - ending.size())
                                        : identifier;
}

bool isListed(const DevWatchApp& app, std::uint32_t currentUID, std::int32_t selfPID,
              const std::optional<std::string>& selfBundleIdentifier) {
    const DevWatchProcessIdentity& identity = app.identity;
    const bool isOurs = app.bundleIdentifier && app.bundleIdentifier == selfBundleIdentifier;
    const bool isDesktop = app.bundleIdentifier &&
                           std::ranges::find(leftOut, withoutEnding(*app.bundleIdentifier)) != leftOut.end();
    return app.regular && !app.terminated && identity.pid >= devWatchLowestPid && identity.pid != selfPID &&
           identity.uid == currentUID && !trimmed(app.name).empty() && !isOurs && !isDesktop;
}

} // namespace

std::vector<DevWatchApp> DevWatchApp::filtered(const std::vector<DevWatchApp>& running,
                                               std::uint32_t currentUID, std::int32_t selfPID,
                                               const std::optional<std::string>& selfBundleIdentifier) {
    std::vector<DevWatchApp> kept;
    std::unordered_set<DevWatchProcessIdentity> seen;
    for (const DevWatchApp& app : running) {
        if (isListed(app, currentUID, selfPID, selfBundleIdentifier) && seen.insert(app.identity).second) {
            kept.push_back(app);
        }
    }
    std::ranges::sort(kept, {}, [](const DevWatchApp& app) {
        return std::tuple(folded(app.name), app.name, app.identity);
    });
    return kept;
}

} // namespace FellowCore
