#include "app/settings/LibraryWindow.h"

#include "app/settings/CharacterPane.h"
#include "app/settings/GeneralPane.h"
#include "app/settings/LibraryList.h"
#include "app/settings/LibraryPalette.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QScreen>
#include <QShortcut>
#include <QStackedWidget>

namespace DeskSprites {

LibraryWindow::LibraryWindow(const LibraryState& state, const LibraryActions& actions,
                             const SettingsFormFactory& forms)
    : state_(state), actions_(actions), forms_(forms), list_(new LibraryList(this)),
      stack_(new QStackedWidget(this)) {
    setWindowTitle(QStringLiteral("Deskfellow"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
    takePalette();
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(0);
    line->addWidget(list_);
    stack_->setMinimumWidth(40 * FormMetrics::unit);
    line->addWidget(stack_, 1);
    connect(list_, &LibraryList::paneChosen, this, [this](const QString& pane) {
        stack_->setCurrentWidget(paneFor(pane.toStdString()));
        Q_EMIT paneChosen(pane);
    });
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    refresh();
    const int letter = fontMetrics().averageCharWidth();
    const QSize wanted(list_->sizeHint().width() + std::max(560, 80 * letter), std::max(680, 90 * letter));
    resize(wanted.boundedTo(screen()->availableSize() * 0.85));
}

void LibraryWindow::refresh() {
    list_->showState(state_);
    for (auto each = panes_.begin(); each != panes_.end();) {
        const bool gone = each->first != LibraryState::generalPane && state_.entry(each->first) == nullptr;
        if (gone) {
            each->second->deleteLater(); // it may be the one that asked
            each = panes_.erase(each);
        } else {
            each->second->showState(state_);
            ++each;
        }
    }
    if (list_->chosen().empty()) {
        showPane(LibraryState::generalPane);
    }
}

void LibraryWindow::refreshPane(const std::string& pane) {
    const auto found = panes_.find(pane);
    if (found != panes_.end()) {
        found->second->showState(state_);
    }
}

bool LibraryWindow::showPane(const std::string& pane) {
    if (!list_->choose(pane)) {
        return false;
    }
    stack_->setCurrentWidget(paneFor(pane));
    return true;
}

std::string LibraryWindow::pane() const {
    return list_->chosen();
}

LibraryPane* LibraryWindow::paneFor(const std::string& pane) {
    LibraryPane*& kept = panes_[pane];
    if (kept != nullptr) {
        return kept;
    }
    if (pane == LibraryState::generalPane) {
        kept = new GeneralPane(actions_, stack_);
    } else {
        kept = new CharacterPane(pane, actions_, forms_, stack_);
    }
    kept->showState(state_);
    stack_->addWidget(kept);
    return kept;
}

void LibraryWindow::dropPanes() {
    const std::string open = list_->chosen();
    for (const auto& [id, pane] : panes_) {
        pane->deleteLater();
    }
    panes_.clear();
    showPane(open);
}

void LibraryWindow::takePalette() {
    const QPalette palette = LibraryPalette::forSystem(QApplication::palette());
    if (palette != this->palette()) {
        setPalette(palette);
    }
}

void LibraryWindow::closeEvent(QCloseEvent* event) {
    // A number that was typed but not finished counts.
    if (QWidget* focused = focusWidget()) {
        focused->clearFocus();
    }
    Q_EMIT closing();
    event->accept();
}

bool LibraryWindow::event(QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) {
        takePalette();
    }
    const bool done = QWidget::event(event);
    // Titles and help take their font, and all words their side, when a pane is built.
    if (event->type() == QEvent::ApplicationFontChange || event->type() == QEvent::LayoutDirectionChange) {
        dropPanes();
    }
    return done;
}

} // namespace DeskSprites
