#include "app/characters/mira/PatternCurve.h"

#include "app/desktop/DialoguePalette.h"
#include "app/desktop/PixelFrame.h"

#include <QLocale>
#include <QPainter>
#include <QStringList>

#include <array>
#include <cmath>

namespace DeskSprites {

using FellowCore::BreathingPhase;
using FellowCore::BreathingSettings;

namespace {

constexpr int pixel = PixelFrame::pixel;
constexpr int margin = 4 * pixel;
constexpr std::array cyclePhases{BreathingPhase::inhale, BreathingPhase::sip, BreathingPhase::hold,
                                 BreathingPhase::exhale, BreathingPhase::rest};

QString partWords(BreathingPhase phase) {
    switch (phase) {
    case BreathingPhase::inhale:
        return PatternCurve::tr("%1 in");
    case BreathingPhase::sip:
        return PatternCurve::tr("%1 more");
    case BreathingPhase::hold:
        return PatternCurve::tr("%1 hold");
    case BreathingPhase::exhale:
        return PatternCurve::tr("%1 out");
    case BreathingPhase::rest:
    case BreathingPhase::settle:
        break;
    }
    return PatternCurve::tr("%1 hold empty");
}

} // namespace

QString secondsWords(FellowCore::Seconds seconds) {
    return QLocale().toString(seconds, 'f', seconds == std::floor(seconds) ? 0 : 1);
}

QString patternWords(const BreathingSettings& lengths) {
    QStringList parts;
    for (const BreathingPhase phase : cyclePhases) {
        if (lengths.duration(phase) > 0) {
            parts << partWords(phase).arg(secondsWords(lengths.duration(phase)));
        }
    }
    return parts.join(QStringLiteral(", "));
}

PatternCurve::PatternCurve(QWidget* parent)
    : QWidget(parent), timeline_{FellowCore::settings(FellowCore::BreathingMode::custom), 0} {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(tr("One round of the pattern"));
}

void PatternCurve::setLengths(const BreathingSettings& lengths) {
    timeline_.settings = lengths;
    timeline_.settings.rounds = 2; // so that the end of the first is not the end of all
    setAccessibleDescription(
        tr("%1; %2 seconds in all").arg(patternWords(lengths), secondsWords(lengths.cycle())));
    update();
}

void PatternCurve::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    fillStepped(painter, rect(), 2, palette().color(QPalette::AlternateBase));
    const int columns = (width() - 2 * margin) / pixel;
    const int words = fontMetrics().height() + margin / 2;
    const QRect graph(margin, margin, columns * pixel, (height() - 2 * margin - words) / pixel * pixel);
    drawBorders(painter, graph);
    drawCurve(painter, graph);
}

void PatternCurve::drawBorders(QPainter& painter, const QRect& graph) const {
    const BreathingSettings& lengths = timeline_.settings;
    const QColor ink = palette().color(QPalette::PlaceholderText);
    const QColor faint = mixed(palette().color(QPalette::AlternateBase), ink, 0.35);
    const auto xAt = [&](double seconds) {
        const double column = std::round(seconds / lengths.cycle() * graph.width() / pixel);
        return graph.left() + static_cast<int>(column) * pixel;
    };
    for (const BreathingPhase phase : cyclePhases) {
        const int left = xAt(lengths.offset(phase));
        const int right = xAt(lengths.offset(phase) + lengths.duration(phase));
        for (int y = graph.top(); left > graph.left() && right > left && y < graph.bottom(); y += 3 * pixel) {
            painter.fillRect(left, y, pixel, pixel, faint);
        }
        const QString words = secondsWords(lengths.duration(phase));
        if (fontMetrics().horizontalAdvance(words) < right - left) {
            painter.setPen(ink);
            painter.drawText(QRect(left, graph.bottom() + margin / 2, right - left, fontMetrics().height()),
                             int(Qt::AlignCenter), words);
        }
    }
}

void PatternCurve::drawCurve(QPainter& painter, const QRect& graph) const {
    const int columns = graph.width() / pixel;
    const int rows = graph.height() / pixel;
    const QColor line = palette().color(QPalette::Highlight);
    QColor below = line;
    below.setAlphaF(0.18F);
    int before = rows - 1;
    for (int column = 0; column < columns; ++column) {
        const double at = (column + 0.5) / columns * timeline_.settings.cycle();
        const int row = static_cast<int>(std::lround((1 - timeline_.expansion(at)) * (rows - 1)));
        // Where it is steep the line goes on without a gap.
        const int first = row > before ? before + 1 : row;
        const int last = row < before ? before - 1 : row;
        const int x = graph.left() + column * pixel;
        painter.fillRect(x, graph.top() + first * pixel, pixel, (last - first + 1) * pixel, line);
        painter.fillRect(x, graph.top() + (last + 1) * pixel, pixel, (rows - 1 - last) * pixel, below);
        before = row;
    }
}

} // namespace DeskSprites
