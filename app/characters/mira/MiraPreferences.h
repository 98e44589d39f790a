#pragma once

#include "app/characters/mira/BreathingPattern.h"
#include "core/base/Preferences.h"
#include "core/breathing/BreathingMode.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace DeskSprites {

/// Whether the length of a session is told in rounds or in minutes.
enum class SessionLength { rounds, minutes };

/// One kind of Mira's sounds.
struct SoundChoice {
    bool on = true;
    double volume = 0; ///< 0...1

    friend bool operator==(const SoundChoice&, const SoundChoice&) = default;
};

/// The user's choices for Mira. Every value that is missing, of the wrong type or out of bounds reads as the
/// default or as the nearest that is allowed; what is stored is always within bounds.
class MiraPreferences {
public:
    static constexpr int mostMinutes = 60;
    static constexpr int defaultMinutes = 5;
    static constexpr std::size_t mostPatterns = 24;

    explicit MiraPreferences(FellowCore::Preferences& preferences);

    FellowCore::BreathingMode rhythm() const;
    void setRhythm(FellowCore::BreathingMode rhythm);

    SessionLength lengthKind() const;
    void setLengthKind(SessionLength kind);
    /// 1...75; nothing until the user has chosen, when each rhythm has its own usual number.
    std::optional<int> rounds() const;
    void setRounds(int rounds);
    /// The rounds of 4–7–8 are a number of their own, 1...8.
    int fourSevenEightRounds() const;
    void setFourSevenEightRounds(int rounds);
    int minutes() const; ///< 1...`mostMinutes`
    void setMinutes(int minutes);

    /// The saved patterns, in the order of saving. Lines that are no pattern, and those with a name that came
    /// before, are left out.
    std::vector<BreathingPattern> patterns() const;
    /// The saved pattern that `custom` stands for; nothing for the one without a name.
    std::optional<BreathingPattern> chosenPattern() const;
    /// Takes a saved pattern for `custom`; an unknown or empty name takes the one without a name.
    void choosePattern(std::string_view name);
    /// The lengths that `custom` stands for.
    FellowCore::BreathingSettings customLengths() const;
    /// Changes them, in the saved pattern when one is chosen.
    void setCustomLengths(const FellowCore::BreathingSettings& lengths);
    /// Keeps the present lengths as a new pattern and chooses it. False when the name is empty or taken
    /// (whatever the case), or there are as many as there may be.
    bool savePattern(std::string_view name);
    /// Gives the chosen pattern another name; false as `savePattern`.
    bool renameChosen(std::string_view name);
    /// Forgets the chosen pattern. Its lengths stay, without a name.
    void removeChosen();

    SoundChoice voice() const;
    void setVoice(const SoundChoice& choice);
    SoundChoice breath() const;
    void setBreath(const SoundChoice& choice);
    bool reducedMotion() const;
    void setReducedMotion(bool reduced);

    /// What the next session is made of.
    FellowCore::BreathingSettings sessionSettings() const;
    /// What the rhythm in force is called: its title, or the chosen pattern's name.
    std::string rhythmTitle() const;

private:
    bool isFree(const std::string& name, const std::vector<BreathingPattern>& among) const;
    void store(const std::vector<BreathingPattern>& patterns);
    SoundChoice sound(std::string_view switchKey, std::string_view volumeKey, double usual) const;

    FellowCore::Preferences& preferences_;
};

} // namespace DeskSprites
