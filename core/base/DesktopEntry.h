#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// The words of the command that a desktop file (its text) starts its application with, the given paths in
/// their place: all of them where it takes several, the first where it takes one, none where it takes none.
/// Nothing when it describes no application, is marked as removed, wants a terminal, or its command cannot be
/// read. Format: freedesktop.org, "Desktop Entry" 1.5.
std::optional<std::vector<std::string>> desktopEntryCommand(std::string_view text,
                                                            const std::vector<std::string>& paths);

} // namespace FellowCore
