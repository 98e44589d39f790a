#pragma once

#include "app/characters/dhiru/DhiruAbility.h"
#include "app/characters/dhiru/DhiruAwakeLine.h"
#include "app/characters/dhiru/DhiruList.h"
#include "app/characters/dhiru/DhiruPanel.h"
#include "app/characters/dhiru/DhiruQuestionSheet.h"
#include "app/characters/dhiru/DhiruRow.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PanelTabs.h"
#include "app/desktop/ShortcutBoard.h"
#include "tests/app/DevWatchHarness.h"
#include "tests/app/QuietCommands.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>

namespace DhiruHarness {

using namespace DevWatchHarness;

/// Dhiru on a real desktop, watching the real machine, with a browser that only notes what it is to open.
class DhiruDesk : public Desk {
public:
    DhiruDesk() {
        site.tell = [this](const QString& sentence) { told.push_back(sentence.toStdString()); };
        site.obstacles = [](const DesktopCharacter&) { return std::vector<FellowCore::Rect>{}; };
        site.dismissActions = [] {};
        auto made = std::make_unique<DhiruAbility>(*dhiru, site, [this](const QString& url) {
            opened.push_back(url.toStdString());
            return hasBrowser;
        });
        ability = made.get();
        dhiru->setAbility(std::move(made));
    }
    ~DhiruDesk() {
        dhiru.reset(); // while everything it was given still stands
    }

    /// Brings Dhiru out with his panel open, and the keyboard in it.
    bool comeOut() {
        system.time.run();
        dhiru->prepareForActivation();
        dhiru->activate();
        ability->togglePanel();
        return waitUntil([this] { return ability->panel() && panel().isActiveWindow(); });
    }
    DhiruPanel& panel() const { return *ability->panel(); }
    DhiruList& servers() const { return panel().list(DhiruSection::servers); }
    DhiruQuestionSheet& question() const { return panel().question(); }
    /// The row of a server, or null.
    DhiruRow* row(const Program& program) const {
        // By number too: another network on this machine may have a server on the same port.
        const QString key = QStringLiteral("server/%1/").arg(program.pid());
        const auto found = std::ranges::find_if(
            servers().rows(), [&](const DhiruRow* row) { return row->line().key.startsWith(key); });
        return found == servers().rows().end() ? nullptr : *found;
    }
    bool lists(const Program& program) {
        return waitUntil([&] { return row(program) != nullptr; });
    }
    /// Presses a button of a row, and gives the question its time to settle.
    bool ask(const Program& program, DhiruAct act) {
        row(program)->button(act)->click();
        return waitUntil([&] { return question().answerButton().isEnabled(); });
    }
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QPointer<QWidget> at = panel().focusWidget();
        QKeyEvent press(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(at, &press);
        if (at) {
            QKeyEvent release(QEvent::KeyRelease, key, modifiers);
            QApplication::sendEvent(at, &release);
        }
    }

    QuietCommands commands;
    ShortcutBoard shortcuts{preferences, system.shortcuts()};
    CharacterSite site{services, commands, shortcuts, {}, {}, {}, {}, {}, {}, {}};
    Log told;
    Log opened;
    bool hasBrowser = true;
    std::unique_ptr<ManifestCharacterController> dhiru =
        makePack({.id = "devwatch", .grid = {114, 154}, .poses = {"idle", "busy", "hog", "idle-server"}});
    DhiruAbility* ability = nullptr;
};

} // namespace DhiruHarness
