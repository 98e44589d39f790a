#include "app/characters/clock/ClockSearchModel.h"

#include "app/characters/clock/ClockCharacter.h"
#include "app/characters/clock/ClockWords.h"

#include <algorithm>

namespace DeskSprites {

ClockSearchModel::ClockSearchModel(ClockCharacter& clock, QObject* parent)
    : QAbstractListModel(parent), clock_(clock) {}

void ClockSearchModel::show(std::vector<const FellowCore::WorldClockCity*> found) {
    beginResetModel();
    found_ = found.size();
    found.resize(std::min(found.size(), mostShown));
    cities_ = std::move(found);
    endResetModel();
}

void ClockSearchModel::clocksChanged() {
    if (!cities_.empty()) {
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    }
}

const FellowCore::WorldClockCity& ClockSearchModel::city(int row) const {
    return *cities_.at(static_cast<std::size_t>(row));
}

FellowCore::WorldClockRow ClockSearchModel::clock(int row) const {
    const FellowCore::WorldClockCity& shown = city(row);
    const auto home = clock_.state().homeCity(clock_.catalog(), clock_.systemTimeZone());
    return FellowCore::WorldClockPresentation::row(
        shown, home, clock_.shownDate(), clock_.state().isPinned(shown.identifier), clock_.formatter());
}

bool ClockSearchModel::isAdded(int row) const {
    const FellowCore::WorldClockState& state = clock_.state();
    const std::string& identifier = city(row).identifier;
    return std::ranges::find(state.cityIdentifiers, identifier) != state.cityIdentifiers.end() ||
           identifier == state.homeCity(clock_.catalog(), clock_.systemTimeZone()).identifier;
}

QString ClockSearchModel::spoken(int row) const {
    const FellowCore::WorldClockRow shown = clock(row);
    const QString words = ClockWords::place(shown) + QStringLiteral(". ") + ClockWords::spoken(shown);
    return isAdded(row) && !shown.isHome ? tr("%1. On your list").arg(words) : words;
}

int ClockSearchModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(cities_.size());
}

QVariant ClockSearchModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return QString::fromStdString(city(index.row()).name);
    case Qt::AccessibleTextRole:
        return spoken(index.row());
    case Qt::ToolTipRole:
        return ClockWords::place(clock(index.row()));
    default:
        return {};
    }
}

} // namespace DeskSprites
