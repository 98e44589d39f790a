#pragma once

#include "app/desktop/DialoguePalette.h"
#include "app/desktop/FocusRing.h"

#include <QTabBar>

#include <optional>

namespace DeskSprites {

/// The tabs of a panel in the house look, each with a count that may be shown beside its words. Left and
/// Right choose among them.
class PanelTabs : public QTabBar {
    Q_OBJECT

public:
    explicit PanelTabs(QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    void add(const QString& title);
    /// The count beside a tab's words; nothing for none.
    void setCount(int tab, std::optional<int> count);

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QFont wordsFont(int index) const;
    QString countWords(int index) const;
    QColor ground(int index) const;
    void paintTab(QPainter& painter, int index) const;
    void setHovered(int index);

    DialoguePalette palette_;
    FocusRing focusRing_;
    int hovered_ = -1;
};

} // namespace DeskSprites
