#include "core/devwatch/DevWatchPose.h"

namespace FellowCore {

Seconds DevWatchPolling::interval(bool panelOpen) {
    return panelOpen ? 5 : 30;
}

namespace DevWatchPose {

namespace {

bool isTapping(std::optional<Seconds> elapsed, bool reduceMotion) {
    // What is no number fails both comparisons.
    if (reduceMotion || !elapsed || !(*elapsed >= 0 && *elapsed < reminderLength)) {
        return false;
    }
    return static_cast<int>(*elapsed / reminderBeat) % 2 == 1;
}

} // namespace

std::string_view name(DevWatchActivityState state, std::optional<Seconds> reminderElapsed,
                      bool reduceMotion) {
    switch (state) {
    case DevWatchActivityState::calm:
        return "idle";
    case DevWatchActivityState::busy:
        return "busy";
    case DevWatchActivityState::hog:
        return "hog";
    case DevWatchActivityState::idleServer:
        break;
    }
    return isTapping(reminderElapsed, reduceMotion) ? "idle-server-tap" : "idle-server";
}

} // namespace DevWatchPose

} // namespace FellowCore
