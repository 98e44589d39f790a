#include "app/characters/mira/MiraCue.h"

#include "app/characters/mira/ProgressRing.h"
#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PanelText.h"

#include <QAccessible>
#include <QEvent>
#include <QFontMetrics>
#include <QHBoxLayout>

#include <algorithm>

namespace DeskSprites {

namespace {

QString phaseTitle(FellowCore::BreathingPhase phase) {
    const std::string_view words = FellowCore::title(phase);
    return QString::fromUtf8(words.data(), static_cast<qsizetype>(words.size()));
}

/// As wide as the widest phase, so that the bubble keeps still from one to the next.
int widestTitle(const QFont& font) {
    int widest = 0;
    for (const FellowCore::BreathingPhase phase : FellowCore::allBreathingPhases) {
        widest = std::max(widest, QFontMetrics(font).horizontalAdvance(phaseTitle(phase)));
    }
    return widest;
}

} // namespace

QString roundWords(int round, int rounds) {
    return MiraCue::tr("%1 of %2").arg(round).arg(rounds);
}

MiraCue::MiraCue() : Bubble(BubbleDismissal::explicitOnly) {
    setWindowTitle(tr("Mira's cue"));
    auto* content = new QWidget;
    ring_ = new ProgressRing(MiraFrame::ringSteps, content);
    ring_->setAccessibleName(tr("This part of the breath"));
    title_ = new PanelText(TextRole::title, content);
    detail_ = new PanelText(TextRole::quiet, content);
    auto* words = new QVBoxLayout;
    words->setSpacing(PanelMetrics::halfUnit);
    for (PanelText* text : {title_, detail_}) {
        text->setWordWrap(false);
        words->addWidget(text);
    }
    auto* line = new QHBoxLayout(content);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(PanelMetrics::unit + PanelMetrics::halfUnit);
    line->addWidget(ring_);
    line->addLayout(words, 1);
    setContent(content);
}

void MiraCue::showFrame(const MiraFrame& frame, int rounds) {
    title_->setMinimumWidth(widestTitle(title_->font()));
    ring_->setStep(frame.ring);
    setWords(phaseTitle(frame.phase), roundWords(frame.round, rounds));
    if (frame.words != words_) {
        words_ = frame.words;
        applyInk();
    }
}

QString MiraCue::farewell() {
    return tr("Take this calm with you.");
}

void MiraCue::showEnd(int rounds) {
    ring_->setStep(MiraFrame::ringSteps);
    words_ = MiraFrame::wordLevels;
    applyInk();
    setWords(farewell(), rounds == 1 ? tr("1 round done") : tr("%1 rounds done").arg(rounds));
}

QString MiraCue::title() const {
    return title_->text();
}

void MiraCue::setWords(const QString& title, const QString& detail) {
    if (detail != detail_->text()) {
        detail_->setText(detail);
    }
    if (title == title_->text()) {
        return;
    }
    title_->setText(title);
    QAccessibleEvent alert(title_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void MiraCue::paletteChanged() {
    if (ring_) {
        ring_->setDialoguePalette(dialoguePalette());
        applyInk();
    }
}

void MiraCue::applyInk() {
    DialoguePalette palette = dialoguePalette();
    const double share = static_cast<double>(words_) / MiraFrame::wordLevels;
    palette.ink = mixed(palette.paper, palette.ink, share);
    title_->setDialoguePalette(palette);
    detail_->setDialoguePalette(palette);
}

} // namespace DeskSprites
