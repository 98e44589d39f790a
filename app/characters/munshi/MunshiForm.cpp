#include "app/characters/munshi/MunshiForm.h"

#include "app/characters/munshi/MunshiBook.h"
#include "app/desktop/ShortcutKeeper.h"
#include "app/settings/ShortcutSetting.h"

#include <QAccessible>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace DeskSprites {

namespace {
constexpr int unit = FormMetrics::unit;
} // namespace

MunshiForm::MunshiForm(MunshiBook& book, ShortcutKeeper& shortcut, QWidget* parent)
    : QWidget(parent), book_(book), shortcut_(shortcut) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3 * unit);
    column->addWidget(makeDays());
    column->addWidget(makeShortcut());
    column->addWidget(makeErasing());
    connect(&book_, &MunshiBook::changed, this, &MunshiForm::refresh);
    book_.open();
    refresh();
}

FormSection* MunshiForm::makeDays() {
    auto* section = new FormSection(tr("Days"), this);
    carryOver_ = section->addSwitch(tr("Carry over what is not done"),
                                    tr("At midnight unfinished tasks move on to the new day."));
    connect(carryOver_, &QCheckBox::toggled, this, [this](bool on) { book_.setCarryOver(on); });
    keepChoices_ = new QWidget(section);
    auto* line = new QHBoxLayout(keepChoices_);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(2 * unit);
    auto* group = new QButtonGroup(keepChoices_);
    const std::pair<KeepDays, QString> choices[] = {
        {7, tr("7 days")}, {30, tr("30 days")}, {90, tr("90 days")}, {std::nullopt, tr("For ever")}};
    for (const auto& [days, title] : choices) {
        auto* radio = new FormRadio(title, keepChoices_);
        radio->setAccessibleName(tr("Keep earlier days: %1").arg(title));
        group->addButton(radio);
        line->addWidget(radio);
        keep_.emplace_back(days, radio);
        connect(radio, &QAbstractButton::clicked, this, [this, days = days] { book_.setKeepDays(days); });
    }
    keepRow_ = section->addRow(tr("Keep earlier days"), keepChoices_);
    return section;
}

FormSection* MunshiForm::makeShortcut() {
    auto* section = new FormSection(tr("Quick line"), this);
    setting_ = new ShortcutSetting(section);
    FormRow* row = section->addRow(tr("Write a line from anywhere"), setting_,
                                   shortcut_.isSupported()
                                       ? tr("Opens a field for one line, whatever you are working in.")
                                       : tr("This desktop gives programs no shortcuts. Bind \"deskfellow "
                                            "deskfellow://do/munshi/capture\" "
                                            "to keys in its own settings."));
    setting_->onChosen = [this](const Platform::KeyCombination& combination, const QString& label) {
        return std::optional(shortcut_.change(combination, label));
    };
    setting_->onCleared = [this] {
        shortcut_.clear();
        setting_->showShortcut(shortcut_.label(), shortcut_.isSupported());
    };
    connect(setting_, &ShortcutSetting::complained, row, &FormRow::setError);
    setting_->showShortcut(shortcut_.label(), shortcut_.isSupported());
    return section;
}

FormSection* MunshiForm::makeErasing() {
    auto* section = new FormSection(tr("Start afresh"), this);
    eraseButton_ = new FormButtons(section);
    QPushButton* ask = eraseButton_->add(tr("Erase everything…"));
    connect(ask, &QPushButton::clicked, this, [this] { askToErase(true); });
    section->addRow(tr("Today's lines and all earlier days"), eraseButton_);

    eraseQuestion_ = makeText(tr("Erase every line of today and of all earlier days? This cannot be undone."),
                              TextStyle::error, section);
    eraseAnswers_ = new FormButtons(section);
    keepAll_ = eraseAnswers_->add(tr("Keep everything"));
    erase_ = eraseAnswers_->add(tr("Erase everything"));
    section->layout()->addWidget(eraseQuestion_);
    section->layout()->addWidget(eraseAnswers_);
    connect(keepAll_, &QPushButton::clicked, this, [this] { askToErase(false); });
    connect(erase_, &QPushButton::clicked, this, [this] {
        book_.eraseEverything();
        askToErase(false);
    });
    eraseQuestion_->hide();
    eraseAnswers_->hide();
    return section;
}

void MunshiForm::askToErase(bool ask) {
    eraseQuestion_->setVisible(ask);
    eraseAnswers_->setVisible(ask);
    eraseButton_->setEnabled(!ask);
    if (ask) {
        keepAll_->setFocus(); // so that an Enter too many erases nothing
        QAccessibleEvent alert(eraseQuestion_, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void MunshiForm::refresh() {
    const FellowCore::MunshiLedger& ledger = book_.ledger();
    carryOver_->setQuietly(ledger.carryOver);
    carryOver_->setEnabled(book_.isRead());
    keepChoices_->setEnabled(book_.isRead());
    bool known = false;
    for (const auto& [days, radio] : keep_) {
        radio->setChecked(days == ledger.keepDays);
        known = known || days == ledger.keepDays;
    }
    QString help = tr("Older days are removed at midnight.");
    if (!known) {
        help += tr(" The ledger's file says %1 days.").arg(ledger.keepDays.value_or(0));
    }
    keepRow_->setHelp(help);
}

} // namespace DeskSprites
