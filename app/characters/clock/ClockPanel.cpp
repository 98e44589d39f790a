#include "app/characters/clock/ClockPanel.h"

#include "app/characters/clock/ClockCharacter.h"
#include "app/characters/clock/ClockEdits.h"
#include "app/characters/clock/ClockList.h"
#include "app/characters/clock/ClockSearch.h"
#include "app/characters/clock/ClockTravelBar.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PanelHeaderButton.h"
#include "app/desktop/PanelMessage.h"
#include "platform/BubbleWindow.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace DeskSprites {

namespace {

constexpr int usualWidth = 368;
constexpr int mostWidth = 520;
constexpr int usualHeight = 440;
constexpr int linesAcross = 20; // how many lines of text high the panel is wide, and how many it is high
constexpr int linesDown = 24;
constexpr int leastHeight = 240;
constexpr int roomAround = 64; // padding of the bubble and clear points on the screen, above and below

} // namespace

ClockPanel::ClockPanel(ClockCharacter& clock)
    : Bubble(BubbleDismissal::explicitOnly), clock_(clock), inside_(new QWidget),
      column_(new QWidget(inside_)) {
    setWindowTitle(tr("Ghanta Ghar's clocks"));
    setAccessibleName(tr("Ghanta Ghar's clocks"));
    QWidget* const header = makeHeader();
    makeField();
    pages_ = new QStackedWidget(column_);
    message_ = new PanelMessage(column_);
    message_->layout()->setContentsMargins(PanelMetrics::unit, 0, 0, 0);
    edits_ = std::make_unique<ClockEdits>(clock_, *message_);
    list_ = new ClockList(clock_, *edits_, pages_);
    search_ = new ClockSearch(clock_, *field_, pages_);
    travel_ = new ClockTravelBar(clock_, column_);
    pages_->addWidget(list_);
    pages_->addWidget(search_);
    auto* layout = new QVBoxLayout(column_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(PanelMetrics::unit);
    layout->addWidget(header);
    layout->addWidget(field_);
    layout->addWidget(pages_, 1);
    layout->addWidget(message_);
    layout->addWidget(travel_);
    joinParts();
    orderTabs();
    list_->refresh();
    travel_->refresh();
    fitInto(usualHeight + roomAround);
    setContent(inside_);
}

ClockPanel::~ClockPanel() = default;

QWidget* ClockPanel::makeHeader() {
    auto* header = new QWidget(column_);
    auto* line = new QHBoxLayout(header);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(PanelMetrics::halfUnit);
    title_ = new PanelText(TextRole::title, header);
    title_->setText(tr("Clocks"));
    title_->setIndent(PanelMetrics::unit);
    settings_ = panelHeaderButton(tr("Settings"), PixelIcon::settings, header);
    close_ = panelHeaderButton(tr("Close"), PixelIcon::close, header);
    line->addWidget(title_, 1);
    line->addWidget(settings_);
    line->addWidget(close_);
    connect(settings_, &QAbstractButton::clicked, this, [this] {
        if (onSettings) {
            onSettings();
        }
    });
    connect(close_, &QAbstractButton::clicked, this, [this] { dismiss(); });
    return header;
}

void ClockPanel::makeField() {
    field_ = new PanelField(PanelField::Frame::boxed, column_);
    field_->setPlaceholderText(tr("Add a city"));
    field_->setAccessibleName(tr("Add a city"));
}

void ClockPanel::joinParts() {
    edits_->onTurnTo = [this](const std::string& identifier) { list_->turnTo(identifier); };
    search_->onSearching = [this] { showPage(); };
    search_->onTaken = [this](const std::string& identifier) { take(identifier); };
    connect(&clock_, &ClockCharacter::changed, this, &ClockPanel::refresh);
}

void ClockPanel::orderTabs() {
    QWidget* const order[] = {field_,          message_->button(), &travel_->slider(),
                              &travel_->now(), settings_,          close_};
    for (std::size_t index = 1; index < std::size(order); ++index) {
        setTabOrder(order[index - 1], order[index]);
    }
    list_->setTabAfter(field_);
}

void ClockPanel::fitInto(double visibleHeight) {
    const int line = fontMetrics().height(); // larger type needs a larger panel
    const int width = std::clamp(linesAcross * line, usualWidth, mostWidth);
    const int wanted = std::max(usualHeight, linesDown * line);
    const int room = static_cast<int>(visibleHeight) - roomAround;
    // Of a fixed size and without a layout, so that no part's wish makes the panel grow.
    inside_->setFixedSize(width, std::clamp(room, leastHeight, wanted));
    column_->setGeometry(inside_->rect());
}

void ClockPanel::takeKeyboard() {
    field_->setFocus(Qt::ShortcutFocusReason);
    Platform::activateBubbleWindow(*this);
}

void ClockPanel::refresh() {
    if (isPresented()) { // otherwise it is brought up to date when it is shown
        list_->refresh();
        travel_->refresh();
        search_->refresh();
    }
}

void ClockPanel::showPage() {
    pages_->setCurrentWidget(search_->isSearching() ? static_cast<QWidget*>(search_) : list_);
    if (search_->isSearching()) {
        edits_->forget();
    }
}

/// A city of the search: a new one comes on the list, and one that is there gets the keyboard.
void ClockPanel::take(const std::string& identifier) {
    const auto before = clock_.state();
    edits_->add(identifier);
    if (clock_.state() == before) {
        list_->turnTo(identifier);
    } else {
        list_->revealClock(identifier);
    }
}

void ClockPanel::showEvent(QShowEvent* event) {
    clock_.prepareSearch();
    list_->refresh();
    travel_->refresh();
    Bubble::showEvent(event);
}

void ClockPanel::hideEvent(QHideEvent* event) {
    Bubble::hideEvent(event);
    if (!event->spontaneous()) {
        search_->clear();
        edits_->forget();
    }
}

void ClockPanel::paletteChanged() {
    const DialoguePalette& palette = dialoguePalette();
    title_->setDialoguePalette(palette);
    settings_->setDialoguePalette(palette);
    close_->setDialoguePalette(palette);
    field_->setDialoguePalette(palette);
    message_->setDialoguePalette(palette);
    list_->setDialoguePalette(palette);
    search_->setDialoguePalette(palette);
    travel_->setDialoguePalette(palette);
}

void ClockPanel::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Undo) && edits_->canUndo()) {
        edits_->undo();
    } else if (!beginSearch(*event)) {
        Bubble::keyPressEvent(event);
    }
}

/// Letters that no other control wants are the beginning of a city.
bool ClockPanel::beginSearch(const QKeyEvent& key) {
    const Qt::KeyboardModifiers modifiers = key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    const QString letters = key.text();
    if (modifiers != Qt::NoModifier || letters.isEmpty() || !letters.at(0).isLetter()) {
        return false;
    }
    field_->setFocus(Qt::ShortcutFocusReason);
    field_->insert(letters);
    return true;
}

} // namespace DeskSprites
