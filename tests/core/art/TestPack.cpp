#include "tests/core/art/TestPack.h"

#include "tests/support/TemporaryFolder.h"

#include <nlohmann/json.hpp>

#include <sstream>

namespace TestSupport {

using FellowCore::ImageError;

namespace {

std::uint8_t alphaOf(char pixel) {
    switch (pixel) {
    case '#':
        return 255;
    case '+':
        return 21;
    case '-':
        return 20;
    default:
        return 0;
    }
}

} // namespace

FellowCore::PixelImage decodeMap(std::string_view bytes, std::optional<FellowCore::PixelSize> expected) {
    std::istringstream lines{std::string(bytes)};
    std::string line;
    if (!std::getline(lines, line) || line != "map") {
        throw ImageError(ImageError::Kind::notAnImage, "is no picture");
    }
    FellowCore::PixelImage image;
    while (std::getline(lines, line)) {
        image.width = static_cast<int>(line.size());
        ++image.height;
        for (const char pixel : line) {
            image.rgba.insert(image.rgba.end(), {10, 20, 30, alphaOf(pixel)});
        }
    }
    if (expected && image.size() != *expected) {
        throw ImageError(ImageError::Kind::wrongSize, "has another size");
    }
    return image;
}

std::string pictureOf(std::size_t rows, const std::string& row) {
    std::string picture = "map\n";
    for (std::size_t index = 0; index < rows; ++index) {
        picture += row + "\n";
    }
    return picture;
}

FellowCore::Json goodManifest() {
    return FellowCore::parseJson(R"({
        "id": "moth", "name": "Moth", "role": "Night light",
        "poses": {"idle": "idle.png", "blink": "blink.png"},
        "face": {"x": 2, "y": 1}, "ground": {"x": 1.5, "y": 4}, "grid": {"width": 4, "height": 4},
        "accent": {"red": 0, "green": 0.5, "blue": 1}, "behaviours": ["idle", "blink"]
    })");
}

std::map<std::string, std::string> goodFiles() {
    return {{"idle.png", "map\n....\n.##.\n.#..\n....\n"}, {"blink.png", "map\n....\n.#..\n.#..\n.#..\n"}};
}

void writePack(const std::filesystem::path& folder, const FellowCore::Json& manifest,
               const std::map<std::string, std::string>& files) {
    writeBytes(folder / "manifest.json", manifest.dump());
    for (const auto& [name, bytes] : files) {
        writeBytes(folder / name, bytes);
    }
}

} // namespace TestSupport
