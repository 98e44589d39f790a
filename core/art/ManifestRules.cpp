#include "core/art/CharacterManifest.h"
#include "core/art/PixelImage.h"
#include "core/base/Text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ranges>

namespace FellowCore {

namespace {

using Behaviour = CharacterManifest::Behaviour;
using Faults = std::vector<std::string>;

constexpr std::size_t maximumIDLength = 64;
constexpr std::size_t maximumLabelLength = 80;
constexpr std::size_t maximumPoses = 32;

bool within(double value, double lowest, double highest) {
    return std::isfinite(value) && value >= lowest && value <= highest;
}

Faults orderFaults(const CharacterManifest& manifest) {
    if (manifest.order && *manifest.order < 1) {
        return {R"("order" must be at least 1.)"};
    }
    return {};
}

Faults scaleFaults(const CharacterManifest& manifest) {
    if (manifest.scaleReferenceHeight && !within(*manifest.scaleReferenceHeight, 1, manifest.grid.height)) {
        return {R"("scaleReferenceHeight" must be from 1 to the height of the grid.)"};
    }
    return {};
}

Faults idFaults(const CharacterManifest& manifest) {
    if (manifest.id.empty()) {
        return {R"("id" must not be empty.)"};
    }
    Faults faults;
    if (characterCount(manifest.id) > maximumIDLength) {
        faults.emplace_back(R"("id" must have at most 64 characters.)");
    }
    if (manifest.id.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-") != std::string::npos) {
        faults.emplace_back(R"("id" must use only a-z, 0-9 and "-".)");
    }
    return faults;
}

Faults labelFaults(const std::string& field, const std::string& text) {
    if (trimmed(text).empty()) {
        return {'"' + field + "\" must not be empty."};
    }
    if (characterCount(text) > maximumLabelLength) {
        return {'"' + field + "\" must have at most 80 characters."};
    }
    return {};
}

Faults nameFaults(const CharacterManifest& manifest) {
    return labelFaults("name", manifest.name);
}

Faults roleFaults(const CharacterManifest& manifest) {
    return labelFaults("role", manifest.role);
}

Faults gridFaults(const CharacterManifest& manifest) {
    Faults faults;
    if (!within(manifest.grid.width, 1, maximumImageSide)) {
        faults.emplace_back(R"("grid.width" must be from 1 to 2048.)");
    }
    if (!within(manifest.grid.height, 1, maximumImageSide)) {
        faults.emplace_back(R"("grid.height" must be from 1 to 2048.)");
    }
    return faults;
}

Faults poseFaults(const CharacterManifest& manifest) {
    Faults faults;
    if (!manifest.poses.contains("idle")) {
        faults.emplace_back(R"("poses" must hold "idle".)");
    }
    if (manifest.poses.size() > maximumPoses) {
        faults.emplace_back(R"("poses" must hold at most 32 entries.)");
    }
    return faults;
}

Faults behaviourFaults(const CharacterManifest& manifest) {
    if (manifest.behaviours.empty()) {
        return {R"("behaviours" must not be empty.)"};
    }
    Faults faults;
    if (std::set(manifest.behaviours.begin(), manifest.behaviours.end()).size() !=
        manifest.behaviours.size()) {
        faults.emplace_back(R"("behaviours" must not hold anything twice.)");
    }
    if (manifest.has(Behaviour::none) && manifest.behaviours.size() > 1) {
        faults.emplace_back(R"("behaviours" must hold nothing else beside "none".)");
    }
    return faults;
}

Faults blinkFaults(const CharacterManifest& manifest) {
    if (manifest.has(Behaviour::blink) && !manifest.poses.contains("blink")) {
        return {R"("poses" must hold "blink", because "behaviours" does.)"};
    }
    return {};
}

Faults pointFaults(const std::string& field, const CharacterManifest::Point& point,
                   const CharacterManifest::Grid& grid) {
    if (within(point.x, 0, grid.width) && within(point.y, 0, grid.height)) {
        return {};
    }
    return {'"' + field + "\" must lie within the grid."};
}

Faults faceFaults(const CharacterManifest& manifest) {
    return pointFaults("face", manifest.face, manifest.grid);
}

Faults groundFaults(const CharacterManifest& manifest) {
    return pointFaults("ground", manifest.ground, manifest.grid);
}

Faults accentFaults(const CharacterManifest& manifest) {
    const auto& [red, green, blue] = manifest.accent;
    if (within(red, 0, 1) && within(green, 0, 1) && within(blue, 0, 1)) {
        return {};
    }
    return {R"("accent" must hold numbers from 0 to 1.)"};
}

Faults pathFaults(const CharacterManifest& manifest) {
    Faults faults;
    for (const auto& [pose, path] : manifest.poses) {
        if (const auto fault = posePathFault(path)) {
            faults.push_back("the path of pose \"" + pose + "\" " + *fault);
        }
    }
    return faults;
}

/// A rule, and the fields without which it cannot be judged.
struct Rule {
    std::array<std::string_view, 2> fields;
    Faults (*faults)(const CharacterManifest&);
    ManifestError::Kind kind = ManifestError::Kind::invalidManifest;
};

/// In the order in which they are reported; the first that is broken is the one that is thrown.
constexpr std::array<Rule, 13> rules{{
    {{"order"}, orderFaults},
    {{"scaleReferenceHeight", "grid"}, scaleFaults},
    {{"id"}, idFaults},
    {{"name"}, nameFaults},
    {{"role"}, roleFaults},
    {{"grid"}, gridFaults},
    {{"poses"}, poseFaults},
    {{"behaviours"}, behaviourFaults},
    {{"behaviours", "poses"}, blinkFaults},
    {{"face", "grid"}, faceFaults},
    {{"ground", "grid"}, groundFaults},
    {{"accent"}, accentFaults},
    {{"poses"}, pathFaults, ManifestError::Kind::invalidAsset},
}};

} // namespace

std::vector<ManifestProblem> CharacterManifest::problems(const std::set<std::string>& unreadable) const {
    std::vector<ManifestProblem> found;
    for (const Rule& rule : rules) {
        const bool judgeable = std::ranges::none_of(
            rule.fields, [&](std::string_view field) { return unreadable.contains(std::string(field)); });
        for (std::string& fault : judgeable ? rule.faults(*this) : Faults{}) {
            found.push_back({rule.kind, fileName, std::move(fault)});
        }
    }
    return found;
}

bool CharacterManifest::hasUsableGrid() const {
    return gridFaults(*this).empty();
}

std::optional<std::string> posePathFault(std::string_view path) {
    using std::string_view_literals::operator""sv;
    if (path.empty()) {
        return "must not be empty.";
    }
    if (path.starts_with('/')) {
        return R"(must not begin with "/".)";
    }
    if (path.find('\\') != std::string_view::npos) {
        return R"(must not contain "\".)";
    }
    // The file system would take the path only up to there: another file than the one that was judged.
    if (path.find('\0') != std::string_view::npos) {
        return "must not contain a zero character.";
    }
    for (const auto component : std::views::split(path, "/"sv)) {
        if (std::ranges::equal(component, ".."sv)) {
            return R"(must not contain "..".)";
        }
    }
    if (!lowercased(path).ends_with(".png")) {
        return R"(must end in ".png".)";
    }
    return {};
}

} // namespace FellowCore
