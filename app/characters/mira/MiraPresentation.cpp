#include "app/characters/mira/MiraPresentation.h"

#include "app/characters/mira/MiraController.h"

#include <QActionGroup>
#include <QCoreApplication>

#include <utility>

namespace DeskSprites {

using FellowCore::BreathingMode;
using FellowCore::BreathingStatus;

namespace {

QString text(const char* source) {
    return QCoreApplication::translate("MiraController", source);
}

QString fromCore(std::string_view words) {
    return QString::fromUtf8(words.data(), static_cast<qsizetype>(words.size()));
}

QString pausedWords(const std::optional<MiraPauseReason>& reason) {
    if (!reason) {
        return text("Paused");
    }
    switch (*reason) {
    case MiraPauseReason::hidden:
        return text("Paused while hidden");
    case MiraPauseReason::asleep:
        return text("Paused while asleep");
    case MiraPauseReason::locked:
        break;
    }
    return text("Paused while locked");
}

QString status(const MiraController& mira) {
    const FellowCore::BreathingSession& session = mira.session();
    const auto at = mira.now();
    const QString round = roundWords(session.round(at), session.settings.rounds);
    switch (session.status) {
    case BreathingStatus::running:
        return fromCore(FellowCore::title(session.phase(at))) + QStringLiteral(" · ") + round;
    case BreathingStatus::paused:
        return pausedWords(mira.pauseReason()) + QStringLiteral(" · ") + round;
    case BreathingStatus::completed:
        return text("Well breathed");
    case BreathingStatus::idle:
        break;
    }
    return text("Ready to breathe");
}

QuickAction primaryAction(MiraController& mira) {
    const bool runs = mira.session().status == BreathingStatus::running;
    QuickAction action;
    action.id = QStringLiteral("primary");
    action.title = runs ? text("Pause") : mira.isUnderWay() ? text("Continue") : text("Start breathing");
    action.emphasis = Emphasis::primary;
    action.icon = runs ? PixelIcon::pause : PixelIcon::play;
    action.onPress = [&mira, runs] {
        if (runs) {
            mira.pause();
        } else {
            mira.start();
        }
    };
    return action;
}

QuickAction endAction(MiraController& mira) {
    QuickAction action;
    action.id = QStringLiteral("end");
    action.title = text("End");
    action.icon = PixelIcon::close;
    action.enabled = mira.isUnderWay();
    action.onPress = [&mira] { mira.end(); };
    return action;
}

QuickAction rhythmAction(MiraController& mira) {
    QuickAction action;
    action.id = QStringLiteral("rhythm");
    action.title = QString::fromStdString(mira.preferences().rhythmTitle());
    action.menu = [&mira] { return rhythmMenu(mira); };
    return action;
}

/// A menu title takes "&" as the mark of its access key.
QString label(QString plain) {
    return plain.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

/// Adds an entry for a rhythm, or for a saved pattern when there is a name.
void addChoice(QActionGroup& group, QMenu& menu, MiraController& mira, BreathingMode mode,
               const std::string& pattern) {
    const QString title =
        pattern.empty() ? fromCore(FellowCore::title(mode)) : QString::fromStdString(pattern);
    QAction* entry = menu.addAction(label(title));
    entry->setCheckable(true);
    const MiraPreferences& preferences = mira.preferences();
    const auto chosen = preferences.chosenPattern();
    const bool isPattern =
        mode != BreathingMode::custom || (chosen ? chosen->name : std::string()) == pattern;
    entry->setChecked(preferences.rhythm() == mode && isPattern);
    group.addAction(entry);
    QObject::connect(entry, &QAction::triggered, &menu, [&mira, mode, pattern] {
        if (mode == BreathingMode::custom) {
            mira.preferences().choosePattern(pattern);
        }
        mira.preferences().setRhythm(mode);
        mira.preferencesChanged();
    });
}

} // namespace

std::unique_ptr<QMenu> rhythmMenu(MiraController& mira) {
    auto menu = std::make_unique<QMenu>(text("Rhythm"));
    if (mira.isUnderWay()) {
        menu->addAction(text("For the next session:"))->setEnabled(false);
    }
    auto* group = new QActionGroup(menu.get());
    for (const BreathingMode mode : FellowCore::allBreathingModes) {
        addChoice(*group, *menu, mira, mode, {});
    }
    const std::vector<BreathingPattern> patterns = mira.preferences().patterns();
    if (!patterns.empty()) {
        menu->addSeparator();
    }
    for (const BreathingPattern& pattern : patterns) {
        addChoice(*group, *menu, mira, BreathingMode::custom, pattern.name);
    }
    return menu;
}

CharacterPresentation presentMira(MiraController& mira) {
    const FellowCore::BreathingSession& session = mira.session();
    CharacterPresentation shown;
    shown.status = status(mira);
    shown.spoken = shown.status;
    if (session.status != BreathingStatus::idle) {
        shown.progress = session.elapsed(mira.now()) / session.totalDuration();
    }
    shown.actions = {primaryAction(mira), endAction(mira), rhythmAction(mira)};
    return shown;
}

} // namespace DeskSprites
