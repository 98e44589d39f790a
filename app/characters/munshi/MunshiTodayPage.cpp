#include "app/characters/munshi/MunshiTodayPage.h"

#include "app/characters/munshi/MunshiBook.h"
#include "app/characters/munshi/MunshiDayList.h"
#include "app/characters/munshi/MunshiExport.h"
#include "app/characters/munshi/MunshiWords.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PanelMessage.h"

#include <QDate>
#include <QHBoxLayout>
#include <QLocale>
#include <QVBoxLayout>

namespace DeskSprites {

namespace {

constexpr int closeSide = 24;

PanelButton* footerButton(const QString& title, PixelIcon icon) {
    auto* button = new PanelButton;
    button->setTitle(title);
    button->setPixelIcon(icon);
    return button;
}

} // namespace

MunshiTodayPage::MunshiTodayPage(MunshiBook& book, DesktopServices& services, QWidget* parent)
    : QWidget(parent), book_(book), services_(services) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(PanelMetrics::unit);
    list_ = new MunshiDayList(book_, this);
    undo_ = new PanelMessage(this);
    told_ = new PanelMessage(this);
    trouble_ = new PanelMessage(this);
    column->addWidget(makeHeader());
    column->addWidget(makeEntry());
    column->addWidget(list_, 1);
    for (PanelMessage* message : {undo_, told_, trouble_}) {
        column->addWidget(message);
    }
    column->addWidget(makeFooter());
    undo_->setButton(tr("Undo"), [this] {
        book_.undo();
        field_->setFocus(Qt::ShortcutFocusReason);
    });
    told_->setButton(tr("OK"), [this] {
        told_->say({});
        field_->setFocus(Qt::ShortcutFocusReason);
    });
    orderTabs();
    refresh();
}

void MunshiTodayPage::orderTabs() {
    QWidget* const order[] = {field_, add_, undo_->button(), told_->button(), earlier_, copy_, save_, close_};
    for (std::size_t index = 1; index < std::size(order); ++index) {
        setTabOrder(order[index - 1], order[index]);
    }
    list_->setTabAfter(add_);
}

QWidget* MunshiTodayPage::makeHeader() {
    auto* header = new QWidget(this);
    auto* line = new QHBoxLayout(header);
    line->setContentsMargins(PanelMetrics::halfUnit, 0, 0, 0);
    line->setSpacing(PanelMetrics::unit);
    title_ = new PanelText(TextRole::title, header);
    date_ = new PanelText(TextRole::quiet, header);
    close_ = new PanelButton(PanelButton::Shape::icon, header);
    for (PanelText* text : {title_, date_}) {
        text->setWordWrap(false);
    }
    close_->setTitle(tr("Close"));
    close_->setPixelIcon(PixelIcon::close);
    close_->setEmphasis(Emphasis::quiet);
    close_->setFixedSize(closeSide, closeSide);
    line->addWidget(title_);
    line->addWidget(date_, 1);
    line->addWidget(close_);
    connect(close_, &QAbstractButton::clicked, this, [this] { onClose(); });
    return header;
}

QWidget* MunshiTodayPage::makeEntry() {
    auto* entry = new QWidget(this);
    auto* line = new QHBoxLayout(entry);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(PanelMetrics::unit);
    field_ = new PanelField(PanelField::Frame::boxed, entry);
    field_->setPlaceholderText(tr("A task, or - and a note"));
    field_->setAccessibleName(tr("New line"));
    field_->setAccessibleDescription(tr("Enter adds it. Begin with a dash for a note."));
    add_ = new PanelButton(PanelButton::Shape::icon, entry);
    add_->setTitle(tr("Add"));
    add_->setPixelIcon(PixelIcon::larger);
    add_->setFixedSize(PanelMetrics::controlHeight, field_->sizeHint().height());
    line->addWidget(field_, 1);
    line->addWidget(add_);
    connect(field_, &QLineEdit::returnPressed, this, &MunshiTodayPage::addLine);
    connect(field_, &QLineEdit::textChanged, this, [this] {
        add_->setEmphasis(isWriting() ? Emphasis::primary : Emphasis::plain);
        if (onWriting) {
            onWriting();
        }
    });
    connect(add_, &QAbstractButton::clicked, this, &MunshiTodayPage::addLine);
    return entry;
}

QWidget* MunshiTodayPage::makeFooter() {
    auto* footer = new QWidget(this);
    auto* line = new QHBoxLayout(footer);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(PanelMetrics::unit);
    earlier_ = footerButton(tr("Earlier days"), PixelIcon::days);
    copy_ = footerButton(tr("Copy"), PixelIcon::copy);
    save_ = footerButton(tr("Save…"), PixelIcon::save);
    for (PanelButton* button : {earlier_, copy_, save_}) {
        line->addWidget(button);
    }
    connect(earlier_, &QAbstractButton::clicked, this, [this] { onEarlierDays(); });
    connect(copy_, &QAbstractButton::clicked, this, [this] {
        MunshiExport::copy(book_.ledger().markdown(), [this](const QString& sentence) { tell(sentence); });
    });
    connect(save_, &QAbstractButton::clicked, this, [this] {
        MunshiExport::save(*this, services_, book_.ledger().currentDay, book_.ledger().markdown(),
                           [this](const QString& sentence) { tell(sentence); });
    });
    return footer;
}

void MunshiTodayPage::setDialoguePalette(const DialoguePalette& palette) {
    for (PanelText* text : {title_, date_}) {
        text->setDialoguePalette(palette);
    }
    for (PanelButton* button : {close_, add_, earlier_, copy_, save_}) {
        button->setDialoguePalette(palette);
    }
    for (PanelMessage* message : {undo_, told_, trouble_}) {
        message->setDialoguePalette(palette);
    }
    field_->setDialoguePalette(palette);
    list_->setDialoguePalette(palette);
}

bool MunshiTodayPage::isWriting() const {
    return !field_->text().trimmed().isEmpty();
}

void MunshiTodayPage::addLine() {
    told_->say({});
    if (const auto added = book_.add(field_->text())) {
        field_->clear();
        list_->revealLine(*added);
    }
    field_->setFocus(Qt::ShortcutFocusReason);
}

void MunshiTodayPage::refresh() {
    const FellowCore::MunshiLedger& ledger = book_.ledger();
    title_->setText(tr("Today"));
    const QDate date = QDate::fromString(QString::fromStdString(ledger.currentDay), Qt::ISODate);
    date_->setText(QLocale().toString(date, tr("dddd, d MMMM")));
    list_->refresh();
    showUndo();
    trouble_->say(book_.trouble());
    copy_->setEnabled(!ledger.today.empty());
    save_->setEnabled(!ledger.today.empty());
}

void MunshiTodayPage::showUndo() {
    const auto& deleted = book_.deleted();
    if (!deleted && undo_->button()->hasFocus()) {
        field_->setFocus(Qt::ShortcutFocusReason);
    }
    undo_->say(deleted ? tr("%1 is deleted.").arg(MunshiWords::quoted(deleted->item)) : QString());
}

void MunshiTodayPage::tell(const QString& sentence) {
    told_->say(sentence);
}

} // namespace DeskSprites
