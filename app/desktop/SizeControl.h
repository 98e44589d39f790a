#pragma once

#include "app/desktop/PanelButton.h"
#include "app/desktop/PanelSlider.h"
#include "app/desktop/QuickActionsContent.h"

namespace DeskSprites {

/// The row that changes a character's size: smaller, a slider, larger.
class SizeControl : public QWidget {
    Q_OBJECT

public:
    explicit SizeControl(QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    void setRow(const SizeRow& row);
    bool isEditing() const { return slider_->isSliderDown(); }
    PanelSlider* slider() const { return slider_; }

private:
    void connectSlider();

    SizeRow row_;
    PanelButton* smaller_;
    PanelSlider* slider_;
    PanelButton* larger_;
};

} // namespace DeskSprites
