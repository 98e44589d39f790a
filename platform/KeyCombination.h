#pragma once

#include <QString>

namespace Platform {

/// A key with its modifiers, as preferences keep it.
struct KeyCombination {
    int key = 0;       ///< a `Qt::Key`
    int modifiers = 0; ///< `Qt::KeyboardModifiers`

    /// As people write it, "Ctrl+Alt+B"; empty when the combination is not valid.
    QString label() const;
    /// Whether it may serve as a shortcut everywhere: a key that is no modifier itself, with at least one of
    /// Ctrl, Alt and Meta, or a function key.
    bool isValid() const;

    friend bool operator==(const KeyCombination&, const KeyCombination&) = default;
};

} // namespace Platform
