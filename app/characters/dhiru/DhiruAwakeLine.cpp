#include "app/characters/dhiru/DhiruAwakeLine.h"

#include "app/characters/dhiru/DhiruAwake.h"
#include "app/desktop/PanelControls.h"

#include <QHBoxLayout>

namespace DeskSprites {

DhiruAwakeLine::DhiruAwakeLine(DhiruAwake& awake, QWidget* parent)
    : QWidget(parent), awake_(awake), words_(new PanelText(TextRole::quiet, this)),
      toggle_(new PanelToggle(tr("Keep awake"), this)) {
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(PanelMetrics::unit);
    toggle_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    line->addWidget(words_, 1);
    line->addWidget(toggle_);
    // Assistive technology toggles it without a click.
    connect(toggle_, &QAbstractButton::toggled, this, [this](bool on) { awake_.setWanted(on); });
    connect(&awake_, &DhiruAwake::changed, this, &DhiruAwakeLine::showState);
    showState();
}

void DhiruAwakeLine::setDialoguePalette(const DialoguePalette& palette) {
    words_->setDialoguePalette(palette);
    toggle_->setDialoguePalette(palette);
}

void DhiruAwakeLine::showState() {
    toggle_->setChecked(awake_.isWanted());
    words_->setText(awake_.words());
}

} // namespace DeskSprites
