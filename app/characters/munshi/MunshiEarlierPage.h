#pragma once

#include "app/desktop/DesktopServices.h"
#include "app/desktop/DialoguePalette.h"

#include <QWidget>

#include <functional>
#include <string>

class QListView;

namespace DeskSprites {

class MunshiBook;
class MunshiEarlierDelegate;
class MunshiEarlierModel;
class PanelMessage;
class PanelButton;
class PanelField;
class PanelScrollBar;
class PanelText;

/// The days before today: looked through, searched, copied and saved.
class MunshiEarlierPage : public QWidget {
    Q_OBJECT

public:
    MunshiEarlierPage(MunshiBook& book, DesktopServices& services, QWidget* parent = nullptr);

    std::function<void()> onBack;

    void setDialoguePalette(const DialoguePalette& palette);
    /// Takes the book's days; what was chosen stays chosen as far as it is still there.
    void refresh();
    PanelField& field() const { return *field_; }
    QListView& view() const { return *view_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* makeHeader();
    QWidget* makeFooter();
    void showQuery();
    void choose(int row);
    std::string chosenDay() const;
    void chosenChanged();

    MunshiBook& book_;
    DesktopServices& services_;
    PanelButton* back_ = nullptr;
    PanelText* title_ = nullptr;
    PanelText* count_ = nullptr;
    PanelField* field_ = nullptr;
    QListView* view_ = nullptr;
    PanelScrollBar* bar_ = nullptr;
    MunshiEarlierModel* model_ = nullptr;
    MunshiEarlierDelegate* delegate_ = nullptr;
    PanelText* empty_ = nullptr;
    PanelMessage* told_ = nullptr;
    PanelButton* copy_ = nullptr;
    PanelButton* save_ = nullptr;
};

} // namespace DeskSprites
