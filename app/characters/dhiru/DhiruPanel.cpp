#include "app/characters/dhiru/DhiruPanel.h"

#include "app/characters/dhiru/DevWatchController.h"
#include "app/characters/dhiru/DhiruAwakeLine.h"
#include "app/characters/dhiru/DhiruList.h"
#include "app/characters/dhiru/DhiruQuestion.h"
#include "app/characters/dhiru/DhiruQuestionSheet.h"
#include "app/characters/dhiru/DhiruWords.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PanelHeaderButton.h"
#include "app/desktop/PanelTabs.h"
#include "platform/BubbleWindow.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace DeskSprites {

namespace {

constexpr int usualWidth = 376;
constexpr int linesWide = 22; // of the font's height, for large type
constexpr int mostWidth = 560;
constexpr int usualHeight = 456;
constexpr int leastHeight = 280;
constexpr int roomAround = 64; // padding of the bubble and clear points on the screen, above and below

} // namespace

DhiruPanel::DhiruPanel(DevWatchController& watch, DhiruAwake& awake, DesktopServices& services)
    : Bubble(BubbleDismissal::explicitOnly), watch_(watch), services_(services), inside_(new QWidget),
      page_(new QWidget(inside_)) {
    filter_ = new PanelField(PanelField::Frame::boxed, page_);
    filter_->setPlaceholderText(tr("Filter by name, project, port, PID or image"));
    filter_->setAccessibleName(tr("Filter"));
    question_ = new DhiruQuestionSheet(page_);
    awakeLine_ = new DhiruAwakeLine(awake, page_);
    makeTabs();
    makeLists();
    auto* column = new QVBoxLayout(page_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(PanelMetrics::unit);
    column->addWidget(makeHeader());
    column->addWidget(filter_);
    column->addWidget(tabs_);
    column->addWidget(stack_, 1);
    column->addWidget(question_);
    column->addWidget(awakeLine_);
    connectAll();
    chainTabs();
    setWindowTitle(tr("Dhiru's watch"));
    setAccessibleName(tr("Dhiru's watch"));
    fitInto(usualHeight + roomAround);
    setContent(inside_);
}

QWidget* DhiruPanel::makeHeader() {
    auto* header = new QWidget(page_);
    auto* line = new QHBoxLayout;
    line->setSpacing(PanelMetrics::halfUnit);
    title_ = new PanelText(TextRole::title, header);
    title_->setText(tr("Dev watch"));
    headline_ = new PanelText(TextRole::quiet, header);
    refresh_ = panelHeaderButton(tr("Look again now"), PixelIcon::reset, header);
    close_ = panelHeaderButton(tr("Close"), PixelIcon::close, header);
    line->addWidget(title_, 1);
    line->addWidget(refresh_);
    line->addWidget(close_);
    auto* column = new QVBoxLayout(header);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(line);
    column->addWidget(headline_);
    return header;
}

void DhiruPanel::makeTabs() {
    tabs_ = new PanelTabs(page_);
    tabs_->setAccessibleName(tr("Lists"));
    for (const DhiruSection section : allDhiruSections) {
        tabs_->add(DhiruSections::title(section));
    }
}

void DhiruPanel::makeLists() {
    stack_ = new QStackedWidget(page_);
    for (const DhiruSection section : allDhiruSections) {
        auto* list = new DhiruList(stack_);
        list->setAccessibleName(DhiruSections::title(section));
        list->setTabAfter(tabs_);
        list->onAct = [this](const QString& key, DhiruAct pressed) { act(key, pressed); };
        stack_->addWidget(list);
        lists_.at(static_cast<std::size_t>(section)) = list;
    }
}

void DhiruPanel::connectAll() {
    connect(refresh_, &QAbstractButton::clicked, this, [this] { watch_.refresh(); });
    connect(close_, &QAbstractButton::clicked, this, [this] { dismiss(); });
    connect(filter_, &QLineEdit::textChanged, this, &DhiruPanel::showLists);
    connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
        stack_->setCurrentIndex(index);
        showLists();
    });
    connect(&watch_, &DevWatchController::changed, this, &DhiruPanel::refresh);
    question_->onClosed = [this](const DhiruQuestion& question) { asked(question); };
}

/// The rows come between the tabs and what stands here behind them.
void DhiruPanel::chainTabs() {
    QWidget* const order[] = {
        filter_,  tabs_, &question_->keepButton(), &question_->answerButton(), &awakeLine_->toggle(),
        refresh_, close_};
    for (std::size_t index = 1; index < std::size(order); ++index) {
        setTabOrder(order[index - 1], order[index]);
    }
}

void DhiruPanel::fitInto(double visibleHeight) {
    // With large type the controls need more than usual.
    const int wanted =
        std::max(usualHeight, page_->minimumSizeHint().height() + 6 * PanelMetrics::controlHeight);
    const int room = static_cast<int>(visibleHeight) - roomAround;
    // Of a fixed size and without a layout, so that no list's wish makes the panel grow.
    const int width = std::clamp(linesWide * fontMetrics().height(), usualWidth, mostWidth);
    inside_->setFixedSize(width, std::clamp(room, leastHeight, wanted));
    page_->setGeometry(inside_->rect());
}

