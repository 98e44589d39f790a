#pragma once

#include "app/desktop/DialoguePalette.h"
#include "app/desktop/FocusRing.h"

#include <QAbstractSlider>

namespace DeskSprites {

/// A slider in the house look. `sliderPressed` and `sliderReleased` also enclose steps made with held keys,
/// so that a listener sees begin, values and end; a value that comes without them (wheel, assistive tools) is
/// a whole edit.
class PanelSlider : public QAbstractSlider {
    Q_OBJECT

public:
    explicit PanelSlider(QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    /// Moves the knob without telling the listeners; ignored while the user holds it.
    void showValue(int value);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    int travel() const;
    int knobLeft() const;
    int valueAt(double x) const;

    DialoguePalette palette_;
    double grip_ = 0; ///< where on the knob the pointer took hold
    FocusRing focusRing_;
};

} // namespace DeskSprites
