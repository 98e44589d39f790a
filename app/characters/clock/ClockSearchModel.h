#pragma once

#include "core/worldclock/WorldClockPresentation.h"

#include <QAbstractListModel>

#include <vector>

namespace DeskSprites {

class ClockCharacter;

/// The cities that a search has found, the best first. Their clocks are read only when they are shown.
class ClockSearchModel : public QAbstractListModel {
    Q_OBJECT

public:
    static constexpr std::size_t mostShown = 50;

    /// `clock` outlives the model.
    explicit ClockSearchModel(ClockCharacter& clock, QObject* parent = nullptr);

    /// Takes what was found, of which the first `mostShown` are rows.
    void show(std::vector<const FellowCore::WorldClockCity*> found);
    /// The clocks show another minute, or the list is another one.
    void clocksChanged();
    /// How many were found in all.
    std::size_t found() const { return found_; }
    const FellowCore::WorldClockCity& city(int row) const;
    /// The city's clock as a row of the panel would show it.
    FellowCore::WorldClockRow clock(int row) const;
    /// Whether the city is on the list already, or is home.
    bool isAdded(int row) const;
    /// What a screen reader says of a city.
    QString spoken(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    ClockCharacter& clock_;
    std::vector<const FellowCore::WorldClockCity*> cities_;
    std::size_t found_ = 0;
};

} // namespace DeskSprites
