#pragma once

#include <string>
#include <vector>

namespace Platform {

/// Starts an installed application by its desktop-file id, with or without the ending ".desktop", and hands
/// it these files or folders. It lives on when this program ends. False when no such application is installed
/// or it could not be started. Reads a small file.
bool launchApplication(const std::string& desktopFile, const std::vector<std::string>& paths = {});

} // namespace Platform
