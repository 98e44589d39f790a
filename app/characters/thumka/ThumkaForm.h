#pragma once

#include "app/settings/FormKit.h"

namespace DeskSprites {

class ThumkaAbility;

/// Thumka's settings.
class ThumkaForm : public QWidget {
    Q_OBJECT

public:
    /// `ability` outlives the form.
    explicit ThumkaForm(ThumkaAbility& ability, QWidget* parent = nullptr);

private:
    void showStatus();

    ThumkaAbility& ability_;
    QLabel* status_;
};

} // namespace DeskSprites
