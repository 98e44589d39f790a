#include "app/desktop/DialoguePalette.h"

#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace DeskSprites {

namespace {

constexpr double textContrast = 4.5;
constexpr double brown = 0.085; // a hue, of a whole turn
constexpr QRgb lightPaper = 0xfffdf5e6;
constexpr QRgb lightInk = 0xff2c171a;
constexpr QRgb darkPaper = 0xff2a2022;
constexpr QRgb darkInk = 0xfff6ead6;
constexpr QRgb darkContour = 0xff120a0c;

double linearChannel(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double relativeLuminance(const QColor& colour) {
    return 0.2126 * linearChannel(colour.redF()) + 0.7152 * linearChannel(colour.greenF()) +
           0.0722 * linearChannel(colour.blueF());
}

int channel(double value) {
    return std::isfinite(value) ? static_cast<int>(std::lround(std::clamp(value, 0.0, 1.0) * 255)) : 0;
}

/// Darkened at their own hue yellows go olive; in this house's ramps their shadows go brown.
bool isYellow(double hue) {
    return hue > brown && hue < 0.19;
}

/// The colour nearest to `wanted` in lightness, of about the same hue, that text can stand on or be made of.
QColor readable(const QColor& wanted, const QColor& paper, DesktopTheme theme) {
    const double step = theme == DesktopTheme::light ? -0.01 : 0.01;
    const double hue = std::max(0.0F, wanted.hslHueF());
    QColor colour = wanted;
    for (double lightness = wanted.lightnessF(); contrastRatio(colour, paper) < textContrast;) {
        lightness = std::clamp(lightness + step, 0.0, 1.0);
        const double darkened = std::max(0.0, wanted.lightnessF() - lightness);
        const double shown = isYellow(hue) ? std::max(brown, hue - darkened / 2) : hue;
        const QColor moved = QColor::fromHslF(static_cast<float>(shown), wanted.hslSaturationF(),
                                              static_cast<float>(lightness));
        // Colours hold 16 bits a channel and the screen 8: judge what will be seen.
        colour = QColor(moved.red(), moved.green(), moved.blue());
    }
    return colour;
}

} // namespace

DesktopTheme desktopTheme(const QPalette& palette) {
    const bool dark =
        palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
    return dark ? DesktopTheme::dark : DesktopTheme::light;
}

DesktopTheme applicationTheme() {
    return desktopTheme(QGuiApplication::palette());
}

double contrastRatio(const QColor& first, const QColor& second) {
    const double one = relativeLuminance(first);
    const double other = relativeLuminance(second);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

QColor mixed(const QColor& from, const QColor& to, double share) {
    const auto channelOf = [share](int start, int end) {
        return static_cast<int>(std::lround(start + (end - start) * share));
    };
    return QColor(channelOf(from.red(), to.red()), channelOf(from.green(), to.green()),
                  channelOf(from.blue(), to.blue()));
}

DialoguePalette DialoguePalette::forAccent(const FellowCore::CharacterManifest::Accent& accent,
                                           DesktopTheme theme) {
    DialoguePalette palette;
    palette.paper = QColor(theme == DesktopTheme::light ? lightPaper : darkPaper);
    palette.ink = QColor(theme == DesktopTheme::light ? lightInk : darkInk);
    const QColor own(channel(accent.red), channel(accent.green), channel(accent.blue));
    palette.accent = readable(own, palette.paper, theme);
    palette.hover = mixed(palette.paper, palette.accent, 0.14);
    palette.pressed = mixed(palette.paper, palette.accent, 0.26);
    return palette;
}

QColor DialoguePalette::quietInk() const {
    double share = 0.4;
    // Quiet text also stands on controls, so it is judged on the strongest ground it meets.
    while (share > 0 && contrastRatio(mixed(ink, paper, share), hover) < textContrast) {
        share -= 0.02;
    }
    return mixed(ink, paper, std::max(0.0, share));
}

QColor DialoguePalette::line() const {
    return mixed(paper, ink, theme() == DesktopTheme::light ? 0.16 : 0.2);
}

QColor DialoguePalette::contour() const {
    return theme() == DesktopTheme::light ? ink : QColor(darkContour);
}

QColor DialoguePalette::highlight() const {
    return theme() == DesktopTheme::light ? QColor(Qt::white) : mixed(paper, ink, 0.24);
}

QColor DialoguePalette::accentHover() const {
    return mixed(accent, ink, 0.14);
}

QColor DialoguePalette::accentPressed() const {
    return mixed(accent, ink, 0.28);
}

DesktopTheme DialoguePalette::theme() const {
    return paper.lightness() < ink.lightness() ? DesktopTheme::dark : DesktopTheme::light;
}

} // namespace DeskSprites
