#pragma once

#include <optional>
#include <string>

namespace Platform {

/// A desktop file that stands in one of the session's application folders.
struct DesktopFile {
    std::string id; ///< without ".desktop"
    std::string path;
    std::string text;
};

/// The file with this id (freedesktop.org, "Desktop Entry" 1.5, "Desktop File ID"), with or without its
/// ending; nothing when there is none or it cannot be read. The user's own folder hides the system's.
std::optional<DesktopFile> desktopFileWithID(const std::string& id);

/// The file of the application whose windows carry this class, or else the one whose id is the class,
/// whatever the case. Reads every desktop file that is installed until it is found.
std::optional<DesktopFile> desktopFileWithWindowClass(const std::string& windowClass);

} // namespace Platform
