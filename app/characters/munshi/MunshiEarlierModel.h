#pragma once

#include "core/ledger/MunshiLedger.h"

#include <QAbstractListModel>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace DeskSprites {

/// The earlier days, newest first, each as a heading and its lines in the order they had; or, while something
/// is searched for, what was found, today's lines among it. Words are made when a row is shown.
class MunshiEarlierModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        kindRole = Qt::UserRole, ///< a `RowKind`
        dayRole,                 ///< the key of the row's day, a QString
    };
    enum class RowKind { heading, openTask, doneTask, note };

    using QAbstractListModel::QAbstractListModel;

    void show(const FellowCore::MunshiLedger& ledger, const QString& query);
    /// How many lines are shown, headings not counted.
    std::size_t lines() const { return items_.size(); }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    struct Row {
        std::size_t item = 0; ///< the line, or for a heading the first line below it
        bool heading = false;
    };
    RowKind kind(const Row& row) const;
    QString text(const Row& row) const;
    QString spoken(const Row& row) const;

    std::vector<FellowCore::MunshiItem> items_;
    std::vector<Row> rows_;
    std::string today_;
};

} // namespace DeskSprites
