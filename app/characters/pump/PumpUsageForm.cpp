#include "app/characters/pump/PumpUsageForm.h"

#include "app/characters/pump/PumpPresentation.h"
#include "app/characters/pump/PumpUsageService.h"

#include <QButtonGroup>
#include <QLineEdit>
#include <QLocale>
#include <QVBoxLayout>

#include <optional>

namespace DeskSprites {

using FellowCore::PumpPreferences;

namespace {

constexpr int unit = FormMetrics::unit;

QString fromCore(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString written(std::int64_t number) {
    return QLocale().toString(static_cast<qlonglong>(number));
}

/// A number with or without the separators of the user's locale, in the range of a budget.
std::optional<std::int64_t> budgetFrom(const QString& text) {
    bool isNumber = false;
    qlonglong number = QLocale().toLongLong(text.trimmed(), &isNumber);
    if (!isNumber) {
        number = QLocale::c().toLongLong(text.trimmed(), &isNumber);
    }
    const bool isInRange =
        number >= PumpPreferences::smallestBudget && number <= PumpPreferences::largestBudget;
    return isNumber && isInRange ? std::optional<std::int64_t>(number) : std::nullopt;
}

} // namespace

PumpUsageForm::PumpUsageForm(PumpUsageService& usage, const Platform::Clock& clock, QWidget* parent)
    : QWidget(parent), usage_(usage), clock_(clock) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3 * unit);
    column->addWidget(makeUsage());
    column->addWidget(makePlan());
    connect(&usage_, &PumpUsageService::changed, this, &PumpUsageForm::showAll);
    showAll();
}

QWidget* PumpUsageForm::makeUsage() {
    auto* section = new FormSection(tr("Usage"), this);
    for (std::size_t index = 0; index < agents_.size(); ++index) {
        AgentLine& line = agents_.at(index);
        line.value = makeText({}, TextStyle::body, section);
        line.value->setWordWrap(false);
        line.row = section->addRow(fromCore(title(FellowCore::allPumpProviders.at(index))), line.value);
    }
    auto* buttons = new FormButtons(section);
    section->layout()->addWidget(buttons);
    connect(buttons->add(tr("Refresh usage now")), &QPushButton::clicked, this, [this] { usage_.refresh(); });
    return section;
}

QWidget* PumpUsageForm::makePlan() {
    auto* section = new FormSection(tr("Estimate for Claude"), this);
    section->addRow(tr("Plan"), makePlanChoices(section), tr("Local reference only. Actual limits vary."));
    budgetRow_ = section->addRow(tr("Reference budget"), makeBudget(section), tr("5-hour reference budget"));
    auto* buttons = new FormButtons(section);
    reset_ = buttons->add(tr("Reset to plan default"));
    connect(reset_, &QPushButton::clicked, this, &PumpUsageForm::resetBudget);
    section->layout()->addWidget(buttons);
    for (const QString& note : {tr("Claude counts input + output, excluding both caches."),
                                tr("Week starts Monday. Blocks and resets are estimates.")}) {
        section->layout()->addWidget(makeText(note, TextStyle::help, section));
    }
    return section;
}

QWidget* PumpUsageForm::makePlanChoices(QWidget* parent) {
    auto* choices = new QWidget(parent);
    auto* column = new QVBoxLayout(choices);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(unit);
    auto* group = new QButtonGroup(choices);
    for (const FellowCore::PumpPlan plan : FellowCore::allPumpPlans) {
        const QString name = fromCore(title(plan));
        auto* radio =
            new FormRadio(tr("%1 · %2 tokens").arg(name, written(defaultFiveHourBudget(plan))), choices);
        radio->setAccessibleName(tr("Plan: %1").arg(name));
        group->addButton(radio);
        column->addWidget(radio);
        plans_.emplace_back(plan, radio);
        connect(radio, &QAbstractButton::clicked, this, [this, plan] {
            PumpPreferences preferences = usage_.preferences();
            preferences.selectPlan(plan);
            usage_.apply(preferences);
        });
    }
    return choices;
}

QWidget* PumpUsageForm::makeBudget(QWidget* parent) {
    budget_ = new QLineEdit(parent);
    budget_->setMaxLength(24);
    budget_->setAlignment(Qt::AlignRight);
    budget_->setMinimumWidth(
        budget_->fontMetrics().horizontalAdvance(written(PumpPreferences::largestBudget)) + 4 * unit);
    connect(budget_, &QLineEdit::editingFinished, this, &PumpUsageForm::takeBudget);
    return budget_;
}

void PumpUsageForm::takeBudget() {
    if (!budget_->isModified()) {
        return; // left as it was shown
    }
    const auto tokens = budgetFrom(budget_->text());
    budgetRow_->setError(tokens ? QString() : tr("Enter 1 to 1,000,000,000 tokens"));
    if (!tokens) {
        return;
    }
    budget_->setModified(false);
    PumpPreferences preferences = usage_.preferences();
    preferences.setCustomBudget(*tokens);
    usage_.apply(preferences);
}

void PumpUsageForm::resetBudget() {
    budget_->setModified(false);
    budgetRow_->setError({});
    PumpPreferences preferences = usage_.preferences();
    preferences.resetToPlanDefault();
    usage_.apply(preferences);
}

void PumpUsageForm::showAll() {
    showUsage();
    showPlan();
}

void PumpUsageForm::showUsage() {
    if (!usage_.snapshot()) {
        for (const AgentLine& line : agents_) {
            line.value->setText(tr("Reading…"));
        }
        return;
    }
    const auto rows = PumpPresentation::rows(*usage_.snapshot(), clock_.wall());
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const PumpPresentation::Row& row = rows.at(index);
        const AgentLine& line = agents_.at(index);
        line.value->setText(row.value);
        line.value->setAccessibleName(tr("%1: %2").arg(row.name, row.value));
        QStringList help{row.usage};
        if (!row.detail.isEmpty()) {
            help.push_back(row.detail);
        }
        help.push_back(tr("%1 · %2").arg(row.window, row.updated));
        line.row->setHelp(help.join(QLatin1Char('\n')));
    }
}

void PumpUsageForm::showPlan() {
    const PumpPreferences& preferences = usage_.preferences();
    for (const auto& [plan, radio] : plans_) {
        radio->setChecked(plan == preferences.plan);
    }
    reset_->setEnabled(preferences.usesCustomBudget);
    if (!budget_->isModified()) {
        budget_->setText(written(preferences.fiveHourBudget));
    }
}

} // namespace DeskSprites
