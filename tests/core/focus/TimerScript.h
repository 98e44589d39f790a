#pragma once

#include "core/focus/FocusTimerStore.h"

#include <functional>
#include <map>
#include <sstream>
#include <string>

namespace FellowCore {

/// The moment at which every script begins.
constexpr Instant scriptStart{800000000};

/// "focus running 24:59 0": phase, status, time left, focus sessions.
inline std::string described(const FocusTimer& timer, Instant at) {
    return std::string(rawValue(timer.phase)) + " " + std::string(rawValue(timer.status)) + " " +
           timerBadge(timer.timeRemaining(at)) + " " + std::to_string(timer.completedFocusSessions);
}

/// A timer that is told what happens to it in words and says in words where it ended up.
///
/// A script is a row of: "+24:59" (time passes; minutes:seconds or hours:minutes:seconds), "-5:00" (the clock
/// is set back), "focus=10" (new settings with that focus length) and the verbs tick, start, pause, resume,
/// next, complete, reset, button, and Batti's own battitick and press; "reload" goes through a file's text as
/// a launch does. The answer is the state at the end, with a "!" when the last verb said that it ended the
/// phase.
class TimerScript {
public:
    explicit TimerScript(const TimerSettings& settings = TimerSettings()) : timer(settings) {}

    std::string run(const std::string& script) {
        std::istringstream words(script);
        bool ended = false;
        for (std::string word; words >> word;) {
            if (word.front() == '+' || word.front() == '-') {
                now = now + (word.front() == '+' ? 1 : -1) * seconds(word.substr(1));
            } else if (word.starts_with("focus=")) {
                timer.updateSettings(TimerSettings(std::stoi(word.substr(6))));
            } else {
                ended = perform(word);
            }
        }
        return described(timer, now) + (ended ? "!" : "");
    }

    FocusTimer timer;
    Instant now = scriptStart;

private:
    static Seconds seconds(const std::string& time) {
        std::istringstream parts(time);
        Seconds length = 0;
        for (std::string part; std::getline(parts, part, ':');) {
            length = length * 60 + std::stod(part);
        }
        return length;
    }

    bool perform(const std::string& verb) {
        const std::map<std::string, std::function<bool(FocusTimer&, Instant)>> telling{
            {"tick", &FocusTimer::tick},
            {"battitick", &FocusTimer::tickForBatti},
            {"press", &FocusTimer::performBattiPrimaryAction},
            {"button", &FocusTimer::performPrimaryAction}};
        const std::map<std::string, std::function<void(FocusTimer&, Instant)>> silent{
            {"start", &FocusTimer::start},
            {"pause", &FocusTimer::pause},
            {"resume", &FocusTimer::resume},
            {"next", &FocusTimer::startNext},
            {"complete", [](FocusTimer& each, Instant) { each.complete(); }},
            {"reset", [](FocusTimer& each, Instant) { each.reset(); }},
            {"reload", [](FocusTimer& each, Instant at) {
                 each = FocusTimerStore::decoded(FocusTimerStore::encoded(each));
                 each.normalize(at);
                 each.normalize(at);
                 each.pause(at);
             }}};
        if (const auto found = telling.find(verb); found != telling.end()) {
            return found->second(timer, now);
        }
        silent.at(verb)(timer, now);
        return false;
    }
};

} // namespace FellowCore
