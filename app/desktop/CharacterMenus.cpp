#include "app/desktop/CharacterMenus.h"

#include <QCoreApplication>

namespace DeskSprites {

using FellowCore::ArrangeLayout::Edge;

namespace {

QString text(const char* source) {
    return QCoreApplication::translate("CharacterMenus", source);
}

/// A menu title takes "&" as the mark of its access key.
QString label(QString plain) {
    return plain.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

void addNote(QMenu& menu, const QString& note) {
    menu.addAction(label(note))->setEnabled(false);
}

} // namespace

CharacterMenus::CharacterMenus(CharacterStage& stage, DesktopCommands& commands)
    : stage_(stage), commands_(commands) {}

std::unique_ptr<QMenu> CharacterMenus::characterMenu(DesktopCharacter& character) const {
    auto menu = std::make_unique<QMenu>();
    addOwnActions(*menu, character);
    menu->addSeparator();
    addPlaces(*menu, character);
    addSizes(*menu, character);
    addArrange(*menu);
    menu->addSeparator();
    addProgram(*menu, character.identifier());
    return menu;
}

void CharacterMenus::fillTrayMenu(QMenu& menu) const {
    if (DesktopCharacter* active = stage_.active()) {
        addOwnActions(menu, *active);
        menu.addSeparator();
        addPlaces(menu, *active);
        addArrange(menu);
    } else {
        menu.addMenu(bringMenu().release());
    }
    menu.addSeparator();
    addProgram(menu, std::nullopt);
}

void CharacterMenus::addOwnActions(QMenu& menu, DesktopCharacter& character) const {
    const CharacterPresentation shown = character.presentation();
    const QString line = shown.badge ? shown.status + QStringLiteral("  ") + *shown.badge : shown.status;
    addNote(menu, character.name() + QStringLiteral(" · ") + line);
    for (const QuickAction& action : shown.actions) {
        QAction* entry = nullptr;
        if (action.menu) {
            QMenu* submenu = action.menu().release();
            submenu->setParent(&menu, submenu->windowFlags());
            submenu->setTitle(label(action.title));
            entry = menu.addMenu(submenu);
        } else {
            entry = menu.addAction(label(action.title));
            QObject::connect(entry, &QAction::triggered, entry, action.onPress);
        }
        entry->setEnabled(action.enabled);
    }
}

void CharacterMenus::addPlaces(QMenu& menu, const DesktopCharacter& character) const {
    const auto own = [&menu](std::unique_ptr<QMenu> list) {
        QMenu* submenu = list.release();
        submenu->setParent(&menu, submenu->windowFlags());
        menu.addMenu(submenu);
    };
    own(bringMenu());
    own(swapMenu(character));
    if (const DesktopCharacter* previous = commands_.previousCharacter(character)) {
        menu.addAction(label(text("Swap back to %1").arg(previous->name())),
                       [this, id = character.identifier()] {
                           commands_.focus(id);
                           commands_.swapBack();
                       });
    }
    menu.addAction(label(text("Hide %1").arg(character.name())), [this, id = character.identifier()] {
        commands_.focus(id);
        commands_.hideCharacter();
    });
    if (!commands_.isVisible()) {
        menu.addAction(text("Show all"), [this] { commands_.toggleVisible(); });
    } else if (stage_.onScreen().size() > 1) {
        menu.addAction(text("Hide all"), [this] { commands_.toggleVisible(); });
    }
}

std::unique_ptr<QMenu> CharacterMenus::bringMenu() const {
    auto menu = std::make_unique<QMenu>(text("Bring another…"));
    if (commands_.isSetFull()) {
        addNote(*menu, text(fullSetSentence));
        return menu;
    }
    for (const DesktopCharacter* candidate : commands_.candidates()) {
        menu->addAction(label(candidate->name()),
                        [this, id = candidate->identifier()] { commands_.bringOut(id); });
    }
    if (menu->isEmpty()) {
        addNote(*menu, text("Everyone is here."));
    }
    return menu;
}

std::unique_ptr<QMenu> CharacterMenus::swapMenu(const DesktopCharacter& character) const {
    auto menu = std::make_unique<QMenu>(text("Swap with…"));
    for (const DesktopCharacter* candidate : commands_.candidates()) {
        menu->addAction(label(candidate->name()),
                        [this, id = candidate->identifier(), from = character.identifier()] {
                            commands_.focus(from);
                            commands_.select(id);
                        });
    }
    if (menu->isEmpty()) {
        addNote(*menu, text("Everyone is here."));
    }
    return menu;
}

void CharacterMenus::addSizes(QMenu& menu, DesktopCharacter& character) const {
    QMenu* sizes = menu.addMenu(text("Size"));
    sizes->addAction(text("Larger"), [this, &character] { commands_.stepSize(character, 1); });
    sizes->addAction(text("Smaller"), [this, &character] { commands_.stepSize(character, -1); });
}

void CharacterMenus::addArrange(QMenu& menu) const {
    QMenu* arrange = menu.addMenu(text("Arrange"));
    arrange->addAction(text("Along the right edge"),
                       [this] { commands_.arrange(Edge::right, CompactChange::keep); });
    arrange->addAction(text("Along the bottom edge"),
                       [this] { commands_.arrange(Edge::bottom, CompactChange::keep); });
    QAction* compact = arrange->addAction(text("Compact"));
    compact->setCheckable(true);
    compact->setChecked(commands_.isCompact());
    QObject::connect(compact, &QAction::triggered, compact, [this](bool on) {
        commands_.arrange(commands_.arrangeEdge(), on ? CompactChange::turnOn : CompactChange::turnOff);
    });
}

void CharacterMenus::addProgram(QMenu& menu, const std::optional<std::string>& pane) const {
    menu.addAction(text("Settings…"), [this, pane] { commands_.openLibrary(pane); });
    menu.addAction(text("Quit Deskfellow"), [this] { commands_.quit(); });
}

} // namespace DeskSprites
