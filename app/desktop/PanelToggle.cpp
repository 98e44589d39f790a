#include "app/desktop/PanelToggle.h"

#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PixelFrame.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace DeskSprites {

namespace {
constexpr int pixel = PixelFrame::pixel;
constexpr int knobSide = 8 * pixel;
constexpr QSize switchSize(18 * pixel, 10 * pixel);
} // namespace

PanelToggle::PanelToggle(const QString& title, QWidget* parent) : QAbstractButton(parent), title_(title) {
    setCheckable(true);
    setText(QString(title).replace(QLatin1Char('&'), QLatin1String("&&")));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PanelToggle::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    QWidget::update();
}

QSize PanelToggle::sizeHint() const {
    const QFontMetrics metrics(font());
    return {metrics.horizontalAdvance(title_) + 2 * PanelMetrics::unit + switchSize.width() + pixel,
            std::max(metrics.height(), switchSize.height()) + PanelMetrics::unit};
}

QRect PanelToggle::switchRect() const {
    const int left = isRightToLeft() ? pixel : width() - switchSize.width() - pixel;
    return {QPoint(left, (height() - switchSize.height()) / 2), switchSize};
}

void PanelToggle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect track = switchRect();
    const bool over = underMouse() && isEnabled();
    const QColor on = over ? palette_.accentHover() : palette_.accent;
    const QColor off = over ? palette_.pressed : palette_.line();
    if (focusRing_.shows(hasFocus())) {
        fillStepped(painter, track.adjusted(-pixel, -pixel, pixel, pixel), 3, palette_.ink);
    }
    fillStepped(painter, track, 2, mixed(palette_.paper, palette_.ink, 0.62));
    fillStepped(painter, track.adjusted(pixel, pixel, -pixel, -pixel), 1, isChecked() ? on : off);
    const bool right = isChecked() != isRightToLeft();
    const QRect knob(right ? track.right() - pixel - knobSide + 1 : track.left() + pixel, track.top() + pixel,
                     knobSide, knobSide);
    fillStepped(painter, knob, 1, palette_.contour());
    fillStepped(painter, knob.adjusted(pixel, pixel, -pixel, -pixel), 0,
                palette_.theme() == DesktopTheme::light ? palette_.paper : palette_.ink);
    painter.setPen(isEnabled() ? palette_.ink : mixed(palette_.ink, palette_.paper, 0.5));
    const QRect words = isRightToLeft()
                            ? rect().adjusted(track.right() + PanelMetrics::unit, 0, 0, 0)
                            : rect().adjusted(0, 0, track.left() - width() - PanelMetrics::unit, 0);
    painter.drawText(words,
                     static_cast<int>(Qt::AlignVCenter | Qt::TextSingleLine) |
                         static_cast<int>(isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft),
                     title_);
}

void PanelToggle::focusInEvent(QFocusEvent* event) {
    focusRing_.focusIn(*event);
    QAbstractButton::focusInEvent(event);
}

void PanelToggle::focusOutEvent(QFocusEvent* event) {
    focusRing_.focusOut(*event);
    QAbstractButton::focusOutEvent(event);
}

void PanelToggle::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        if (!event->isAutoRepeat()) {
            click();
        }
    } else if (key >= Qt::Key_Left && key <= Qt::Key_Down) {
        event->ignore();
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

} // namespace DeskSprites
