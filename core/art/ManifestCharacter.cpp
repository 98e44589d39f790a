#include "core/art/ManifestCharacter.h"

#include "core/art/PackFolder.h"

namespace FellowCore {

namespace {

CharacterManifest readManifest(const PackFolder& folder) {
    return CharacterManifest::fromJson(folder.read(
        CharacterManifest::fileName, CharacterManifest::fileSizeLimit, ManifestError::Kind::invalidManifest));
}

} // namespace

ManifestCharacter::ManifestCharacter(const std::filesystem::path& directory, const ImageDecoder& decoder)
    : ManifestCharacter(readManifest(PackFolder(directory)), directory, decoder) {}

ManifestCharacter::ManifestCharacter(CharacterManifest manifest, const std::filesystem::path& directory,
                                     const ImageDecoder& decoder)
    : manifest_(std::move(manifest)), directory_(PackFolder(directory).directory()) {
    manifest_.validate();
    std::vector<ManifestProblem> problems;
    art_ = PackArt::read(manifest_, directory_, decoder, problems);
    if (!problems.empty()) {
        throw ManifestError(problems.front());
    }
}

AlphaMask ManifestCharacter::mask(std::string_view pose) const {
    const auto found = art_.alpha.find(std::string(pose));
    if (found == art_.alpha.end()) {
        return {};
    }
    return {*found->second, manifest_.grid.width, manifest_.grid.height};
}

bool ManifestCharacter::opaque(std::string_view pose, Point normalized) const {
    return mask(pose).opaque(normalized);
}

std::vector<AlphaRun> ManifestCharacter::alphaRuns(std::string_view pose) const {
    return mask(pose).alphaRuns();
}

double ManifestCharacter::scaleReferenceHeight() const {
    return manifest_.scaleReferenceHeight.value_or(art_.visibleBounds.height);
}

ManifestCharacterLayout ManifestCharacter::layout(double visibleHeight, double backingScale,
                                                  Sizing sizing) const {
    constexpr double padding = ManifestCharacterLayout::padding;
    const ArtPixelGrid grid({double(manifest_.grid.width), double(manifest_.grid.height)});
    ManifestCharacterLayout layout;
    layout.unit = grid.unit(visibleHeight, scaleReferenceHeight() / grid.canvas.height, backingScale, sizing);
    const auto inWindow = [&](const CharacterManifest::Point& point) {
        return Point{padding + point.x * layout.unit, padding + (grid.canvas.height - point.y) * layout.unit};
    };
    const Rect& bounds = art_.visibleBounds;
    layout.artwork = {padding, padding, grid.canvas.width * layout.unit, grid.canvas.height * layout.unit};
    layout.size = {layout.artwork.width + 2 * padding, layout.artwork.height + 2 * padding};
    layout.visible = {padding + bounds.x * layout.unit, padding + bounds.y * layout.unit,
                      bounds.width * layout.unit, bounds.height * layout.unit};
    layout.face = inWindow(manifest_.face);
    layout.ground = inWindow(manifest_.ground);
    return layout;
}

} // namespace FellowCore
