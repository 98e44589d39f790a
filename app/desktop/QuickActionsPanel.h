#pragma once

#include "app/desktop/Bubble.h"
#include "app/desktop/QuickActionsContent.h"

namespace DeskSprites {

class QuickActionsView;

/// The quick actions of one character.
class QuickActionsPanel : public Bubble {
    Q_OBJECT

public:
    QuickActionsPanel();

    /// Shows `content`, changing only what differs: controls that stay keep their hover, focus and place.
    void setContent(const QuickActionsContent& content);
    /// Whether the user holds the size slider now.
    bool isEditingSize() const;
    /// Gives a shown panel the keyboard and puts the focus on the first button, for one opened from the
    /// keyboard.
    void takeKeyboard();

protected:
    void paletteChanged() override;
    bool event(QEvent* event) override;

private:
    void askForKeyboard();
    void focusFirstControl();

    QuickActionsView* view_;
    bool wantsFirstControl_ = false; ///< when the keyboard comes
};

} // namespace DeskSprites
