#include "core/devwatch/DevWatchSystemFolders.h"

#include <algorithm>
#include <array>

namespace FellowCore::DevWatchSystemFolders {

namespace {

constexpr auto protectedFolders = std::to_array<std::string_view>({
    "/System",
    "/usr/libexec",
    // Linux: the service managers, the display server and what a desktop session stands on. Distributions
    // without a libexec keep the same helpers below lib.
    "/usr/lib/systemd",
    "/lib/systemd",
    "/usr/lib/elogind",
    "/usr/lib/xorg",
    "/usr/lib/dbus-1.0",
    "/usr/lib/polkit-1",
    "/usr/lib/policykit-1",
    "/usr/lib/policykit-1-gnome",
    "/usr/lib/gvfs",
    "/usr/lib/gdm3",
    "/usr/lib/gnome-session",
    "/usr/lib/gnome-settings-daemon",
    "/usr/lib/at-spi2-core",
    "/usr/lib/openssh",
    "/usr/lib/x86_64-linux-gnu/libexec",
    "/usr/lib/aarch64-linux-gnu/libexec",
});

constexpr auto systemPrefixes = std::to_array<std::string_view>({
    "/System/",
    "/usr/libexec/",
    "/usr/sbin/",
    "/Library/Apple/",
    "/sbin/",
});

} // namespace

bool isProtected(std::string_view path) {
    return std::ranges::any_of(protectedFolders, [path](std::string_view folder) {
        return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
    });
}

bool holds(std::string_view path) {
    return isProtected(path) || std::ranges::any_of(systemPrefixes, [path](std::string_view prefix) {
               return path.starts_with(prefix);
           });
}

} // namespace FellowCore::DevWatchSystemFolders
