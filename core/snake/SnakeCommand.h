#pragma once

#include "core/snake/SnakeDirection.h"
#include "core/snake/SnakeStatus.h"

#include <optional>

namespace FellowCore {

/// The keys that the game knows.
enum class SnakeKey { up, down, left, right, w, a, s, d, plus, minus, space, escape, enter };

/// One press as the keyboard reports it.
struct SnakeKeyPress {
    SnakeKey key;
    bool repeats = false;  ///< sent by the keyboard because the key is still held
    bool modified = false; ///< with Control, Alt or the logo key: someone else's shortcut
};

/// What a key asks for.
struct SnakeCommand {
    enum class Kind { turn, faster, slower, togglePause, leave, restart };

    Kind kind;
    std::optional<SnakeDirection> direction; ///< of a turn

    friend bool operator==(const SnakeCommand&, const SnakeCommand&) = default;
};

/// What a press means while the game stands at `status`; nothing when the game has no use for it. A held key
/// goes on changing the speed and does nothing else again, so that it neither queues turns nor makes a pause
/// flicker.
std::optional<SnakeCommand> snakeCommand(const SnakeKeyPress& press, SnakeStatus status);

} // namespace FellowCore
