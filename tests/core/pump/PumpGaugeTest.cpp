#include "core/pump/PumpGauge.h"

#include "core/base/Json.h"
#include "core/base/MemoryPreferences.h"
#include "core/pump/PumpDigitMotion.h"
#include "core/pump/PumpPreferences.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace FellowCore {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
const double noNumber = std::nan("");
const Instant now = Instant::fromUnix(1'772'600'000);

TEST(PumpGauge, ShowsWhatIsLeft) {
    struct Case {
        const char* fault;
        std::optional<double> left;
        PumpGaugeLight light;
        std::optional<double> tank;
        std::optional<int> digits;
        const char* glyphs;
    };
    const Case cases[] = {
        {"five is amber", 5.0, PumpGaugeLight::red, 0.05, 5, "  5"},
        {"the rounded value decides", 5.01, PumpGaugeLight::amber, 0.0501, 5, "  5"},
        {"nearly twenty is normal", 19.99, PumpGaugeLight::amber, 0.1999, 19, " 19"},
        {"twenty is amber", 20.0, PumpGaugeLight::normal, 0.2, 20, " 20"},
        {"digits are rounded up", 99.9, PumpGaugeLight::normal, 0.999, 99, " 99"},
        {"full does not fit", 100.0, PumpGaugeLight::normal, 1.0, 100, "100"},
        {"over budget is odd, not empty", -12.0, PumpGaugeLight::red, 0.0, 0, "  0"},
        {"more than all", 120.0, PumpGaugeLight::normal, 1.0, 100, "100"},
        {"nothing known is empty", std::nullopt, PumpGaugeLight::unknown, std::nullopt, std::nullopt, "---"},
        {"no number is a number", noNumber, PumpGaugeLight::unknown, std::nullopt, std::nullopt, "---"},
        {"without end is full", infinity, PumpGaugeLight::unknown, std::nullopt, std::nullopt, "---"},
    };
    for (const Case& one : cases) {
        const PumpGauge gauge(one.left);
        EXPECT_EQ(gauge.light, one.light) << one.fault;
        EXPECT_EQ(gauge.tankFraction.has_value(), one.tank.has_value()) << one.fault;
        EXPECT_DOUBLE_EQ(gauge.tankFraction.value_or(-1), one.tank.value_or(-1)) << one.fault;
        EXPECT_EQ(gauge.digits, one.digits) << one.fault;
        EXPECT_EQ(PumpDigitMotion::glyphs(one.left), one.glyphs) << one.fault;
    }
}

TEST(PumpUsageSnapshot, ShowsTheAgentWhoseLimitIsNearest) {
    const auto snapshot = [](double claude, double codex) {
        return PumpUsageSnapshot{
            .at = now,
            .codex = PumpCodexUsage{.usedPercent = codex, .windowMinutes = 300, .observedAt = now},
            .claude = {.usedPercent = claude, .hasLogs = true},
            .codexSource = PumpSourceState::ready,
            .claudeSource = PumpSourceState::ready};
    };
    using Change = void (*)(PumpUsageSnapshot&);
    struct Case {
        const char* fault;
        double claude;
        double codex;
        Change change;
        std::optional<PumpProvider> shown;
        std::optional<double> left;
    };
    const Change none = [](PumpUsageSnapshot&) {};
    const Case cases[] = {
        {"a tie goes to Claude", 40, 40, none, PumpProvider::codex, 60},
        {"the one with more left is shown", 41, 40, none, PumpProvider::claude, 59},
        {"less than nothing is left", 250, 40, none, PumpProvider::claude, 0},
        {"partial logs are trusted", 90, 40, [](auto& one) { one.claudeSource = PumpSourceState::partial; },
         PumpProvider::codex, 60},
        {"no logs count as nothing used", 0, 40, [](auto& one) { one.claude.hasLogs = false; },
         PumpProvider::codex, 60},
        {"a sample outlives its window", 10, 40, [](auto& one) { one.codex->resetsAt = now; },
         PumpProvider::claude, 90},
        {"a sample dies before its window", 10, 40, [](auto& one) { one.codex->resetsAt = now + 1; },
         PumpProvider::codex, 60},
        {"no number is compared", 10, noNumber, none, PumpProvider::claude, 90},
        {"an unread log is trusted", 10, 40, [](auto& one) { one.codexSource = PumpSourceState::loading; },
         PumpProvider::claude, 90},
        {"something is shown without either", 10, 40,
         [](auto& one) {
             one.codex.reset();
             one.claudeSource = PumpSourceState::unreadable;
         },
         std::nullopt, std::nullopt},
    };
    for (const Case& one : cases) {
        PumpUsageSnapshot changed = snapshot(one.claude, one.codex);
        one.change(changed);
        EXPECT_EQ(changed.mostUsedProvider(), one.shown) << one.fault;
        EXPECT_EQ(changed.displayLeftPercent(), one.left) << one.fault;
        EXPECT_EQ(PumpGauge(changed), PumpGauge(one.left)) << one.fault;
    }
}

TEST(PumpUsageSnapshot, SaysHowOldItIs) {
    struct Case {
        Seconds age;
        const char* text;
    };
    const Case cases[] = {
        {-100, "Updated just now"},     {59.9, "Updated just now"},     {60, "Updated 1 min ago"},
        {3599, "Updated 59 min ago"},   {3600, "Updated 1 h ago"},      {180000, "Updated 50 h ago"},
        {noNumber, "Updated just now"}, {infinity, "Updated just now"},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(PumpUsageSnapshot{.at = now}.updatedDescription(now + one.age), one.text);
    }
}

TEST(PumpDigitMotion, RollsInSevenRows) {
    EXPECT_EQ(PumpDigitMotion::rows(0, false), 0);
    EXPECT_EQ(PumpDigitMotion::rows(0.11, false), 3) << "half of seven is rounded up";
    EXPECT_EQ(PumpDigitMotion::rows(0.2199, false), 6);
    EXPECT_EQ(PumpDigitMotion::rows(0.22, false), 7);
    for (const Seconds odd : {1e300, -0.001, infinity, noNumber}) {
        EXPECT_EQ(PumpDigitMotion::rows(odd, false), 7) << odd;
    }
    EXPECT_EQ(PumpDigitMotion::rows(0.01, true), 7) << "it moves though the user wants no motion";
}

TEST(PumpClaudeUsage, TakesAnExactReadingOrNone) {
    struct Case {
        const char* fault;
        std::string json;
        std::optional<double> used;
        double week;
    };
    const std::string later = std::to_string(static_cast<std::int64_t>(now.toUnix()) + 1);
    const std::string passed = std::to_string(static_cast<std::int64_t>(now.toUnix()));
    const auto reading = [&](const std::string& used, const std::string& reset,
                             const std::string& more = "") {
        return R"({"five_hour":{"used_percentage":)" + used + R"(,"resets_at":)" + reset + "}" + more + "}";
    };
    const auto week = [&](const std::string& used) {
        return reading("30", later, R"(,"seven_day":{"used_percentage":)" + used + "}");
    };
    const Case cases[] = {
        {"the week is lost", week("12.5"), 30, 12.5},
        {"without a week it is an estimate", reading("30", later), 30, 0},
        {"a week below nothing", week("-1"), 30, 0},
        {"a week above all", week("100.1"), 30, 0},
        {"a week in words", week("\"12\""), 30, 0},
        {"a week that is no object", reading("30", later, R"(,"seven_day":7)"), 30, 0},
        {"all is used", reading("100", later), 100, 0},
        {"a window that has just passed still holds", reading("30", passed), std::nullopt, 0},
        {"more than all", reading("100.5", later), std::nullopt, 0},
        {"less than nothing", reading("-0.5", later), std::nullopt, 0},
        {"a reset in words", reading("30", "\"" + later + "\""), std::nullopt, 0},
        {"null", R"({"five_hour":null})", std::nullopt, 0},
        {"no object", "[]", std::nullopt, 0},
        {"no JSON", "{", std::nullopt, 0},
    };
    for (const Case& one : cases) {
        const auto usage = PumpClaudeUsage::exact(one.json, now);
        ASSERT_EQ(usage.has_value(), one.used.has_value()) << one.fault;
        if (usage) {
            EXPECT_EQ(usage->usedPercent, one.used) << one.fault;
            EXPECT_EQ(usage->weekUsedPercent, one.week) << one.fault;
            EXPECT_EQ(usage->resetsAt, now + 1) << one.fault;
            EXPECT_EQ(usage->blockStart, now + 1 - 5 * 3600) << one.fault;
        }
    }
}

TEST(PumpPreferences, ABudgetFollowsThePlanUnlessItIsTheUsers) {
    PumpPreferences preferences;
    EXPECT_EQ(preferences, PumpPreferences(PumpPlan::pro, 44'000))
        << "the plan's own budget is no custom one";
    preferences.selectPlan(PumpPlan::max5x);
    EXPECT_EQ(preferences.fiveHourBudget, 220'000);
    preferences.setCustomBudget(5'000);
    preferences.selectPlan(PumpPlan::max20x);
    EXPECT_EQ(preferences.fiveHourBudget, 5'000);
    preferences.resetToPlanDefault();
    EXPECT_EQ(preferences, PumpPreferences(PumpPlan::max20x));
    preferences.setCustomBudget(INT64_MAX);
    EXPECT_EQ(preferences.normalized(), PumpPreferences(PumpPlan::max20x, PumpPreferences::largestBudget));
    preferences.setCustomBudget(0);
    EXPECT_EQ(preferences.normalized(), PumpPreferences(PumpPlan::max20x));
}

TEST(PumpPreferences, AreStoredAndReadWithinBounds) {
    MemoryPreferences store;
    EXPECT_EQ(PumpPreferences::load(store), PumpPreferences());
    const PumpPreferences chosen(PumpPlan::max5x, 123'456);
    chosen.save(store);
    EXPECT_EQ(PumpPreferences::load(store), chosen);
    struct Case {
        const char* text;
        PumpPreferences read;
    };
    const Case cases[] = {
        {R"({"plan":"max5x","fiveHourBudget":-1,"usesCustomBudget":true})", PumpPreferences(PumpPlan::max5x)},
        {R"({"plan":"max5x","fiveHourBudget":2000000000,"usesCustomBudget":true})",
         PumpPreferences(PumpPlan::max5x, 1'000'000'000)},
        {R"({"plan":"free","fiveHourBudget":5,"usesCustomBudget":true})", PumpPreferences()},
        {R"({"plan":"max5x","fiveHourBudget":1e30,"usesCustomBudget":true})", PumpPreferences()},
        {R"({"plan":"max5x"})", PumpPreferences()},
        {"[", PumpPreferences()},
    };
    for (const Case& one : cases) {
        store.setString(PumpPreferences::key, one.text);
        EXPECT_EQ(PumpPreferences::load(store), one.read) << one.text;
    }
}

} // namespace
} // namespace FellowCore
