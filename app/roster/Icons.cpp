#include "app/roster/Icons.h"

#include "app/desktop/DialoguePalette.h"

#include <string>

namespace DeskSprites {

namespace {

void addSize(QIcon& icon, const std::filesystem::path& folder, const std::string& name, int side) {
    const std::filesystem::path file = folder / (name + "-" + std::to_string(side) + ".png");
    icon.addFile(QString::fromStdString(file.string()), QSize(side, side));
}

} // namespace

QIcon applicationIcon(const std::filesystem::path& folder) {
    QIcon icon;
    for (const int side : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        addSize(icon, folder, "deskfellow", side);
    }
    return icon;
}

QIcon trayIcon(const std::filesystem::path& folder) {
    // The bar's own colour is not to be had; that of the desktop is the best guess.
    const std::string shade = applicationTheme() == DesktopTheme::dark ? "light" : "dark";
    QIcon icon;
    for (const int side : {16, 22, 32}) {
        addSize(icon, folder, "deskfellow-tray-" + shade, side);
    }
    return icon;
}

} // namespace DeskSprites
