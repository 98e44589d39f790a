#pragma once

#include "app/desktop/DesktopCommands.h"
#include "app/desktop/DesktopServices.h"
#include "core/base/Geometry.h"
#include "core/sound/InterfaceSoundCue.h"
#include "platform/AudioOutput.h"

#include <QString>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace DeskSprites {

class DesktopCharacter;
class ShortcutBoard;

/// What a character may ask of the desktop it stands on, besides its own window. `AppController` owns it and
/// fills it in before the first character is made.
struct CharacterSite {
    DesktopServices& services;
    DesktopCommands& commands;
    ShortcutBoard& shortcuts;
    std::filesystem::path resources; ///< the installed data folder
    std::filesystem::path plugins;   ///< the folder of the libraries that are loaded when needed

    /// A cue from where the character stands; `volume` is 0...1, the character's own.
    std::function<void(FellowCore::InterfaceSoundCue, const DesktopCharacter&, double volume)> playSound;
    /// A sentence the user should know, shown beside the active character.
    std::function<void(const QString& sentence)> tell;
    /// The windows that a panel of this character keeps clear of: other characters, their panels, and the
    /// open quick actions.
    std::function<std::vector<FellowCore::Rect>(const DesktopCharacter& of)> obstacles;
    /// Closes the quick actions and the notice, as before a panel opens in their place.
    std::function<void()> dismissActions;
    /// Opens the quick actions of a character that is on the desktop, as when it has news.
    std::function<void(DesktopCharacter&)> presentActions;
    /// A handle on the program's one loudspeaker, for sounds that are no cues; absent in a run without sound.
    std::function<std::unique_ptr<Platform::AudioOutput>()> makeAudio{};
    /// Keeps everyone who stands on this screen (its whole frame) out of sight, as while a game covers it;
    /// nothing brings all back as they stood. Who is on the desktop, and what they do, stays as it is.
    std::function<void(const std::optional<FellowCore::Rect>& screen)> coverScreen{};
    /// Whether a character guides the user by sounds now, which no sound of another may disturb.
    std::function<bool()> isGuidedBySound = [] { return false; };
};

/// Stands a character on the desktop for something that can only be done there: shows the set when it is
/// hidden, and brings the character out when it is not in it. False when there is no room, which the user is
/// told.
bool comeOut(const DesktopCharacter& character, CharacterSite& site);

} // namespace DeskSprites
