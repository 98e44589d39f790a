#pragma once

#include "core/breathing/BreathingSessionStore.h"

#include <array>
#include <cstdio>
#include <functional>
#include <map>
#include <sstream>
#include <string>

namespace FellowCore {

/// The moment at which every script begins.
constexpr Instant scriptStart{800000000};

/// "running 13.0 inhale 2": status, seconds played, phase, round.
inline std::string described(const BreathingSession& session, Instant at) {
    std::array<char, 32> played{};
    std::snprintf(played.data(), played.size(), "%.1f", session.elapsed(at));
    return std::string(rawValue(session.status)) + " " + played.data() + " " +
           std::string(rawValue(session.phase(at))) + " " + std::to_string(session.round(at));
}

/// A session that is told what happens to it in words and says in words where it ended up.
///
/// A script is a row of "+12.5" (seconds pass), "-3600" (the clock is set back) and the verbs start, pause,
/// tick, reset and reload (through a file's text, as a launch does). The answer is the state at the end, with
/// one "!" for each tick that said it completed the session.
class BreathingScript {
public:
    explicit BreathingScript(const BreathingSession& given = BreathingSession()) : session(given) {}

    std::string run(const std::string& script) {
        const std::map<std::string, std::function<void()>> verbs{
            {"start", [this] { session.start(now); }},
            {"pause", [this] { session.pause(now); }},
            {"tick", [this] { endings_ += session.tick(now) ? "!" : ""; }},
            {"reset", [this] { session.reset(); }},
            {"reload", [this] {
                 session = BreathingSessionStore::decoded(BreathingSessionStore::encoded(session, now));
                 session.normalizeForRestore();
             }}};
        std::istringstream words(script);
        for (std::string word; words >> word;) {
            if (word.front() == '+' || word.front() == '-') {
                now = now + std::stod(word);
            } else {
                verbs.at(word)();
            }
        }
        return described(session, now) + endings_;
    }

    BreathingSession session;
    Instant now = scriptStart;

private:
    std::string endings_;
};

} // namespace FellowCore
