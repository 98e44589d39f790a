#include "app/desktop/ControlBubble.h"

#include "app/desktop/ButtonGrid.h"
#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PanelText.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace DeskSprites {

namespace {
constexpr int widestText = PanelMetrics::contentWidth - 4 * PanelMetrics::unit;
constexpr int closeSide = 22;
constexpr FellowCore::Seconds longestLifetime = 24 * 60 * 60;
} // namespace

ControlBubble::ControlBubble()
    : Bubble(BubbleDismissal::explicitOnly), text_(new PanelText(TextRole::body)),
      close_(new PanelButton(PanelButton::Shape::icon)),
      buttons_(new ButtonGrid(ButtonGrid::Arrangement::pairs)) {
    auto* inside = new QWidget;
    auto* line = new QHBoxLayout;
    line->setSpacing(PanelMetrics::unit);
    line->addWidget(text_, 1);
    line->addWidget(close_, 0, Qt::AlignTop);
    auto* column = new QVBoxLayout(inside);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(PanelMetrics::unit + PanelMetrics::halfUnit);
    column->addLayout(line);
    column->addWidget(buttons_);
    Bubble::setContent(inside);

    // As high as a line of text is with its margins, so that the cross stands beside the first line.
    close_->setFixedSize(closeSide, closeSide);
    text_->setContentsMargins(0, std::max(0, (closeSide - text_->fontMetrics().height()) / 2), 0, 0);
    close_->setTitle(tr("Close"));
    close_->setPixelIcon(PixelIcon::close);
    close_->setEmphasis(Emphasis::quiet);
    connect(close_, &QAbstractButton::clicked, this, [this] { dismiss(); });
    buttons_->onPressed = [this] { dismiss(); };
    lifetime_.setSingleShot(true);
    connect(&lifetime_, &QTimer::timeout, this, [this] { dismiss(); });
    ControlBubble::paletteChanged();
    setNotice({});
}

void ControlBubble::setNotice(const ControlNotice& notice) {
    notice_ = notice;
    text_->setText(notice.text);
    text_->setMinimumWidth(
        std::min(widestText, text_->fontMetrics().boundingRect(notice.text).width() + PanelMetrics::unit));
    buttons_->setActions(notice.actions);
    std::vector<PanelButton*> order = buttons_->buttons();
    order.push_back(close_);
    for (std::size_t index = 1; index < order.size(); ++index) {
        setTabOrder(order[index - 1], order[index]);
    }
    setAccessibleName(notice.text);
    setWindowTitle(notice.text);
    startLifetime();
}

void ControlBubble::startLifetime() {
    lifetime_.stop();
    if (isPresented() && !underMouse() && notice_.lifetime && std::isfinite(*notice_.lifetime)) {
        const double seconds = std::clamp(*notice_.lifetime, 0.0, longestLifetime);
        lifetime_.start(std::chrono::milliseconds(std::llround(seconds * 1000)));
    }
}

void ControlBubble::paletteChanged() {
    text_->setDialoguePalette(dialoguePalette());
    close_->setDialoguePalette(dialoguePalette());
    buttons_->setDialoguePalette(dialoguePalette());
}

void ControlBubble::showEvent(QShowEvent* event) {
    Bubble::showEvent(event);
    startLifetime();
}

void ControlBubble::hideEvent(QHideEvent* event) {
    lifetime_.stop();
    Bubble::hideEvent(event);
}

void ControlBubble::enterEvent(QEnterEvent* event) {
    lifetime_.stop();
    Bubble::enterEvent(event);
}

void ControlBubble::leaveEvent(QEvent* event) {
    startLifetime();
    Bubble::leaveEvent(event);
}

} // namespace DeskSprites
