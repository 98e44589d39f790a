#pragma once

#include "app/characters/mira/HalfSecondField.h"
#include "app/characters/mira/MiraPreferences.h"
#include "app/settings/FormKit.h"

#include <array>
#include <functional>

class QComboBox;
class QLineEdit;

namespace DeskSprites {

class PatternCurve;

/// The user's own rhythms: their lengths with a live curve, and saving, renaming and deleting them.
class PatternEditor : public FormSection {
    Q_OBJECT

public:
    /// `onChange` runs after each change of the preferences, which outlive the editor.
    PatternEditor(MiraPreferences& preferences, std::function<void()> onChange, QWidget* parent = nullptr);
    /// Brings every control in line with the preferences without telling anyone.
    void refresh();

private:
    struct Part {
        FellowCore::BreathingPhase phase;
        HalfSecondField* field;
    };

    void addLengths();
    void addNames();
    void refreshPatterns();
    void takeLengths();
    void saveAsNew();
    void rename();
    void removeChosen();
    QString refusal() const;

    MiraPreferences& preferences_;
    std::function<void()> onChange_;
    QComboBox* patterns_;
    std::array<Part, 5> parts_{};
    PatternCurve* curve_;
    QLineEdit* name_;
    FormRow* nameRow_;
    QPushButton* rename_;
    QPushButton* delete_;
    QString shownName_; ///< of the pattern that the name field was filled for
};

} // namespace DeskSprites
