#pragma once

#include "core/breathing/BreathingTimeline.h"

#include <QWidget>

namespace DeskSprites {

/// One round of a pattern as a curve of how full the breath is, with the seconds of each part below.
class PatternCurve : public QWidget {
    Q_OBJECT

public:
    explicit PatternCurve(QWidget* parent = nullptr);
    void setLengths(const FellowCore::BreathingSettings& lengths);
    QSize sizeHint() const override { return {320, 104}; }
    QSize minimumSizeHint() const override { return {160, 104}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void drawBorders(QPainter& painter, const QRect& graph) const;
    void drawCurve(QPainter& painter, const QRect& graph) const;

    FellowCore::BreathingTimeline timeline_;
};

/// The parts of a pattern in a few words: "4 in, 2 hold, 6 out".
QString patternWords(const FellowCore::BreathingSettings& lengths);
/// "4" or "4.5", by the user's language.
QString secondsWords(FellowCore::Seconds seconds);

} // namespace DeskSprites
