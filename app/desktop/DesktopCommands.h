#pragma once

#include "app/desktop/Arrangement.h"

#include <optional>
#include <string>
#include <vector>

namespace DeskSprites {

class DesktopCharacter;

/// What the user can ask for from any menu, panel, link or shortcut. `AppController` carries it out.
class DesktopCommands {
public:
    virtual ~DesktopCommands() = default;

    /// Focuses a character, or swaps it in place for the active one, and shows the set.
    virtual void select(const std::string& id) = 0;
    /// Brings another character out beside the active one; refused with a sentence when there is no room.
    virtual void bringOut(const std::string& id) = 0;
    virtual void hideCharacter() = 0;
    virtual void toggleVisible() = 0;
    virtual void swapBack() = 0;
    virtual void focus(const std::string& id) = 0;
    virtual void arrange(FellowCore::ArrangeLayout::Edge edge, CompactChange compact) = 0;
    virtual void stepSize(DesktopCharacter& character, int steps) = 0;
    virtual void beginSizeEdit(DesktopCharacter& character) = 0;
    virtual void requestSize(double height) = 0;
    virtual void finishSizeEdit() = 0;
    /// Opens the settings window; without a pane, on the one that was open last.
    virtual void openLibrary(const std::optional<std::string>& pane) = 0;
    virtual void quit() = 0;

    /// Characters that may come out now, in the order of the roster.
    virtual std::vector<DesktopCharacter*> candidates() const = 0;
    /// Whom the character took its place from, when that one can come back.
    virtual DesktopCharacter* previousCharacter(const DesktopCharacter& of) const = 0;
    virtual bool isSetFull() const = 0;
    virtual bool isVisible() const = 0;
    virtual bool isCompact() const = 0;
    virtual FellowCore::ArrangeLayout::Edge arrangeEdge() const = 0;
};

/// The sentence for a fourth character.
inline constexpr const char* fullSetSentence = "Hide a character to make room.";

} // namespace DeskSprites
