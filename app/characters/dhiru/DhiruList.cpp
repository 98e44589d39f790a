#include "app/characters/dhiru/DhiruList.h"

#include "app/characters/dhiru/DhiruRow.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PanelRole.h"

#include <QAccessible>
#include <QVBoxLayout>

#include <algorithm>
#include <map>

namespace DeskSprites {

DhiruList::DhiruList(QWidget* parent)
    : PanelScroll(parent), inside_(new QWidget), column_(new QVBoxLayout(inside_)),
      words_(new PanelText(TextRole::quiet, inside_)) {
    announceAs(*inside_, QAccessible::List);
    column_->setContentsMargins(0, 0, PanelMetrics::halfUnit, 0);
    column_->setSpacing(PanelMetrics::halfUnit);
    column_->addWidget(words_);
    column_->addStretch();
    words_->setContentsMargins(PanelMetrics::halfUnit, PanelMetrics::unit, 0, PanelMetrics::halfUnit);
    setRows(inside_);
}

void DhiruList::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    PanelScroll::setDialoguePalette(palette);
    words_->setDialoguePalette(palette);
    for (DhiruRow* row : rows_) {
        row->setDialoguePalette(palette);
    }
}

QString DhiruList::words() const {
    return words_->text();
}

DhiruRow* DhiruList::row(const QString& key) const {
    const auto found =
        std::ranges::find_if(rows_, [&](const DhiruRow* row) { return row->line().key == key; });
    return found == rows_.end() ? nullptr : *found;
}

void DhiruList::showLines(const DhiruLines& lines) {
    if (lines == shown_) {
        return;
    }
    shown_ = lines;
    inside_->setAccessibleName(accessibleName());
    words_->setText(lines.words);
    words_->setVisible(!lines.words.isEmpty());
    arrange(wantedRows(lines.lines));
    for (std::size_t index = 0; index < rows_.size(); ++index) {
        if (rows_[index]->showLine(lines.lines[index])) {
            QAccessibleEvent news(rows_[index], QAccessible::Alert);
            QAccessible::updateAccessibility(&news);
        }
    }
    chainTabs(); // buttons may have come
}

std::vector<DhiruRow*> DhiruList::wantedRows(const std::vector<DhiruLine>& lines) {
    std::map<QString, DhiruRow*> known;
    for (DhiruRow* row : rows_) {
        known.emplace(row->line().key, row);
    }
    std::vector<DhiruRow*> wanted;
    for (const DhiruLine& line : lines) {
        const auto found = known.find(line.key);
        wanted.push_back(found != known.end() ? found->second : makeRow());
    }
    return wanted;
}

DhiruRow* DhiruList::makeRow() {
    auto* row = new DhiruRow(inside_);
    row->setDialoguePalette(palette_);
    row->onAct = [this, row](DhiruAct act) { onAct(row->line().key, act); };
    row->onStep = [this, row](int by, std::optional<DhiruAct> from) { stepFrom(*row, by, from); };
    row->onFocused = [this, row] {
        current_ = row;
        showCurrent();
        ensureWidgetVisible(row, 0, 0);
    };
    row->show();
    return row;
}

void DhiruList::arrange(const std::vector<DhiruRow*>& wanted) {
    std::optional<std::size_t> left; // where the focus was, when its row goes
    for (std::size_t index = 0; index < rows_.size(); ++index) {
        DhiruRow* const row = rows_[index];
        if (std::ranges::find(wanted, row) == wanted.end()) {
            left = row->holdsFocus() ? std::optional(index) : left;
            column_->removeWidget(row);
            row->hide();
            row->deleteLater();
        }
    }
    if (std::exchange(rows_, wanted) == wanted) {
        return;
    }
    for (std::size_t index = 0; index < wanted.size(); ++index) {
        const int place = static_cast<int>(index);
        if (column_->indexOf(wanted[index]) != place) {
            column_->removeWidget(wanted[index]);
            column_->insertWidget(place, wanted[index]);
        }
    }
    if (std::ranges::find(wanted, current_) == wanted.end()) {
        current_ = nullptr;
    }
    showCurrent();
    if (left && !wanted.empty()) {
        wanted[std::min(*left, wanted.size() - 1)]->takeFocus(std::nullopt);
    }
}

void DhiruList::chainTabs() {
    QWidget* last = before_;
    for (const DhiruRow* row : rows_) {
        for (QWidget* stop : row->stops()) {
            if (last && last->nextInFocusChain() != stop) {
                setTabOrder(last, stop);
            }
            last = stop;
        }
    }
}

void DhiruList::showCurrent() {
    for (DhiruRow* row : rows_) {
        row->setCurrent(row == (current_ ? current_ : rows_.front()));
    }
}

void DhiruList::setAsked(const QString& key) {
    for (DhiruRow* row : rows_) {
        row->setAsked(!key.isEmpty() && row->line().key == key);
    }
    if (DhiruRow* const asked = row(key)) {
        ensureWidgetVisible(asked, 0, 0);
    }
}

bool DhiruList::focusLine(const QString& key, std::optional<DhiruAct> at) {
    DhiruRow* const found = row(key);
    if (found) {
        found->takeFocus(at);
    }
    return found != nullptr;
}

void DhiruList::stepFrom(const DhiruRow& row, int by, std::optional<DhiruAct> from) {
    const auto next = std::ranges::find(rows_, &row) - rows_.begin() + by;
    if (next >= 0 && next < std::ssize(rows_)) {
        rows_[static_cast<std::size_t>(next)]->takeFocus(from);
    } else if (next < 0 && before_) {
        before_->setFocus(Qt::BacktabFocusReason);
    }
}

} // namespace DeskSprites
