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

/// The name of the application that a desktop file (its text) describes, in one line, in the language of
/// `locale`: "lang_COUNTRY.ENCODING@MODIFIER", all but the language may be missing, as in LC_MESSAGES.
/// Without a translation the name that holds for everybody. Nothing when the file describes no application,
/// is marked as removed, or names nothing.
std::optional<std::string> desktopEntryName(std::string_view text, std::string_view locale);

/// The class that the application's windows carry (StartupWMClass); nothing when the file tells none,
/// describes no application, or is marked as removed.
std::optional<std::string> desktopEntryWindowClass(std::string_view text);

} // namespace FellowCore
