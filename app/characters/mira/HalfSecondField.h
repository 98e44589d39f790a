#pragma once

#include "core/breathing/BreathingSettings.h"

#include <QDoubleSpinBox>

namespace DeskSprites {

/// The length of one part of a pattern, in half seconds.
class HalfSecondField : public QDoubleSpinBox {
    Q_OBJECT

public:
    explicit HalfSecondField(FellowCore::BreathingPhase phase, QWidget* parent = nullptr);
    void setQuietly(FellowCore::Seconds length);
    /// A typed length becomes the nearest half second.
    double valueFromText(const QString& text) const override;
    QString textFromValue(double value) const override;
    QSize sizeHint() const override;
    /// One width for all fields of a form, so that they begin and end in line.
    static int fieldWidth(const QFontMetrics& metrics) { return 22 * metrics.averageCharWidth(); }

protected:
    /// A wheel that scrolls the page must not change a field it happens to pass over.
    void wheelEvent(QWheelEvent* event) override;
};

} // namespace DeskSprites
