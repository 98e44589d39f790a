#include "app/characters/munshi/MunshiCapture.h"

#include "app/characters/munshi/MunshiBook.h"
#include "app/desktop/PanelControls.h"
#include "platform/BubbleWindow.h"
#include "platform/ScreenSpace.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QStackedWidget>

#include <algorithm>
#include <utility>

namespace DeskSprites {

namespace {
constexpr int fieldWidth = 360;
constexpr int mostWishes = 5;
constexpr int wishMilliseconds = 80;
constexpr double heightShare = 0.6; // of the screen, from below: a little above the middle
} // namespace

MunshiCapture::MunshiCapture(MunshiBook& book, DesktopServices& services)
    : Bubble(BubbleDismissal::explicitOnly), book_(book), services_(services), pages_(new QStackedWidget),
      field_(new PanelField), said_(new PanelText(TextRole::body)) {
    setPointer(BubblePointer::none);
    pages_->addWidget(field_);
    pages_->addWidget(said_);
    said_->setWordWrap(false);
    pages_->setFixedSize(fieldWidth, field_->sizeHint().height());
    field_->setPlaceholderText(tr("Write it down: a task, or - and a note"));
    field_->setAccessibleName(tr("Line for Munshi"));
    field_->setAccessibleDescription(tr("Enter writes it down, Escape closes."));
    setWindowTitle(tr("Write a line for Munshi"));
    setContent(pages_);
    connect(field_, &QLineEdit::returnPressed, this, &MunshiCapture::writeDown);
    connect(&book_, &MunshiBook::changed, this, &MunshiCapture::showOutcome);
    wish_.setSingleShot(true);
    wish_.setInterval(wishMilliseconds);
    connect(&wish_, &QTimer::timeout, this, &MunshiCapture::askForKeyboard);
    closing_.setSingleShot(true);
    connect(&closing_, &QTimer::timeout, this, [this] { dismiss(); });
}

QString MunshiCapture::confirmation() const {
    return confirming_ ? said_->text() : QString();
}

void MunshiCapture::toggle() {
    if (isWriting()) {
        dismiss();
    } else {
        open();
    }
}

void MunshiCapture::open() {
    book_.open();
    closing_.stop();
    confirming_ = false;
    hadKeyboard_ = false;
    before_ = services_.system.frontmost().current();
    pages_->setCurrentWidget(field_);
    setTranslucent(services_.system.hasCompositor());
    const bool reduced = services_.system.motion().isReduced();
    present(placement(), reduced ? BubbleMotion::reduced : BubbleMotion::full);
    field_->setFocus(Qt::ShortcutFocusReason);
    field_->selectAll();
    wishesLeft_ = mostWishes;
    askForKeyboard();
}

/// A window manager that is still busy with another window may drop the first wish.
void MunshiCapture::askForKeyboard() {
    if (isWriting() && !isActiveWindow() && wishesLeft_-- > 0) {
        Platform::activateBubbleWindow(*this);
        wish_.start();
    }
}

FellowCore::BubblePlacement MunshiCapture::placement() const {
    const FellowCore::Point pointer = Platform::fromQt(QPointF(QCursor::pos()));
    const auto screens = services_.system.screens().all();
    const auto found = std::ranges::find_if(
        screens, [&](const Platform::ScreenInfo& screen) { return screen.frame.contains(pointer); });
    const FellowCore::Size size = preferredSize();
    FellowCore::BubblePlacement place;
    if (!screens.empty()) {
        const FellowCore::Rect room =
            found == screens.end() ? screens.front().visibleFrame : found->visibleFrame;
        place.frame = {room.midX() - size.width / 2, room.y + room.height * heightShare - size.height / 2,
                       size.width, size.height};
        place.canPresent = true;
    }
    return place;
}

void MunshiCapture::writeDown() {
    const QString line = field_->text().trimmed();
    if (!book_.add(line)) {
        dismiss();
        return;
    }
    field_->clear();
    line_ = line;
    confirming_ = true;
    showOutcome();
    pages_->setCurrentWidget(said_);
    giveKeyboardBack();
    closing_.start(confirmationMilliseconds);
    if (onWritten) {
        onWritten();
    }
}

void MunshiCapture::showOutcome() {
    if (!confirming_) {
        return;
    }
    const QString sentence = book_.trouble().isEmpty() ? tr("Written down: %1").arg(line_)
                                                       : tr("Kept, but not saved yet: %1").arg(line_);
    said_->setText(said_->fontMetrics().elidedText(sentence, Qt::ElideRight, fieldWidth));
    said_->setAccessibleName(sentence);
}

void MunshiCapture::giveKeyboardBack() {
    if (const auto before = std::exchange(before_, std::nullopt)) {
        services_.system.frontmost().activate(*before);
    }
}

void MunshiCapture::paletteChanged() {
    field_->setDialoguePalette(dialoguePalette());
    said_->setDialoguePalette(dialoguePalette());
}

void MunshiCapture::changeEvent(QEvent* event) {
    Bubble::changeEvent(event);
    if (event->type() != QEvent::ActivationChange || !isPresented()) {
        return;
    }
    if (isActiveWindow()) {
        hadKeyboard_ = true;
    } else if (hadKeyboard_ && !confirming_ && QApplication::activePopupWidget() == nullptr) {
        // The user has gone elsewhere: the keyboard is where it is wanted.
        before_.reset();
        QMetaObject::invokeMethod(
            this, [this] { dismiss(); }, Qt::QueuedConnection);
    }
}

void MunshiCapture::hideEvent(QHideEvent* event) {
    if (!event->spontaneous()) {
        wish_.stop();
        closing_.stop();
        confirming_ = false;
        giveKeyboardBack();
    }
    Bubble::hideEvent(event);
}

} // namespace DeskSprites
