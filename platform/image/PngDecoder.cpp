#include "platform/image/PngDecoder.h"

#include "core/art/PackArt.h"
#include "core/base/WholeFile.h"

#include <png.h>

#include <cstddef>
#include <string>

namespace Platform {

using FellowCore::ImageError;
using FellowCore::PixelImage;
using FellowCore::PixelSize;

namespace {

constexpr std::size_t signatureLength = 8;
constexpr std::size_t channels = 4;

/// libpng's reader of one image in memory, freed on every way out. Its calls answer failure with a flag and a
/// message; its jumps stay inside.
class PngReader {
public:
    explicit PngReader(std::string_view bytes) {
        image_.version = PNG_IMAGE_VERSION;
        if (png_image_begin_read_from_memory(&image_, bytes.data(), bytes.size()) == 0) {
            throwDamaged();
        }
    }
    ~PngReader() { png_image_free(&image_); }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;

    png_uint_32 width() const { return image_.width; }
    png_uint_32 height() const { return image_.height; }

    std::vector<std::uint8_t> pixels() {
        image_.format = PNG_FORMAT_RGBA;
        // Sixteen bits a channel would otherwise be taken for linear light.
        image_.flags |= PNG_IMAGE_FLAG_16BIT_sRGB;
        std::vector<std::uint8_t> rgba(channels * image_.width * image_.height);
        if (png_image_finish_read(&image_, nullptr, rgba.data(), 0, nullptr) == 0) {
            throwDamaged();
        }
        return rgba;
    }

private:
    [[noreturn]] void throwDamaged() {
        const std::string reason = image_.message;
        png_image_free(&image_); // a constructor that throws has no destructor; freeing twice is harmless
        throw ImageError(ImageError::Kind::damaged, "is damaged: " + reason);
    }

    png_image image_{};
};

bool isPng(std::string_view bytes) {
    return bytes.size() >= signatureLength &&
           png_sig_cmp(reinterpret_cast<png_const_bytep>(bytes.data()), 0, signatureLength) == 0;
}

std::string sizeText(std::size_t width, std::size_t height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

void requireSize(const PngReader& reader, std::optional<PixelSize> expected) {
    constexpr auto limit = png_uint_32{FellowCore::maximumImageSide};
    const std::string found = "is " + sizeText(reader.width(), reader.height()) + " pixels";
    if (expected) {
        const auto width = static_cast<png_uint_32>(expected->width);
        const auto height = static_cast<png_uint_32>(expected->height);
        if (reader.width() != width || reader.height() != height) {
            throw ImageError(ImageError::Kind::wrongSize, found + ", not " + sizeText(width, height));
        }
    } else if (reader.width() > limit || reader.height() > limit) {
        throw ImageError(ImageError::Kind::wrongSize, found + ", more than " + sizeText(limit, limit));
    }
}

} // namespace

PixelImage decodePng(std::string_view bytes, std::optional<PixelSize> expected) {
    if (!isPng(bytes)) {
        throw ImageError(ImageError::Kind::notAnImage, "is no PNG image");
    }
    PngReader reader(bytes);
    requireSize(reader, expected);
    PixelImage image{static_cast<int>(reader.width()), static_cast<int>(reader.height()), {}};
    image.rgba = reader.pixels();
    return image;
}

PixelImage readPng(const std::filesystem::path& path, std::optional<PixelSize> expected) {
    FellowCore::PosixFileOperations files;
    return decodePng(FellowCore::readWholeFile(files, path, FellowCore::PackArt::fileSizeLimit), expected);
}

} // namespace Platform
