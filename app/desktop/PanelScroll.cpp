#include "app/desktop/PanelScroll.h"

#include "app/desktop/PixelFrame.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

#include <algorithm>

namespace DeskSprites {

namespace {
constexpr int pixel = PixelFrame::pixel;
constexpr int barWidth = 4 * pixel;
constexpr int leastThumb = 12 * pixel;
} // namespace

PanelScrollBar::PanelScrollBar(QWidget* parent) : QScrollBar(Qt::Vertical, parent) {
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setAccessibleName(tr("Scroll"));
}

void PanelScrollBar::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    QWidget::update();
}

QSize PanelScrollBar::sizeHint() const {
    return {barWidth, 5 * barWidth};
}

void PanelScrollBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    fillStepped(painter, rect(), 1, mixed(palette_.paper, palette_.ink, 0.08));
    const double range = std::max(1, maximum() - minimum() + pageStep());
    const int length =
        std::clamp(static_cast<int>(height() * pageStep() / range), std::min(leastThumb, height()), height());
    const double share = double(sliderPosition() - minimum()) / std::max(1, maximum() - minimum());
    const int top = static_cast<int>(share * (height() - length)) / pixel * pixel;
    const double strength = isSliderDown() ? 0.7 : underMouse() ? 0.55 : 0.4;
    fillStepped(painter, QRect(0, top, width(), length), 1, mixed(palette_.paper, palette_.ink, strength));
}

PanelScrollBar* settleInPanel(QAbstractScrollArea& view) {
    auto* bar = new PanelScrollBar(&view);
    view.setVerticalScrollBar(bar);
    view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view.setFrameShape(QFrame::NoFrame);
    view.viewport()->setAutoFillBackground(false);
    QPalette own = view.palette();
    own.setColor(QPalette::Base, Qt::transparent);
    own.setColor(QPalette::Window, Qt::transparent);
    view.setPalette(own);
    return bar;
}

PanelScroll::PanelScroll(QWidget* parent) : QScrollArea(parent), bar_(settleInPanel(*this)) {
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
}

void PanelScroll::setDialoguePalette(const DialoguePalette& palette) {
    bar_->setDialoguePalette(palette);
}

void PanelScroll::setRows(QWidget* rows) {
    setWidget(rows);
    rows->setAutoFillBackground(false);
}

} // namespace DeskSprites
