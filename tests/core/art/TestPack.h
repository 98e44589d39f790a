#pragma once

#include "core/art/PixelImage.h"
#include "core/base/Json.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace TestSupport {

/// Decodes a picture written as text: "map" on the first line, then one line for each row of pixels, in which
/// '.' has alpha 0, '-' 20 (just not opaque), '+' 21 (just opaque) and '#' 255. An `ImageDecoder` for the
/// core alone.
FellowCore::PixelImage decodeMap(std::string_view bytes, std::optional<FellowCore::PixelSize> expected);

/// A picture of so many rows of the same pixels.
std::string pictureOf(std::size_t rows, const std::string& row);

/// A manifest that is good in everything: a canvas of 4 x 4 and the poses "idle" and "blink".
FellowCore::Json goodManifest();
/// Pictures that go with it.
std::map<std::string, std::string> goodFiles();

/// Writes a pack's folder.
void writePack(const std::filesystem::path& folder, const FellowCore::Json& manifest,
               const std::map<std::string, std::string>& files = goodFiles());

} // namespace TestSupport
