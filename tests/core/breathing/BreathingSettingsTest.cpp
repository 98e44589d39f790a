#include "core/breathing/BreathingSettings.h"

#include <gtest/gtest.h>

#include <limits>

namespace FellowCore {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

TEST(BreathingMode, HasTheRhythmsPeopleKnow) {
    const struct {
        const char* rawValue;
        const char* title;
        BreathingSettings usual;
        int cap;
    } cases[] = {
        {"calm", "Calm", {5, 0, 5, 6, 0, 0}, 75},         {"reset", "Reset", {3, 0, 6, 6, 0, 1}, 75},
        {"box", "Box · 4–4–4–4", {4, 4, 4, 4, 4, 0}, 75}, {"fourSevenEight", "4–7–8", {4, 7, 8, 4, 0, 0}, 8},
        {"custom", "Custom", {4, 2, 6, 5, 0, 0}, 75},
    };
    ASSERT_EQ(std::size(cases), allBreathingModes.size());
    for (std::size_t index = 0; index < allBreathingModes.size(); ++index) {
        const BreathingMode mode = allBreathingModes.at(index);
        const auto& each = cases[index];
        EXPECT_EQ(rawValue(mode), each.rawValue);
        EXPECT_EQ(breathingModeFromRawValue(each.rawValue), mode);
        EXPECT_EQ(title(mode), each.title);
        EXPECT_EQ(settings(mode), each.usual) << each.rawValue;
        EXPECT_EQ(settings(mode, 0).rounds, 1) << each.rawValue;
        EXPECT_EQ(settings(mode, -7).rounds, 1) << each.rawValue;
        EXPECT_EQ(settings(mode, 100).rounds, each.cap) << each.rawValue;
        EXPECT_EQ(settings(mode, 9).mode(), mode) << "the rounds make no other rhythm of " << each.rawValue;
    }
    EXPECT_EQ(breathingModeFromRawValue("Calm"), std::nullopt);
    EXPECT_EQ(BreathingSettings(4, 4, 4, 4, 4, 0.5).mode(), BreathingMode::custom) << "box has no sip";
}

TEST(BreathingSettings, DrawEveryLengthIntoItsLimits) {
    using Phase = BreathingPhase;
    const struct {
        const char* fault;
        Phase phase;
        double given;
        double expected;
    } cases[] = {
        {"too short to breathe in", Phase::inhale, 1.2, 2},
        {"a third is not a half", Phase::inhale, 3.3, 3.5},
        {"halfway rounds away from zero", Phase::inhale, 2.25, 2.5},
        {"just under halfway rounds down", Phase::inhale, 2.2499, 2},
        {"too long to breathe in", Phase::inhale, 8.2, 8},
        {"no number is not the shortest", Phase::inhale, notANumber, 4},
        {"nor the longest", Phase::inhale, infinity, 4},
        {"too long to breathe out", Phase::exhale, 20, 12},
        {"breathing out has a default of its own", Phase::exhale, -infinity, 6},
        {"holding may be nothing", Phase::hold, 0.2, 0},
        {"but not less", Phase::hold, -0.5, 0},
        {"resting has an end", Phase::rest, 8.5, 8},
        {"resting is not endless", Phase::rest, notANumber, 0},
        {"a sip is small", Phase::sip, 5, 2},
        {"a quarter is a half", Phase::sip, 0.25, 0.5},
    };
    for (const auto& each : cases) {
        const auto given = [&](Phase phase, double usual) {
            return each.phase == phase ? each.given : usual;
        };
        const BreathingSettings made(given(Phase::inhale, 4), given(Phase::hold, 1), given(Phase::exhale, 6),
                                     3, given(Phase::rest, 1), given(Phase::sip, 1));
        EXPECT_EQ(made.duration(each.phase), each.expected) << each.fault;
        EXPECT_EQ(made.normalized(), made) << each.fault << ": normalising twice changes nothing";
    }
    EXPECT_EQ(BreathingSettings(4, 0, 4, -1).rounds, 1);
    EXPECT_EQ(BreathingSettings(4, 0, 4, 76).rounds, 75);
    BreathingSettings changed = settings(BreathingMode::fourSevenEight);
    changed.inhale = 100;
    changed.rounds = 70;
    EXPECT_EQ(changed.normalized(), BreathingSettings(8, 7, 8, 70));
}

TEST(BreathingSettings, FillMinutesWithWholeRounds) {
    using Mode = BreathingMode;
    const struct {
        const char* fault;
        BreathingSettings rhythm;
        int minutes;
        std::optional<Mode> chosen;
        int rounds;
    } cases[] = {
        {"even minutes need no extra round", settings(Mode::calm), 5, {}, 30},
        {"a begun round is a round", settings(Mode::box), 1, {}, 4},
        {"sixteen are capped", settings(Mode::fourSevenEight), 5, {}, 8},
        {"two minutes are not", settings(Mode::fourSevenEight), 2, {}, 7},
        {"the chosen rhythm's cap holds, not that of the lengths", settings(Mode::fourSevenEight), 5,
         Mode::custom, 16},
        {"both ways", settings(Mode::calm), 5, Mode::fourSevenEight, 8},
        {"no time is one round", settings(Mode::calm), 0, {}, 1},
        {"nothing overflows", settings(Mode::reset), std::numeric_limits<int>::max(), {}, 75},
    };
    for (const auto& each : cases) {
        BreathingSettings expected = each.rhythm;
        expected.rounds = each.rounds;
        EXPECT_EQ(each.rhythm.forMinutes(each.minutes, each.chosen), expected) << each.fault;
    }
}

} // namespace
} // namespace FellowCore
