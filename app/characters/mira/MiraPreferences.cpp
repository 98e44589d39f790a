#include "app/characters/mira/MiraPreferences.h"

#include "core/base/Text.h"
#include "core/sound/SoundVolume.h"

#include <algorithm>

namespace DeskSprites {

using FellowCore::BreathingMode;
using FellowCore::BreathingSettings;

namespace {

namespace Key {
constexpr std::string_view rhythm = "sprites.mira.rhythm";
constexpr std::string_view length = "sprites.mira.length";
constexpr std::string_view rounds = "sprites.mira.rounds";
constexpr std::string_view fourSevenEightRounds = "sprites.mira.fourSevenEightRounds";
constexpr std::string_view minutes = "sprites.mira.minutes";
constexpr std::string_view custom = "sprites.mira.custom";
constexpr std::string_view patterns = "sprites.mira.patterns";
constexpr std::string_view chosenPattern = "sprites.mira.pattern";
constexpr std::string_view voice = "sprites.mira.voice";
constexpr std::string_view voiceVolume = "sprites.mira.voiceVolume";
constexpr std::string_view breath = "sprites.mira.breath";
constexpr std::string_view breathVolume = "sprites.mira.breathVolume";
constexpr std::string_view reducedMotion = "sprites.mira.reducedMotion";
} // namespace Key

constexpr std::string_view minutesWord = "minutes";
constexpr std::string_view roundsWord = "rounds";
constexpr double usualVoiceVolume = 0.6;
constexpr double usualBreathVolume = 0.5;

std::optional<int> within(std::optional<std::int64_t> value, int least, int most) {
    return value ? std::optional(static_cast<int>(std::clamp<std::int64_t>(*value, least, most)))
                 : std::nullopt;
}

int mostRoundsOf478() {
    return FellowCore::roundsCap(BreathingMode::fourSevenEight);
}

bool isCalled(const BreathingPattern& pattern, std::string_view name) {
    return FellowCore::folded(pattern.name) == FellowCore::folded(name);
}

} // namespace

MiraPreferences::MiraPreferences(FellowCore::Preferences& preferences) : preferences_(preferences) {}

BreathingMode MiraPreferences::rhythm() const {
    const auto text = preferences_.string(Key::rhythm);
    const auto mode = text ? FellowCore::breathingModeFromRawValue(*text) : std::nullopt;
    return mode.value_or(BreathingMode::calm);
}

void MiraPreferences::setRhythm(BreathingMode rhythm) {
    preferences_.setString(Key::rhythm, FellowCore::rawValue(rhythm));
}

SessionLength MiraPreferences::lengthKind() const {
    return preferences_.string(Key::length) == minutesWord ? SessionLength::minutes : SessionLength::rounds;
}

void MiraPreferences::setLengthKind(SessionLength kind) {
    preferences_.setString(Key::length, kind == SessionLength::minutes ? minutesWord : roundsWord);
}

std::optional<int> MiraPreferences::rounds() const {
    return within(preferences_.integer(Key::rounds), 1, BreathingSettings::mostRounds);
}

void MiraPreferences::setRounds(int rounds) {
    preferences_.setInteger(Key::rounds, std::clamp(rounds, 1, BreathingSettings::mostRounds));
}

int MiraPreferences::fourSevenEightRounds() const {
    return within(preferences_.integer(Key::fourSevenEightRounds), 1, mostRoundsOf478())
        .value_or(FellowCore::settings(BreathingMode::fourSevenEight).rounds);
}

void MiraPreferences::setFourSevenEightRounds(int rounds) {
    preferences_.setInteger(Key::fourSevenEightRounds, std::clamp(rounds, 1, mostRoundsOf478()));
}

int MiraPreferences::minutes() const {
    return within(preferences_.integer(Key::minutes), 1, mostMinutes).value_or(defaultMinutes);
}

void MiraPreferences::setMinutes(int minutes) {
    preferences_.setInteger(Key::minutes, std::clamp(minutes, 1, mostMinutes));
}

std::vector<BreathingPattern> MiraPreferences::patterns() const {
    std::vector<BreathingPattern> found;
    for (const std::string& line : preferences_.strings(Key::patterns).value_or(std::vector<std::string>())) {
        auto pattern = BreathingPattern::fromText(line);
        if (pattern && found.size() < mostPatterns && isFree(pattern->name, found)) {
            found.push_back(std::move(*pattern));
        }
    }
    return found;
}

std::optional<BreathingPattern> MiraPreferences::chosenPattern() const {
    const auto name = preferences_.string(Key::chosenPattern);
    if (!name) {
        return std::nullopt;
    }
    const std::vector<BreathingPattern> saved = patterns();
    const auto chosen = std::ranges::find(saved, *name, &BreathingPattern::name);
    return chosen == saved.end() ? std::nullopt : std::optional(*chosen);
}

void MiraPreferences::choosePattern(std::string_view name) {
    const std::vector<BreathingPattern> saved = patterns();
    if (std::ranges::find(saved, name, &BreathingPattern::name) != saved.end()) {
        preferences_.setString(Key::chosenPattern, name);
    } else {
        preferences_.remove(Key::chosenPattern);
    }
}

BreathingSettings MiraPreferences::customLengths() const {
    if (const auto chosen = chosenPattern()) {
        return chosen->lengths;
    }
    const auto text = preferences_.string(Key::custom);
    const auto own = text ? lengthsFromText(*text) : std::nullopt;
    return own.value_or(FellowCore::settings(BreathingMode::custom));
}

void MiraPreferences::setCustomLengths(const BreathingSettings& lengths) {
    const auto chosen = chosenPattern();
    if (!chosen) {
        preferences_.setString(Key::custom, lengthsText(lengths.normalized()));
        return;
    }
    std::vector<BreathingPattern> saved = patterns();
    std::ranges::find(saved, chosen->name, &BreathingPattern::name)->lengths = lengths.normalized();
    store(saved);
}

bool MiraPreferences::savePattern(std::string_view name) {
    std::vector<BreathingPattern> saved = patterns();
    const std::string clean = cleanPatternName(name);
    if (clean.empty() || !isFree(clean, saved) || saved.size() >= mostPatterns) {
        return false;
    }
    saved.push_back({clean, customLengths()});
    store(saved);
    choosePattern(clean);
    return true;
}

bool MiraPreferences::renameChosen(std::string_view name) {
    const auto chosen = chosenPattern();
    const std::string clean = cleanPatternName(name);
    if (!chosen || clean.empty()) {
        return false;
    }
    std::vector<BreathingPattern> others = patterns();
    std::erase(others, *chosen);
    if (!isFree(clean, others)) {
        return false;
    }
    std::vector<BreathingPattern> saved = patterns();
    std::ranges::find(saved, chosen->name, &BreathingPattern::name)->name = clean;
    store(saved);
    choosePattern(clean);
    return true;
}

void MiraPreferences::removeChosen() {
    if (const auto chosen = chosenPattern()) {
        std::vector<BreathingPattern> others = patterns();
        std::erase(others, *chosen);
        store(others);
        preferences_.remove(Key::chosenPattern);
        setCustomLengths(chosen->lengths);
    }
}

bool MiraPreferences::isFree(const std::string& name, const std::vector<BreathingPattern>& among) const {
    return std::ranges::none_of(among,
                                [&name](const BreathingPattern& other) { return isCalled(other, name); });
}

void MiraPreferences::store(const std::vector<BreathingPattern>& patterns) {
    std::vector<std::string> lines;
    for (const BreathingPattern& pattern : patterns) {
        lines.push_back(pattern.text());
    }
    preferences_.setStrings(Key::patterns, lines);
}

SoundChoice MiraPreferences::sound(std::string_view switchKey, std::string_view volumeKey,
                                   double usual) const {
    return {preferences_.boolean(switchKey).value_or(true),
            FellowCore::clampedVolume(preferences_.number(volumeKey).value_or(usual))};
}

SoundChoice MiraPreferences::voice() const {
    return sound(Key::voice, Key::voiceVolume, usualVoiceVolume);
}

void MiraPreferences::setVoice(const SoundChoice& choice) {
    preferences_.setBoolean(Key::voice, choice.on);
    preferences_.setNumber(Key::voiceVolume, FellowCore::clampedVolume(choice.volume));
}

SoundChoice MiraPreferences::breath() const {
    return sound(Key::breath, Key::breathVolume, usualBreathVolume);
}

void MiraPreferences::setBreath(const SoundChoice& choice) {
    preferences_.setBoolean(Key::breath, choice.on);
    preferences_.setNumber(Key::breathVolume, FellowCore::clampedVolume(choice.volume));
}

bool MiraPreferences::reducedMotion() const {
    return preferences_.boolean(Key::reducedMotion).value_or(false);
}

void MiraPreferences::setReducedMotion(bool reduced) {
    preferences_.setBoolean(Key::reducedMotion, reduced);
}

BreathingSettings MiraPreferences::sessionSettings() const {
    const BreathingMode mode = rhythm();
    const auto chosenRounds = mode == BreathingMode::fourSevenEight ? fourSevenEightRounds() : rounds();
    BreathingSettings made = FellowCore::settings(mode, chosenRounds);
    if (mode == BreathingMode::custom) {
        const BreathingSettings own = customLengths();
        made = {own.inhale, own.hold, own.exhale, made.rounds, own.rest, own.sip};
    }
    return lengthKind() == SessionLength::minutes ? made.forMinutes(minutes(), mode) : made;
}

std::string MiraPreferences::rhythmTitle() const {
    const BreathingMode mode = rhythm();
    const auto chosen = mode == BreathingMode::custom ? chosenPattern() : std::nullopt;
    return chosen ? chosen->name : std::string(FellowCore::title(mode));
}

} // namespace DeskSprites
