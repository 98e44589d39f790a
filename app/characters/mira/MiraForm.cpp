#include "app/characters/mira/MiraForm.h"

#include "app/characters/mira/MiraController.h"
#include "app/characters/mira/PatternCurve.h"
#include "app/characters/mira/PatternEditor.h"

#include <QSignalBlocker>
#include <QVBoxLayout>

#include <cmath>

namespace DeskSprites {

using FellowCore::BreathingMode;
using FellowCore::BreathingSettings;

namespace {

constexpr int unit = FormMetrics::unit;

QString titleOf(BreathingMode mode) {
    const std::string_view words = FellowCore::title(mode);
    return QString::fromUtf8(words.data(), static_cast<qsizetype>(words.size()));
}

/// "1 min 3 s".
QString lengthWords(FellowCore::Seconds length) {
    const int seconds = static_cast<int>(std::lround(length));
    if (seconds < 60) {
        return MiraForm::tr("%1 s").arg(seconds);
    }
    return seconds % 60 == 0 ? MiraForm::tr("%1 min").arg(seconds / 60)
                             : MiraForm::tr("%1 min %2 s").arg(seconds / 60).arg(seconds % 60);
}

QString roundsUnit(int count) {
    return count == 1 ? MiraForm::tr(" round") : MiraForm::tr(" rounds");
}

} // namespace

SoundChoice MiraForm::Sound::choice() const {
    return {on->isChecked(), volume->value() / 100.0};
}

void MiraForm::Sound::show(const SoundChoice& choice) const {
    on->setQuietly(choice.on);
    volume->setQuietly(static_cast<int>(std::lround(choice.volume * 100)));
    volume->setEnabled(choice.on);
}

MiraForm::MiraForm(MiraController& mira, QWidget* parent)
    : QWidget(parent), mira_(mira), preferences_(mira.preferences()) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3 * unit);
    session_ = addSection(tr("Session"));
    note_ = makeText(tr("A session is under way. Rhythm and length are for the next one; sounds and motion "
                        "change at once."),
                     TextStyle::help, session_);
    session_->layout()->addWidget(note_);
    addRhythms(*session_);
    addLength(*session_);
    editor_ = new PatternEditor(
        preferences_, [this] { changed(); }, this);
    column->addWidget(editor_);
    addSounds();
    addMotion();
    connect(&mira_.news(), &MiraNews::changed, this, &MiraForm::refresh);
    refresh();
}

FormSection* MiraForm::addSection(const QString& heading) {
    auto* section = new FormSection(heading, this);
    layout()->addWidget(section);
    return section;
}

void MiraForm::addRhythms(FormSection& section) {
    auto* box = new QWidget(&section);
    auto* list = new QVBoxLayout(box);
    list->setContentsMargins(0, 0, 0, 0);
    list->setSpacing(unit / 2);
    for (const BreathingMode mode : FellowCore::allBreathingModes) {
        auto* radio = new FormRadio(titleOf(mode), box);
        list->addWidget(radio);
        rhythms_.push_back({mode, radio});
        connect(radio, &FormRadio::toggled, this, [this, mode](bool on) {
            if (on) {
                preferences_.setRhythm(mode);
                changed();
            }
        });
    }
    section.layout()->addWidget(box);
}

void MiraForm::addLength(FormSection& section) {
    auto* box = new QWidget(&section);
    auto* line = new QHBoxLayout(box);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(unit);
    byRounds_ = new FormRadio(tr("Rounds"), box);
    byMinutes_ = new FormRadio(tr("Minutes"), box);
    byRounds_->setAccessibleName(tr("Length in rounds"));
    byMinutes_->setAccessibleName(tr("Length in minutes"));
    line->addWidget(byRounds_);
    line->addWidget(byMinutes_);
    section.addRow(tr("Length in"), box);
    rounds_ = section.addNumber(tr("Rounds"), 1, BreathingSettings::mostRounds, roundsUnit);
    fourSevenEightRounds_ =
        section.addNumber(tr("Rounds of 4–7–8"), 1, FellowCore::roundsCap(BreathingMode::fourSevenEight),
                          roundsUnit, tr("Eight at most, because its long holds tire."));
    minutes_ = section.addNumber(tr("Minutes"), 1, MiraPreferences::mostMinutes,
                                 [](int count) { return count == 1 ? tr(" minute") : tr(" minutes"); });
    total_ = makeText({}, TextStyle::help, &section);
    section.layout()->addWidget(total_);

    connect(byRounds_, &FormRadio::toggled, this, [this](bool on) {
        preferences_.setLengthKind(on ? SessionLength::rounds : SessionLength::minutes);
        changed();
    });
    const auto number = [this](NumberField* field, void (MiraPreferences::*set)(int)) {
        connect(field, &QSpinBox::valueChanged, this, [this, set](int value) {
            (preferences_.*set)(value);
            changed();
        });
    };
    number(rounds_, &MiraPreferences::setRounds);
    number(fourSevenEightRounds_, &MiraPreferences::setFourSevenEightRounds);
    number(minutes_, &MiraPreferences::setMinutes);
}

