#pragma once

#include "app/settings/FormKit.h"
#include "core/focus/TimerSettings.h"

namespace DeskSprites {

/// The lengths of focus and rest, for Batti and for every character with a timer.
class TimerForm : public FormSection {
    Q_OBJECT
public:
    using Change = std::function<void(const FellowCore::TimerSettings&)>;
    explicit TimerForm(Change onChange, QWidget* parent = nullptr);
    void showSettings(const FellowCore::TimerSettings& settings);

private:
    void tell();

    Change onChange_;
    NumberField* focus_;
    NumberField* shortBreak_;
    NumberField* longBreak_;
    NumberField* longBreakEvery_;
    FormSwitch* startRests_;
};

} // namespace DeskSprites
