#pragma once

#include "core/art/PixelImage.h"

#include <filesystem>
#include <optional>
#include <string_view>

namespace Platform {

/// Decodes a PNG image of any colour type and depth to eight bits a channel with straight alpha; an
/// `ImageDecoder`. See there for sizes and refusals. Colours are taken as they stand: no gamma or profile is
/// applied. Stateless, so callable from any thread.
FellowCore::PixelImage decodePng(std::string_view bytes, std::optional<FellowCore::PixelSize> expected);

/// Reads and decodes one file of at most 16 MB. Blocks. Throws `FellowCore::FileError` or
/// `FellowCore::ImageError`.
FellowCore::PixelImage readPng(const std::filesystem::path& path,
                               std::optional<FellowCore::PixelSize> expected = {});

} // namespace Platform
