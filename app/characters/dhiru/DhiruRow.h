#pragma once

#include "app/characters/dhiru/DhiruLine.h"
#include "app/desktop/DialoguePalette.h"
#include "app/desktop/FocusRing.h"

#include <QWidget>

#include <functional>
#include <map>
#include <vector>

class QHBoxLayout;

namespace DeskSprites {

class LampDot;
class PanelButton;

/// One line of a list with the buttons of what can be done about it. The arrows up and down lead to the next
/// line, left and right to its buttons; Enter presses the first of them, Delete the one that ends something.
class DhiruRow : public QWidget {
    Q_OBJECT

public:
    explicit DhiruRow(QWidget* parent = nullptr);

    std::function<void(DhiruAct act)> onAct;
    /// The focus should go on by so many rows, to the same button when there is one.
    std::function<void(int by, std::optional<DhiruAct> from)> onStep;
    std::function<void()> onFocused;

    void setDialoguePalette(const DialoguePalette& palette);
    /// Repaints only what is another. True when there is news of a request.
    bool showLine(const DhiruLine& line);
    const DhiruLine& line() const { return line_; }
    /// Whether Tab stops at the row and its buttons.
    void setCurrent(bool current);
    /// Whether the open question is about it.
    void setAsked(bool asked);
    /// The button, or null when the line has none of it.
    PanelButton* button(DhiruAct act) const;
    /// The row and its buttons, as Tab goes through them.
    std::vector<QWidget*> stops() const;
    /// Whether the focus is on the row or one of its buttons.
    bool holdsFocus() const;
    void takeFocus(std::optional<DhiruAct> at);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool event(QEvent* event) override;

private:
    PanelButton* makeButton(DhiruAct act);
    void fitButtons();
    void fitLamp();
    void placeLamp();
    QFont titleFont() const;
    int headingHeight() const;
    int noteHeight() const;
    QRect card() const;
    QRect mirrored(const QRect& place) const;
    void paintGround(QPainter& painter) const;
    void paintTitle(QPainter& painter, const QRect& place);
    void paintText(QPainter& painter, const QRect& place, const QString& text, const QColor& colour,
                   const QFont& font);
    void step(int by);

    DialoguePalette palette_;
    FocusRing focusRing_;
    DhiruLine line_;
    QHBoxLayout* layout_;
    LampDot* lamp_;
    std::map<DhiruAct, PanelButton*> buttons_;
    bool current_ = false;
    bool asked_ = false;
    bool shortened_ = false; ///< whether some text had no room, as painted last
};

} // namespace DeskSprites
