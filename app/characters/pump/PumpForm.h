#pragma once

#include <QWidget>

namespace DeskSprites {

class PumpAbility;

/// Pump's settings: what is left, what the estimate is measured against, and what Pump is connected to.
/// While it is on screen, usage and sessions are read even if Pump is not on the desktop.
class PumpForm : public QWidget {
    Q_OBJECT

public:
    /// The ability outlives the form.
    PumpForm(PumpAbility& ability, QWidget* parent);
    ~PumpForm() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void inspect(bool inspected);

    PumpAbility& ability_;
};

} // namespace DeskSprites
