#pragma once

#include "app/settings/LibraryActions.h"
#include "app/settings/LibraryPane.h"

namespace DeskSprites {

class ShortcutSetting;

/// What belongs to the whole collection: sounds, the shortcut, starting up, sizes and lining up, and where
/// the files are.
class GeneralPane : public LibraryPane {
    Q_OBJECT
public:
    /// The actions must outlive the pane.
    explicit GeneralPane(const LibraryActions& actions, QWidget* parent = nullptr);
    void showState(const LibraryState& state) override;

private:
    void addSounds();
    void addStart();
    void addDesktop();
    void addArrange();
    void addMotion();
    void addAbout();
    void setStartAtLogin(bool on);

    const LibraryActions& actions_;

    FormSwitch* sounds_ = nullptr;
    FormSlider* volume_ = nullptr;
    ShortcutSetting* shortcut_ = nullptr;
    FormRow* shortcutRow_ = nullptr;
    FormSwitch* startAtLogin_ = nullptr;
    FormRow* startRow_ = nullptr;
    FormSlider* defaultHeight_ = nullptr;
    FormRadio* right_ = nullptr;
    FormRadio* bottom_ = nullptr;
    FormSwitch* compact_ = nullptr;
    QPushButton* arrange_ = nullptr;
    QLabel* motion_ = nullptr;
    QLabel* version_ = nullptr;
    FormLink* folder_ = nullptr;
};

} // namespace DeskSprites
