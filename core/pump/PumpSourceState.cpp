#include "core/pump/PumpSourceState.h"

namespace FellowCore {

std::string_view rawValue(PumpSourceState state) {
    switch (state) {
    case PumpSourceState::ready:
        return "ready";
    case PumpSourceState::missing:
        return "missing";
    case PumpSourceState::unreadable:
        return "unreadable";
    case PumpSourceState::loading:
        return "loading";
    case PumpSourceState::partial:
        return "partial";
    }
    return {};
}

} // namespace FellowCore
