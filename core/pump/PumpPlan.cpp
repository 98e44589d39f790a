#include "core/pump/PumpPlan.h"

namespace FellowCore {

namespace {

struct Row {
    std::string_view rawValue;
    std::string_view title;
    std::int64_t budget;
};

const Row& rowOf(PumpPlan plan) {
    static constexpr std::array<Row, allPumpPlans.size()> rows{
        {{"pro", "Pro", 44'000}, {"max5x", "Max 5x", 220'000}, {"max20x", "Max 20x", 880'000}}};
    return rows.at(static_cast<std::size_t>(plan));
}

} // namespace

std::string_view rawValue(PumpPlan plan) {
    return rowOf(plan).rawValue;
}

std::optional<PumpPlan> pumpPlanFromRawValue(std::string_view text) {
    for (const PumpPlan plan : allPumpPlans) {
        if (rawValue(plan) == text) {
            return plan;
        }
    }
    return std::nullopt;
}

std::string_view title(PumpPlan plan) {
    return rowOf(plan).title;
}

std::int64_t defaultFiveHourBudget(PumpPlan plan) {
    return rowOf(plan).budget;
}

} // namespace FellowCore
