#pragma once

#include <string>

namespace Platform {

/// Brings a pane of tmux to the front within tmux, and tells the terminal device of the client that shows it
/// now: the one that showed its session already, or else the one used last. `server` is the variable TMUX of
/// a process in the pane. Empty when there is no such pane or no client. Blocks, a few seconds at most.
std::string revealTmuxPane(const std::string& server, const std::string& device);

} // namespace Platform
