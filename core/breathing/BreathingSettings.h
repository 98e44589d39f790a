#pragma once

#include "core/base/Instant.h"
#include "core/breathing/BreathingMode.h"
#include "core/breathing/BreathingPhase.h"

#include <optional>

namespace FellowCore {

/// The lengths a phase may have. A length that is not finite becomes `fallback`.
struct BreathingLimits {
    Seconds shortest = 0;
    Seconds longest = 0;
    Seconds fallback = 0;

    /// The length forced into the limits.
    Seconds clamped(Seconds length) const;
};

/// A rhythm and how often it is repeated. The constructor draws everything into its limits, lengths to the
/// nearest half second; fields that were changed afterwards are put right by `normalized`.
struct BreathingSettings {
    static constexpr Seconds step = 0.5; ///< lengths are whole multiples of it
    static constexpr int mostRounds = 75;

    Seconds inhale; ///< 2...8
    Seconds hold;   ///< 0...8, with full lungs
    Seconds exhale; ///< 2...12
    int rounds;     ///< 1...75
    Seconds rest;   ///< 0...8, with empty lungs
    Seconds sip;    ///< 0...2

    BreathingSettings(Seconds inhale, Seconds hold, Seconds exhale, int rounds, Seconds rest = 0,
                      Seconds sip = 0);

    BreathingSettings normalized() const;
    /// The rhythm with exactly these five lengths, whatever the rounds; `custom` when there is none.
    BreathingMode mode() const;
    /// The same lengths with as many rounds as are needed to fill the minutes: at least 1, and at most the
    /// cap of `chosen`, which is `mode()` unless it is given.
    BreathingSettings forMinutes(int minutes, std::optional<BreathingMode> chosen = std::nullopt) const;

    /// The length of a phase; 0 for `settle`, whose length belongs to the session.
    Seconds duration(BreathingPhase phase) const;
    /// Where a phase begins within a round; 0 for `settle`.
    Seconds offset(BreathingPhase phase) const;
    /// The length of one round.
    Seconds cycle() const;

    /// What a phase's length is forced into. `settle` may be 0...3 and is not rounded.
    static BreathingLimits limits(BreathingPhase phase);

    friend bool operator==(const BreathingSettings&, const BreathingSettings&) = default;
};

/// A rhythm's own lengths, those to begin a pattern with for `custom`, with the given rounds (1 up to the
/// rhythm's cap) or its usual ones.
BreathingSettings settings(BreathingMode mode, std::optional<int> rounds = std::nullopt);

} // namespace FellowCore
