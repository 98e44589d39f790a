#include "app/settings/TimerForm.h"

namespace DeskSprites {

TimerForm::TimerForm(Change onChange, QWidget* parent)
    : FormSection(tr("Timer"), parent), onChange_(std::move(onChange)) {
    const auto minutes = [](int count) { return count == 1 ? tr(" minute") : tr(" minutes"); };
    const auto phases = [](int count) { return count == 1 ? tr(" focus phase") : tr(" focus phases"); };
    focus_ = addNumber(tr("Focus"), 1, 120, minutes);
    shortBreak_ = addNumber(tr("Short rest"), 1, 60, minutes);
    longBreak_ = addNumber(tr("Long rest"), 1, 120, minutes);
    longBreakEvery_ = addNumber(tr("Long rest after"), 1, 12, phases);
    startRests_ =
        addSwitch(tr("Start rests automatically"),
                  tr("A rest begins by itself when a focus phase ends. Focus always waits for you."));
    for (const NumberField* field : {focus_, shortBreak_, longBreak_, longBreakEvery_}) {
        connect(field, &QSpinBox::valueChanged, this, &TimerForm::tell);
    }
    connect(startRests_, &QCheckBox::toggled, this, &TimerForm::tell);
}

void TimerForm::showSettings(const FellowCore::TimerSettings& settings) {
    focus_->setQuietly(settings.focusMinutes);
    shortBreak_->setQuietly(settings.shortBreakMinutes);
    longBreak_->setQuietly(settings.longBreakMinutes);
    longBreakEvery_->setQuietly(settings.longBreakEvery);
    startRests_->setQuietly(settings.startRestsAutomatically);
}

void TimerForm::tell() {
    if (!onChange_) {
        return;
    }
    onChange_(FellowCore::TimerSettings(focus_->value(), shortBreak_->value(), longBreak_->value(),
                                        longBreakEvery_->value(), startRests_->isChecked()));
}

} // namespace DeskSprites
