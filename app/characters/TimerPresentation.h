#pragma once

#include "app/desktop/CharacterPresentation.h"
#include "core/focus/FocusTimer.h"

namespace DeskSprites {

/// The lamp's colour on its own, as dots and lines show it.
QColor lampColour(FellowCore::BattiTimerPresentation::Light light);

/// How any timer reads: status, badge, progress and lamp; without actions.
CharacterPresentation presentTimer(const FellowCore::FocusTimer& timer,
                                   const FellowCore::BattiTimerPresentation& words, FellowCore::Instant at);

/// The two buttons that every timer has.
QuickAction timerPrimaryAction(const FellowCore::FocusTimer& timer, const QString& title,
                               std::function<void()> onPress);
QuickAction timerResetAction(const FellowCore::FocusTimer& timer, std::function<void()> onPress);

} // namespace DeskSprites
