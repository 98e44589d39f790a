#include "app/characters/TimerPresentation.h"

#include <utility>

namespace DeskSprites {

using FellowCore::BattiTimerPresentation;
using FellowCore::TimerStatus;

QColor lampColour(BattiTimerPresentation::Light light) {
    switch (light) {
    case BattiTimerPresentation::Light::red:
        return {0xdc, 0x3e, 0x2e};
    case BattiTimerPresentation::Light::green:
        return {0x2e, 0xaa, 0x62};
    case BattiTimerPresentation::Light::amber:
        break;
    }
    return {0xf2, 0x9e, 0x20};
}

CharacterPresentation presentTimer(const FellowCore::FocusTimer& timer, const BattiTimerPresentation& words,
                                   FellowCore::Instant at) {
    const FellowCore::Seconds remaining = timer.timeRemaining(at);
    CharacterPresentation shown;
    shown.status = QString::fromStdString(words.statusTitle);
    shown.badge = QString::fromStdString(FellowCore::timerBadge(remaining));
    shown.spoken = QString::fromStdString(FellowCore::spokenTimerText(words, remaining));
    shown.progress = timer.progress(at);
    shown.lamp = lampColour(words.light);
    return shown;
}

QuickAction timerPrimaryAction(const FellowCore::FocusTimer& timer, const QString& title,
                               std::function<void()> onPress) {
    QuickAction action;
    action.id = QStringLiteral("primary");
    action.title = title;
    action.emphasis = Emphasis::primary;
    action.icon = timer.status == TimerStatus::running ? PixelIcon::pause : PixelIcon::play;
    action.onPress = std::move(onPress);
    return action;
}

QuickAction timerResetAction(const FellowCore::FocusTimer& timer, std::function<void()> onPress) {
    QuickAction action;
    action.id = QStringLiteral("reset");
    action.title = QStringLiteral("Reset");
    action.icon = PixelIcon::reset;
    action.enabled = timer.status != TimerStatus::idle;
    action.onPress = std::move(onPress);
    return action;
}

} // namespace DeskSprites
