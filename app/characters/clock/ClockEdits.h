#pragma once

#include "app/characters/clock/ClockRow.h"

#include <QString>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace DeskSprites {

class ClockCharacter;
class PanelMessage;

/// What the panel does with the clocks, and what it says about it.
class ClockEdits {
public:
    /// Both outlive it.
    ClockEdits(ClockCharacter& clock, PanelMessage& message);

    /// Fulfils a wish, or says why not.
    void take(const std::string& identifier, ClockWish wish);
    /// Puts a city at the end of the list; says why not, when it cannot.
    void add(const std::string& identifier);
    /// Moves a city so many places down its list, or up.
    void move(const std::string& identifier, int by);
    /// Brings back the city that was removed last, as long as nothing else was done since.
    void undo();
    bool canUndo() const { return removed_.has_value(); }
    /// Takes back what was said, and with it the undo.
    void forget();

    /// The keyboard should go to a clock, because the button that had it is gone.
    std::function<void(const std::string& identifier)> onTurnTo;

private:
    struct Removed {
        std::string identifier;
        std::size_t place = 0;
        bool wasPinned = false;
    };

    void toggleFace(const std::string& identifier);
    void offerReplacement(const std::string& identifier);
    void makeHome(const std::string& identifier);
    void followSystem();
    void remove(const std::string& identifier);
    void copy(const std::string& identifier);
    QString nameOf(const std::string& identifier) const;
    void say(const QString& sentence);

    ClockCharacter& clock_;
    PanelMessage& message_;
    std::optional<Removed> removed_;
};

} // namespace DeskSprites
