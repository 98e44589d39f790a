#include "core/focus/FocusTimerStore.h"

#include "core/base/Json.h"
#include "core/base/WholeFile.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

namespace FellowCore {

namespace {

namespace Key {
constexpr const char* settings = "settings";
constexpr const char* phase = "phase";
constexpr const char* status = "status";
constexpr const char* remainingSeconds = "remainingSeconds";
constexpr const char* completedFocusSessions = "completedFocusSessions";
constexpr const char* deadline = "deadline";
constexpr const char* phaseDuration = "phaseDuration";
constexpr const char* focusMinutes = "focusMinutes";
constexpr const char* shortBreakMinutes = "shortBreakMinutes";
constexpr const char* longBreakMinutes = "longBreakMinutes";
constexpr const char* longBreakEvery = "longBreakEvery";
constexpr const char* startRestsAutomatically = "startRestsAutomatically";
} // namespace Key

// A whole number of any size, drawn into the range of `Whole`: whoever wrote 10^30 meant "a lot".
template <typename Whole>
Whole wholeNumber(const JsonFields& fields, const char* key) {
    using Wide = std::numeric_limits<std::int64_t>;
    using Limits = std::numeric_limits<Whole>;
    std::int64_t value = 0;
    try {
        value = fields.integer(key);
    } catch (const JsonError& error) {
        if (error.kind() != JsonError::Kind::outOfRange) {
            throw;
        }
        value = fields.number(key) < 0 ? Wide::min() : Wide::max();
    }
    return static_cast<Whole>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

template <typename Value>
Value known(std::optional<Value> value, const JsonFields& fields, const char* key) {
    if (!value) {
        throw JsonError(JsonError::Kind::outOfRange, fields.pathOf(key), "is an unknown word");
    }
    return *value;
}

TimerSettings settingsFrom(const JsonFields& fields) {
    return TimerSettings(
        wholeNumber<int>(fields, Key::focusMinutes), wholeNumber<int>(fields, Key::shortBreakMinutes),
        wholeNumber<int>(fields, Key::longBreakMinutes), wholeNumber<int>(fields, Key::longBreakEvery),
        !fields.has(Key::startRestsAutomatically) || fields.boolean(Key::startRestsAutomatically));
}

Json jsonOf(const TimerSettings& settings) {
    return {{Key::focusMinutes, settings.focusMinutes},
            {Key::shortBreakMinutes, settings.shortBreakMinutes},
            {Key::longBreakMinutes, settings.longBreakMinutes},
            {Key::longBreakEvery, settings.longBreakEvery},
            {Key::startRestsAutomatically, settings.startRestsAutomatically}};
}

double finiteOr(double value, double fallback) {
    return std::isfinite(value) ? value : fallback;
}

} // namespace

FocusTimerStore::FocusTimerStore(FileOperations& files, std::filesystem::path url)
    : files_(files), url_(std::move(url)) {}

FocusTimer FocusTimerStore::load(Instant at) const {
    FocusTimer timer = decoded(readWholeFile(files_, url_, sizeLimit));
    timer.normalize(at);
    return timer;
}

FocusTimer FocusTimerStore::loadForBatti(Instant at) const {
    FocusTimer timer = load(at);
    timer.normalize(at);
    timer.pause(at);
    return timer;
}

void FocusTimerStore::save(const FocusTimer& timer) const {
    write(encoded(timer));
}

void FocusTimerStore::write(std::string_view text) const {
    makeFolderOf(files_, url_);
    writeWholeFile(files_, url_, text, FileMode::keep);
}

std::string FocusTimerStore::encoded(const FocusTimer& timer) {
    const Seconds duration = finiteOr(timer.phaseDuration, timer.settings.duration(timer.phase));
    Json json = {{Key::settings, jsonOf(timer.settings.sanitized())},
                 {Key::phase, std::string(rawValue(timer.phase))},
                 {Key::status, std::string(rawValue(timer.status))},
                 {Key::remainingSeconds, finiteOr(timer.remainingSeconds, duration)},
                 {Key::completedFocusSessions, timer.completedFocusSessions},
                 {Key::phaseDuration, duration}};
    if (timer.deadline && timer.deadline->isFinite()) {
        json[Key::deadline] = jsonDate(*timer.deadline);
    }
    return jsonText(json, JsonStyle::pretty);
}

FocusTimer FocusTimerStore::decoded(std::string_view text) {
    const Json json = parseJson(text);
    const JsonFields fields(json);
    FocusTimer timer(settingsFrom(fields.object(Key::settings)));
    timer.phase = known(timerPhaseFromRawValue(fields.string(Key::phase)), fields, Key::phase);
    timer.status = known(timerStatusFromRawValue(fields.string(Key::status)), fields, Key::status);
    timer.remainingSeconds = fields.number(Key::remainingSeconds);
    timer.completedFocusSessions = wholeNumber<std::int64_t>(fields, Key::completedFocusSessions);
    timer.phaseDuration = fields.number(Key::phaseDuration);
    if (fields.has(Key::deadline)) {
        timer.deadline = instantFromJson(fields.value(Key::deadline), fields.pathOf(Key::deadline));
    }
    return timer;
}

} // namespace FellowCore
