#include "app/characters/pump/SessionMenuItem.h"

#include "app/characters/pump/PumpColours.h"
#include "app/characters/pump/PumpPresentation.h"

#include <QCoreApplication>
#include <QPixmap>

namespace DeskSprites {

using FellowCore::PumpAgentEvent;

namespace {

constexpr int lampSide = 10;

QIcon lampIcon(FellowCore::PumpAgentPhase phase) {
    QPixmap lamp(lampSide, lampSide);
    lamp.fill(PumpColours::lamp(phase));
    return QIcon(lamp);
}

/// A menu takes "&" for the mark of a key.
QString plain(QString text) {
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

SessionMenuItem::SessionMenuItem(const PumpAgentEvent& session, FellowCore::Instant now, QObject* parent)
    : QAction(parent) {
    const QString phrase = QCoreApplication::translate("Pump", session.phrase().c_str());
    const QString age = PumpPresentation::age(session, now);
    setText(plain(session.project()
                      ? tr("%1 — %2 · %3").arg(PumpPresentation::shortTitle(session), phrase, age)
                      : tr("%1 · %2").arg(phrase, age)));
    setIcon(lampIcon(session.event));
    setIconVisibleInMenu(true);
}

std::unique_ptr<QMenu> SessionMenuItem::menu(const std::vector<PumpAgentEvent>& sessions,
                                             FellowCore::Instant now,
                                             const std::function<void(const PumpAgentEvent&)>& onChosen) {
    auto menu = std::make_unique<QMenu>();
    for (const PumpAgentEvent& session : sessions) {
        auto* item = new SessionMenuItem(session, now, menu.get());
        connect(item, &QAction::triggered, item, [session, onChosen] { onChosen(session); });
        menu->addAction(item);
    }
    if (sessions.empty()) {
        menu->addAction(tr("No sessions right now"))->setEnabled(false);
    }
    return menu;
}

} // namespace DeskSprites
