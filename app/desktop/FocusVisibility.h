#pragma once

#include <Qt>

namespace DeskSprites {

/// Whether a control that gets the focus shows its ring: for keys, not for clicks. When the window merely
/// became active again, as `before`.
inline bool focusIsVisible(Qt::FocusReason reason, bool before) {
    switch (reason) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        return true;
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
        return before;
    default:
        return false;
    }
}

} // namespace DeskSprites
