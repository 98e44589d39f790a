#include "app/characters/munshi/MunshiEarlierPage.h"

#include "app/characters/munshi/MunshiBook.h"
#include "app/characters/munshi/MunshiEarlierDelegate.h"
#include "app/characters/munshi/MunshiEarlierModel.h"
#include "app/characters/munshi/MunshiExport.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PanelMessage.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QListView>
#include <QVBoxLayout>

#include <algorithm>

namespace DeskSprites {

MunshiEarlierPage::MunshiEarlierPage(MunshiBook& book, DesktopServices& services, QWidget* parent)
    : QWidget(parent), book_(book), services_(services) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(PanelMetrics::unit);
    model_ = new MunshiEarlierModel(this);
    delegate_ = new MunshiEarlierDelegate(this);
    view_ = new QListView(this);
    bar_ = settleInPanel(*view_);
    view_->setUniformItemSizes(true);
    view_->setItemDelegate(delegate_);
    view_->setModel(model_);
    view_->setMouseTracking(true);
    view_->setAccessibleName(tr("Lines of earlier days"));
    view_->installEventFilter(this);
    empty_ = new PanelText(TextRole::quiet, this);
    empty_->setContentsMargins(PanelMetrics::halfUnit, PanelMetrics::unit, 0, 0);
    empty_->setAlignment(Qt::AlignTop | Qt::AlignLeading);
    field_ = new PanelField(PanelField::Frame::boxed, this);
    field_->setPlaceholderText(tr("Search all lines"));
    field_->setAccessibleName(tr("Search all lines"));
    field_->setClearButtonEnabled(false);
    field_->installEventFilter(this);
    told_ = new PanelMessage(this);
    column->addWidget(makeHeader());
    column->addWidget(field_);
    column->addWidget(view_, 1);
    column->addWidget(empty_, 1);
    column->addWidget(told_);
    column->addWidget(makeFooter());
    told_->setButton(tr("OK"), [this] { told_->say({}); });
    connect(field_, &QLineEdit::textChanged, this, &MunshiEarlierPage::showQuery);
    connect(view_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &MunshiEarlierPage::chosenChanged);
}

QWidget* MunshiEarlierPage::makeHeader() {
    auto* header = new QWidget(this);
    auto* line = new QHBoxLayout(header);
    line->setContentsMargins(0, 0, PanelMetrics::halfUnit, 0);
    line->setSpacing(PanelMetrics::unit);
    back_ = new PanelButton(PanelButton::Shape::icon, header);
    title_ = new PanelText(TextRole::title, header);
    count_ = new PanelText(TextRole::quiet, header);
    for (PanelText* text : {title_, count_}) {
        text->setWordWrap(false);
    }
    back_->setTitle(tr("Back to today"));
    back_->setPixelIcon(PixelIcon::back);
    back_->setEmphasis(Emphasis::quiet);
    back_->setFixedSize(24, 24);
    title_->setText(tr("Earlier days"));
    line->addWidget(back_);
    line->addWidget(title_);
    line->addWidget(count_, 1);
    connect(back_, &QAbstractButton::clicked, this, [this] { onBack(); });
    return header;
}

QWidget* MunshiEarlierPage::makeFooter() {
    auto* footer = new QWidget(this);
    auto* line = new QHBoxLayout(footer);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(PanelMetrics::unit);
    copy_ = new PanelButton(PanelButton::Shape::row, footer);
    copy_->setTitle(tr("Copy day"));
    copy_->setPixelIcon(PixelIcon::copy);
    save_ = new PanelButton(PanelButton::Shape::row, footer);
    save_->setTitle(tr("Save day…"));
    save_->setPixelIcon(PixelIcon::save);
    line->addWidget(copy_);
    line->addWidget(save_);
    const auto report = [this](const QString& sentence) { told_->say(sentence); };
    connect(copy_, &QAbstractButton::clicked, this,
            [this, report] { MunshiExport::copy(book_.ledger().markdown(chosenDay()), report); });
    connect(save_, &QAbstractButton::clicked, this, [this, report] {
        MunshiExport::save(*this, services_, chosenDay(), book_.ledger().markdown(chosenDay()), report);
    });
    return footer;
}

void MunshiEarlierPage::setDialoguePalette(const DialoguePalette& palette) {
    for (PanelText* text : {title_, count_, empty_}) {
        text->setDialoguePalette(palette);
    }
    for (PanelButton* button : {back_, copy_, save_}) {
        button->setDialoguePalette(palette);
    }
    field_->setDialoguePalette(palette);
    told_->setDialoguePalette(palette);
    bar_->setDialoguePalette(palette);
    delegate_->setDialoguePalette(palette);
    view_->viewport()->update();
}

void MunshiEarlierPage::refresh() {
    const int row = view_->currentIndex().row();
    const int top = view_->verticalScrollBar()->value();
    showQuery();
    choose(std::max(0, row));
    view_->verticalScrollBar()->setValue(top);
}

void MunshiEarlierPage::showQuery() {
    const QString query = field_->text();
    model_->show(book_.ledger(), query);
    const bool none = model_->lines() == 0;
    view_->setVisible(!none);
    empty_->setVisible(none);
    empty_->setText(query.trimmed().isEmpty() ? tr("Earlier days will stand here.")
                                              : tr("No line has these words."));
    count_->setText(none || query.trimmed().isEmpty()
                        ? QString()
                        : tr("%1 found").arg(QLocale().toString(qulonglong(model_->lines()))));
    choose(0);
}

void MunshiEarlierPage::choose(int row) {
    const int last = model_->rowCount() - 1;
    view_->setCurrentIndex(model_->index(std::min(row, last), 0));
    chosenChanged();
}

std::string MunshiEarlierPage::chosenDay() const {
    return view_->currentIndex().data(MunshiEarlierModel::dayRole).toString().toStdString();
}

void MunshiEarlierPage::chosenChanged() {
    const bool any = view_->currentIndex().isValid();
    copy_->setEnabled(any);
    save_->setEnabled(any);
}

bool MunshiEarlierPage::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) {
        return QWidget::eventFilter(watched, event);
    }
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (watched == field_ && key == Qt::Key_Down && view_->isVisible()) {
        view_->setFocus(Qt::TabFocusReason);
        return true;
    }
    if (watched == view_ && key == Qt::Key_Up && view_->currentIndex().row() <= 0) {
        field_->setFocus(Qt::BacktabFocusReason);
        return true;
    }
    if (key == Qt::Key_Escape) {
        if (watched == field_ && !field_->text().isEmpty()) {
            field_->clear();
        } else {
            onBack();
        }
        return true;
    }
    return false;
}

} // namespace DeskSprites
