#pragma once

#include "app/characters/clock/ClockLine.h"
#include "app/desktop/PanelPressable.h"
#include "app/desktop/PanelRowList.h"

#include <functional>
#include <string>

namespace DeskSprites {

class PanelButton;

/// What a user may want of one clock.
enum class ClockWish { toggleFace, makeHome, followSystem, moveUp, moveDown, copy, remove };

/// The words of a row: what Tab stops at. It is checked while its city is a face of the tower; only its mark
/// takes the mouse, and Space does the same.
class ClockRowStop : public PanelPressable {
    Q_OBJECT

public:
    explicit ClockRowStop(QWidget* parent);

    void setDialoguePalette(const DialoguePalette& palette);
    void showLine(const ClockLine& line, bool isPreview);
    /// A key that is the row's, not the stop's. True when it is taken.
    std::function<bool(const QKeyEvent& key)> onKey;

    QRect markRect() const;
    QRect buttonRect() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool hitButton(const QPoint& at) const override;
    bool event(QEvent* event) override;
    void nextCheckState() override {} // the row shows what became of the wish
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void showTip();

    DialoguePalette palette_;
    ClockLine line_;
    bool isPreview_ = false;
};

/// One clock of the panel. Space, or a click on its mark, makes it a face of the tower; Enter, the right
/// button and the button before its time open the menu of everything else; Delete removes it, Ctrl+C copies
/// it.
class ClockRow : public PanelRow {
    Q_OBJECT

public:
    explicit ClockRow(std::string identifier, QWidget* parent);

    const std::string& identifier() const { return identifier_; }
    void setDialoguePalette(const DialoguePalette& palette);
    /// `homeIsChosen` when home is not simply where the system is.
    void showRow(const FellowCore::WorldClockRow& row, bool homeIsChosen, bool isPreview);
    QWidget* stop() const override { return stop_; }
    bool dragsFrom(const QPoint& place) const override;
    void showDragging(bool isDragging) override;

    std::function<void(ClockWish wish)> onWish;

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    bool key(const QKeyEvent& key);
    void openMenu(const QPoint& global);
    void placeMore();
    void showMore();

    std::string identifier_;
    ClockRowStop* stop_;
    PanelButton* more_;
    bool isHome_ = false;
    bool homeIsChosen_ = false;
    bool isDragging_ = false;
};

} // namespace DeskSprites
