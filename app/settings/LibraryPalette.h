#pragma once

#include <QColor>
#include <QPalette>

namespace DeskSprites::LibraryPalette {

/// The house's colours for the settings window: warm paper by day, warm dusk by night, as the user's palette
/// is light or dark. A palette that is drawn for high contrast, or in a colour of its own, is left alone.
///
/// Three roles have a meaning of their own: `PlaceholderText` is help text, `BrightText` is an error
/// sentence, `AlternateBase` is the ground of the list and of portraits.
QPalette forSystem(const QPalette& system);

/// The colour, made lighter or darker in steps until it stands out from `ground` by at least `least`.
QColor readable(QColor colour, const QColor& ground, double least);

} // namespace DeskSprites::LibraryPalette
