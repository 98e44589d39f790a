#pragma once

#include <QFocusEvent>

namespace DeskSprites {

/// Whether a focused control shows its ring: when a key brought the focus, not when a click did. The answer
/// outlives a while in which the window or the focus was elsewhere by no choice between controls.
class FocusRing {
public:
    void focusIn(const QFocusEvent& event) {
        switch (event.reason()) {
        case Qt::TabFocusReason:
        case Qt::BacktabFocusReason:
        case Qt::ShortcutFocusReason:
            fromKeyboard_ = true;
            break;
        case Qt::ActiveWindowFocusReason:
        case Qt::PopupFocusReason:
            break;
        default:
            fromKeyboard_ = false;
        }
    }
    void focusOut(const QFocusEvent& event) {
        const bool returns =
            event.reason() == Qt::ActiveWindowFocusReason || event.reason() == Qt::PopupFocusReason;
        fromKeyboard_ = fromKeyboard_ && returns;
    }
    bool shows(bool hasFocus) const { return hasFocus && fromKeyboard_; }

private:
    bool fromKeyboard_ = false;
};

} // namespace DeskSprites
