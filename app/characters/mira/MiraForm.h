#pragma once

#include "app/characters/mira/MiraPreferences.h"
#include "app/settings/FormKit.h"

#include <vector>

namespace DeskSprites {

class MiraController;
class PatternEditor;

/// Mira's own settings: the rhythm, its length, patterns of the user's own, sounds and motion. It shows what
/// is in force, also when that is changed elsewhere.
class MiraForm : public QWidget {
    Q_OBJECT

public:
    /// `mira` outlives the form.
    explicit MiraForm(MiraController& mira, QWidget* parent = nullptr);

private:
    /// A switch with its volume.
    struct Sound {
        FormSwitch* on = nullptr;
        FormSlider* volume = nullptr;

        SoundChoice choice() const;
        void show(const SoundChoice& choice) const;
    };
    struct Rhythm {
        FellowCore::BreathingMode mode;
        FormRadio* radio;
    };

    void addRhythms(FormSection& section);
    void addLength(FormSection& section);
    void addSounds();
    Sound addSound(FormSection& section, const QString& label, const QString& volumeLabel,
                   const QString& help);
    void addMotion();
    FormSection* addSection(const QString& heading);
    void refresh();
    void refreshLength();
    void changed();

    MiraController& mira_;
    MiraPreferences& preferences_;
    QLabel* note_ = nullptr;
    std::vector<Rhythm> rhythms_;
    FormSection* session_ = nullptr;
    FormRadio* byRounds_ = nullptr;
    FormRadio* byMinutes_ = nullptr;
    NumberField* rounds_ = nullptr;
    NumberField* fourSevenEightRounds_ = nullptr;
    NumberField* minutes_ = nullptr;
    QLabel* total_ = nullptr;
    PatternEditor* editor_ = nullptr;
    Sound voice_;
    Sound breath_;
    FormSwitch* reducedMotion_ = nullptr;
};

} // namespace DeskSprites
