#pragma once

#include "core/art/CharacterManifest.h"

#include <QColor>

class QPalette;

namespace DeskSprites {

/// Which kind of desktop a bubble stands on.
enum class DesktopTheme { light, dark };

/// The theme that a palette belongs to: dark when its window colour is darker than its window text.
DesktopTheme desktopTheme(const QPalette& palette);
/// The theme of the application's present palette. It changes with `QEvent::ApplicationPaletteChange`.
DesktopTheme applicationTheme();

/// Contrast of two opaque colours, 1...21, after WCAG 2.2, success criterion 1.4.3 ("contrast ratio", with
/// its definition of "relative luminance"): https://www.w3.org/TR/WCAG22/#dfn-contrast-ratio
double contrastRatio(const QColor& first, const QColor& second);
/// `from` moved towards `to` by `share`, 0...1, channel by channel.
QColor mixed(const QColor& from, const QColor& to, double share);

/// The colours of one character's bubbles and panels.
///
/// `ink` on `paper` reaches 7 to 1, `ink` on `hover` and `pressed` 4.5 to 1. `accent` keeps the character's
/// hue and is shifted until it reaches 4.5 to 1 against `paper`: text on the accent is drawn in `paper`, and
/// the accent can be text on `paper`.
struct DialoguePalette {
    QColor ink;
    QColor paper;
    QColor accent;
    QColor hover;   ///< the ground of a control under the pointer
    QColor pressed; ///< the ground of a control held down

    static DialoguePalette forAccent(const FellowCore::CharacterManifest::Accent& accent, DesktopTheme theme);

    /// Quieter text: `ink` moved towards `paper` as far as 4.5 to 1 on `paper` allows.
    QColor quietInk() const;
    /// Lines that only part things, and the empty share of a gauge.
    QColor line() const;
    /// The one-pixel contour around a bubble, dark and warm on either kind of desktop.
    QColor contour() const;
    /// The lit inner edge of a bubble; on a dark desktop it carries the shape, because the contour cannot.
    QColor highlight() const;
    /// The accent of a primary control under the pointer and held down; `paper` stays readable on both.
    QColor accentHover() const;
    QColor accentPressed() const;
    DesktopTheme theme() const;

    friend bool operator==(const DialoguePalette&, const DialoguePalette&) = default;
};

} // namespace DeskSprites
