#pragma once

#include "app/desktop/Bubble.h"
#include "app/desktop/DesktopServices.h"

class QStackedWidget;

namespace DeskSprites {

class MunshiBook;
class MunshiEarlierPage;
class MunshiTodayPage;

/// The ledger, open: today, and behind it the earlier days. It keeps one size, so that nothing moves under
/// the hand that writes.
class MunshiPanel : public Bubble {
    Q_OBJECT

public:
    /// `book` outlives the panel.
    MunshiPanel(MunshiBook& book, DesktopServices& services);

    /// The field has got text, or has none any more.
    std::function<void()> onWriting;

    /// Takes the room there is: `visibleHeight` is the screen's, in points.
    void fitInto(double visibleHeight);
    /// Gives the keyboard to the field that adds a line.
    void focusField();
    void tell(const QString& sentence);
    bool isWriting() const;
    MunshiTodayPage& today() const { return *today_; }
    MunshiEarlierPage& earlier() const { return *earlier_; }

protected:
    void paletteChanged() override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void showEarlierDays();
    void showToday();
    void refresh();

    MunshiBook& book_;
    QWidget* inside_;
    QStackedWidget* pages_;
    MunshiTodayPage* today_;
    MunshiEarlierPage* earlier_;
};

} // namespace DeskSprites
