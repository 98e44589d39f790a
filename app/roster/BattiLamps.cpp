#include "app/roster/BattiLamps.h"

#include "app/desktop/DialoguePalette.h"
#include "app/desktop/PixelArtwork.h"
#include "core/base/WholeFile.h"
#include "platform/image/PngDecoder.h"

#include <QDebug>

namespace DeskSprites {

namespace {

constexpr std::size_t lampFileLimit = 1U << 20U;

QImage loadLamp(const std::filesystem::path& file, FellowCore::PixelSize size) {
    FellowCore::PosixFileOperations files;
    try {
        return PixelArtwork::image(
            Platform::decodePng(FellowCore::readWholeFile(files, file, lampFileLimit), size));
    } catch (const std::runtime_error& error) {
        qWarning("Batti's lamp stays dark: %s", error.what());
    }
    QImage dark(size.width, size.height, QImage::Format_ARGB32_Premultiplied);
    dark.fill(Qt::transparent);
    return dark;
}

} // namespace

std::array<QImage, 3> loadBattiLamps(const std::filesystem::path& folder, FellowCore::CharacterManifest::Grid grid) {
    const FellowCore::PixelSize size{grid.width, grid.height};
    return {loadLamp(folder / "batti-lamp-red.png", size), loadLamp(folder / "batti-lamp-amber.png", size),
            loadLamp(folder / "batti-lamp-green.png", size)};
}

QIcon trayIcon(const std::filesystem::path& folder) {
    // The bar's own colour is not to be had; that of the desktop is the best guess.
    const char* shade = applicationTheme() == DesktopTheme::dark ? "light" : "dark";
    QIcon icon;
    for (const int side : {16, 22, 32}) {
        const auto file = folder / ("deskfellow-tray-" + std::string(shade) + "-" + std::to_string(side) + ".png");
        icon.addFile(QString::fromStdString(file.string()), QSize(side, side));
    }
    return icon;
}

} // namespace DeskSprites
