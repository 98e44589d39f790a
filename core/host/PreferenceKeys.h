#pragma once

#include <string>
#include <string_view>

/// The names under which preferences are kept: those of the whole collection, and those of one character,
/// which are made from its identifier. What a key means is told by whoever owns it.
namespace FellowCore::PreferenceKeys {

constexpr std::string_view onScreen = "collection.onScreen";
constexpr std::string_view activeCharacter = "collection.activeCharacter";
constexpr std::string_view sharedDesktopAnchor = "collection.desktopAnchor";
constexpr std::string_view sharedDesktopHeight = "collection.desktopHeight";
constexpr std::string_view arrangeEdge = "collection.arrangeEdge";
constexpr std::string_view arrangeCompactHeight = "collection.arrangeCompactHeight";
constexpr std::string_view shortcutKey = "collection.shortcutKey";
constexpr std::string_view shortcutModifiers = "collection.shortcutModifiers";
constexpr std::string_view shortcutLabel = "collection.shortcutLabel";
constexpr std::string_view interfaceSounds = "collection.interfaceSounds";
constexpr std::string_view interfaceSoundVolume = "collection.interfaceSoundVolume";
constexpr std::string_view tutorialCompleted = "collection.tutorialCompleted.v1";
constexpr std::string_view settingsPane = "collection.settingsPane.v2";
constexpr std::string_view settingsVersion = "collection.settingsVersion";
/// Where the previous character was kept before each character had a key of its own; read once and moved.
constexpr std::string_view legacyPreviousCharacter = "sprites.previousCharacter";

constexpr std::string_view battiHeight = "sprites.batti.height";
constexpr std::string_view battiMirrored = "sprites.batti.mirrored";
constexpr std::string_view battiSounds = "sprites.batti.sounds";
constexpr std::string_view battiReducedMotion = "sprites.batti.reducedMotion";

/// A rectangle as text.
std::string frame(std::string_view id);
std::string desktopHeight(std::string_view id);
std::string desktopAnchor(std::string_view id);
std::string arrangeHeight(std::string_view id);
std::string previousCharacter(std::string_view id);

} // namespace FellowCore::PreferenceKeys
