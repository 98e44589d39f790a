#include "app/desktop/Bubble.h"

#include "app/desktop/ButtonGrid.h"
#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PixelFrame.h"
#include "platform/BubbleWindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QPainter>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace DeskSprites {

namespace {

constexpr int padding = 2 * PanelMetrics::unit;
constexpr double slide = 6; // points, of the gap of 8 to the character

/// Brings nested layouts up to date from the inside out, because an outer one keeps the size its inner one
/// had.
void activateLayouts(QWidget& widget) {
    for (QObject* child : widget.children()) {
        if (child->isWidgetType() && !static_cast<QWidget*>(child)->isWindow()) {
            activateLayouts(*static_cast<QWidget*>(child));
        }
    }
    if (widget.layout() != nullptr) {
        widget.layout()->activate();
    }
}

/// Content that wraps is as narrow as it can be and as high as that makes it; other content has the size it
/// hints.
QSize contentSize(QWidget& content) {
    activateLayouts(content);
    const QSize hint = content.sizeHint();
    const QLayout* layout = content.layout();
    if (layout == nullptr || !layout->hasHeightForWidth()) {
        return hint.expandedTo(content.minimumSize());
    }
    const int width = std::max(layout->minimumSize().width(), content.minimumWidth());
    return {width, std::max(layout->totalHeightForWidth(width), content.minimumHeight())};
}

QSize evenUp(const QSize& size) {
    return {size.width() + size.width() % 2, size.height() + size.height() % 2};
}

bool isPassing(const QWindow& window) {
    return window.type() == Qt::Popup || window.type() == Qt::ToolTip;
}

} // namespace

Bubble::Bubble(BubbleDismissal dismissal)
    : dismissal_(dismissal), palette_(DialoguePalette::forAccent({}, applicationTheme())) {
    setFocusPolicy(Qt::ClickFocus);
    // The bubble itself has the focus until a key or a click gives it to a control: no button is ready to be
    // pressed by an Enter that was meant for something else.
    setFocus();
    opening_.setDuration(openingMilliseconds);
    opening_.setEasingCurve(QEasingCurve::OutQuart);
    opening_.setStartValue(0.0);
    opening_.setEndValue(1.0);
    connect(&opening_, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& share) { showOpening(share.toDouble()); });
}

Bubble::~Bubble() {
    onDismissed = {};
}

void Bubble::setAccent(const FellowCore::CharacterManifest::Accent& accent) {
    setDialoguePalette(DialoguePalette::forAccent(accent, applicationTheme()));
    accent_ = accent;
}

void Bubble::setDialoguePalette(const DialoguePalette& palette) {
    accent_.reset();
    if (palette == palette_) {
        return;
    }
    palette_ = palette;
    paletteChanged();
    update();
}

void Bubble::setContent(QWidget* content) {
    delete content_;
    content_ = content;
    if (content_) {
        content_->setParent(this);
        content_->show();
    }
    paletteChanged();
    layOutContent();
    checkPreferredSize();
}

FellowCore::Size Bubble::preferredSize() const {
    const QSize inside = content_ ? contentSize(*content_) : QSize(0, 0);
    const QSize whole = PixelFrame::frameSize(evenUp(inside + QSize(2 * padding, 2 * padding)));
    return {static_cast<double>(whole.width()), static_cast<double>(whole.height())};
}

bool Bubble::present(const FellowCore::BubblePlacement& placement, BubbleMotion motion) {
    if (!placement.canPresent) {
        return false;
    }
    if (isVisible()) {
        place(placement);
        return true;
    }
    if (!prepared_) {
        Platform::prepareBubbleWindow(*this, Platform::BubbleKeyboard::onClick);
        prepared_ = true;
    }
    placement_ = placement;
    knownSize_ = preferredSize();
    hadKeyboard_ = false;
    setFocus();
    const bool moves = motion == BubbleMotion::full;
    showOpening(moves ? 0 : 1);
    layOutContent();
    applyShape();
    qApp->installEventFilter(this);
    show();
    if (moves) {
        opening_.start();
    }
    return true;
}

void Bubble::place(const FellowCore::BubblePlacement& placement) {
    placement_ = placement;
    if (!isVisible()) {
        return;
    }
    if (opening_.state() != QAbstractAnimation::Running) {
        Platform::placeWindow(*this, placement_.frame);
    }
    layOutContent();
    applyShape();
    update();
}

void Bubble::showOpening(double share) {
    setWindowOpacity(share);
    const double back = FellowCore::roundedHalfAway((1 - share) * slide);
    Platform::placeWindow(*this, placement_.frame.translated(placement_.pointerOnLeft ? -back : back, 0));
}

void Bubble::setTranslucent(bool translucent) {
    translucent_ = translucent;
    applyShape();
}

void Bubble::applyShape() {
    if (translucent_) {
        clearMask();
    } else {
        setMask(frame().silhouette());
    }
}

void Bubble::dismiss() {
    hide();
}

void Bubble::pressedOutside(const QPoint& globalPosition) {
    if (isVisible() && dismissal_ == BubbleDismissal::clickOutside &&
        !(isOwnPlace && isOwnPlace(globalPosition))) {
        dismiss();
    }
}

PixelFrame Bubble::frame() const {
    if (pointer_ == BubblePointer::none) {
        return PixelFrame(size());
    }
    const PixelFrame::Side side = placement_.pointerOnLeft ? PixelFrame::Side::left : PixelFrame::Side::right;
    return PixelFrame(size(), PixelFrame::Pointer{side, placement_.pointerY});
}

void Bubble::layOutContent() {
    if (content_) {
        content_->setGeometry(frame().body().adjusted(padding, padding, -padding, -padding));
    }
}

void Bubble::checkPreferredSize() {
    if (!isVisible()) {
        return;
    }
    const FellowCore::Size wanted = preferredSize();
    if (wanted == knownSize_) {
        return;
    }
    knownSize_ = wanted;
    if (onPreferredSizeChanged) {
        onPreferredSizeChanged();
    }
}

void Bubble::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    frame().paint(painter, palette_);
}

void Bubble::resizeEvent(QResizeEvent* event) {
    layOutContent();
    applyShape();
    QWidget::resizeEvent(event);
}

void Bubble::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        dismiss();
    } else if (!moveFocusByArrow(*this, event->key())) {
        QWidget::keyPressEvent(event);
    }
}

void Bubble::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (event->spontaneous()) {
        return; // the desktop put the window away for a while; the bubble is still open
    }
    opening_.stop();
    qApp->removeEventFilter(this);
    if (onDismissed) {
        const auto dismissed = onDismissed; // a copy, because the call may set another
        dismissed();
    }
}

bool Bubble::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::LayoutRequest:
        layOutContent();
        checkPreferredSize();
        break;
    case QEvent::WindowActivate:
        hadKeyboard_ = true;
        break;
    case QEvent::WindowDeactivate:
        if (hadKeyboard_ && QApplication::activePopupWidget() == nullptr) {
            pressedOutside(QCursor::pos());
        }
        break;
    case QEvent::ApplicationPaletteChange:
        if (accent_) {
            setAccent(FellowCore::CharacterManifest::Accent(*accent_));
        }
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

bool Bubble::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && watched->isWindowType() && watched != windowHandle() &&
        !isPassing(*static_cast<QWindow*>(watched))) {
        pressedOutside(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace DeskSprites
