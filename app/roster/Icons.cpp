#include "app/roster/Icons.h"

#include "app/desktop/DialoguePalette.h"
#include "app/desktop/PixelArtwork.h"
#include "platform/image/PngDecoder.h"

#include <QDebug>

#include <stdexcept>
#include <string>

namespace DeskSprites {

namespace {

/// By our own decoder: asking the toolkit for one picture makes it load a library for every format it knows.
void addSize(QIcon& icon, const std::filesystem::path& folder, const std::string& name, int side) {
    try {
        const FellowCore::PixelImage picture = Platform::readPng(
            folder / (name + "-" + std::to_string(side) + ".png"), FellowCore::PixelSize{side, side});
        icon.addPixmap(QPixmap::fromImage(PixelArtwork::image(picture)));
    } catch (const std::runtime_error& error) {
        qWarning("An icon is missing: %s", error.what());
    }
}

} // namespace

QIcon applicationIcon(const std::filesystem::path& folder) {
    QIcon icon;
    for (const int side : {16, 22, 24, 32, 48, 64, 128, 256}) {
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
