#pragma once

#include "core/base/Instant.h"

namespace FellowCore {

/// Keeps the steps of a game at their pace on a machine that is sometimes late. A little lateness is made up
/// for in the next wait, so that it does not add up; after a step that was very late the pace begins anew, so
/// that it is never followed by a burst.
class SnakePace {
public:
    /// The share of an interval that a wait may be shortened by.
    static constexpr double mostMadeUp = 0.25;

    /// Begins at `now`, as at the start of a game and after a pause. Returns how long to wait for the first
    /// step.
    Seconds begin(MonotonicInstant now, Seconds interval);
    /// A step was made at `now` and the next shall come `interval` after it. Returns how long to wait for it:
    /// never less than 1 - `mostMadeUp` of the interval, and never more than the interval and that share of
    /// it.
    Seconds stepped(MonotonicInstant now, Seconds interval);

private:
    MonotonicInstant due_; ///< when the next step should come
};

} // namespace FellowCore
