#pragma once

#include "app/settings/LibraryState.h"

#include <QListWidget>

namespace DeskSprites {

/// The list of panes: the roster with portraits and with marks for who is on the desktop, and General at the
/// end. One column, one line of keyboard focus.
class LibraryList : public QListWidget {
    Q_OBJECT
public:
    explicit LibraryList(QWidget* parent = nullptr);

    /// Shows the roster and the marks; the chosen pane stays chosen while it exists. Emits nothing.
    void showState(const LibraryState& state);
    /// Selects a pane without telling anyone; false when there is no such pane.
    bool choose(const std::string& pane);
    std::string chosen() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user chose another pane.
    void paneChosen(const QString& pane);
};

} // namespace DeskSprites
