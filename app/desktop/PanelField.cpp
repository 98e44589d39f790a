#include "app/desktop/PanelField.h"

#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PixelFrame.h"

#include <QPainter>

#include <algorithm>

namespace DeskSprites {

namespace {
constexpr int pixel = PixelFrame::pixel;
constexpr int usualWidth = 160;
constexpr int leastWidth = 64;
} // namespace

PanelField::PanelField(Frame frame, QWidget* parent) : QLineEdit(parent), frame_(frame) {
    setFrame(false);
    const int side = frame == Frame::boxed ? PanelMetrics::unit : 0;
    setTextMargins(side, 0, side, 0);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PanelField::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    QPalette own = QLineEdit::palette();
    own.setColor(QPalette::Base, Qt::transparent);
    own.setColor(QPalette::Text, palette.ink);
    own.setColor(QPalette::PlaceholderText, palette.quietInk());
    own.setColor(QPalette::Highlight, palette.accent);
    own.setColor(QPalette::HighlightedText, palette.paper);
    setPalette(own);
}

QSize PanelField::sizeHint() const {
    const int line = fontMetrics().height();
    const int height =
        frame_ == Frame::boxed ? std::max(PanelMetrics::controlHeight, line + 12) : line + 2 * pixel;
    return {usualWidth, height + height % 2};
}

QSize PanelField::minimumSizeHint() const {
    return {leastWidth, sizeHint().height()};
}

void PanelField::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        const QColor edge =
            hasFocus() ? palette_.accent : mixed(palette_.paper, palette_.ink, isEnabled() ? 0.5 : 0.2);
        if (frame_ == Frame::boxed) {
            // Sunken: the ground is a little darker than paper on either kind of desktop.
            const QRect inner = rect().adjusted(pixel, pixel, -pixel, -pixel);
            fillStepped(painter, rect(), 2, edge);
            fillStepped(painter, inner, 1, palette_.paper);
            painter.fillRect(inner.left() + pixel, inner.top(), inner.width() - 2 * pixel, pixel,
                             mixed(palette_.paper, palette_.contour(), 0.12));
        } else {
            painter.fillRect(rect(), palette_.paper); // it stands over the text that it is to replace
            painter.fillRect(0, height() - pixel, width(), pixel, edge);
        }
    }
    QLineEdit::paintEvent(event);
}

} // namespace DeskSprites
