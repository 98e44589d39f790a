#pragma once

#include "app/desktop/CharacterStage.h"
#include "app/desktop/DesktopServices.h"

#include <optional>
#include <string>

namespace DeskSprites {

/// How big the characters are and where their feet stand, and how both are remembered.
class DesktopPlacement {
public:
    DesktopPlacement(CharacterStage& stage, DesktopServices& services);

    /// The height that the user gave the character, 140...600 points.
    double desktopHeight(const DesktopCharacter& character) const;
    /// A character that never had a size of its own takes the collection's, and then the one in force.
    void initializeSize(DesktopCharacter& character);
    /// Gives the character the height in force: the arrangement's, else the compact one, else its own.
    void applyDesktopHeight(DesktopCharacter& character);
    /// The user's resize: it leaves any arrangement and is remembered.
    void setDesktopHeight(DesktopCharacter& character, double height);
    /// One device pixel for each art pixel more, or fewer, for every step.
    void stepSize(DesktopCharacter& character, int steps);
    /// Every character back to its own height, and compact arrangement off.
    void restoreNormalSizes();
    bool isCompact() const;

    std::optional<FellowCore::Point> savedAnchor(const DesktopCharacter& character) const;
    std::optional<FellowCore::Point> legacyAnchor() const;
    /// Remembers where the character's foot stands; throttled to once a second unless forced.
    void recordDesktopAnchor(const DesktopCharacter& character, FrameSave when);
    /// A character comes out beside another one, made smaller where the screen has no room for it.
    void placeBeside(DesktopCharacter& newcomer, const DesktopCharacter& beside);

private:
    void clearArrangedSizes();

    CharacterStage& stage_;
    DesktopServices& services_;
    std::optional<FellowCore::MonotonicInstant> lastAnchorSave_;
};

} // namespace DeskSprites
