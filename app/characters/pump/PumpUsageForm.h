#pragma once

#include "app/settings/FormKit.h"
#include "core/pump/PumpPlan.h"
#include "platform/Clock.h"

#include <array>
#include <utility>
#include <vector>

class QLineEdit;

namespace DeskSprites {

class PumpUsageService;

/// What each agent has left, and the plan and budget that Claude's estimate is measured against.
class PumpUsageForm : public QWidget {
    Q_OBJECT

public:
    /// Both outlive the form.
    PumpUsageForm(PumpUsageService& usage, const Platform::Clock& clock, QWidget* parent);

private:
    QWidget* makeUsage();
    QWidget* makePlan();
    QWidget* makePlanChoices(QWidget* parent);
    QWidget* makeBudget(QWidget* parent);
    void takeBudget();
    void resetBudget();
    void showAll();
    void showUsage();
    void showPlan();

    PumpUsageService& usage_;
    const Platform::Clock& clock_;
    struct AgentLine {
        QLabel* value = nullptr;
        FormRow* row = nullptr;
    };
    std::array<AgentLine, 2> agents_;
    std::vector<std::pair<FellowCore::PumpPlan, FormRadio*>> plans_;
    QLineEdit* budget_ = nullptr;
    FormRow* budgetRow_ = nullptr;
    QPushButton* reset_ = nullptr;
};

} // namespace DeskSprites
