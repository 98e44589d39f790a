#pragma once

#include "app/characters/mira/MiraFrame.h"
#include "core/art/AlphaMask.h"
#include "core/art/ManifestCharacter.h"

#include <QImage>

#include <array>
#include <filesystem>
#include <vector>

namespace DeskSprites {

/// The pictures of Mira, each the size of her canvas. One that cannot be loaded is her still picture, with a
/// line in the log: she then sits still, and the session goes on all the same.
struct MiraPoses {
    std::array<QImage, MiraFrame::poses> breath; ///< eyes closed, from empty to full
    QImage eyesOpen;
    /// Where any of them is opaque: one region for all, so that the window's shape stays as she breathes.
    std::vector<FellowCore::AlphaRun> opaqueRuns;

    /// From the folder of the built-in pictures. Blocks.
    MiraPoses(const std::filesystem::path& folder, const FellowCore::ManifestCharacter& character);
};

} // namespace DeskSprites
