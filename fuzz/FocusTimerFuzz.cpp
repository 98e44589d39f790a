#include "core/base/Json.h"
#include "core/focus/FocusTimerStore.h"
#include "fuzz/Require.h"

#include <cmath>
#include <cstdint>
#include <string_view>

using namespace FellowCore;

namespace {

constexpr Instant now{800000000};

// What must hold of every timer that came from a file, whatever the file held.
void requireSane(const FocusTimer& timer, Instant at) {
    require(timer.settings == timer.settings.sanitized());
    require(timer.phaseDuration >= 1 && timer.phaseDuration <= 7200);
    const Seconds left = timer.timeRemaining(at);
    require(left >= 0 && left <= timer.phaseDuration);
    require(timer.progress(at) >= 0 && timer.progress(at) <= 1);
    require(timer.deadline.has_value() == (timer.status == TimerStatus::running));
    require(timer.completedFocusSessions >= 0);
    require(!timerBadge(left).empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        FocusTimer timer = FocusTimerStore::decoded({reinterpret_cast<const char*>(data), size});
        const FocusTimer again = FocusTimerStore::decoded(FocusTimerStore::encoded(timer));
        require(again == timer);
        timer.normalize(now);
        requireSane(timer, now);
        timer.performBattiPrimaryAction(now + 1);
        requireSane(timer, now + 1);
        timer.tickForBatti(now + 86400);
        requireSane(timer, now + 86400);
    } catch (const JsonError&) {
        // A refusal is an answer.
    }
    return 0;
}
