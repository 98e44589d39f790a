#pragma once

#include "app/settings/FormKit.h"

#include <array>

namespace DeskSprites {

class ClockCharacter;

/// The clocks' settings: where home is, which cities are on the tower, and whether the bell rings.
class ClockForm : public QWidget {
    Q_OBJECT

public:
    /// The clock outlives the form.
    ClockForm(ClockCharacter& clock, QWidget* parent);

protected:
    void showEvent(QShowEvent* event) override;

private:
    /// What one of the small dials shows.
    struct Side {
        FormRow* row = nullptr;
        QLabel* city = nullptr;
        QPushButton* unpin = nullptr;
    };

    QWidget* makeHome();
    QWidget* makeFaces();
    QWidget* makeBell();
    void refresh();
    void follow(bool system);
    void unpin(std::size_t side);

    ClockCharacter& clock_;
    QLabel* home_ = nullptr;
    FormRow* homeRow_ = nullptr;
    FormSwitch* follow_ = nullptr;
    std::array<Side, 2> sides_;
    FormSwitch* hourly_ = nullptr;
};

} // namespace DeskSprites
