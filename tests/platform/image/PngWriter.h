#pragma once

#include <png.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace TestSupport {

/// How a picture of two pixels in one row is stored.
struct PngForm {
    int colour = PNG_COLOR_TYPE_RGBA;
    int depth = 8;
    int interlace = PNG_INTERLACE_NONE;
    std::vector<std::uint8_t> row;
    std::vector<png_color> palette = {};
    std::vector<std::uint8_t> paletteAlpha = {};
    std::optional<png_color_16> transparentColour = {};
};

/// The file of such a picture, as the library itself writes it.
std::string pngBytes(const PngForm& form);
/// The beginning of a file that promises a picture of this size and holds not one pixel of it.
std::string pngHeaderOnly(int width, int height);

} // namespace TestSupport
