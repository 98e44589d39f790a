#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// A size in whole pixels.
struct PixelSize {
    int width = 0;
    int height = 0;

    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// A decoded picture: four bytes a pixel (red, green, blue, alpha; alpha not multiplied in), row by row from
/// the top, without padding.
struct PixelImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;

    PixelSize size() const { return {width, height}; }
    friend bool operator==(const PixelImage&, const PixelImage&) = default;
};

/// No side of a picture may be longer, in pixels.
constexpr int maximumImageSide = 2048;

/// Why bytes did not become a picture, with the reason in words ("is no PNG image") in `what()`.
class ImageError : public std::runtime_error {
public:
    enum class Kind { notAnImage, damaged, wrongSize };

    ImageError(Kind kind, const std::string& reason) : std::runtime_error(reason), kind_(kind) {}

    Kind kind() const { return kind_; }

private:
    Kind kind_;
};

/// Decodes the bytes of one image file. With `expected`, a picture of any other size is refused; without it,
/// one with a side over `maximumImageSide`. Either way the refusal comes from the declared size, before
/// memory is taken for the pixels. Throws `ImageError`.
using ImageDecoder = std::function<PixelImage(std::string_view bytes, std::optional<PixelSize> expected)>;

} // namespace FellowCore
