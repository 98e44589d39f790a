#include "app/characters/munshi/MunshiPanel.h"

#include "app/characters/munshi/MunshiBook.h"
#include "app/characters/munshi/MunshiEarlierPage.h"
#include "app/characters/munshi/MunshiTodayPage.h"
#include "app/desktop/PanelControls.h"
#include "platform/BubbleWindow.h"

#include <QKeyEvent>
#include <QStackedWidget>

#include <algorithm>

namespace DeskSprites {

namespace {
constexpr int insideWidth = 344;
constexpr int usualHeight = 416;
constexpr int leastHeight = 200;
constexpr int roomAround = 64; // padding of the bubble and clear points on the screen, above and below
} // namespace

MunshiPanel::MunshiPanel(MunshiBook& book, DesktopServices& services)
    : Bubble(BubbleDismissal::explicitOnly), book_(book), inside_(new QWidget),
      pages_(new QStackedWidget(inside_)), today_(new MunshiTodayPage(book, services)),
      earlier_(new MunshiEarlierPage(book, services)) {
    pages_->addWidget(today_);
    pages_->addWidget(earlier_);
    setWindowTitle(tr("Munshi's ledger"));
    setAccessibleName(tr("Munshi's ledger"));
    today_->onClose = [this] { dismiss(); };
    today_->onEarlierDays = [this] { showEarlierDays(); };
    today_->onWriting = [this] {
        if (onWriting) {
            onWriting();
        }
    };
    earlier_->onBack = [this] { showToday(); };
    connect(&book_, &MunshiBook::changed, this, &MunshiPanel::refresh);
    fitInto(usualHeight + roomAround);
    setContent(inside_);
}

void MunshiPanel::fitInto(double visibleHeight) {
    // With large type the controls need more than usual.
    const int needed =
        std::max(leastHeight, today_->minimumSizeHint().height() + 3 * PanelMetrics::controlHeight);
    const int wanted = std::max(usualHeight, needed);
    const int room = static_cast<int>(visibleHeight) - roomAround;
    // Of a fixed size and without a layout, so that no page's wish makes the panel grow.
    inside_->setFixedSize(insideWidth, std::clamp(room, leastHeight, wanted));
    pages_->setGeometry(inside_->rect());
}

void MunshiPanel::focusField() {
    showToday();
    Platform::activateBubbleWindow(*this);
}

void MunshiPanel::tell(const QString& sentence) {
    today_->tell(sentence);
}

bool MunshiPanel::isWriting() const {
    return today_->isWriting();
}

void MunshiPanel::showEarlierDays() {
    pages_->setCurrentWidget(earlier_);
    earlier_->refresh();
    earlier_->field().setFocus(Qt::ShortcutFocusReason);
}

void MunshiPanel::showToday() {
    pages_->setCurrentWidget(today_);
    today_->field().setFocus(Qt::ShortcutFocusReason);
}

void MunshiPanel::refresh() {
    if (!isPresented()) {
        return; // it is brought up to date when it is shown
    }
    today_->refresh();
    if (pages_->currentWidget() == earlier_) {
        earlier_->refresh();
    }
}

void MunshiPanel::showEvent(QShowEvent* event) {
    today_->refresh();
    Bubble::showEvent(event);
}

void MunshiPanel::paletteChanged() {
    today_->setDialoguePalette(dialoguePalette());
    earlier_->setDialoguePalette(dialoguePalette());
}

void MunshiPanel::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Undo) && book_.deleted()) {
        book_.undo();
    } else {
        Bubble::keyPressEvent(event);
    }
}

} // namespace DeskSprites
