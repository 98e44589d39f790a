#pragma once

#include "app/desktop/BadgeView.h"
#include "app/desktop/ButtonGrid.h"
#include "app/desktop/LampDot.h"
#include "app/desktop/PanelText.h"
#include "app/desktop/QuickActionsContent.h"
#include "app/desktop/SegmentBar.h"
#include "app/desktop/SizeControl.h"

#include <QPointer>
#include <QVBoxLayout>

namespace DeskSprites {

/// What is inside a `QuickActionsPanel`. Every part is made once and only told what has changed.
class QuickActionsView : public QWidget {
    Q_OBJECT

public:
    explicit QuickActionsView(QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    void setContent(const QuickActionsContent& content);
    bool isEditingSize() const { return size_->isEditing(); }
    /// The control that a keyboard user meets first, or null.
    QWidget* firstControl() const;

private:
    void buildHeader(QVBoxLayout& column);
    void buildFooter(QVBoxLayout& column);
    bool setExtra(QWidget* extra);
    std::vector<QWidget*> controls() const;
    void chainTabOrder() const;

    DialoguePalette palette_;
    PanelText* name_;
    PanelText* role_;
    LampDot* lamp_;
    PanelText* status_;
    BadgeView* badge_;
    SegmentBar* progress_;
    QVBoxLayout* extraPlace_;
    QPointer<QWidget> extra_;
    ButtonGrid* actions_;
    QWidget* rule_;
    SizeControl* size_;
    ButtonGrid* footer_;
};

} // namespace DeskSprites
