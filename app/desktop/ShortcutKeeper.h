#pragma once

#include "core/base/Preferences.h"
#include "platform/GlobalShortcuts.h"

#include <QString>

#include <functional>
#include <optional>
#include <string>

namespace DeskSprites {

/// What tells one shortcut of the program from another.
struct ShortcutPurpose {
    std::string name; ///< for the desktop; unique
    /// The preferences that hold the key, its modifiers and both in words. A key of 0 means that the user
    /// wants no shortcut.
    std::string keyPreference;
    std::string modifiersPreference;
    std::string labelPreference;
    Platform::KeyCombination standard; ///< when none was ever chosen; an invalid one is no shortcut
    QString refusal;                   ///< when another program has it; %1 is the combination
};

/// One shortcut that works whatever has the keyboard, as preferences keep it and the desktop grants it.
class ShortcutKeeper {
public:
    ShortcutKeeper(FellowCore::Preferences& preferences, Platform::GlobalShortcuts& shortcuts,
                   ShortcutPurpose purpose, std::function<void()> onPressed);

    /// Asks for the saved combination, or the standard one when none was ever chosen. A sentence when the
    /// user should know that it was refused.
    std::optional<QString> registerHotKey();
    /// Takes another combination; the old one stays when the answer is not `registered`.
    Platform::ShortcutResult change(const Platform::KeyCombination& combination, const QString& label);
    void clear();
    void release();
    /// The combination in words; empty when the user wants none.
    QString label() const;
    /// Whether the desktop grants programs such shortcuts at all, as far as it has been asked.
    bool isSupported() const { return supported_; }
    const std::string& name() const { return purpose_.name; }
    void press() const { onPressed_(); }

private:
    Platform::KeyCombination saved() const;

    FellowCore::Preferences& preferences_;
    Platform::GlobalShortcuts& shortcuts_;
    ShortcutPurpose purpose_;
    std::function<void()> onPressed_;
    bool supported_ = true;
};

} // namespace DeskSprites
