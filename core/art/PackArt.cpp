#include "core/art/PackArt.h"

#include "core/art/AlphaMask.h"
#include "core/art/BuiltinCharacters.h"
#include "core/art/PackFolder.h"

#include <optional>

namespace FellowCore {

namespace {

using Kind = ManifestError::Kind;

/// In art pixels; at one point each that is the largest height on the desktop.
constexpr double maximumVisibleHeight = 600;

struct PosePicture {
    std::shared_ptr<const PixelImage> image;
    std::shared_ptr<const std::vector<std::uint8_t>> alpha;
};

/// Every pixel of the result is a copy of the one that lies in the same place of the source.
PixelImage scaledToGrid(const PixelImage& source, PixelSize grid) {
    constexpr std::size_t channels = 4;
    PixelImage scaled{grid.width, grid.height, {}};
    scaled.rgba.reserve(channels * static_cast<std::size_t>(grid.width) *
                        static_cast<std::size_t>(grid.height));
    for (int y = 0; y < grid.height; ++y) {
        const auto row = static_cast<std::size_t>(y * source.height / grid.height);
        for (int x = 0; x < grid.width; ++x) {
            const auto column = static_cast<std::size_t>(x * source.width / grid.width);
            const auto pixel = channels * (row * static_cast<std::size_t>(source.width) + column);
            for (std::size_t channel = 0; channel < channels; ++channel) {
                scaled.rgba.push_back(source.rgba[pixel + channel]);
            }
        }
    }
    return scaled;
}

std::vector<std::uint8_t> alphaOf(const PixelImage& image) {
    std::vector<std::uint8_t> alpha(image.rgba.size() / 4);
    for (std::size_t pixel = 0; pixel < alpha.size(); ++pixel) {
        alpha[pixel] = image.rgba[4 * pixel + 3];
    }
    return alpha;
}

Rect upwardRect(const AlphaRun& block, int canvasHeight) {
    return {double(block.x0), double(canvasHeight - block.y1), double(block.x1 - block.x0),
            double(block.y1 - block.y0)};
}

/// Reads the pictures of one pack and puts what is wrong with them into the list of problems.
class PackReader {
public:
    PackReader(const CharacterManifest& manifest, const std::filesystem::path& directory,
               const ImageDecoder& decoder, std::vector<ManifestProblem>& problems)
        : folder_(directory), decoder_(decoder), problems_(problems),
          grid_{manifest.grid.width, manifest.grid.height},
          // The art of this one has come in several sizes; it is brought to the grid instead of being
          // refused.
          anySize_(manifest == BuiltinCharacters::customerIntern()) {}

    /// The picture in a file, or nothing when it was refused; each file is read and refused only once.
    std::optional<PosePicture> picture(const std::string& file) {
        try {
            const auto [known, isNew] = pictures_.try_emplace(folder_.locate(file).string());
            if (isNew) {
                known->second = decode(file);
            }
            return known->second;
        } catch (const ManifestError& error) {
            problems_.push_back({error.kind(), error.file(), error.rule()});
        } catch (const ImageError& error) {
            const bool sizeOnly = error.kind() == ImageError::Kind::wrongSize;
            problems_.push_back({sizeOnly ? Kind::invalidCanvas : Kind::invalidAsset, file,
                                 "the image " + std::string(error.what()) + "."});
        }
        return {};
    }

private:
    PosePicture decode(const std::string& file) const {
        const std::string bytes = folder_.read(file, PackArt::fileSizeLimit, Kind::invalidAsset);
        PixelImage image = decoder_(bytes, anySize_ ? std::nullopt : std::optional(grid_));
        if (anySize_ && image.size() != grid_) {
            image = scaledToGrid(image, grid_);
        }
        auto alpha = std::make_shared<const std::vector<std::uint8_t>>(alphaOf(image));
        return {std::make_shared<const PixelImage>(std::move(image)), std::move(alpha)};
    }

    PackFolder folder_;
    const ImageDecoder& decoder_;
    std::vector<ManifestProblem>& problems_;
    PixelSize grid_;
    bool anySize_;
    std::map<std::string, std::optional<PosePicture>> pictures_;
};

void judgeVisibleHeight(const CharacterManifest& manifest, double height,
                        std::vector<ManifestProblem>& problems) {
    const auto refuse = [&](const std::string& limit) {
        problems.push_back({Kind::invalidCanvas, CharacterManifest::fileName,
                            "the visible art is " + std::to_string(static_cast<int>(height)) +
                                " pixels high, more than " + limit + "."});
    };
    if (height > maximumVisibleHeight) {
        refuse("the 600 that are allowed");
    }
    if (manifest.scaleReferenceHeight && height > *manifest.scaleReferenceHeight) {
        refuse(R"("scaleReferenceHeight")");
    }
}

} // namespace

PackArt PackArt::read(const CharacterManifest& manifest, const std::filesystem::path& directory,
                      const ImageDecoder& decoder, std::vector<ManifestProblem>& problems) {
    PackArt art;
    PackReader reader(manifest, directory, decoder, problems);
    const std::size_t earlier = problems.size();
    for (const auto& [pose, path] : manifest.poses) {
        const auto picture = posePathFault(path) ? std::nullopt : reader.picture(path);
        if (!picture) {
            continue;
        }
        const AlphaMask mask{*picture->alpha, picture->image->width, picture->image->height};
        if (const auto bounds = mask.opaqueBounds()) {
            art.visibleBounds = art.visibleBounds.united(upwardRect(*bounds, mask.height));
        }
        art.images.emplace(pose, picture->image);
        art.alpha.emplace(pose, picture->alpha);
    }
    const bool allRead = problems.size() == earlier && !art.images.empty();
    if (allRead && art.visibleBounds.isEmpty()) {
        problems.push_back({Kind::emptyArtwork, CharacterManifest::fileName,
                            "no pose shows anything: every pixel has an alpha of 20 or less."});
    }
    judgeVisibleHeight(manifest, art.visibleBounds.height, problems);
    return art;
}

} // namespace FellowCore
