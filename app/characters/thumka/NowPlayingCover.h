#pragma once

#include <QImage>

#include <cstdint>
#include <vector>

namespace DeskSprites {

/// Makes the small square picture of an artwork file, which comes from whoever plays and may be anything.
namespace NowPlayingCover {

/// The largest side of the result, in pixels: a panel's cover on a screen of scale 3.
constexpr int side = 288;
/// Files with a longer side are not opened.
constexpr int longestSide = 8192;
/// Nor those of more pixels, unless they can be read at a smaller size (JPEG): 64 MB once unpacked.
constexpr std::int64_t mostPixels = std::int64_t{4096} * 4096;

/// The middle square of a PNG, JPEG, GIF or WebP file, at most `side` wide; null for anything else and for a
/// file that is broken or too large. Takes a while: not for the drawing thread.
QImage read(const std::vector<std::uint8_t>& file);

} // namespace NowPlayingCover

} // namespace DeskSprites
