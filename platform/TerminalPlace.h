#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Platform {

/// Who shows a terminal device.
struct TerminalPlace {
    /// From the session's first process outwards; one of them owns the window.
    std::vector<long> processes;
    /// The window, when whoever shows the terminal has told its number.
    std::optional<unsigned long long> window;
};

/// Finds who shows a terminal device ("/dev/pts/3") and brings its tab or pane to the front where that is
/// offered: panes of tmux, at whichever client shows them, and tabs of Konsole. Raising the window is left to
/// the caller. Nothing when no process uses the terminal, or when it is a pane that nobody looks at. Blocks
/// on other programs, a few seconds at most.
std::optional<TerminalPlace> revealTerminal(const std::string& device);

} // namespace Platform
