#include "app/characters/clock/ClockTravelBar.h"

#include "app/characters/clock/ClockCharacter.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PixelFrame.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace DeskSprites {

namespace {

constexpr int step = 15; // minutes
constexpr int leap = 60;

/// The quarter of an hour nearest to a minute.
int quarter(double minute) {
    return static_cast<int>(std::lround(minute / step)) * step;
}

} // namespace

ClockTravelBar::ClockTravelBar(ClockCharacter& clock, QWidget* parent)
    : QWidget(parent), clock_(clock), text_(new PanelText(TextRole::body, this)), now_(new PanelButton),
      slider_(new PanelSlider(this)) {
    auto* line = new QHBoxLayout;
    line->setSpacing(PanelMetrics::unit);
    line->addWidget(text_, 1);
    line->addWidget(now_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(PanelMetrics::unit, PanelMetrics::unit, PanelMetrics::unit,
                               PanelMetrics::halfUnit);
    column->setSpacing(PanelMetrics::halfUnit);
    column->addLayout(line);
    column->addWidget(slider_);
    text_->setWordWrap(false);
    now_->setTitle(tr("Now"));
    now_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    slider_->setAccessibleName(tr("Time of day at home"));
    slider_->setSingleStep(step);
    slider_->setPageStep(leap);
    setTabOrder(slider_, now_);
    connect(slider_, &QAbstractSlider::actionTriggered, this, &ClockTravelBar::roundStep);
    connect(slider_, &QAbstractSlider::valueChanged, this, [this](int minute) { clock_.preview(minute); });
    connect(now_, &QAbstractButton::clicked, this, [this] {
        slider_->setFocus(now_->hasFocus() ? Qt::ShortcutFocusReason : Qt::MouseFocusReason);
        clock_.returnToNow();
    });
}

void ClockTravelBar::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    text_->setDialoguePalette(palette);
    now_->setDialoguePalette(palette);
    slider_->setDialoguePalette(palette);
    update();
}

/// Keys, wheel and mouse stop at quarters of an hour, wherever now is.
void ClockTravelBar::roundStep(int action) {
    const double from = slider_->value();
    switch (action) {
    case QAbstractSlider::SliderSingleStepAdd:
        slider_->setSliderPosition(static_cast<int>(std::floor(from / step) + 1) * step);
        break;
    case QAbstractSlider::SliderSingleStepSub:
        slider_->setSliderPosition(static_cast<int>(std::ceil(from / step) - 1) * step);
        break;
    case QAbstractSlider::SliderPageStepAdd:
        slider_->setSliderPosition(quarter(from + leap));
        break;
    case QAbstractSlider::SliderPageStepSub:
        slider_->setSliderPosition(quarter(from - leap));
        break;
    case QAbstractSlider::SliderMove:
        slider_->setSliderPosition(quarter(slider_->sliderPosition()));
        break;
    default: // the ends of the day
        break;
    }
}

void ClockTravelBar::refresh() {
    const auto& travel = clock_.travel();
    setVisible(travel.has_value());
    if (!travel) {
        return;
    }
    isPreview_ = clock_.isPreviewing();
    const int minute = travel->minute(clock_.shownDate());
    // The minute of the slider is rounded, which would be wrong for a now with seconds.
    const auto label = isPreview_ ? travel->label(minute, clock_.formatter())
                                  : clock_.formatter().time(clock_.shownDate(), travel->homeTimeZone);
    const QString time = QString::fromStdString(label);
    text_->setText(isPreview_ ? tr("When it is %1 at home").arg(time) : tr("Now it is %1 at home").arg(time));
    {
        const QSignalBlocker quiet(slider_); // another day may be shorter, which is no wish of the user's
        slider_->setRange(0, travel->maximumMinute);
    }
    slider_->showValue(minute);
    slider_->setAccessibleDescription(text_->text());
    now_->setEnabled(isPreview_);
    now_->setEmphasis(isPreview_ ? Emphasis::primary : Emphasis::plain);
    update();
}

void ClockTravelBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (isPreview_) {
        fillStepped(painter, rect(), 1, palette_.hover);
    } else {
        painter.fillRect(0, 0, width(), PixelFrame::pixel, palette_.line());
    }
}

} // namespace DeskSprites
