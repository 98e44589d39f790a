#pragma once

#include "core/devwatch/DevWatchProcess.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// What sort of program a process is.
struct DevWatchKind {
    enum class Case {
        appHelper, ///< part of an application; `application` names it
        devServer,
        database,
        tool,
        system,
    };

    Case kind = Case::tool;
    std::string application = {}; ///< exactly for `appHelper`

    /// By name and program first, so that a runtime which an application brings along is still a server.
    static DevWatchKind classify(const DevWatchProcess& process);
    /// The application whose own folder a path lies in: a bundle, a Flatpak, a Snap, a mounted AppImage, or a
    /// folder below /opt.
    static std::optional<std::string> appBundle(const std::string& path);
    /// Where to look at a listener in a browser; nothing for databases, what belongs to the system, and ports
    /// that databases use.
    static std::optional<std::string> httpURL(const DevWatchListener& listener);
    /// The same where nothing but the port is known.
    static std::optional<std::string> httpURL(std::uint16_t port);

    friend bool operator==(const DevWatchKind&, const DevWatchKind&) = default;
};

/// The name of the case: "devServer", ...
std::string_view rawValue(DevWatchKind::Case kind);

} // namespace FellowCore
