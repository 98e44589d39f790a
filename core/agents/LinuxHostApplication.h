#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// Which application holds an agent, told from what Linux says about the agent's ancestors. Applications are
/// named by their desktop-file ids with the ending, such as "org.kde.konsole.desktop".
namespace LinuxHostApplication {

/// Of a terminal or editor known by its process name (`comm` in /proc, which the kernel cuts to 15 bytes).
std::optional<std::string> fromProcessName(std::string_view name);

/// Of a control group, as /proc/PID/cgroup has it: desktops start each application in a unit named
/// "app-LAUNCHER-ID-RANDOM.scope" or "app-LAUNCHER-ID@RANDOM.service" (systemd.io, "Desktop Environment
/// Integration").
std::optional<std::string> fromControlGroup(std::string_view group);

/// Of a desktop file, by its path.
std::optional<std::string> fromDesktopFile(std::string_view path);

/// Of a terminal by the name it gives itself in TERM_PROGRAM.
std::optional<std::string> fromTerminalProgram(std::string_view name);

/// The name of a terminal device from the number in /proc/PID/stat ("pts/3", "tty1", "ttyS0"); nothing for
/// none and for devices that are no such terminals.
std::optional<std::string> terminalName(int device);

} // namespace LinuxHostApplication

} // namespace FellowCore
