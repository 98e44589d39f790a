#pragma once

#include <QIcon>

#include <filesystem>

namespace DeskSprites {

/// The program's own icon in the sizes that window managers show. A size that cannot be read is left out,
/// with a line in the log. Blocks.
QIcon applicationIcon(const std::filesystem::path& folder);

/// The one-colour icon for the tray, light or dark as the desktop wants it; otherwise the same.
QIcon trayIcon(const std::filesystem::path& folder);

} // namespace DeskSprites
