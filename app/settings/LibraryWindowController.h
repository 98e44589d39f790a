#pragma once

#include "app/settings/LibraryActions.h"
#include "app/settings/LibraryState.h"
#include "app/settings/SettingsForms.h"

#include <QByteArray>

class QWidget;

namespace DeskSprites {

class LibraryWindow;

/// Owns the settings window: keeps what it shows, makes the window when it is first wanted and destroys it
/// when it is closed. Decides nothing; what the user does goes to the closures of `LibraryActions`.
class LibraryWindowController {
public:
    static inline const std::string& generalPane = LibraryState::generalPane;

    explicit LibraryWindowController(LibraryActions actions, SettingsFormFactory forms = {});
    ~LibraryWindowController();
    LibraryWindowController(const LibraryWindowController&) = delete;
    LibraryWindowController& operator=(const LibraryWindowController&) = delete;

    /// Opens the window, or brings it to the front, on the given pane. An unknown pane opens `generalPane`;
    /// an empty one keeps the pane that is open. `onPaneChanged` is called only when the user chooses a pane.
    void show(const std::string& pane);
    void close();
    bool isVisible() const;
    /// The pane in front, or the last one while the window is closed; empty before the first.
    const std::string& pane() const { return pane_; }
    /// The window while it exists, for its geometry and as a parent of dialogs.
    QWidget* window() const;

    void setRoster(std::vector<LibraryEntry> roster);
    /// Identifiers; an empty `active` means none. `onScreen` is in the order of arrival.
    void setActive(std::string active, std::vector<std::string> onScreen, std::vector<std::string> available,
                   DesktopVisibility visibility = DesktopVisibility::shown);
    void setGeneral(GeneralSettings general);
    void setCharacter(const std::string& id, CharacterSettings settings);
    void setTimer(const std::string& id, FellowCore::TimerSettings settings);

private:
    void makeWindow();
    void refresh();
    void refreshPane(const std::string& pane);

    LibraryActions actions_;
    SettingsFormFactory forms_;
    LibraryState state_;
    std::string pane_;
    QByteArray geometry_;             ///< where the user left the window, for this run of the program
    LibraryWindow* window_ = nullptr; ///< owned; from the moment it closes, by itself
};

} // namespace DeskSprites
