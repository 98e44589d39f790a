#include "app/characters/pump/PumpColours.h"

namespace DeskSprites::PumpColours {

using FellowCore::PumpAgentPhase;
using FellowCore::PumpGaugeLight;

QColor onPaper(PumpGaugeLight light, const DialoguePalette& palette) {
    const bool isDark = palette.theme() == DesktopTheme::dark;
    switch (light) {
    case PumpGaugeLight::normal:
        return isDark ? QColor(0x78C4AA) : QColor(0x1F6A6A);
    case PumpGaugeLight::amber:
        return isDark ? QColor(0xFFCA50) : QColor(0xBC660E);
    case PumpGaugeLight::red:
        return isDark ? QColor(0xF8744C) : QColor(0xDC3E2E);
    case PumpGaugeLight::unknown:
        break;
    }
    return palette.quietInk();
}

QColor lamp(PumpAgentPhase phase) {
    switch (phase) {
    case PumpAgentPhase::working:
        return QColor(0xF29E20);
    case PumpAgentPhase::needsYou:
        return QColor(0xDC3E2E);
    case PumpAgentPhase::done:
        break;
    }
    return QColor(0x2EAA62);
}

Liquid liquid(PumpGaugeLight light) {
    switch (light) {
    case PumpGaugeLight::red:
        return {QColor(0xA01C22), QColor(0xDC3E2E), QColor(0xF8744C), QColor(0xFFC49C)};
    case PumpGaugeLight::amber:
        return {QColor(0xBC660E), QColor(0xF29E20), QColor(0xFFCA50), QColor(0xFFF2B0)};
    case PumpGaugeLight::normal:
    case PumpGaugeLight::unknown:
        break;
    }
    return {QColor(0x17464F), QColor(0x1F6A6A), QColor(0x3A938A), QColor(0x78C4AA)};
}

QColor digits(PumpGaugeLight light) {
    switch (light) {
    case PumpGaugeLight::normal:
        return QColor(0xFFF2B0);
    case PumpGaugeLight::amber:
        return QColor(0xFFCA50);
    case PumpGaugeLight::red:
        return QColor(0xF8744C);
    case PumpGaugeLight::unknown:
        break;
    }
    return QColor(0x8A7464);
}

} // namespace DeskSprites::PumpColours
