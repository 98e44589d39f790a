#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QWidget>

namespace DeskSprites {

class ClockCharacter;
class PanelButton;
class PanelSlider;
class PanelText;

/// The slider that walks every clock through home's day, the time it stands at, and the way back to now. It
/// stands on a ground of its own while the clocks do not show now.
class ClockTravelBar : public QWidget {
    Q_OBJECT

public:
    /// `clock` outlives the bar.
    explicit ClockTravelBar(ClockCharacter& clock, QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    /// Takes the shown minute.
    void refresh();
    PanelSlider& slider() const { return *slider_; }
    PanelButton& now() const { return *now_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void roundStep(int action);

    ClockCharacter& clock_;
    DialoguePalette palette_;
    PanelText* text_;
    PanelButton* now_;
    PanelSlider* slider_;
    bool isPreview_ = false;
};

} // namespace DeskSprites
