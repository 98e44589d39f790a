#include "app/characters/mira/MiraPoses.h"

#include "app/desktop/PixelArtwork.h"
#include "platform/image/PngDecoder.h"

#include <QDebug>

#include <algorithm>
#include <string>

namespace DeskSprites {

namespace {

QImage load(const std::filesystem::path& file, const FellowCore::PixelImage& otherwise) {
    try {
        return PixelArtwork::image(Platform::readPng(file, otherwise.size()));
    } catch (const std::runtime_error& error) {
        qWarning("Mira sits still in one picture: %s", error.what());
        return PixelArtwork::image(otherwise);
    }
}

void addAlpha(std::vector<std::uint8_t>& alpha, const QImage& picture) {
    for (int y = 0; y < picture.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        auto* row = alpha.data() + static_cast<std::ptrdiff_t>(y) * picture.width();
        for (int x = 0; x < picture.width(); ++x) {
            row[x] = std::max(row[x], static_cast<std::uint8_t>(qAlpha(line[x])));
        }
    }
}

} // namespace

MiraPoses::MiraPoses(const std::filesystem::path& folder, const FellowCore::ManifestCharacter& character) {
    const FellowCore::PixelImage& still = *character.images().at("idle");
    for (int pose = 0; pose < MiraFrame::poses; ++pose) {
        breath.at(static_cast<std::size_t>(pose)) =
            load(folder / ("mira-breath-" + std::to_string(pose) + ".png"), still);
    }
    eyesOpen = load(folder / "mira-breathing-eyes-open.png", still);

    std::vector<std::uint8_t> alpha(static_cast<std::size_t>(still.width) *
                                    static_cast<std::size_t>(still.height));
    addAlpha(alpha, eyesOpen);
    for (const QImage& picture : breath) {
        addAlpha(alpha, picture);
    }
    opaqueRuns = FellowCore::AlphaMask{alpha, still.width, still.height}.alphaRuns();
}

} // namespace DeskSprites
