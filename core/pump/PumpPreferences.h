#pragma once

#include "core/base/Preferences.h"
#include "core/pump/PumpPlan.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// What the estimate of Claude's usage is measured against. Any budget may be set; `normalized` puts it into
/// its range.
struct PumpPreferences {
    static constexpr std::string_view key = "sprites.pump.preferences"; ///< holds the JSON text
    static constexpr std::int64_t smallestBudget = 1;
    static constexpr std::int64_t largestBudget = 1'000'000'000;

    PumpPlan plan;
    std::int64_t fiveHourBudget; ///< tokens
    bool usesCustomBudget;       ///< whether the budget stays when the plan changes

    /// Without a budget the plan's own; one that differs from it is a custom one.
    explicit PumpPreferences(PumpPlan plan = PumpPlan::pro,
                             std::optional<std::int64_t> fiveHourBudget = std::nullopt);

    /// The stored preferences, normalised; the default ones when nothing is stored that can be understood.
    static PumpPreferences load(const Preferences& from);
    void save(Preferences& into) const;
    std::string encoded() const;
    /// Nothing when the text is not the JSON of preferences. Not normalised.
    static std::optional<PumpPreferences> decoded(std::string_view text);

    /// Takes the plan's own budget along unless a custom one is set.
    void selectPlan(PumpPlan chosen);
    void setCustomBudget(std::int64_t tokens);
    void resetToPlanDefault();
    /// A budget below 1 becomes the plan's own; one above the largest becomes the largest.
    PumpPreferences normalized() const;

    friend bool operator==(const PumpPreferences&, const PumpPreferences&) = default;
};

} // namespace FellowCore
