#pragma once

#include "core/base/Preferences.h"
#include "platform/GlobalShortcuts.h"

#include <QString>

#include <optional>

namespace DeskSprites {

/// The one shortcut that shows and hides everyone, as preferences keep it and the desktop grants it.
class ShortcutKeeper {
public:
    ShortcutKeeper(FellowCore::Preferences& preferences, Platform::GlobalShortcuts& shortcuts);

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

private:
    Platform::KeyCombination saved() const;

    FellowCore::Preferences& preferences_;
    Platform::GlobalShortcuts& shortcuts_;
    bool supported_ = true;
};

} // namespace DeskSprites
