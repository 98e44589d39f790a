#include "core/sound/InterfaceSoundCue.h"

namespace FellowCore {

namespace {

struct Entry {
    std::string_view name;
    std::string_view resource;
};

constexpr Entry entryOf(InterfaceSoundCue cue) {
    switch (cue) {
    case InterfaceSoundCue::swap:
        return {"swap", "interface-swap"};
    case InterfaceSoundCue::start:
        return {"start", "interface-rise"};
    case InterfaceSoundCue::pause:
        return {"pause", "interface-pause"};
    case InterfaceSoundCue::end:
        return {"end", "interface-close"};
    case InterfaceSoundCue::complete:
        return {"complete", "interface-complete"};
    case InterfaceSoundCue::miraComplete:
        return {"miraComplete", "mira-complete"};
    case InterfaceSoundCue::reveal:
        return {"reveal", "interface-rise"};
    case InterfaceSoundCue::hide:
        return {"hide", "interface-close"};
    case InterfaceSoundCue::open:
        return {"open", "interface-open"};
    case InterfaceSoundCue::close:
        return {"close", "interface-close"};
    case InterfaceSoundCue::pumpNeedsYou:
        return {"pumpNeedsYou", "pump-needs-you"};
    }
    return {};
}

} // namespace

std::string_view name(InterfaceSoundCue cue) {
    return entryOf(cue).name;
}

std::string_view resourceName(InterfaceSoundCue cue) {
    return entryOf(cue).resource;
}

} // namespace FellowCore
