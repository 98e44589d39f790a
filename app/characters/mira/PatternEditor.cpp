#include "app/characters/mira/PatternEditor.h"

#include "app/characters/mira/PatternCurve.h"

#include <QComboBox>
#include <QLayout>
#include <QLineEdit>
#include <QSignalBlocker>

#include <utility>

namespace DeskSprites {

using FellowCore::BreathingPhase;
using FellowCore::BreathingSettings;

namespace {

QString fieldLabel(BreathingPhase phase) {
    switch (phase) {
    case BreathingPhase::inhale:
        return PatternEditor::tr("Breathe in");
    case BreathingPhase::sip:
        return PatternEditor::tr("A little more");
    case BreathingPhase::hold:
        return PatternEditor::tr("Hold, full");
    case BreathingPhase::exhale:
        return PatternEditor::tr("Breathe out");
    case BreathingPhase::rest:
    case BreathingPhase::settle:
        break;
    }
    return PatternEditor::tr("Hold, empty");
}

} // namespace

PatternEditor::PatternEditor(MiraPreferences& preferences, std::function<void()> onChange, QWidget* parent)
    : FormSection(tr("Custom pattern"), parent), preferences_(preferences), onChange_(std::move(onChange)),
      patterns_(new QComboBox(this)), curve_(new PatternCurve(this)), name_(new QLineEdit(this)) {
    patterns_->setMinimumWidth(HalfSecondField::fieldWidth(fontMetrics()));
    addRow(tr("Pattern"), patterns_, tr("What the rhythm Custom stands for."));
    connect(patterns_, &QComboBox::activated, this, [this](int index) {
        preferences_.choosePattern(patterns_->itemData(index).toString().toStdString());
        onChange_();
    });
    addLengths();
    addNames();
    refresh();
}

void PatternEditor::addLengths() {
    constexpr std::array order{BreathingPhase::inhale, BreathingPhase::sip, BreathingPhase::hold,
                               BreathingPhase::exhale, BreathingPhase::rest};
    for (std::size_t index = 0; index < order.size(); ++index) {
        auto* field = new HalfSecondField(order.at(index), this);
        parts_.at(index) = {order.at(index), field};
        addRow(fieldLabel(order.at(index)), field);
        connect(field, &QDoubleSpinBox::valueChanged, this, &PatternEditor::takeLengths);
    }
    layout()->addWidget(curve_);
}

void PatternEditor::addNames() {
    name_->setMaxLength(4 * static_cast<int>(BreathingPattern::longestName)); // the rest is cut when saved
    name_->setPlaceholderText(tr("Evening, for example"));
    name_->setMinimumWidth(HalfSecondField::fieldWidth(fontMetrics()));
    nameRow_ = addRow(tr("Name"), name_);
    connect(name_, &QLineEdit::textEdited, this, [this] { nameRow_->setError({}); });
    connect(name_, &QLineEdit::returnPressed, this, [this] {
        if (preferences_.chosenPattern()) {
            rename();
        } else {
            saveAsNew();
        }
    });
    auto* buttons = new FormButtons(this);
    connect(buttons->add(tr("Save as new")), &QPushButton::clicked, this, &PatternEditor::saveAsNew);
    rename_ = buttons->add(tr("Rename"));
    connect(rename_, &QPushButton::clicked, this, &PatternEditor::rename);
    delete_ = buttons->add(tr("Delete"));
    connect(delete_, &QPushButton::clicked, this, &PatternEditor::removeChosen);
    layout()->addWidget(buttons);
}

void PatternEditor::refresh() {
    const BreathingSettings lengths = preferences_.customLengths();
    for (const Part& part : parts_) {
        part.field->setQuietly(lengths.duration(part.phase));
    }
    curve_->setLengths(lengths);
    refreshPatterns();
}

void PatternEditor::refreshPatterns() {
    const auto chosen = preferences_.chosenPattern();
    const QString name = chosen ? QString::fromStdString(chosen->name) : QString();
    const QSignalBlocker quiet(patterns_);
    patterns_->clear();
    patterns_->addItem(tr("Without a name"), QString());
    for (const BreathingPattern& pattern : preferences_.patterns()) {
        const QString each = QString::fromStdString(pattern.name);
        patterns_->addItem(each, each);
    }
    patterns_->setCurrentIndex(patterns_->findData(name));
    rename_->setEnabled(chosen.has_value());
    delete_->setEnabled(chosen.has_value());
    if (name != shownName_) { // what the user is typing stays while something else changes
        shownName_ = name;
        name_->setText(name);
        nameRow_->setError({});
    }
}

void PatternEditor::takeLengths() {
    const auto length = [this](std::size_t part) { return parts_.at(part).field->value(); };
    preferences_.setCustomLengths({length(0), length(2), length(3), 1, length(4), length(1)});
    onChange_();
}

QString PatternEditor::refusal() const {
    if (cleanPatternName(name_->text().toStdString()).empty()) {
        return tr("Give the pattern a name first.");
    }
    if (preferences_.patterns().size() >= MiraPreferences::mostPatterns) {
        return tr("There is room for %1 patterns; delete one first.").arg(MiraPreferences::mostPatterns);
    }
    return tr("Another pattern has this name.");
}

void PatternEditor::saveAsNew() {
    if (preferences_.savePattern(name_->text().toStdString())) {
        onChange_();
    } else {
        nameRow_->setError(refusal());
    }
}

void PatternEditor::rename() {
    if (preferences_.renameChosen(name_->text().toStdString())) {
        onChange_();
    } else {
        nameRow_->setError(cleanPatternName(name_->text().toStdString()).empty()
                               ? tr("Give the pattern a name first.")
                               : tr("Another pattern has this name."));
    }
}

void PatternEditor::removeChosen() {
    preferences_.removeChosen();
    onChange_();
}

} // namespace DeskSprites
