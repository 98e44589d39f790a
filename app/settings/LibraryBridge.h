#pragma once

#include "app/characters/batti/BattiController.h"
#include "app/desktop/CharacterSite.h"
#include "app/desktop/CharacterStage.h"
#include "app/desktop/DesktopCommands.h"
#include "app/desktop/DesktopPlacement.h"
#include "app/desktop/ShortcutKeeper.h"
#include "app/services/InterfaceAudio.h"
#include "app/settings/LibraryWindowController.h"
#include "platform/Autostart.h"

#include <filesystem>
#include <memory>

namespace DeskSprites {

/// What the settings window is connected to.
struct LibrarySources {
    CharacterStage& stage;
    DesktopCommands& commands;
    DesktopPlacement& placement;
    DesktopServices& services;
    InterfaceAudio& audio;
    ShortcutKeeper& shortcut;
    Platform::Autostart& autostart;
    std::filesystem::path icons; ///< the folder of the program's icon
    CharacterSite& site;
};

/// Brings the program's state to the settings window and the user's edits back.
class LibraryBridge {
public:
    explicit LibraryBridge(const LibrarySources& sources);
    ~LibraryBridge();

    /// Opens the window on a pane, or without one on the pane that was open last.
    void open(const std::optional<std::string>& pane);
    bool isVisible() const;
    void close();

    /// Who is on the desktop has changed.
    void refreshCollection();
    /// Anything else that the window shows has changed; nothing happens while it is closed.
    void refreshLibrary();

private:
    LibraryActions actions();
    void connectCharacterActions(LibraryActions& actions);
    void connectGeneralActions(LibraryActions& actions);
    std::vector<LibraryEntry> roster() const;
    GeneralSettings general() const;
    CharacterSettings settingsOf(const DesktopCharacter& character) const;
    std::optional<FellowCore::TimerSettings> timerSettingsOf(const DesktopCharacter& character) const;
    void showCharacter(const DesktopCharacter& character);
    BattiController* batti() const;
    std::vector<std::string> identifiers() const;

    LibrarySources sources_;
    std::unique_ptr<LibraryWindowController> library_; ///< made when it is first opened
};

} // namespace DeskSprites
