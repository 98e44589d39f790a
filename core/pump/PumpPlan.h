#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace FellowCore {

/// What the user pays Claude for.
enum class PumpPlan { pro, max5x, max20x };

inline constexpr std::array allPumpPlans{PumpPlan::pro, PumpPlan::max5x, PumpPlan::max20x};

/// The name in files: "pro", "max5x" or "max20x".
std::string_view rawValue(PumpPlan plan);
std::optional<PumpPlan> pumpPlanFromRawValue(std::string_view text);
/// The name shown to the user: "Pro", "Max 5x" or "Max 20x".
std::string_view title(PumpPlan plan);
/// Tokens in five hours. A figure of this program's own for reference; actual limits vary.
std::int64_t defaultFiveHourBudget(PumpPlan plan);

} // namespace FellowCore
