#include "core/breathing/BreathingSessionStore.h"

#include "core/base/Json.h"
#include "core/base/WholeFile.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace FellowCore {

namespace {

namespace Key {
constexpr const char* settings = "settings";
constexpr const char* status = "status";
constexpr const char* startedAt = "startedAt";
constexpr const char* accumulatedSeconds = "accumulatedSeconds";
constexpr const char* settlingDuration = "settlingDuration";
constexpr const char* inhale = "inhale";
constexpr const char* hold = "hold";
constexpr const char* exhale = "exhale";
constexpr const char* rounds = "rounds";
constexpr const char* rest = "rest";
constexpr const char* sip = "sip";
} // namespace Key

Seconds secondsOrNone(const JsonFields& fields, const char* key) {
    return fields.has(key) ? fields.number(key) : 0;
}

// Read as a double, so that a count of any size is drawn into the limits.
int roundsFrom(const JsonFields& fields) {
    const double rounds = fields.number(Key::rounds);
    if (std::trunc(rounds) != rounds) {
        throw JsonError(JsonError::Kind::wrongType, fields.pathOf(Key::rounds), "should be a whole number");
    }
    return static_cast<int>(std::clamp<double>(rounds, 1, BreathingSettings::mostRounds));
}

BreathingSettings settingsFrom(const JsonFields& fields) {
    return {fields.number(Key::inhale), fields.number(Key::hold),         fields.number(Key::exhale),
            roundsFrom(fields),         secondsOrNone(fields, Key::rest), secondsOrNone(fields, Key::sip)};
}

BreathingStatus statusFrom(const JsonFields& fields) {
    const auto status = breathingStatusFromRawValue(fields.string(Key::status));
    if (!status) {
        throw JsonError(JsonError::Kind::outOfRange, fields.pathOf(Key::status), "is an unknown word");
    }
    return *status;
}

Json jsonOf(const BreathingSettings& settings) {
    return {{Key::inhale, settings.inhale}, {Key::hold, settings.hold}, {Key::exhale, settings.exhale},
            {Key::rounds, settings.rounds}, {Key::rest, settings.rest}, {Key::sip, settings.sip}};
}

} // namespace

BreathingSessionStore::BreathingSessionStore(FileOperations& files, std::filesystem::path url)
    : files_(files), url_(std::move(url)) {}

BreathingSession BreathingSessionStore::load() const {
    try {
        return read();
    } catch (const std::runtime_error&) {
        // Whatever is wrong with the file: a lost session costs a few minutes, and Mira must always be there.
        return BreathingSession();
    }
}

BreathingSession BreathingSessionStore::read() const {
    BreathingSession session = decoded(readWholeFile(files_, url_, sizeLimit));
    session.normalizeForRestore();
    return session;
}

void BreathingSessionStore::save(const BreathingSession& session, Instant at) const {
    write(encoded(session, at));
}

void BreathingSessionStore::write(std::string_view text) const {
    makeFolderOf(files_, url_);
    writeWholeFile(files_, url_, text, FileMode::keep);
}

std::string BreathingSessionStore::encoded(const BreathingSession& session, Instant at) {
    const BreathingSession saved = session.pausedSnapshot(at);
    const BreathingSession sound(saved.settings, saved.settlingDuration);
    // A session that does not run has no `startedAt`.
    const Json json = {
        {Key::settings, jsonOf(sound.settings)},
        {Key::status, std::string(rawValue(saved.status))},
        {Key::accumulatedSeconds, std::isfinite(saved.accumulatedSeconds) ? saved.accumulatedSeconds : 0.0},
        {Key::settlingDuration, sound.settlingDuration}};
    return jsonText(json, JsonStyle::plain);
}

BreathingSession BreathingSessionStore::decoded(std::string_view text) {
    const Json json = parseJson(text);
    const JsonFields fields(json);
    BreathingSession session(settingsFrom(fields.object(Key::settings)),
                             secondsOrNone(fields, Key::settlingDuration));
    session.status = statusFrom(fields);
    session.accumulatedSeconds = fields.number(Key::accumulatedSeconds);
    if (fields.has(Key::startedAt)) {
        session.startedAt = instantFromJson(fields.value(Key::startedAt), fields.pathOf(Key::startedAt));
    }
    return session;
}

} // namespace FellowCore
