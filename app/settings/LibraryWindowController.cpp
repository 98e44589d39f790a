#include "app/settings/LibraryWindowController.h"

#include "app/settings/LibraryWindow.h"

namespace DeskSprites {

LibraryWindowController::LibraryWindowController(LibraryActions actions, SettingsFormFactory forms)
    : actions_(std::move(actions)), forms_(std::move(forms)) {}

LibraryWindowController::~LibraryWindowController() {
    delete window_;
}

void LibraryWindowController::show(const std::string& pane) {
    if (window_ == nullptr) {
        makeWindow();
    }
    const std::string wanted = pane.empty() ? pane_ : pane;
    if (!window_->showPane(wanted)) {
        window_->showPane(generalPane);
    }
    pane_ = window_->pane();
    window_->setWindowState(window_->windowState() & ~Qt::WindowMinimized);
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void LibraryWindowController::close() {
    if (window_ != nullptr) {
        window_->close();
    }
}

bool LibraryWindowController::isVisible() const {
    return window_ != nullptr && window_->isVisible() && !window_->isMinimized();
}

QWidget* LibraryWindowController::window() const {
    return window_;
}

void LibraryWindowController::setRoster(std::vector<LibraryEntry> roster) {
    state_.roster = std::move(roster);
    refresh();
}

void LibraryWindowController::setActive(std::string active, std::vector<std::string> onScreen,
                                        std::vector<std::string> available, DesktopVisibility visibility) {
    state_.desktop = {std::move(active), std::move(onScreen), std::move(available), visibility};
    refresh();
}

void LibraryWindowController::setGeneral(GeneralSettings general) {
    state_.general = std::move(general);
    refreshPane(generalPane);
}

void LibraryWindowController::setCharacter(const std::string& id, CharacterSettings settings) {
    state_.characters.insert_or_assign(id, settings);
    refreshPane(id);
}

void LibraryWindowController::setTimer(const std::string& id, FellowCore::TimerSettings settings) {
    state_.timers.insert_or_assign(id, settings);
    refreshPane(id);
}

void LibraryWindowController::refresh() {
    if (window_ == nullptr) {
        return;
    }
    window_->refresh();
    pane_ = window_->pane();
}

void LibraryWindowController::refreshPane(const std::string& pane) {
    if (window_ != nullptr) {
        window_->refreshPane(pane);
    }
}

void LibraryWindowController::makeWindow() {
    window_ = new LibraryWindow(state_, actions_, forms_);
    if (!geometry_.isEmpty()) {
        window_->restoreGeometry(geometry_);
    }
    QObject::connect(window_, &LibraryWindow::paneChosen, window_, [this](const QString& pane) {
        pane_ = pane.toStdString();
        if (actions_.onPaneChanged) {
            actions_.onPaneChanged(pane_);
        }
    });
    QObject::connect(
        window_, &LibraryWindow::closing, window_,
        [this] {
            geometry_ = window_->saveGeometry();
            // It is deleted by the event loop; until then nobody may show it again.
            window_ = nullptr;
        },
        Qt::SingleShotConnection);
}

} // namespace DeskSprites
