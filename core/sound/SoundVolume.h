#pragma once

namespace FellowCore {

/// A volume forced into 0...1; one that is not finite is 1, for a broken setting must not silence anything.
double clampedVolume(double volume);

/// The amplitude of a character's sound: the interface's volume times the character's own, each clamped
/// first, so that neither can make the other louder.
double combinedVolume(double volume, double characterVolume);

} // namespace FellowCore
