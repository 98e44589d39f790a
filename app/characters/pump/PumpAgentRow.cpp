#include "app/characters/pump/PumpAgentRow.h"

#include "app/characters/pump/PumpColours.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PixelFrame.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace DeskSprites {

using PumpPresentation::Certainty;

namespace {

constexpr int pixel = PixelFrame::pixel;
constexpr double tagScale = 0.75;

QString tagWord(Certainty certainty) {
    switch (certainty) {
    case Certainty::exact:
        return PumpAgentRow::tr("EXACT");
    case Certainty::estimate:
        return PumpAgentRow::tr("ESTIMATE");
    case Certainty::none:
        break;
    }
    return {};
}

} // namespace

PumpTag::PumpTag(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PumpTag::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    update();
}

void PumpTag::setWord(const QString& word) {
    word_ = word;
    setAccessibleName(word.toLower());
    setVisible(!word.isEmpty());
    updateGeometry();
    update();
}

QFont PumpTag::tagFont() const {
    QFont own = scaledFont(font(), tagScale);
    own.setWeight(QFont::DemiBold);
    return own;
}

QSize PumpTag::sizeHint() const {
    const QFontMetrics metrics(tagFont());
    return {metrics.horizontalAdvance(word_) + 2 * PanelMetrics::halfUnit + 2 * pixel,
            metrics.height() + 2 * pixel};
}

void PumpTag::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    fillStepped(painter, rect(), 1, palette_.quietInk());
    fillStepped(painter, rect().adjusted(pixel, pixel, -pixel, -pixel), 0, palette_.paper);
    painter.setFont(tagFont());
    painter.setPen(palette_.quietInk());
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, word_);
}

PumpAgentRow::PumpAgentRow(QWidget* parent)
    : QWidget(parent), name_(new PanelText(TextRole::title, this)), tag_(new PumpTag(this)),
      value_(new PanelText(TextRole::body, this)), bar_(new SegmentBar(this)),
      usage_(new PanelText(TextRole::body, this)), detail_(new PanelText(TextRole::quiet, this)),
      source_(new PanelText(TextRole::quiet, this)) {
    auto* head = new QHBoxLayout;
    head->setSpacing(PanelMetrics::unit);
    for (PanelText* text : {name_, value_}) {
        text->setWordWrap(false);
    }
    head->addWidget(name_);
    head->addWidget(tag_, 0, Qt::AlignVCenter);
    head->addStretch();
    head->addWidget(value_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(PanelMetrics::halfUnit);
    column->addLayout(head);
    column->addWidget(bar_);
    for (PanelText* text : {usage_, detail_, source_}) {
        column->addWidget(text);
    }
}

void PumpAgentRow::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    for (PanelText* text : {name_, value_, usage_, detail_, source_}) {
        text->setDialoguePalette(palette);
    }
    tag_->setDialoguePalette(palette);
    applyBarColour();
}

void PumpAgentRow::applyBarColour() {
    DialoguePalette coloured = palette_;
    coloured.accent = PumpColours::onPaper(FellowCore::PumpGauge(row_.left).light, palette_);
    bar_->setDialoguePalette(coloured);
}

void PumpAgentRow::showRow(const PumpPresentation::Row& row) {
    row_ = row;
    name_->setText(row.name);
    tag_->setWord(tagWord(row.certainty));
    value_->setText(row.value);
    bar_->setVisible(row.left.has_value());
    bar_->setFraction(row.left.value_or(0) / 100);
    bar_->setAccessibleName(tr("%1, left").arg(row.name));
    usage_->setText(row.usage);
    detail_->setText(row.detail);
    detail_->setVisible(!row.detail.isEmpty());
    source_->setText(tr("%1 · %2").arg(row.window, row.updated));
    applyBarColour();
}

} // namespace DeskSprites
