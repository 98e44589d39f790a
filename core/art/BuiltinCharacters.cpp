#include "core/art/BuiltinCharacters.h"

#include <algorithm>

namespace FellowCore {

namespace {

using Behaviour = CharacterManifest::Behaviour;

constexpr CharacterManifest::Accent slateAccent{0.31, 0.39, 0.6}; // what both interns wear

} // namespace

const CharacterManifest& BuiltinCharacters::batti() {
    static const CharacterManifest manifest{
        .id = "batti",
        .name = "Batti",
        .role = "Focus",
        .poses = {{"idle", "batti.png"}},
        .face = {60, 75.27},
        .ground = {59.5, 186},
        .grid = {120, 193},
        .accent = {0.77, 0.38, 0.25},
        .behaviours = {Behaviour::idle, Behaviour::timer},
        .order = 1,
        .scaleReferenceHeight = {},
    };
    return manifest;
}

const CharacterManifest& BuiltinCharacters::mira() {
    static const CharacterManifest manifest{
        .id = "mira",
        .name = "Mira",
        .role = "Breathing",
        .poses = {{"idle", "mira-breathing.png"}},
        .face = {50.19553072625698, 36.89922480620155},
        .ground = {45, 115},
        .grid = {90, 119},
        .accent = {0.27, 0.48, 0.42},
        .behaviours = {Behaviour::idle},
        .order = 2,
        .scaleReferenceHeight = {},
    };
    return manifest;
}

const CharacterManifest& BuiltinCharacters::intern() {
    static const CharacterManifest manifest{
        .id = "intern-nimit",
        .name = "Intern Nimit",
        .role = "Assistant",
        .poses = {{"idle", "intern-sprites/idle.png"},
                  {"blink", "intern-sprites/idle-blink.png"},
                  {"listen", "intern-sprites/listen.png"},
                  {"talk", "intern-sprites/talk.png"},
                  {"think", "intern-sprites/think.png"},
                  {"wave", "intern-sprites/wave.png"},
                  {"eat-almonds", "intern-sprites/eat-almonds.png"},
                  {"eat-spinach", "intern-sprites/eat-spinach.png"},
                  {"brainy", "intern-sprites/brainy.png"},
                  {"strong", "intern-sprites/strong.png"}},
        .face = {36.5, 25.52},
        .ground = {35.5, 112},
        .grid = {73, 116},
        .accent = slateAccent,
        .behaviours = {Behaviour::idle, Behaviour::blink},
        .order = 7,
        .scaleReferenceHeight = {},
    };
    return manifest;
}

const CharacterManifest& BuiltinCharacters::customerIntern() {
    static const CharacterManifest manifest{
        .id = "intern",
        .name = "Intern",
        .role = "Calendar assistant",
        .poses = {{"idle", "intern.png"}},
        .face = {36.5, 25.52},
        .ground = {35.5, 112},
        .grid = {73, 116},
        .accent = slateAccent,
        .behaviours = {Behaviour::idle},
        .order = 7,
        .scaleReferenceHeight = {},
    };
    return manifest;
}

const CharacterManifest& BuiltinCharacters::nori() {
    static const CharacterManifest manifest{
        .id = "nori",
        .name = "Nori",
        .role = "Companion",
        .poses = {{"idle", "cat.png"}, {"blink", "cat-blink.png"}},
        .face = {66.5, 60},
        .ground = {66.5, 151},
        .grid = {133, 157},
        .accent = {0.7, 0.4, 0.2},
        .behaviours = {Behaviour::idle, Behaviour::blink},
        .order = 8,
        .scaleReferenceHeight = {},
    };
    return manifest;
}

const std::vector<CharacterManifest>& BuiltinCharacters::all() {
    static const std::vector<CharacterManifest> manifests{batti(), mira(), intern(), customerIntern(),
                                                          nori()};
    return manifests;
}

bool BuiltinCharacters::contains(std::string_view id) {
    return std::ranges::any_of(all(), [id](const CharacterManifest& manifest) { return manifest.id == id; });
}

ManifestProblem BuiltinCharacters::reservedProblem(std::string_view id) {
    return {ManifestError::Kind::reservedID, CharacterManifest::fileName,
            "\"id\" must not be that of a built-in character, \"" + std::string(id) + "\"."};
}

bool BuiltinCharacters::takesArtFrom(std::string_view folderName, std::string_view id) {
    return folderName == customerIntern().id && id == customerIntern().id;
}

} // namespace FellowCore
