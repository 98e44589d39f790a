#include "app/roster/BattiLamps.h"

#include "app/desktop/PixelArtwork.h"
#include "platform/image/PngDecoder.h"

#include <QDebug>

namespace DeskSprites {

namespace {

QImage loadLamp(const std::filesystem::path& file, FellowCore::PixelSize size) {
    try {
        return PixelArtwork::image(Platform::readPng(file, size));
    } catch (const std::runtime_error& error) {
        qWarning("Batti's lamp stays dark: %s", error.what());
    }
    QImage dark(size.width, size.height, QImage::Format_ARGB32_Premultiplied);
    dark.fill(Qt::transparent);
    return dark;
}

} // namespace

std::array<QImage, 3> loadBattiLamps(const std::filesystem::path& folder,
                                     FellowCore::CharacterManifest::Grid grid) {
    const FellowCore::PixelSize size{grid.width, grid.height};
    return {loadLamp(folder / "batti-lamp-red.png", size), loadLamp(folder / "batti-lamp-amber.png", size),
            loadLamp(folder / "batti-lamp-green.png", size)};
}

} // namespace DeskSprites
