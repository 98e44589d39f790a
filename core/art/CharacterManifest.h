#pragma once

#include "core/art/ManifestError.h"

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// What a character is, as its `manifest.json` states it. The keys in the file are the names of the fields.
struct CharacterManifest {
    /// A point in art pixels, y downwards from the top of the canvas.
    struct Point {
        double x = 0;
        double y = 0;
        friend bool operator==(const Point&, const Point&) = default;
    };
    /// The canvas, in art pixels.
    struct Grid {
        int width = 0;
        int height = 0;
        friend bool operator==(const Grid&, const Grid&) = default;
    };
    /// The character's colour, each channel from 0 to 1.
    struct Accent {
        double red = 0;
        double green = 0;
        double blue = 0;
        friend bool operator==(const Accent&, const Accent&) = default;
    };
    /// In the file "none", "idle", "blink" and "timer".
    enum class Behaviour { none, idle, blink, timer };

    static constexpr const char* fileName = "manifest.json";
    static constexpr std::size_t fileSizeLimit = 1U << 20U; ///< bytes

    /// 1 to 64 of a-z, 0-9 and "-"; used in paths and preference keys.
    std::string id;
    std::string name; ///< 1 to 80 user-perceived characters
    std::string role; ///< the same
    /// Pose name to the path of a PNG file inside the pack; 1 to 32 of them, "idle" among them.
    std::map<std::string, std::string> poses;
    Point face;   ///< where bubbles point
    Point ground; ///< the foot point
    Grid grid;    ///< each side 1 to 2048
    Accent accent;
    std::vector<Behaviour> behaviours; ///< no duplicates; `none` only alone
    std::optional<int> order;          ///< place in the roster, from 1
    /// The art pixels that map to the desktop height, from 1 to the height of the grid.
    std::optional<double> scaleReferenceHeight;

    /// Decodes the text of a manifest file without judging its values. Throws the first `ManifestError`
    /// (invalidManifest): no JSON, a field missing or of the wrong type, an unknown behaviour.
    static CharacterManifest fromJson(std::string_view text);

    /// Everything about the values that breaks a rule, in the order of the rules; rules about the fields
    /// named in `unreadable` are left out.
    std::vector<ManifestProblem> problems(const std::set<std::string>& unreadable = {}) const;
    /// Throws the first of `problems` as `ManifestError`.
    void validate() const;

    /// The order of the roster: those with an `order` first, the smaller before the larger; then by `id`.
    bool precedes(const CharacterManifest& other) const;
    bool has(Behaviour behaviour) const;
    /// Whether both sides of the grid are from 1 to 2048.
    bool hasUsableGrid() const;

    friend bool operator==(const CharacterManifest&, const CharacterManifest&) = default;
};

/// What is wrong with the path of a pose, as a rule in words; nothing when it is fine.
std::optional<std::string> posePathFault(std::string_view path);

} // namespace FellowCore
