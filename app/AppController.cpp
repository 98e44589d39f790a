#include "app/AppController.h"

#include "app/characters/CharacterJobs.h"
#include "app/roster/BattiLamps.h"
#include "app/roster/Icons.h"
#include "core/art/CharacterBuildPolicy.h"
#include "core/base/WholeFile.h"
#include "core/host/PreferenceKeys.h"
#include "core/host/SettingsPersistence.h"
#include "platform/AudioThread.h"
#include "platform/image/PngDecoder.h"

#include <QApplication>
#include <QDebug>
#include <QUrl>

#include <algorithm>

namespace DeskSprites {

namespace Keys = FellowCore::PreferenceKeys;
using FellowCore::InterfaceSoundCue;
using FellowCore::OnScreenSet;

namespace {

constexpr std::string_view battiID = "batti";
constexpr std::size_t buildFileLimit = 64U << 10U;

FellowCore::CharacterBuildPolicy readPolicy(FellowCore::FileOperations& files,
                                            const std::filesystem::path& resources) {
    try {
        return FellowCore::CharacterBuildPolicy::fromBuildJson(
            FellowCore::readWholeFile(files, resources / "build.json", buildFileLimit));
    } catch (const FellowCore::FileError&) {
        return {}; // an installation without the file has the standard cast
    }
}

ShortcutPurpose togglePurpose() {
    return {"toggle",
            std::string(Keys::shortcutKey),
            std::string(Keys::shortcutModifiers),
            std::string(Keys::shortcutLabel),
            {Qt::Key_B, static_cast<int>(Qt::ControlModifier | Qt::AltModifier)},
            QCoreApplication::translate("ShortcutKeeper", "Another program already uses %1, so it does not "
                                                          "show and hide Deskfellow.")};
}

void reportSaveFailure(const std::string& line) {
    qWarning("%s", line.c_str());
}

} // namespace

AppController::AppController(Platform::System& system, AppSurroundings surroundings)
    : system_(system), surroundings_(std::move(surroundings)), saver_(reportSaveFailure),
      keeper_(files_, surroundings_.folders.preferencesFile(), saver_),
      services_{system, keeper_.preferences(), files_, saver_, surroundings_.folders},
      audio_([library = surroundings_.plugins / "libdeskfellow_audio.so"] {
          return std::make_unique<Platform::AudioThread>(QString::fromStdString(library.string()));
      }),
      interfaceAudio_(
          keeper_.preferences(), surroundings_.resources / "sounds", [this] { return audio_.makeHandle(); },
          [&system] { return system.clock().monotonic(); }, surroundings_.playback),
      autostart_(files_, surroundings_.folders.autostartFolder(), surroundings_.executable),
      shortcuts_(keeper_.preferences(), system.shortcuts()),
      toggleShortcut_(shortcuts_.add(togglePurpose(), [this] { toggleVisible(); })),
      site_{services_, *this, shortcuts_, surroundings_.resources, surroundings_.plugins, {}, {}, {}, {}, {}},
      stage_(services_), placement_(stage_, services_), arrangement_(stage_, placement_, services_),
      sizePreview_(placement_, services_), menus_(stage_, *this),
      quickActions_(stage_, menus_, *this, services_), notices_(stage_, services_),
      library_({stage_, *this, placement_, services_, interfaceAudio_, toggleShortcut_, autostart_,
                surroundings_.resources / "icon", site_}) {}

AppController::~AppController() = default;

void AppController::applicationDidFinishLaunching(const QStringList& arguments) {
    FellowCore::SettingsPersistence::migrate(services_.preferences);
    wireSite();
    buildCharacters();
    wireServices();
    wireSession();
    restoreDesktop();
    handleArguments(arguments);
    // What no one can see yet waits until the first character stands.
    QMetaObject::invokeMethod(
        qApp,
        [this] {
            createMenuBar();
            tellProblems();
        },
        Qt::QueuedConnection);
}

void AppController::wireSite() {
    site_.playSound = [this](InterfaceSoundCue cue, const DesktopCharacter& from, double volume) {
        playInterfaceSound(cue, &from, volume);
    };
    site_.isGuidedBySound = [this] { return isGuidedBySound(); };
    site_.tell = [this](const QString& sentence) { notices_.tell(sentence); };
    site_.obstacles = [this](const DesktopCharacter& of) {
        std::vector<FellowCore::Rect> windows = stage_.attachmentObstacles(of);
        const std::vector<FellowCore::Rect> actions = quickActions_.obstacles();
        windows.insert(windows.end(), actions.begin(), actions.end());
        return windows;
    };
    site_.dismissActions = [this] { dismissAllActions(); };
    site_.coverScreen = [this](const auto& screen) { stage_.coverScreen(screen); };
    if (surroundings_.playback == InterfaceAudio::Playback::audible) {
        site_.makeAudio = [this] { return audio_.makeHandle(); };
    }
    site_.presentActions = [this](DesktopCharacter& character) {
        if (character.isShown() && stage_.active() == &character && !library_.isVisible()) {
            quickActions_.present(character);
        }
    };
}

void AppController::buildCharacters() {
    const Roster roster(surroundings_.resources, readPolicy(files_, surroundings_.resources),
                        Platform::decodePng, [](const std::string& line) { qWarning("%s", line.c_str()); });
    for (const Companion& companion : roster.allCases()) {
        if (companion.pack) {
            makeCharacter(companion);
        }
    }
    stage_.open();
    for (const auto& character : stage_.all()) {
        ControlledRuntime* resting = stage_.controlled(character->identifier());
        resting->onClick = [this, id = character->identifier()] { focus(id); };
    }
}

void AppController::makeCharacter(const Companion& companion) {
    if (companion.rawValue() != battiID) {
        wire(stage_.add(makeDesktopCharacter(companion, site_)));
        return;
    }
    auto batti = std::make_unique<BattiController>(
        companion, loadBattiLamps(surroundings_.resources / "builtin", companion.manifest.grid), services_);
    batti_ = batti.get();
    wireBatti(*batti_);
    wire(stage_.add(std::move(batti)));
}

void AppController::wire(DesktopCharacter& character) {
    character.onClick = [this, &character] {
        focus(character.identifier());
        if (!character.clicked()) {
            quickActions_.toggle(character);
        }
    };
    character.onMoved = [this, &character](MovePhase phase) { moved(character, phase); };
    character.onResize = [this, &character](int notches) { stepSize(character, notches); };
    character.menuProvider = [this, &character]() -> std::unique_ptr<QMenu> {
        focus(character.identifier());
        quickActions_.dismiss();
        return menus_.characterMenu(character);
    };
    character.onChange = [this, &character] {
        quickActions_.update(character);
        if (stage_.active() == &character) {
            system_.tray().refreshMenu();
        }
    };
}

void AppController::wireBatti(BattiController& batti) {
    batti.onCue = [this, &batti](InterfaceSoundCue cue) { playInterfaceSound(cue, &batti); };
    batti.onPhaseEnded = [this, &batti] { site_.presentActions(batti); };
}

void AppController::wireServices() {
    arrangement_.arrangementCompletion = [this] { anchorDesktopAttachments(); };
    sizePreview_.onFinished = [this] {
        library_.refreshLibrary();
        anchorDesktopAttachments();
    };
    notices_.obstacles = [this] { return quickActions_.obstacles(); };
    quickActions_.onOpened = [this] { playInterfaceSound(InterfaceSoundCue::open, quickActions_.openFor()); };
    quickActions_.onClosed = [this] { playInterfaceSound(InterfaceSoundCue::close); };

    system_.screens().onChange = [this] { screenChanged(); };
    system_.motion().onChange = [this] {
        for (const auto& character : stage_.all()) {
            character->motionChanged();
        }
        library_.refreshLibrary();
    };
    startProblems_ = shortcuts_.registerAll();
}

void AppController::wireSession() {
    Platform::SessionEvents& session = system_.session();
    session.onWillSleep = [this] { willSleep(); };
    session.onDidWake = [this] { didWake(); };
    session.onLocked = [this] { attendanceChanged(away_.locked, true); };
    session.onUnlocked = [this] { attendanceChanged(away_.locked, false); };
    session.onSessionInactive = [this] { attendanceChanged(away_.inBackground, true); };
    session.onSessionActive = [this] { attendanceChanged(away_.inBackground, false); };
}

/// A session may be locked and in the background at once; the user is back when it is neither.
void AppController::attendanceChanged(bool& reason, bool holds) {
    const bool wasAway = away_.locked || away_.inBackground;
    reason = holds;
    const bool isAway = away_.locked || away_.inBackground;
    if (isAway == wasAway) {
        return;
    }
    for (const auto& character : stage_.all()) {
        if (isAway) {
            character->screenLocked();
        } else {
            character->screenUnlocked();
        }
    }
}

void AppController::restoreDesktop() {
    auto& preferences = services_.preferences;
    const auto active = preferences.string(Keys::activeCharacter);
    const OnScreenSet set = OnScreenSet::restore(preferences.strings(OnScreenSet::persistenceKey), active,
                                                 stage_.host().available(), battiID);
    const auto legacy = placement_.legacyAnchor();
    for (const std::string& id : set.ids()) {
        DesktopCharacter& character = *stage_.find(id);
        const auto own = placement_.savedAnchor(character);
        placement_.initializeSize(character);
        const bool isFirst = id == set.ids().front();
        if (const auto anchor = own ? own : isFirst ? legacy : std::nullopt) {
            character.place(*anchor);
        }
    }
    stage_.host().restore(set, active);
    const auto previous = preferences.string(Keys::legacyPreviousCharacter);
    if (const auto& now = stage_.host().activeID(); now && previous) {
        const std::string own = Keys::previousCharacter(*now);
        if (!preferences.contains(own)) {
            preferences.setString(own, *previous);
        }
    }
    persistCollection();
    refreshCollection();
}

void AppController::createMenuBar() {
    system_.tray().onActivated = [this] { toggleVisible(); };
    system_.tray().start(trayIcon(surroundings_.resources / "icon"),
                         [this](QMenu& menu) { menus_.fillTrayMenu(menu); });
    system_.tray().setTooltip(QStringLiteral("Deskfellow"));
}

void AppController::tellProblems() {
    if (!system_.hasCompositor()) {
        qInfo("No compositor is running, so the characters have hard edges.");
    }
    if (!system_.hasWindowManager()) {
        qInfo("No window manager is running, so panels may be covered by other windows.");
    }
    if (keeper_.loadProblem()) {
        notices_.tell(QString::fromStdString(*keeper_.loadProblem()));
    }
    for (const QString& problem : startProblems_) {
        notices_.tell(problem);
    }
    startProblems_.clear();
    if (stage_.all().empty()) {
        qWarning("No character's art is installed in %s.", surroundings_.resources.c_str());
    }
    notices_.start();
}

void AppController::handleArguments(const QStringList& arguments) {
    for (const QString& argument : arguments) {
        if (argument == QLatin1String("--library")) {
            openLibrary(std::nullopt);
        } else if (argument == QLatin1String("--controls")) {
            showControls(std::string(battiID));
        } else if (argument == QLatin1String("--mira-controls")) {
            showControls("mira");
        } else if (argument == QLatin1String("--intern-controls")) {
            showControls("intern-nimit");
        } else if (argument == QLatin1String("--mira-settings")) {
            openLibrary("mira");
        } else if (argument == QLatin1String("--toggle")) {
            toggleVisible();
        } else if (argument == QLatin1String("--swap-back")) {
            swapBack();
        } else if (argument == QLatin1String("--quit")) {
            quit();
        } else if (argument.startsWith(QLatin1String("deskfellow:"))) {
            handleControlEvent(argument);
        }
    }
}

void AppController::showControls(const std::string& id) {
    select(id);
    DesktopCharacter* character = stage_.find(id);
    if (character && character->isShown()) {
        quickActions_.present(*character);
        quickActions_.takeKeyboard(); // the command came from a key or a menu, and no pointer is near
    }
}

void AppController::applicationShouldHandleReopen(const QStringList& arguments) {
    if (arguments.isEmpty()) {
        openLibrary(std::nullopt);
    } else {
        handleArguments(arguments);
    }
}

void AppController::handleControlEvent(const QString& url) {
    const QUrl link(url);
    const std::string subject = link.path().section(QLatin1Char('/'), 1, 1).toStdString();
    if (link.scheme() != QLatin1String("deskfellow")) {
        return;
    }
    if (link.host() == QLatin1String("settings")) {
        const bool isGeneral = subject == "general";
        openLibrary(subject.empty()
                        ? std::nullopt
                        : std::optional(isGeneral ? LibraryWindowController::generalPane : subject));
    } else if (link.host() == QLatin1String("select")) {
        select(subject);
    } else if (link.host() == QLatin1String("bring")) {
        bringOut(subject);
    } else if (link.host() == QLatin1String("do")) {
        perform(subject, link.path().section(QLatin1Char('/'), 2, 2));
    } else if (link.host() == QLatin1String("toggle")) {
        toggleVisible();
    } else if (const auto edge = FellowCore::ArrangeLayout::edgeFromRawValue(subject);
               edge && link.host() == QLatin1String("arrange")) {
        arrange(*edge, CompactChange::keep);
    } else {
        qWarning("Deskfellow does not know the link %s", qUtf8Printable(url.left(200)));
    }
}

void AppController::applicationWillTerminate() {
    if (terminated_) {
        return;
    }
    terminated_ = true;
    notices_.end();
    arrangement_.finishArrangement();
    sizePreview_.finishSizePreview();
    if (const DesktopCharacter* active = stage_.active()) {
        placement_.recordDesktopAnchor(*active, FrameSave::forced);
    }
    dismissAllActions();
    library_.close();
    interfaceAudio_.stop();
    stage_.host().shutdown();
    if (batti_) {
        batti_->persist();
    }
    shortcuts_.releaseAll();
    keeper_.saveNow();
    saver_.flush();
}

} // namespace DeskSprites
