// What the user and the system can ask of the running desktop.
#include "app/AppController.h"

#include "core/host/PreferenceKeys.h"

#include <QApplication>

#include <algorithm>

namespace DeskSprites {

namespace Keys = FellowCore::PreferenceKeys;
using FellowCore::InterfaceSoundCue;

namespace {

/// False when the character does not offer the action now.
bool press(DesktopCharacter& character, const QString& action) {
    const std::vector<QuickAction> offered = character.presentation().actions;
    const auto found = std::ranges::find(offered, action, &QuickAction::id);
    const bool canPress = found != offered.end() && found->enabled && found->onPress;
    if (canPress) {
        found->onPress();
    }
    return canPress;
}

} // namespace

void AppController::select(const std::string& id) {
    arrangement_.finishArrangement();
    FellowCore::CharacterHost& host = stage_.host();
    if (!host.isAvailable(id)) {
        openLibrary(id);
        return;
    }
    if (host.onScreen().contains(id)) {
        focus(id);
        host.setVisible(true);
        refreshCollection();
        return;
    }
    sizePreview_.finishSizePreview();
    const DesktopCharacter* old = stage_.active();
    const std::string oldID = old ? old->identifier() : std::string();
    quickActions_.dismiss();
    notices_.hide();
    DesktopCharacter& character = *stage_.find(id);
    placement_.initializeSize(character);
    if (old) {
        character.place(old->anchor());
    }
    if (!host.select(id)) {
        return;
    }
    if (old) {
        services_.preferences.setString(Keys::previousCharacter(id), oldID);
    }
    placement_.recordDesktopAnchor(character, FrameSave::forced);
    collectionChanged();
    if (old) {
        playInterfaceSound(InterfaceSoundCue::swap, &character);
    }
}

void AppController::swapBack() {
    const DesktopCharacter* active = stage_.active();
    const DesktopCharacter* previous = active ? previousCharacter(*active) : nullptr;
    if (previous) {
        select(previous->identifier());
    }
}

DesktopCharacter* AppController::previousCharacter(const DesktopCharacter& of) const {
    const auto id = services_.preferences.string(Keys::previousCharacter(of.identifier()));
    const bool canCome = id && stage_.host().isAvailable(*id) && !stage_.host().onScreen().contains(*id);
    return canCome ? stage_.find(*id) : nullptr;
}

void AppController::bringOut(const std::string& id) {
    FellowCore::CharacterHost& host = stage_.host();
    if (!host.isAvailable(id) || host.onScreen().contains(id)) {
        return;
    }
    if (host.onScreen().isFull()) {
        notices_.tell(QCoreApplication::translate("CharacterMenus", fullSetSentence));
        return;
    }
    sizePreview_.finishSizePreview();
    DesktopCharacter& newcomer = *stage_.find(id);
    if (const DesktopCharacter* active = stage_.active()) {
        placement_.placeBeside(newcomer, *active);
    } else {
        placement_.initializeSize(newcomer);
    }
    if (!host.add(id)) {
        return;
    }
    host.setVisible(true);
    placement_.recordDesktopAnchor(newcomer, FrameSave::forced);
    collectionChanged();
    playInterfaceSound(InterfaceSoundCue::reveal, &newcomer);
}

void AppController::hideCharacter() {
    arrangement_.finishArrangement();
    FellowCore::CharacterHost& host = stage_.host();
    if (host.onScreen().ids().size() == 1) {
        toggleVisible();
        return;
    }
    if (!host.activeID()) {
        return;
    }
    sizePreview_.finishSizePreview();
    quickActions_.dismiss();
    notices_.hide();
    host.remove(std::string(*host.activeID()));
    collectionChanged();
    playInterfaceSound(InterfaceSoundCue::hide);
}

void AppController::toggleVisible() {
    arrangement_.finishArrangement();
    dismissAllActions();
    FellowCore::CharacterHost& host = stage_.host();
    host.setVisible(!host.isVisible());
    refreshCollection();
    playInterfaceSound(host.isVisible() ? InterfaceSoundCue::reveal : InterfaceSoundCue::hide);
}

void AppController::hideAll() {
    if (stage_.host().isVisible()) {
        toggleVisible();
    }
}

void AppController::focus(const std::string& id) {
    FellowCore::CharacterHost& host = stage_.host();
    if (!host.onScreen().contains(id) || host.activeID() == id) {
        return;
    }
    sizePreview_.finishSizePreview();
    notices_.hide();
    host.focus(id);
    collectionChanged();
}

void AppController::moved(DesktopCharacter& character, MovePhase phase) {
    if (phase == MovePhase::ended) {
        focus(character.identifier());
        placement_.recordDesktopAnchor(character, FrameSave::forced);
        return;
    }
    arrangement_.finishArrangement();
    placement_.recordDesktopAnchor(character, FrameSave::throttled);
    anchorDesktopAttachments();
}

void AppController::arrange(FellowCore::ArrangeLayout::Edge edge, CompactChange compact) {
    sizePreview_.finishSizePreview();
    quickActions_.dismiss();
    arrangement_.arrange(edge, compact);
    library_.refreshLibrary();
}

void AppController::stepSize(DesktopCharacter& character, int steps) {
    arrangement_.finishArrangement();
    sizePreview_.finishSizePreview();
    placement_.stepSize(character, steps);
    quickActions_.update(character);
    anchorDesktopAttachments();
    library_.refreshLibrary();
}

void AppController::beginSizeEdit(DesktopCharacter& character) {
    arrangement_.finishArrangement();
    sizePreview_.begin(character);
}

void AppController::requestSize(double height) {
    sizePreview_.request(height);
}

void AppController::finishSizeEdit() {
    sizePreview_.finishSizePreview();
}

void AppController::openLibrary(const std::optional<std::string>& pane) {
    library_.open(pane);
}

void AppController::quit() {
    // The toolkit's `quit` asks every window first, and stays when one of them is just being closed.
    QApplication::exit();
}

void AppController::willSleep() {
    arrangement_.finishArrangement();
    sizePreview_.finishSizePreview();
    interfaceAudio_.stop();
    for (const auto& character : stage_.all()) {
        character->willSleep();
    }
    // The machine may not wake up again: what is known now must be on the disk before it sleeps.
    keeper_.saveNow();
    saver_.flush();
}

void AppController::didWake() {
    for (const auto& character : stage_.all()) {
        character->didWake();
    }
    screenChanged();
}

void AppController::screenChanged() {
    arrangement_.finishArrangement();
    sizePreview_.finishSizePreview();
    dismissAllActions();
    for (DesktopCharacter* character : stage_.onScreen()) {
        character->clampFrame();
        placement_.recordDesktopAnchor(*character, FrameSave::forced);
        character->saveFrame(FrameSave::forced);
    }
}

std::vector<DesktopCharacter*> AppController::candidates() const {
    std::vector<DesktopCharacter*> free;
    for (const auto& character : stage_.all()) {
        const std::string& id = character->identifier();
        if (stage_.host().isAvailable(id) && !stage_.host().onScreen().contains(id)) {
            free.push_back(character.get());
        }
    }
    return free;
}

bool AppController::isSetFull() const {
    return stage_.host().onScreen().isFull();
}

bool AppController::isVisible() const {
    return stage_.host().isVisible();
}

bool AppController::isCompact() const {
    return placement_.isCompact();
}

FellowCore::ArrangeLayout::Edge AppController::arrangeEdge() const {
    return arrangement_.edge();
}

void AppController::persistCollection() {
    const FellowCore::CharacterHost& host = stage_.host();
    host.onScreen().save(services_.preferences);
    if (const auto& active = host.activeID()) {
        services_.preferences.setString(Keys::activeCharacter, *active);
    } else {
        services_.preferences.remove(Keys::activeCharacter);
    }
}

void AppController::refreshCollection() {
    library_.refreshCollection();
    library_.refreshLibrary();
    system_.tray().refreshMenu();
}

void AppController::collectionChanged() {
    persistCollection();
    refreshCollection();
}

void AppController::anchorDesktopAttachments() {
    quickActions_.anchor();
    notices_.anchor();
}

void AppController::dismissAllActions() {
    quickActions_.dismiss();
    notices_.hide();
}

bool AppController::cuesAreMuted(const DesktopCharacter* from) const {
    return from && from == batti_ && !batti_->sounds();
}

bool AppController::isGuidedBySound() const {
    return std::ranges::any_of(stage_.all(), [](const auto& each) { return each->guidesBySound(); });
}

void AppController::perform(const std::string& id, const QString& action) {
    DesktopCharacter* character = stage_.find(id);
    if (!character || !stage_.host().isAvailable(id) || press(*character, action)) {
        return;
    }
    bringOut(id); // some things can only be done on the desktop
    if (!press(*character, action)) {
        qWarning("%s cannot do \"%s\" now.", id.c_str(), qUtf8Printable(action.left(100)));
    }
}

void AppController::playInterfaceSound(InterfaceSoundCue cue, const DesktopCharacter* from, double volume) {
    const DesktopCharacter* source = from ? from : stage_.active();
    const FellowCore::Rect art = source ? source->geometry().artwork : FellowCore::Rect{};
    const auto screen = source ? source->screen() : std::nullopt;
    interfaceAudio_.play(cue, {art.midX(), art.midY()}, screen ? screen->frame : FellowCore::Rect{},
                         isGuidedBySound(), cuesAreMuted(source), volume);
}

} // namespace DeskSprites
