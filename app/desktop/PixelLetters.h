#pragma once

#include <QColor>
#include <QPoint>
#include <QString>

class QPainter;

namespace DeskSprites {

/// Hand-made letters for names on pixel art: Latin letters, digits and the marks that names need, with the
/// accents above or below their letters. Capitals are 7 pixels high. Letters of other scripts cannot be
/// written.
struct PixelLetters {
    static constexpr int above = 2; ///< rows over a capital, for its accent
    static constexpr int capital = 7;
    static constexpr int below = 2; ///< rows for a "g" and for cedillas
    static constexpr int height = above + capital + below;

    /// Whether every letter of the text has a form here.
    static bool canWrite(const QString& text);
    /// In pixels; what cannot be written takes no room.
    static int width(const QString& text);
    /// The text, or its beginning and three dots, so that it is no wider than that.
    static QString fitted(const QString& text, int width);
    /// `topLeft` is that of the whole height; one point of the painter is one pixel of the letters.
    static void paint(QPainter& painter, const QPoint& topLeft, const QString& text, const QColor& colour);
};

} // namespace DeskSprites
