#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QScrollArea>
#include <QScrollBar>

namespace DeskSprites {

/// A narrow scroll bar in the house look, which takes no room while there is nothing to scroll.
class PanelScrollBar : public QScrollBar {
    Q_OBJECT

public:
    explicit PanelScrollBar(QWidget* parent = nullptr);
    void setDialoguePalette(const DialoguePalette& palette);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    DialoguePalette palette_;
};

/// A column of rows inside a panel that scrolls when it is longer than its place. A row that gets the focus
/// comes into view.
class PanelScroll : public QScrollArea {
    Q_OBJECT

public:
    explicit PanelScroll(QWidget* parent = nullptr);
    void setDialoguePalette(const DialoguePalette& palette);
    /// Takes the widget whose height is scrolled.
    void setRows(QWidget* rows);

private:
    PanelScrollBar* bar_;
};

/// Makes any scrolling view stand on a panel's paper with a panel's scroll bar, which it returns.
PanelScrollBar* settleInPanel(QAbstractScrollArea& view);

} // namespace DeskSprites
