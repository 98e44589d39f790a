#pragma once

#include "app/characters/dhiru/DhiruSections.h"
#include "app/desktop/Bubble.h"
#include "app/desktop/DesktopServices.h"

#include <array>
#include <functional>
#include <vector>

class QStackedWidget;

namespace DeskSprites {

class DevWatchController;
class DhiruAwake;
class DhiruAwakeLine;
class DhiruList;
class DhiruQuestionSheet;
struct DhiruQuestion;
class PanelButton;
class PanelField;
class PanelTabs;
class PanelText;

/// Dhiru's panel, open: the machine in one line, and the lists of servers, processes, applications and
/// containers with a filter over all. It keeps one size, so that nothing moves under the hand that stops
/// something.
class DhiruPanel : public Bubble {
    Q_OBJECT

public:
    /// All outlive the panel.
    DhiruPanel(DevWatchController& watch, DhiruAwake& awake, DesktopServices& services);

    /// The user wants to see an address in the browser.
    std::function<void(const QString& url)> onOpenUrl;

    /// Takes the room there is: `visibleHeight` is the screen's, in points.
    void fitInto(double visibleHeight);
    /// Gives the keyboard to the filter.
    void takeKeyboard();
    /// Shows a sentence in the header until the panel closes or the user goes on to something else.
    void tell(const QString& sentence);
    void choose(DhiruSection section);

    PanelField& filter() const { return *filter_; }
    PanelTabs& tabs() const { return *tabs_; }
    DhiruAwakeLine& awakeLine() const { return *awakeLine_; }
    DhiruList& list(DhiruSection section) const { return *lists_.at(static_cast<std::size_t>(section)); }
    DhiruQuestionSheet& question() const { return *question_; }
    QString headline() const;

protected:
    void paletteChanged() override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    DhiruSection section() const;
    DhiruList& shownList() const { return list(section()); }
    QWidget* makeHeader();
    void makeTabs();
    void makeLists();
    void connectAll();
    void chainTabs();
    void refresh();
    void showLists();
    void showHeadline();
    void act(const QString& key, DhiruAct act);
    void ask(const DhiruQuestion& question);
    void asked(const DhiruQuestion& question);
    void setListsEnabled(bool enabled);
    bool escape();
    bool controlKey(int key);

    DevWatchController& watch_;
    DesktopServices& services_;
    QWidget* inside_;
    QWidget* page_;
    PanelText* title_ = nullptr;
    PanelText* headline_ = nullptr;
    PanelButton* refresh_ = nullptr;
    PanelButton* close_ = nullptr;
    PanelField* filter_ = nullptr;
    PanelTabs* tabs_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    std::array<DhiruList*, allDhiruSections.size()> lists_{};
    DhiruQuestionSheet* question_ = nullptr;
    DhiruAwakeLine* awakeLine_ = nullptr;
    QString told_; ///< in place of the headline; empty for none
};

} // namespace DeskSprites
