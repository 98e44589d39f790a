#pragma once

#include "core/base/Instant.h"

/// The lamp's flash curves: a brightness from 0 to 1 by the seconds since the flash began. `reduced` (the
/// user's wish for reduced motion) keeps the lamp steady, and so does a time outside the curve.
namespace FellowCore::CharacterMotion {

constexpr double litBrightness = 0.97;
constexpr double darkBrightness = 0.18;
constexpr Seconds flashStep = 0.15;
constexpr Seconds phaseLightDuration = 0.6;
constexpr Seconds completionLightDuration = 0.3;

/// On a change of phase: off, on, off, on in steps of 0.15 seconds.
double phaseLight(Seconds elapsed, bool reduced);
/// At the end of a phase: one blink, off from 0.15 to 0.3 seconds.
double completionLight(Seconds elapsed, bool reduced);

} // namespace FellowCore::CharacterMotion
