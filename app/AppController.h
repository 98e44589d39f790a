#pragma once

#include "app/characters/batti/BattiController.h"
#include "app/desktop/Arrangement.h"
#include "app/desktop/CharacterMenus.h"
#include "app/desktop/CharacterSite.h"
#include "app/desktop/CharacterStage.h"
#include "app/desktop/DesktopCommands.h"
#include "app/desktop/DesktopPlacement.h"
#include "app/desktop/Notices.h"
#include "app/desktop/QuickActions.h"
#include "app/desktop/ShortcutBoard.h"
#include "app/desktop/SizeSlider.h"
#include "app/roster/Companion.h"
#include "app/services/AudioShare.h"
#include "app/services/InterfaceAudio.h"
#include "app/services/PreferencesKeeper.h"
#include "app/settings/LibraryBridge.h"
#include "platform/Autostart.h"

#include <QStringList>

#include <filesystem>
#include <functional>
#include <memory>

namespace DeskSprites {

/// What a run of the program is made with.
struct AppSurroundings {
    FellowCore::SupportFolders folders;
    std::filesystem::path resources;  ///< the installed data folder
    std::filesystem::path plugins;    ///< the folder of the libraries that are loaded when needed
    std::filesystem::path executable; ///< for the entry that starts the program at login
    InterfaceAudio::Playback playback = InterfaceAudio::Playback::audible;
};

/// The one long-lived owner: it makes everything in order, carries out what the user and the system ask for,
/// and ends everything in order. Each operation asks and tells; what stands behind it has an object of its
/// own.
class AppController final : public DesktopCommands {
public:
    AppController(Platform::System& system, AppSurroundings surroundings);
    ~AppController() override;

    /// From here to the first character on the screen. `arguments` are the command line without the program's
    /// name.
    void applicationDidFinishLaunching(const QStringList& arguments);
    /// Saves everything and leaves the desktop. Called once, whatever ends the program.
    void applicationWillTerminate();
    /// The program was started again while it runs: its arguments, or the settings window without any.
    void applicationShouldHandleReopen(const QStringList& arguments);
    /// A deskfellow:// link.
    void handleControlEvent(const QString& url);

    void willSleep();
    void didWake();
    void screenChanged();

    DesktopCharacter* activeCharacter() const { return stage_.active(); }
    void hideAll();
    void moved(DesktopCharacter& character, MovePhase phase);
    void persistCollection();
    void refreshCollection();

    void select(const std::string& id) override;
    void bringOut(const std::string& id) override;
    void hideCharacter() override;
    void toggleVisible() override;
    void swapBack() override;
    void focus(const std::string& id) override;
    void arrange(FellowCore::ArrangeLayout::Edge edge, CompactChange compact) override;
    void stepSize(DesktopCharacter& character, int steps) override;
    void beginSizeEdit(DesktopCharacter& character) override;
    void requestSize(double height) override;
    void finishSizeEdit() override;
    void openLibrary(const std::optional<std::string>& pane) override;
    void quit() override;
    std::vector<DesktopCharacter*> candidates() const override;
    DesktopCharacter* previousCharacter(const DesktopCharacter& of) const override;
    bool isSetFull() const override;
    bool isVisible() const override;
    bool isCompact() const override;
    FellowCore::ArrangeLayout::Edge arrangeEdge() const override;

private:
    void buildCharacters();
    void makeCharacter(const Companion& companion);
    void wire(DesktopCharacter& character);
    void wireBatti(BattiController& batti);
    void wireSite();
    void wireServices();
    void wireSession();
    void attendanceChanged(bool& reason, bool holds);
    void restoreDesktop();
    void tellProblems();
    void handleArguments(const QStringList& arguments);
    void showControls(const std::string& id);
    void createMenuBar();
    /// Presses one of a character's own actions, whether it is on the desktop or not.
    void perform(const std::string& id, const QString& action);
    void anchorDesktopAttachments();
    void dismissAllActions();
    void collectionChanged();
    void playInterfaceSound(FellowCore::InterfaceSoundCue cue, const DesktopCharacter* from = nullptr,
                            double volume = 1);
    bool cuesAreMuted(const DesktopCharacter* from) const;
    bool isGuidedBySound() const;

    Platform::System& system_;
    AppSurroundings surroundings_;
    FellowCore::PosixFileOperations files_;
    BackgroundSaver saver_;
    PreferencesKeeper keeper_;
    DesktopServices services_;
    AudioShare audio_;
    InterfaceAudio interfaceAudio_;
    Platform::Autostart autostart_;
    ShortcutBoard shortcuts_;
    ShortcutKeeper& toggleShortcut_;
    CharacterSite site_;
    CharacterStage stage_;
    DesktopPlacement placement_;
    Arrangement arrangement_;
    SizeSlider sizePreview_;
    CharacterMenus menus_;
    QuickActions quickActions_;
    Notices notices_;
    LibraryBridge library_;
    std::vector<QString> startProblems_;
    BattiController* batti_ = nullptr;
    bool terminated_ = false;
    struct {
        bool locked = false;
        bool inBackground = false;
    } away_; ///< why nobody sees the desktop
};

} // namespace DeskSprites
