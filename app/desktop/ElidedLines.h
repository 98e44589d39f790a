#pragma once

#include <QFont>
#include <QString>

namespace DeskSprites {

/// `text` broken into at most `most` lines of `width` points, the last one shortened with an ellipsis when
/// there is more. A word that is wider than a line is broken.
QString elidedLines(const QString& text, const QFont& font, int width, int most);

} // namespace DeskSprites
