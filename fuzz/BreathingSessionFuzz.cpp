#include "core/base/Json.h"
#include "core/breathing/BreathingSessionStore.h"
#include "fuzz/Require.h"

#include <cstdint>
#include <string_view>

using namespace FellowCore;

namespace {

constexpr Instant now{800000000};

// What must hold of every session that came from a file, whatever the file held.
void requireSane(const BreathingSession& session, Instant at) {
    const Seconds played = session.elapsed(at);
    require(session.settings == session.settings.normalized());
    require(session.settlingDuration >= 0 && session.settlingDuration <= 3);
    require(played >= 0 && played <= session.totalDuration());
    require(session.round(at) >= 1 && session.round(at) <= session.settings.rounds);
    require(session.phaseDuration(at) > 0);
    require(session.phaseProgress(at) >= 0 && session.phaseProgress(at) <= 1);
    require(session.expansion(at) >= 0 && session.expansion(at) <= 1);
    require(session.startedAt.has_value() == (session.status == BreathingStatus::running));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        BreathingSession session =
            BreathingSessionStore::decoded({reinterpret_cast<const char*>(data), size});
        session.normalizeForRestore();
        require(session.status != BreathingStatus::running);
        requireSane(session, now);
        const auto again = BreathingSessionStore::decoded(BreathingSessionStore::encoded(session, now));
        require(again == session);
        session.start(now);
        for (const Seconds later : {0.1, 3.0, 7.25, 59.9, 4000.0}) {
            session.tick(now + later);
            requireSane(session, now + later);
        }
        require(session.status != BreathingStatus::running);
    } catch (const JsonError&) {
        // A refusal is an answer.
    }
    return 0;
}
