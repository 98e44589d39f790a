#pragma once

#include "app/settings/FormKit.h"

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace DeskSprites {

class MunshiBook;
class ShortcutKeeper;
class ShortcutSetting;

/// The ledger's settings: what is carried over, how long days are kept, the shortcut of the field, and a way
/// to erase it all.
class MunshiForm : public QWidget {
    Q_OBJECT

public:
    /// Both outlive the form.
    MunshiForm(MunshiBook& book, ShortcutKeeper& shortcut, QWidget* parent = nullptr);

private:
    using KeepDays = std::optional<std::int64_t>;

    FormSection* makeDays();
    FormSection* makeShortcut();
    FormSection* makeErasing();
    void refresh();
    void askToErase(bool ask);

    MunshiBook& book_;
    ShortcutKeeper& shortcut_;
    FormSwitch* carryOver_ = nullptr;
    QWidget* keepChoices_ = nullptr;
    FormRow* keepRow_ = nullptr;
    std::vector<std::pair<KeepDays, FormRadio*>> keep_;
    ShortcutSetting* setting_ = nullptr;
    FormButtons* eraseButton_ = nullptr;
    QLabel* eraseQuestion_ = nullptr;
    FormButtons* eraseAnswers_ = nullptr;
    QPushButton* keepAll_ = nullptr;
    QPushButton* erase_ = nullptr;
};

} // namespace DeskSprites