void DhiruPanel::takeKeyboard() {
    filter_->setFocus(Qt::ShortcutFocusReason);
    Platform::activateBubbleWindow(*this);
}

void DhiruPanel::tell(const QString& sentence) {
    told_ = sentence;
    showHeadline();
    QAccessibleEvent alert(headline_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

DhiruSection DhiruPanel::section() const {
    return allDhiruSections.at(static_cast<std::size_t>(std::max(0, tabs_->currentIndex())));
}

void DhiruPanel::choose(DhiruSection section) {
    tabs_->setCurrentIndex(static_cast<int>(section));
}

QString DhiruPanel::headline() const {
    return headline_->text();
}

void DhiruPanel::refresh() {
    if (!isPresented()) {
        return; // it is brought up to date when it is shown
    }
    showHeadline();
    showLists();
    if (question_->isAsking() && !hasLine(watch_.view(), question_->question().key)) {
        question_->tellGone();
    }
}

void DhiruPanel::showHeadline() {
    headline_->setText(told_.isEmpty() ? DhiruWords::machine(watch_.view()) : told_);
}

void DhiruPanel::showLists() {
    const DevWatchView& view = watch_.view();
    const DhiruSections::Asked asked{filter_->text(), services_.system.clock().wall(),
                                     services_.folders.home().string()};
    const bool isRead = view.list != FellowCore::DevWatchProcessListState::reading;
    for (const DhiruSection each : allDhiruSections) {
        const DhiruLines lines = DhiruSections::lines(each, view, asked);
        const bool isKnown = each == DhiruSection::containers ? !view.containers.empty() : isRead;
        tabs_->setCount(static_cast<int>(each), isKnown ? std::optional(lines.count) : std::nullopt);
        if (each == section()) {
            list(each).showLines(lines);
        }
    }
    if (question_->isAsking()) {
        shownList().setAsked(question_->question().key);
    }
}

void DhiruPanel::act(const QString& key, DhiruAct pressed) {
    told_.clear();
    showHeadline();
    if (pressed == DhiruAct::open) {
        if (const QString url = urlOf(watch_.view(), key); !url.isEmpty()) {
            onOpenUrl(url);
        }
    } else if (pressed == DhiruAct::withdraw) {
        watch_.withdraw();
    } else if (const auto question = dhiruQuestion(watch_, key, pressed)) {
        ask(*question);
    }
}

void DhiruPanel::ask(const DhiruQuestion& question) {
    setListsEnabled(false);
    awakeLine_->hide();
    question_->ask(question);
    page_->layout()->activate(); // so that the list has its new height before it scrolls
    shownList().setAsked(question.key);
}

void DhiruPanel::asked(const DhiruQuestion& question) {
    awakeLine_->show();
    setListsEnabled(true);
    shownList().setAsked({});
    if (!shownList().focusLine(question.key, question.act)) {
        tabs_->setFocus(Qt::TabFocusReason);
    }
}

void DhiruPanel::setListsEnabled(bool enabled) {
    for (QWidget* widget :
         {static_cast<QWidget*>(filter_), static_cast<QWidget*>(tabs_), static_cast<QWidget*>(stack_)}) {
        widget->setEnabled(enabled);
    }
}

/// Escape leaves the question first, then what the filter holds; the bubble closes itself for the next one.
bool DhiruPanel::escape() {
    if (question_->isAsking()) {
        question_->keep();
        return true;
    }
    if (filter_->hasFocus() && !filter_->text().isEmpty()) {
        filter_->clear();
        return true;
    }
    return false;
}

bool DhiruPanel::controlKey(int key) {
    const int tab = key - Qt::Key_1;
    if (key == Qt::Key_F) {
        filter_->setFocus(Qt::ShortcutFocusReason);
        filter_->selectAll();
        return true;
    }
    if (tab < 0 || tab >= tabs_->count()) {
        return false;
    }
    tabs_->setCurrentIndex(tab);
    tabs_->setFocus(Qt::TabFocusReason);
    return true;
}

void DhiruPanel::keyPressEvent(QKeyEvent* event) {
    const bool isOurs = event->key() == Qt::Key_Escape ? escape()
                        : event->modifiers() == Qt::ControlModifier && !question_->isAsking()
                            ? controlKey(event->key())
                            : false;
    if (!isOurs) {
        Bubble::keyPressEvent(event);
    }
}

void DhiruPanel::showEvent(QShowEvent* event) {
    showHeadline();
    showLists();
    Bubble::showEvent(event);
}

void DhiruPanel::hideEvent(QHideEvent* event) {
    if (!event->spontaneous()) {
        question_->keep(); // a question that nobody sees is not open
        told_.clear();
    }
    Bubble::hideEvent(event);
}

void DhiruPanel::paletteChanged() {
    const DialoguePalette& palette = dialoguePalette();
    for (PanelText* text : {title_, headline_}) {
        text->setDialoguePalette(palette);
    }
    for (PanelButton* button : {refresh_, close_}) {
        button->setDialoguePalette(palette);
    }
    for (DhiruList* list : lists_) {
        list->setDialoguePalette(palette);
    }
    filter_->setDialoguePalette(palette);
    tabs_->setDialoguePalette(palette);
    question_->setDialoguePalette(palette);
    awakeLine_->setDialoguePalette(palette);
}

} // namespace DeskSprites
