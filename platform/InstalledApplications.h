#pragma once

#include <optional>
#include <string>

namespace Platform {

/// An installed application by its desktop entry.
struct InstalledApplication {
    std::string id;   ///< the desktop-file id without ".desktop"
    std::string name; ///< in the user's language
    std::string path; ///< of the desktop file
};

/// Finds an application by its desktop-file id, with or without ".desktop", or by the class that its windows
/// carry (StartupWMClass, else an id of that name whatever the case). Nothing when none is installed. Reads
/// small files.
std::optional<InstalledApplication> installedApplication(const std::string& idOrWindowClass);

} // namespace Platform
