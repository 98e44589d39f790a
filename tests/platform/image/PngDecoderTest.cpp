#include "platform/image/PngDecoder.h"

#include "core/base/FileOperations.h"
#include "tests/platform/image/PngWriter.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <png.h>

namespace Platform {
namespace {

using FellowCore::ImageError;
using FellowCore::PixelSize;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using TestSupport::pngBytes;
using TestSupport::PngForm;
using Kind = ImageError::Kind;
using Bytes = std::vector<std::uint8_t>;

/// A file of two pixels beside each other, and the bytes that it should become.
struct FormCase {
    const char* name;
    PngForm form;
    Bytes rgba;
};

TEST(PngDecoder, BringsEveryFormToStraightRgba) {
    const FormCase cases[] = {
        {"colour and alpha, not multiplied",
         {.colour = PNG_COLOR_TYPE_RGBA, .row = {200, 100, 50, 10, 1, 2, 3, 255}},
         {200, 100, 50, 10, 1, 2, 3, 255}},
        {"a colour under no alpha at all",
         {.colour = PNG_COLOR_TYPE_RGBA, .row = {9, 9, 9, 0, 7, 7, 7, 21}},
         {9, 9, 9, 0, 7, 7, 7, 21}},
        {"no alpha is opaque",
         {.colour = PNG_COLOR_TYPE_RGB, .row = {1, 2, 3, 4, 5, 6}},
         {1, 2, 3, 255, 4, 5, 6, 255}},
        {"one colour stands for transparency",
         {.colour = PNG_COLOR_TYPE_RGB,
          .row = {1, 2, 3, 4, 5, 6},
          .transparentColour = png_color_16{0, 4, 5, 6, 0}},
         {1, 2, 3, 255, 4, 5, 6, 0}},
        {"grey", {.colour = PNG_COLOR_TYPE_GRAY, .row = {0, 128}}, {0, 0, 0, 255, 128, 128, 128, 255}},
        {"grey and alpha",
         {.colour = PNG_COLOR_TYPE_GRAY_ALPHA, .row = {7, 20, 8, 21}},
         {7, 7, 7, 20, 8, 8, 8, 21}},
        {"one bit a pixel",
         {.colour = PNG_COLOR_TYPE_GRAY, .depth = 1, .row = {0x40}},
         {0, 0, 0, 255, 255, 255, 255, 255}},
        {"a palette of four bits a pixel",
         {.colour = PNG_COLOR_TYPE_PALETTE,
          .depth = 4,
          .row = {0x10},
          .palette = {{10, 20, 30}, {40, 50, 60}}},
         {40, 50, 60, 255, 10, 20, 30, 255}},
        {"a palette with alpha",
         {.colour = PNG_COLOR_TYPE_PALETTE,
          .row = {0, 1},
          .palette = {{10, 20, 30}, {40, 50, 60}},
          .paletteAlpha = {0}},
         {10, 20, 30, 0, 40, 50, 60, 255}},
        {"sixteen bits are the same colours, only finer",
         {.colour = PNG_COLOR_TYPE_RGBA,
          .depth = 16,
          .row = {100, 100, 50, 50, 200, 200, 255, 255, 1, 1, 2, 2, 3, 3, 255, 255}},
         {100, 50, 200, 255, 1, 2, 3, 255}},
        {"interlaced",
         {.colour = PNG_COLOR_TYPE_GRAY, .interlace = PNG_INTERLACE_ADAM7, .row = {5, 6}},
         {5, 5, 5, 255, 6, 6, 6, 255}},
    };
    for (const FormCase& row : cases) {
        SCOPED_TRACE(row.name);
        const auto image = decodePng(pngBytes(row.form), PixelSize{2, 1});
        EXPECT_EQ(image.size(), (PixelSize{2, 1}));
        EXPECT_THAT(image.rgba, ElementsAreArray(row.rgba));
    }
}

const PngForm good{.colour = PNG_COLOR_TYPE_RGBA, .row = {200, 100, 50, 10, 1, 2, 3, 255}};

std::string truncated(std::size_t left) {
    return pngBytes(good).substr(0, left);
}

std::string withByte(std::size_t index, char byte) {
    std::string bytes = pngBytes(good);
    bytes[index] = byte;
    return bytes;
}

TEST(PngDecoder, RefusesWhatIsNoWholePicture) {
    constexpr std::size_t headerEnd = 33; // the signature and the first chunk
    const struct {
        const char* name;
        std::string bytes;
        Kind kind;
    } cases[] = {
        {"nothing", "", Kind::notAnImage},
        {"another format", "GIF89a and more", Kind::notAnImage},
        {"less than the signature", truncated(7), Kind::notAnImage},
        {"the signature alone", truncated(8), Kind::damaged},
        {"the header alone", truncated(headerEnd), Kind::damaged},
        {"pixels cut off", truncated(headerEnd + 12), Kind::damaged},
        {"a header that was changed after the fact", withByte(20, 9), Kind::damaged},
        {"pixels that were changed after the fact", withByte(headerEnd + 10, 0x55), Kind::damaged},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        try {
            decodePng(row.bytes, PixelSize{2, 1});
            ADD_FAILURE() << "was accepted";
        } catch (const ImageError& error) {
            EXPECT_EQ(error.kind(), row.kind) << error.what();
        }
    }
}

TEST(PngDecoder, RefusesTheWrongSizeByTheHeaderAlone) {
    const struct {
        const char* name;
        int width, height;
        std::optional<PixelSize> expected;
        const char* words;
    } cases[] = {
        {"a bomb where two pixels are wanted", 60000, 60000, PixelSize{2, 1},
         "60000 x 60000 pixels, not 2 x 1"},
        {"a bomb where any size will do", 60000, 60000, {}, "60000 x 60000 pixels, more than 2048 x 2048"},
        {"one column too many", 3, 1, PixelSize{2, 1}, "3 x 1 pixels, not 2 x 1"},
        {"one row too many for any size", 1, 2049, {}, "1 x 2049 pixels, more than"},
        {"one column too many for any size", 2049, 1, {}, "2049 x 1 pixels, more than"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        try {
            // There are no pixels behind this header, so only the header can be what is refused.
            decodePng(TestSupport::pngHeaderOnly(row.width, row.height), row.expected);
            ADD_FAILURE() << "was accepted";
        } catch (const ImageError& error) {
            EXPECT_EQ(error.kind(), Kind::wrongSize);
            EXPECT_THAT(error.what(), HasSubstr(row.words));
        }
    }
    EXPECT_EQ(decodePng(pngBytes(good), {}).size(), (PixelSize{2, 1}));
}

TEST(PngDecoder, ReadsFiles) {
    const TestSupport::TemporaryFolder folder;
    TestSupport::writeBytes(folder / "good.png", pngBytes(good));
    EXPECT_EQ(readPng(folder / "good.png", PixelSize{2, 1}).rgba, good.row);
    EXPECT_THROW(readPng(folder / "none.png"), FellowCore::FileError);
    TestSupport::writeBytes(folder / "huge.png", pngBytes(good) + std::string(16U << 20U, '\0'));
    EXPECT_THROW(readPng(folder / "huge.png"), FellowCore::FileError);
}

} // namespace
} // namespace Platform
