#include "app/desktop/PanelSlider.h"

#include "app/desktop/PixelFrame.h"

#include <QKeyEvent>
#include <QPainter>
#include <QSignalBlocker>

#include <algorithm>
#include <cmath>

namespace DeskSprites {

namespace {
constexpr int pixel = PixelFrame::pixel;
constexpr int knobWidth = 6 * pixel;
constexpr int knobHeight = 10 * pixel;
constexpr int grooveHeight = 3 * pixel;
constexpr int rim = 2 * pixel; // room for the focus ring
} // namespace

PanelSlider::PanelSlider(QWidget* parent) : QAbstractSlider(parent) {
    setOrientation(Qt::Horizontal);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PanelSlider::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    QWidget::update();
}

void PanelSlider::showValue(int value) {
    if (!isSliderDown()) {
        const QSignalBlocker quiet(this);
        setValue(value);
    }
}

QSize PanelSlider::sizeHint() const {
    return {96, knobHeight + 2 * rim};
}

int PanelSlider::travel() const {
    return std::max(1, width() - 2 * rim - knobWidth);
}

int PanelSlider::knobLeft() const {
    const double range = std::max(1, maximum() - minimum());
    const double share = (sliderPosition() - minimum()) / range;
    const double shown = isRightToLeft() ? 1 - share : share;
    return rim + static_cast<int>(std::lround(shown * travel() / pixel)) * pixel;
}

int PanelSlider::valueAt(double x) const {
    const double share = std::clamp((x - rim - knobWidth / 2.0) / travel(), 0.0, 1.0);
    const double shown = isRightToLeft() ? 1 - share : share;
    return minimum() + static_cast<int>(std::lround(shown * (maximum() - minimum())));
}

void PanelSlider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect knob(knobLeft(), (height() - knobHeight) / 2, knobWidth, knobHeight);
    const QRect groove(rim, (height() - grooveHeight) / 2, width() - 2 * rim, grooveHeight);
    fillStepped(painter, groove, 1, palette_.line());
    QRect filled = groove;
    if (isRightToLeft()) {
        filled.setLeft(knob.center().x());
    } else {
        filled.setRight(knob.center().x());
    }
    fillStepped(painter, filled, 1, palette_.accent);
    if (focusRing_.shows(hasFocus())) {
        fillStepped(painter, knob.adjusted(-2 * pixel, -2 * pixel, 2 * pixel, 2 * pixel), 3, palette_.ink);
        fillStepped(painter, knob.adjusted(-pixel, -pixel, pixel, pixel), 2, palette_.paper);
    }
    const QColor face = isSliderDown() ? palette_.accentPressed()
                        : underMouse() ? palette_.accentHover()
                                       : palette_.accent;
    fillStepped(painter, knob, 1, palette_.contour());
    const QRect inside = knob.adjusted(pixel, pixel, -pixel, -pixel);
    fillStepped(painter, inside, 0, face);
    painter.fillRect(inside.left(), inside.top(), inside.width(), pixel, mixed(face, Qt::white, 0.35));
}

bool PanelSlider::event(QEvent* event) {
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) {
        QWidget::update();
    }
    return QAbstractSlider::event(event);
}

void PanelSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const double x = event->position().x();
    const double middle = knobLeft() + knobWidth / 2.0;
    const bool onKnob = std::abs(x - middle) <= knobWidth / 2.0;
    grip_ = onKnob ? x - middle : 0;
    setSliderDown(true);
    if (!onKnob) {
        setSliderPosition(valueAt(x));
    }
    QWidget::update();
}

void PanelSlider::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown() && event->buttons().testFlag(Qt::LeftButton)) {
        setSliderPosition(valueAt(event->position().x() - grip_));
    }
}

void PanelSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        setSliderDown(false);
        QWidget::update();
    }
}

void PanelSlider::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool steps = key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_PageUp ||
                       key == Qt::Key_PageDown || key == Qt::Key_Home || key == Qt::Key_End;
    if (!steps) {
        event->ignore(); // up and down go to the neighbours
        return;
    }
    setSliderDown(true);
    QAbstractSlider::keyPressEvent(event);
}

void PanelSlider::keyReleaseEvent(QKeyEvent* event) {
    if (!event->isAutoRepeat()) {
        setSliderDown(false);
    }
    QAbstractSlider::keyReleaseEvent(event);
}

void PanelSlider::focusInEvent(QFocusEvent* event) {
    focusRing_.focusIn(*event);
    QAbstractSlider::focusInEvent(event);
    QWidget::update();
}

void PanelSlider::focusOutEvent(QFocusEvent* event) {
    focusRing_.focusOut(*event);
    setSliderDown(false);
    QAbstractSlider::focusOutEvent(event);
    QWidget::update();
}

void PanelSlider::hideEvent(QHideEvent* event) {
    setSliderDown(false); // an edit that was under way ends with the panel
    QAbstractSlider::hideEvent(event);
}

} // namespace DeskSprites
