#pragma once

#include "core/art/CharacterManifest.h"

#include <QImage>

#include <array>
#include <filesystem>

namespace DeskSprites {

/// The pictures of Batti's lit lens for red, amber and green, each the size of the grid. One that cannot be
/// loaded is transparent, with a line in the log: the lamp stays dark, and the timer works all the same.
/// Blocks.
std::array<QImage, 3> loadBattiLamps(const std::filesystem::path& folder,
                                     FellowCore::CharacterManifest::Grid grid);

} // namespace DeskSprites
