#include "app/desktop/QuickActionsPanel.h"

#include "app/desktop/ButtonGrid.h"
#include "app/desktop/QuickActionsView.h"
#include "platform/BubbleWindow.h"

#include <QApplication>
#include <QTimer>

#include <chrono>

namespace DeskSprites {

namespace {
constexpr std::chrono::milliseconds repeatAfter(150);
}

QuickActionsPanel::QuickActionsPanel() : view_(new QuickActionsView) {
    Bubble::setContent(view_);
    view_->setDialoguePalette(dialoguePalette());
}

void QuickActionsPanel::setContent(const QuickActionsContent& content) {
    setWindowTitle(tr("%1, quick actions").arg(content.name));
    setAccessibleName(content.name);
    view_->setContent(content);
}

bool QuickActionsPanel::isEditingSize() const {
    return view_->isEditingSize();
}

void QuickActionsPanel::takeKeyboard() {
    if (!isPresented()) {
        return;
    }
    if (isActiveWindow()) {
        focusFirstControl();
        return;
    }
    wantsFirstControl_ = true;
    askForKeyboard();
    // A window manager that has not yet taken the window in does not hear the wish: repeat it once.
    QTimer::singleShot(repeatAfter, this, [this] {
        if (wantsFirstControl_ && isPresented()) {
            askForKeyboard();
        }
    });
}

void QuickActionsPanel::askForKeyboard() {
    if (QGuiApplication::focusWindow() == windowHandle()) {
        // Hidden and shown again within moments, the window never lost the focus as Qt sees it, and the
        // widgets would not hear that they have it.
        QApplication::setActiveWindow(this);
    } else {
        Platform::activateBubbleWindow(*this);
    }
}

void QuickActionsPanel::focusFirstControl() {
    wantsFirstControl_ = false;
    if (QWidget* first = view_->firstControl()) {
        first->setFocus(Qt::TabFocusReason);
    }
}

bool QuickActionsPanel::event(QEvent* event) {
    const bool handled = Bubble::event(event);
    // Only now can a control have the focus, and know that the keyboard brought it.
    if (event->type() == QEvent::WindowActivate && wantsFirstControl_) {
        focusFirstControl();
    }
    return handled;
}

void QuickActionsPanel::paletteChanged() {
    view_->setDialoguePalette(dialoguePalette());
}

} // namespace DeskSprites
