#pragma once

#include "app/desktop/DesktopServices.h"
#include "app/desktop/DialoguePalette.h"

#include <QWidget>

#include <functional>

namespace DeskSprites {

class MunshiBook;
class MunshiDayList;
class PanelMessage;
class PanelButton;
class PanelField;
class PanelText;

/// Today: the field that adds a line, the lines, and what can be done with all of them.
class MunshiTodayPage : public QWidget {
    Q_OBJECT

public:
    MunshiTodayPage(MunshiBook& book, DesktopServices& services, QWidget* parent = nullptr);

    std::function<void()> onClose;
    std::function<void()> onEarlierDays;
    /// The field has got text, or has none any more.
    std::function<void()> onWriting;

    void setDialoguePalette(const DialoguePalette& palette);
    void refresh();
    /// Shows a sentence until the user does something else or puts it away.
    void tell(const QString& sentence);
    PanelField& field() const { return *field_; }
    MunshiDayList& list() const { return *list_; }
    bool isWriting() const;

private:
    QWidget* makeHeader();
    QWidget* makeEntry();
    QWidget* makeFooter();
    void orderTabs();
    void addLine();
    void showUndo();

    MunshiBook& book_;
    DesktopServices& services_;
    PanelText* title_ = nullptr;
    PanelText* date_ = nullptr;
    PanelButton* close_ = nullptr;
    PanelField* field_ = nullptr;
    PanelButton* add_ = nullptr;
    MunshiDayList* list_ = nullptr;
    PanelMessage* undo_ = nullptr;
    PanelMessage* told_ = nullptr;
    PanelMessage* trouble_ = nullptr;
    PanelButton* earlier_ = nullptr;
    PanelButton* copy_ = nullptr;
    PanelButton* save_ = nullptr;
};

} // namespace DeskSprites
