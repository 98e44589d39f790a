#include "app/desktop/SizeControl.h"

#include "app/desktop/PanelMetrics.h"

#include <QHBoxLayout>

namespace DeskSprites {

namespace {

constexpr int keyStep = 10;
constexpr int pageStep = 50;

/// Calls what the row names now; a copy, because the call may bring another row.
template <typename... Arguments>
void call(const std::function<void(Arguments...)>& closure, Arguments... arguments) {
    if (const auto copy = closure) {
        copy(arguments...);
    }
}

} // namespace

SizeControl::SizeControl(QWidget* parent)
    : QWidget(parent), smaller_(new PanelButton(PanelButton::Shape::icon, this)),
      slider_(new PanelSlider(this)), larger_(new PanelButton(PanelButton::Shape::icon, this)) {
    smaller_->setTitle(tr("Smaller"));
    smaller_->setPixelIcon(PixelIcon::smaller);
    larger_->setTitle(tr("Larger"));
    larger_->setPixelIcon(PixelIcon::larger);
    slider_->setAccessibleName(tr("Size"));
    slider_->setSingleStep(keyStep);
    slider_->setPageStep(pageStep);
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(PanelMetrics::halfUnit);
    for (QWidget* control :
         {static_cast<QWidget*>(smaller_), static_cast<QWidget*>(slider_), static_cast<QWidget*>(larger_)}) {
        line->addWidget(control);
    }
    connect(smaller_, &QAbstractButton::clicked, this, [this] { call(row_.onSmaller); });
    connect(larger_, &QAbstractButton::clicked, this, [this] { call(row_.onLarger); });
    connectSlider();
}

void SizeControl::connectSlider() {
    connect(slider_, &QAbstractSlider::sliderPressed, this, [this] { call(row_.onBegin); });
    connect(slider_, &QAbstractSlider::sliderReleased, this, [this] { call(row_.onEnd); });
    connect(slider_, &QAbstractSlider::valueChanged, this, [this](int height) {
        const bool held = slider_->isSliderDown();
        if (!held) {
            call(row_.onBegin);
        }
        call(row_.onRequest, height);
        if (!held) {
            call(row_.onEnd);
        }
    });
}

void SizeControl::setDialoguePalette(const DialoguePalette& palette) {
    smaller_->setDialoguePalette(palette);
    slider_->setDialoguePalette(palette);
    larger_->setDialoguePalette(palette);
}

void SizeControl::setRow(const SizeRow& row) {
    row_ = row;
    if (!slider_->isSliderDown()) {
        const QSignalBlocker quiet(slider_);
        slider_->setRange(row.minimum, row.maximum);
    }
    slider_->showValue(row.height);
    smaller_->setEnabled(row.height > row.minimum);
    larger_->setEnabled(row.height < row.maximum);
}

} // namespace DeskSprites
