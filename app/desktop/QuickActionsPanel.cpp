#include "app/desktop/QuickActionsPanel.h"

#include "app/desktop/ButtonGrid.h"
#include "app/desktop/QuickActionsView.h"
#include "platform/BubbleWindow.h"

namespace DeskSprites {

QuickActionsPanel::QuickActionsPanel() : view_(new QuickActionsView) {
    Bubble::setContent(view_);
    view_->setDialoguePalette(dialoguePalette());
}

void QuickActionsPanel::setContent(const QuickActionsContent& content) {
    setWindowTitle(content.name);
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
    Platform::activateBubbleWindow(*this);
    if (QWidget* first = view_->firstControl()) {
        first->setFocus(Qt::TabFocusReason);
    }
}

void QuickActionsPanel::paletteChanged() {
    view_->setDialoguePalette(dialoguePalette());
}

} // namespace DeskSprites
