#include "app/settings/LibraryBridge.h"

#include "app/characters/CharacterJobs.h"
#include "app/characters/manifest/ManifestCharacterController.h"
#include "app/roster/Icons.h"
#include "core/art/DesktopSize.h"
#include "core/host/PreferenceKeys.h"
#include "core/host/SettingsPersistence.h"

#include <QDesktopServices>
#include <QUrl>

namespace DeskSprites {

namespace Keys = FellowCore::PreferenceKeys;
using FellowCore::SettingsPersistence;

LibraryBridge::LibraryBridge(const LibrarySources& sources) : sources_(sources) {}

LibraryBridge::~LibraryBridge() = default;

bool LibraryBridge::isVisible() const {
    return library_ && library_->isVisible();
}

void LibraryBridge::close() {
    if (library_) {
        library_->close();
    }
}

void LibraryBridge::open(const std::optional<std::string>& pane) {
    if (!library_) {
        library_ = std::make_unique<LibraryWindowController>(
            actions(), [this](const std::string& id, QWidget* parent) -> QWidget* {
                DesktopCharacter* character = sources_.stage.find(id);
                return character ? makeSettingsForm(*character, sources_.site, parent) : nullptr;
            });
        library_->setRoster(roster());
    }
    refreshCollection();
    refreshLibrary();
    const auto saved = sources_.services.preferences.string(SettingsPersistence::paneKey);
    const auto& active = sources_.stage.host().activeID();
    const auto chosen = SettingsPersistence::pane(pane ? pane : saved, active, identifiers());
    library_->show(chosen.value_or(LibraryWindowController::generalPane));
    // No other window stands in a task list, and the server keeps a copy of every size for each window that
    // has it.
    if (QWidget* window = library_->window(); !window->testAttribute(Qt::WA_SetWindowIcon)) {
        window->setWindowIcon(applicationIcon(sources_.icons));
    }
}

std::vector<std::string> LibraryBridge::identifiers() const {
    std::vector<std::string> ids;
    for (const auto& character : sources_.stage.all()) {
        ids.push_back(character->identifier());
    }
    ids.push_back(LibraryWindowController::generalPane);
    return ids;
}

std::vector<LibraryEntry> LibraryBridge::roster() const {
    std::vector<LibraryEntry> entries;
    for (const auto& character : sources_.stage.all()) {
        const FellowCore::CharacterManifest& manifest = character->companion().manifest;
        LibraryEntry entry;
        entry.id = manifest.id;
        entry.name = character->name();
        entry.role = QString::fromStdString(manifest.role);
        entry.portrait = character->portrait();
        entry.accent = QColor::fromRgbF(static_cast<float>(manifest.accent.red),
                                        static_cast<float>(manifest.accent.green),
                                        static_cast<float>(manifest.accent.blue));
        entry.hasTimer = timerSettingsOf(*character).has_value();
        entries.push_back(std::move(entry));
    }
    return entries;
}

void LibraryBridge::refreshCollection() {
    if (!library_) {
        return;
    }
    const FellowCore::CharacterHost& host = sources_.stage.host();
    std::vector<std::string> available;
    for (const auto& character : sources_.stage.all()) {
        if (host.isAvailable(character->identifier())) {
            available.push_back(character->identifier());
        }
    }
    library_->setActive(host.activeID().value_or(std::string()), host.onScreen().ids(), std::move(available),
                        host.isVisible() ? DesktopVisibility::shown : DesktopVisibility::hidden);
}

void LibraryBridge::refreshLibrary() {
    if (!library_) {
        return;
    }
    library_->setGeneral(general());
    for (const auto& character : sources_.stage.all()) {
        showCharacter(*character);
    }
}

void LibraryBridge::showCharacter(const DesktopCharacter& character) {
    library_->setCharacter(character.identifier(), settingsOf(character));
    if (const auto timer = timerSettingsOf(character)) {
        library_->setTimer(character.identifier(), *timer);
    }
}

GeneralSettings LibraryBridge::general() const {
    const auto& preferences = sources_.services.preferences;
    GeneralSettings general;
    general.interfaceSounds = sources_.audio.enabled();
    general.interfaceVolume = sources_.audio.volume();
    general.shortcutLabel = sources_.shortcut.label();
    general.shortcutSupported = sources_.shortcut.isSupported();
    general.startAtLogin = sources_.autostart.isEnabled();
    general.defaultHeight = FellowCore::DesktopSize::normalized(
        preferences.number(Keys::sharedDesktopHeight).value_or(FellowCore::DesktopSize::standardHeight));
    general.arrangeEdge = sources_.commands.arrangeEdge();
    general.arrangeCompact = sources_.placement.isCompact();
    general.systemReducesMotion = sources_.services.system.motion().isReduced();
    general.version = QStringLiteral(DESKFELLOW_VERSION);
    const FellowCore::SupportFolders& folders = sources_.services.folders;
    general.dataFolder = QString::fromStdString(folders.shortened(folders.deskSprites()));
    return general;
}

CharacterSettings LibraryBridge::settingsOf(const DesktopCharacter& character) const {
    CharacterSettings settings;
    settings.desktopHeight = sources_.placement.desktopHeight(character);
    if (const BattiController* light = batti(); light == &character) {
        settings.sounds = light->sounds();
        settings.mirrored = light->isMirrored();
        settings.reducedMotion = light->hasOwnReducedMotion();
    }
    return settings;
}

std::optional<FellowCore::TimerSettings>
LibraryBridge::timerSettingsOf(const DesktopCharacter& character) const {
    if (const BattiController* light = batti(); light == &character) {
        return light->timerSession().timer.settings;
    }
    const auto* manifest = dynamic_cast<const ManifestCharacterController*>(&character);
    return manifest && manifest->hasTimer() ? std::optional(manifest->timer().settings) : std::nullopt;
}

BattiController* LibraryBridge::batti() const {
    return dynamic_cast<BattiController*>(sources_.stage.find("batti"));
}

LibraryActions LibraryBridge::actions() {
    LibraryActions actions;
    actions.onPaneChanged = [this](const std::string& pane) {
        sources_.services.preferences.setString(SettingsPersistence::paneKey, pane);
    };
    connectCharacterActions(actions);
    connectGeneralActions(actions);
    return actions;
}

void LibraryBridge::connectCharacterActions(LibraryActions& actions) {
    actions.onSelect = [this](const std::string& id) { sources_.commands.select(id); };
    actions.onBringOut = [this](const std::string& id) { sources_.commands.bringOut(id); };
    actions.onHide = [this](const std::string& id) {
        sources_.commands.focus(id);
        sources_.commands.hideCharacter();
    };
    actions.onSizePreview = [this](const std::string& id, double height) {
        sources_.commands.beginSizeEdit(*sources_.stage.find(id));
        sources_.commands.requestSize(height);
    };
    actions.onSizeChosen = [this](const std::string& id, double height) {
        sources_.commands.beginSizeEdit(*sources_.stage.find(id));
        sources_.commands.requestSize(height);
        sources_.commands.finishSizeEdit();
    };
    actions.onSizeStep = [this](const std::string& id, SizeStep step) {
        sources_.commands.stepSize(*sources_.stage.find(id), step == SizeStep::larger ? 1 : -1);
    };
    actions.onCharacterSounds = [this](const std::string&, bool on) { batti()->setSounds(on); };
    actions.onMirrored = [this](const std::string&, bool on) { batti()->setMirrored(on); };
    actions.onReducedMotion = [this](const std::string&, bool on) { batti()->setReducedMotion(on); };
    actions.onTimerSettings = [this](const std::string& id, const FellowCore::TimerSettings& settings) {
        DesktopCharacter* character = sources_.stage.find(id);
        if (BattiController* light = batti(); light == character) {
            light->applySettings(settings);
        } else if (auto* manifest = dynamic_cast<ManifestCharacterController*>(character)) {
            manifest->updateTimerSettings(settings);
        }
    };
}

void LibraryBridge::connectGeneralActions(LibraryActions& actions) {
    actions.onInterfaceSounds = [this](bool on) { sources_.audio.setEnabled(on); };
    actions.onInterfaceVolume = [this](double volume) { sources_.audio.setVolume(volume); };
    actions.onShortcutChanged = [this](const Platform::KeyCombination& combination, const QString& label) {
        return sources_.shortcut.change(combination, label);
    };
    actions.onShortcutCleared = [this] { sources_.shortcut.clear(); };
    actions.onStartAtLogin = [this](bool on) {
        return QString::fromStdString(sources_.autostart.setEnabled(on).value_or(std::string()));
    };
    actions.onDefaultHeight = [this](double height) {
        sources_.services.preferences.setNumber(Keys::sharedDesktopHeight,
                                                FellowCore::DesktopSize::normalized(height));
    };
    actions.onArrangeEdge = [this](FellowCore::ArrangeLayout::Edge edge) {
        sources_.services.preferences.setString(Keys::arrangeEdge, FellowCore::ArrangeLayout::rawValue(edge));
    };
    actions.onArrangeCompact = [this](bool on) {
        sources_.commands.arrange(sources_.commands.arrangeEdge(),
                                  on ? CompactChange::turnOn : CompactChange::turnOff);
    };
    actions.onArrange = [this] {
        sources_.commands.arrange(sources_.commands.arrangeEdge(), CompactChange::keep);
    };
    actions.onOpenDataFolder = [this] {
        QDesktopServices::openUrl(
            QUrl::fromLocalFile(QString::fromStdString(sources_.services.folders.deskSprites().string())));
    };
}

} // namespace DeskSprites
