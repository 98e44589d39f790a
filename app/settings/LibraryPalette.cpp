#include "app/settings/LibraryPalette.h"

#include "app/desktop/DialoguePalette.h"

#include <algorithm>

namespace DeskSprites::LibraryPalette {

namespace {

struct Tones {
    QRgb window, base, ground, text, help, error, button, line, highlight, onHighlight;
};

constexpr Tones day{0xF7F2E9, 0xFFFCF6, 0xEEE6D8, 0x33291F, 0x66594A,
                    0xA2311F, 0xF1E8D9, 0xD8CBB7, 0xA34A26, 0xFFFFFF};
constexpr Tones dusk{0x26211D, 0x3B342D, 0x1E1A17, 0xF1E8DB, 0xBFB09E,
                     0xF59A83, 0x483F37, 0x574C42, 0xE0966A, 0x26190F};

/// Text and window as far apart as they can be, or a window in a colour: somebody chose that for a reason.
bool isOfItsOwnKind(const QPalette& system) {
    constexpr double highContrast = 20;
    constexpr int coloured = 90; // of 255
    const QColor window = system.color(QPalette::Window);
    return contrastRatio(window, system.color(QPalette::WindowText)) >= highContrast ||
           (window.hsvSaturation() > coloured && window.value() > coloured);
}

QPalette plain(QPalette system) {
    const QColor text = system.color(QPalette::WindowText);
    system.setColor(QPalette::PlaceholderText, text);
    system.setColor(QPalette::BrightText, text);
    system.setColor(QPalette::AlternateBase, system.color(QPalette::Base));
    return system;
}

void setDisabled(QPalette& palette, const Tones& tones) {
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, QColor(tones.help));
    }
    palette.setColor(QPalette::Disabled, QPalette::Button, QColor(tones.window));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(tones.line));
}

QPalette painted(const Tones& tones) {
    QPalette palette{QColor(tones.button), QColor(tones.window)};
    palette.setColor(QPalette::Window, QColor(tones.window));
    palette.setColor(QPalette::WindowText, QColor(tones.text));
    palette.setColor(QPalette::Base, QColor(tones.base));
    palette.setColor(QPalette::AlternateBase, QColor(tones.ground));
    palette.setColor(QPalette::Text, QColor(tones.text));
    palette.setColor(QPalette::Button, QColor(tones.button));
    palette.setColor(QPalette::ButtonText, QColor(tones.text));
    palette.setColor(QPalette::Mid, QColor(tones.line));
    palette.setColor(QPalette::Highlight, QColor(tones.highlight));
    palette.setColor(QPalette::HighlightedText, QColor(tones.onHighlight));
    palette.setColor(QPalette::Link, QColor(tones.highlight));
    palette.setColor(QPalette::PlaceholderText, QColor(tones.help));
    palette.setColor(QPalette::BrightText, QColor(tones.error));
    palette.setColor(QPalette::ToolTipBase, QColor(tones.base));
    palette.setColor(QPalette::ToolTipText, QColor(tones.text));
    setDisabled(palette, tones);
    return palette;
}

} // namespace

QColor readable(QColor colour, const QColor& ground, double least) {
    const bool lighten = ground.lightness() < 128;
    for (int step = 0; step < 40 && contrastRatio(colour, ground) < least; ++step) {
        float hue = 0, saturation = 0, lightness = 0;
        colour.getHslF(&hue, &saturation, &lightness);
        colour.setHslF(hue, saturation, std::clamp(lightness + (lighten ? 0.025f : -0.025f), 0.0f, 1.0f));
    }
    return colour;
}

QPalette forSystem(const QPalette& system) {
    if (isOfItsOwnKind(system)) {
        return plain(system);
    }
    return painted(desktopTheme(system) == DesktopTheme::dark ? dusk : day);
}

} // namespace DeskSprites::LibraryPalette
