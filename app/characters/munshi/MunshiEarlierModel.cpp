#include "app/characters/munshi/MunshiEarlierModel.h"

#include "app/characters/munshi/MunshiWords.h"

#include <algorithm>
#include <map>
#include <utility>

namespace DeskSprites {

namespace {

using Items = std::vector<FellowCore::MunshiItem>;

/// Items by day, days in order of first appearance. Archived lines come in reverse of their day's order.
Items byDay(Items items, const std::string& today) {
    std::map<std::string, std::size_t> places;
    std::vector<Items> days;
    for (FellowCore::MunshiItem& item : items) {
        const auto [place, isNew] = places.try_emplace(item.day, days.size());
        if (isNew) {
            days.emplace_back();
        }
        days[place->second].push_back(std::move(item));
    }
    Items ordered;
    for (Items& day : days) {
        if (day.front().day != today) {
            std::ranges::reverse(day);
        }
        std::ranges::move(day, std::back_inserter(ordered));
    }
    return ordered;
}

} // namespace

void MunshiEarlierModel::show(const FellowCore::MunshiLedger& ledger, const QString& query) {
    beginResetModel();
    today_ = ledger.currentDay;
    const bool searches = !query.trimmed().isEmpty();
    items_ = byDay(searches ? ledger.search(query.toStdString()) : ledger.history, today_);
    rows_.clear();
    for (std::size_t index = 0; index < items_.size(); ++index) {
        if (index == 0 || items_[index].day != items_[index - 1].day) {
            rows_.push_back({index, true});
        }
        rows_.push_back({index, false});
    }
    endResetModel();
}

int MunshiEarlierModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

MunshiEarlierModel::RowKind MunshiEarlierModel::kind(const Row& row) const {
    const FellowCore::MunshiItem& item = items_[row.item];
    return row.heading         ? RowKind::heading
           : item.isDoneTask() ? RowKind::doneTask
           : item.isOpenTask() ? RowKind::openTask
                               : RowKind::note;
}

QString MunshiEarlierModel::text(const Row& row) const {
    const FellowCore::MunshiItem& item = items_[row.item];
    return row.heading ? MunshiWords::day(item.day, today_) : QString::fromStdString(item.text);
}

QString MunshiEarlierModel::spoken(const Row& row) const {
    switch (kind(row)) {
    case RowKind::openTask:
        return tr("%1, not done").arg(text(row));
    case RowKind::doneTask:
        return tr("%1, done").arg(text(row));
    case RowKind::note:
        return tr("%1, note").arg(text(row));
    case RowKind::heading:
        break;
    }
    return text(row);
}

QVariant MunshiEarlierModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return text(row);
    case Qt::ToolTipRole:
        return row.heading ? QVariant() : QVariant(text(row).toHtmlEscaped());
    case Qt::AccessibleTextRole:
        return spoken(row);
    case kindRole:
        return static_cast<int>(kind(row));
    case dayRole:
        return QString::fromStdString(items_[row.item].day);
    default:
        return {};
    }
}

Qt::ItemFlags MunshiEarlierModel::flags(const QModelIndex&) const {
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

} // namespace DeskSprites
