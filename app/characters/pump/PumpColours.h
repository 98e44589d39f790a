#pragma once

#include "app/desktop/DialoguePalette.h"
#include "core/agents/PumpAgentPhase.h"
#include "core/pump/PumpGauge.h"

namespace DeskSprites::PumpColours {

/// A gauge's light on a panel, readable on its paper.
QColor onPaper(FellowCore::PumpGaugeLight light, const DialoguePalette& palette);
/// The lamp of a session.
QColor lamp(FellowCore::PumpAgentPhase phase);

/// What the tank holds, from its shaded edge to its surface.
struct Liquid {
    QColor shadow;
    QColor body;
    QColor light;
    QColor surface;
};
Liquid liquid(FellowCore::PumpGaugeLight light);
/// The glowing digits.
QColor digits(FellowCore::PumpGaugeLight light);

} // namespace DeskSprites::PumpColours
