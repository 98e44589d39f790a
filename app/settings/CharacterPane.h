#pragma once

#include "app/settings/LibraryActions.h"
#include "app/settings/LibraryPane.h"
#include "app/settings/SettingsForms.h"

namespace DeskSprites {

class PortraitView;
class TimerForm;

/// One character: who it is, where it stands, and all that can be set on it.
class CharacterPane : public LibraryPane {
    Q_OBJECT
public:
    /// The actions and forms must outlive the pane.
    CharacterPane(std::string id, const LibraryActions& actions, const SettingsFormFactory& forms,
                  QWidget* parent = nullptr);
    void showState(const LibraryState& state) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void addHeader();
    void addSize();
    void addTimer();
    void addHabits();
    void addOwnForm(const SettingsFormFactory& forms);

    void showPlace(const LibraryState& state, const LibraryEntry& entry);
    void showButtons(const LibraryState& state);
    void showSettings(const CharacterSettings& settings);

    std::string id_;
    const LibraryActions& actions_;

    QBoxLayout* header_ = nullptr;
    PortraitView* portrait_ = nullptr;
    QLabel* name_ = nullptr;
    QLabel* role_ = nullptr;
    QLabel* place_ = nullptr;
    QLabel* others_ = nullptr;
    QLabel* refusal_ = nullptr;
    FormButtons* buttons_ = nullptr;
    QPushButton* bringOut_ = nullptr;
    QPushButton* select_ = nullptr;
    QPushButton* hide_ = nullptr;
    QWidget* accentLine_ = nullptr;
    FormSlider* size_ = nullptr;
    TimerForm* timer_ = nullptr;
    FormSection* habits_ = nullptr;
    FormSwitch* sounds_ = nullptr;
    FormSlider* volume_ = nullptr;
    FormSwitch* mirrored_ = nullptr;
    FormSwitch* reducedMotion_ = nullptr;
};

} // namespace DeskSprites
