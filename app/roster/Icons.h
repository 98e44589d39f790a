#pragma once

#include <QIcon>

#include <filesystem>

namespace DeskSprites {

/// The program's own icon, in every size that stands in the folder. Read when drawn.
QIcon applicationIcon(const std::filesystem::path& folder);

/// The one-colour icon for the tray, light or dark as the desktop wants it. Read when drawn.
QIcon trayIcon(const std::filesystem::path& folder);

} // namespace DeskSprites
