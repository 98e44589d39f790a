#include "app/characters/mira/BreathingPattern.h"

#include "core/base/Text.h"

#include <QByteArrayList>

#include <array>
#include <charconv>

namespace DeskSprites {

using FellowCore::BreathingSettings;

namespace {

/// Takes a number and the space behind it off the front of a text.
std::optional<double> takeNumber(std::string_view& text) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (!text.empty()) {
        if (text.front() != ' ') {
            return std::nullopt;
        }
        text.remove_prefix(1);
    }
    return number;
}

/// Takes the five lengths off the front of a text.
std::optional<BreathingSettings> takeLengths(std::string_view& text) {
    std::array<double, 5> lengths{};
    for (double& length : lengths) {
        const auto number = takeNumber(text);
        if (!number) {
            return std::nullopt;
        }
        length = *number;
    }
    return BreathingSettings(lengths[0], lengths[1], lengths[2], 1, lengths[3], lengths[4]);
}

} // namespace

std::string lengthsText(const BreathingSettings& lengths) {
    QByteArrayList numbers;
    for (const double length : {lengths.inhale, lengths.hold, lengths.exhale, lengths.rest, lengths.sip}) {
        numbers << QByteArray::number(length);
    }
    return numbers.join(' ').toStdString();
}

std::optional<BreathingSettings> lengthsFromText(std::string_view text) {
    const auto lengths = takeLengths(text);
    return text.empty() ? lengths : std::nullopt;
}

std::string cleanPatternName(std::string_view name) {
    const std::string line = FellowCore::trimmed(FellowCore::singleLine(FellowCore::wellFormed(name)));
    return FellowCore::trimmed(FellowCore::characterPrefix(line, BreathingPattern::longestName));
}

std::string BreathingPattern::text() const {
    return lengthsText(lengths) + " " + name;
}

std::optional<BreathingPattern> BreathingPattern::fromText(std::string_view text) {
    const auto lengths = takeLengths(text);
    const std::string name = cleanPatternName(text);
    return lengths && !name.empty() ? std::optional(BreathingPattern{name, *lengths}) : std::nullopt;
}

} // namespace DeskSprites