MiraForm::Sound MiraForm::addSound(FormSection& section, const QString& label, const QString& volumeLabel,
                                   const QString& help) {
    Sound sound;
    sound.on = section.addSwitch(label, help);
    sound.volume =
        section.addSlider(volumeLabel, {0, 100, 5, 10}, [](int percent) { return tr("%1 %").arg(percent); });
    return sound;
}

void MiraForm::addSounds() {
    FormSection* section = addSection(tr("Sounds"));
    voice_ = addSound(*section, tr("Voice"), tr("Voice volume"),
                      tr("A soft tone of its own for each part of the breath."));
    breath_ = addSound(*section, tr("Breath"), tr("Breath volume"),
                       tr("The sound of air, as long as the breath itself."));
    const auto connectSound = [this](const Sound& sound, void (MiraPreferences::*set)(const SoundChoice&)) {
        const auto take = [this, sound, set] {
            (preferences_.*set)(sound.choice());
            changed();
        };
        connect(sound.on, &QCheckBox::toggled, this, take);
        connect(sound.volume, &FormSlider::chosen, this, take);
    };
    connectSound(voice_, &MiraPreferences::setVoice);
    connectSound(breath_, &MiraPreferences::setBreath);
}

void MiraForm::addMotion() {
    FormSection* section = addSection(tr("Motion"));
    reducedMotion_ = section->addSwitch(
        tr("Reduced motion"),
        tr("Words and a slow fade instead of movement, whatever the system's own setting says."));
    connect(reducedMotion_, &QCheckBox::toggled, this, [this](bool on) {
        preferences_.setReducedMotion(on);
        changed();
    });
}

void MiraForm::changed() {
    mira_.preferencesChanged(); // which brings everyone up to date, this form among them
}

void MiraForm::refresh() {
    note_->setVisible(mira_.isUnderWay());
    const BreathingMode rhythm = preferences_.rhythm();
    for (const Rhythm& each : rhythms_) {
        const QSignalBlocker quiet(each.radio);
        each.radio->setChecked(each.mode == rhythm);
        const bool isCustom = each.mode == BreathingMode::custom;
        const QString parts =
            patternWords(isCustom ? preferences_.customLengths() : FellowCore::settings(each.mode));
        setWords(each.radio, tr("%1: %2").arg(titleOf(each.mode), parts));
    }
    refreshLength();
    editor_->refresh();
    voice_.show(preferences_.voice());
    breath_.show(preferences_.breath());
    reducedMotion_->setQuietly(preferences_.reducedMotion());
}

void MiraForm::refreshLength() {
    const bool inRounds = preferences_.lengthKind() == SessionLength::rounds;
    const bool is478 = preferences_.rhythm() == BreathingMode::fourSevenEight;
    const BreathingSettings next = preferences_.sessionSettings();
    const QSignalBlocker quietRounds(byRounds_);
    const QSignalBlocker quietMinutes(byMinutes_);
    byRounds_->setChecked(inRounds);
    byMinutes_->setChecked(!inRounds);
    session_->rowOf(rounds_)->setVisible(inRounds && !is478);
    session_->rowOf(fourSevenEightRounds_)->setVisible(inRounds && is478);
    session_->rowOf(minutes_)->setVisible(!inRounds);
    rounds_->setQuietly(preferences_.rounds().value_or(next.rounds));
    fourSevenEightRounds_->setQuietly(preferences_.fourSevenEightRounds());
    minutes_->setQuietly(preferences_.minutes());
    const FellowCore::BreathingSession session(next);
    total_->setText(tr("%1%2, %3 with the time to settle.")
                        .arg(next.rounds)
                        .arg(roundsUnit(next.rounds), lengthWords(session.totalDuration())));
}

} // namespace DeskSprites
