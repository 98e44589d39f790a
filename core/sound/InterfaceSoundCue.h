#pragma once

#include <array>
#include <string_view>

namespace FellowCore {

/// The events of the interface that have a sound.
enum class InterfaceSoundCue {
    swap,
    start,
    pause,
    end,
    complete,
    miraComplete,
    reveal,
    hide,
    open,
    close,
    pumpNeedsYou,
};

/// Every cue, in order.
inline constexpr std::array allInterfaceSoundCues = {
    InterfaceSoundCue::swap,   InterfaceSoundCue::start,        InterfaceSoundCue::pause,
    InterfaceSoundCue::end,    InterfaceSoundCue::complete,     InterfaceSoundCue::miraComplete,
    InterfaceSoundCue::reveal, InterfaceSoundCue::hide,         InterfaceSoundCue::open,
    InterfaceSoundCue::close,  InterfaceSoundCue::pumpNeedsYou,
};

/// The case's name, such as "miraComplete".
std::string_view name(InterfaceSoundCue cue);

/// The sound file that answers a cue, without folder and extension. Some cues mean the same movement and
/// share one.
std::string_view resourceName(InterfaceSoundCue cue);

} // namespace FellowCore
