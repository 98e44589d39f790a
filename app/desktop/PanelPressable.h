#pragma once

#include "app/desktop/FocusRing.h"

#include <QAbstractButton>

namespace DeskSprites {

/// What everything that is pressed in a bubble has in common: Enter presses it as Space does, once for a held
/// key; the arrow keys are the bubble's, which looks for the neighbour; a focus that the keyboard gave shows.
class PanelPressable : public QAbstractButton {
    Q_OBJECT

public:
    using QAbstractButton::QAbstractButton;

protected:
    bool showsFocusRing() const { return focusRing_.shows(hasFocus()); }
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    FocusRing focusRing_;
};

} // namespace DeskSprites
