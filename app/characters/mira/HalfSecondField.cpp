#include "app/characters/mira/HalfSecondField.h"

#include "app/characters/mira/PatternCurve.h"

#include <QSignalBlocker>
#include <QWheelEvent>

#include <cmath>

namespace DeskSprites {

HalfSecondField::HalfSecondField(FellowCore::BreathingPhase phase, QWidget* parent) : QDoubleSpinBox(parent) {
    const FellowCore::BreathingLimits limits = FellowCore::BreathingSettings::limits(phase);
    setDecimals(2); // so that what is typed is rounded here, and not cut off before
    setRange(limits.shortest, limits.longest);
    setSingleStep(FellowCore::BreathingSettings::step);
    setKeyboardTracking(false);
    setAccelerated(true);
    setFocusPolicy(Qt::StrongFocus);
    setSuffix(tr(" s"));
}

void HalfSecondField::setQuietly(FellowCore::Seconds length) {
    const QSignalBlocker quiet(this);
    setValue(length);
}

double HalfSecondField::valueFromText(const QString& text) const {
    constexpr double step = FellowCore::BreathingSettings::step;
    return std::round(QDoubleSpinBox::valueFromText(text) / step) * step;
}

QString HalfSecondField::textFromValue(double value) const {
    return secondsWords(value);
}

QSize HalfSecondField::sizeHint() const {
    return QDoubleSpinBox::sizeHint().expandedTo({fieldWidth(fontMetrics()), 0});
}

void HalfSecondField::wheelEvent(QWheelEvent* event) {
    if (hasFocus()) {
        QDoubleSpinBox::wheelEvent(event);
    } else {
        event->ignore();
    }
}

} // namespace DeskSprites
