#pragma once

#include "core/art/ArrangeLayout.h"
#include "core/focus/TimerSettings.h"
#include "platform/GlobalShortcuts.h"

#include <QString>

#include <functional>
#include <string>

namespace DeskSprites {

enum class SizeStep { smaller, larger };

/// What the user can do in the settings window. Each edit makes one call, at once; a state that is set from
/// outside makes none. A closure that is left empty is simply not called.
struct LibraryActions {
    using Id = const std::string&;

    /// The pane now in front: a character's identifier, or `LibraryWindowController::generalPane`.
    std::function<void(Id)> onPaneChanged;

    std::function<void(Id)> onSelect;   ///< make active; swaps with the active one when not on the desktop
    std::function<void(Id)> onBringOut; ///< stand beside the others
    std::function<void(Id)> onHide;     ///< leave the desktop

    /// The size slider is being dragged; many calls, in points. One `onSizeChosen` always follows.
    std::function<void(Id, double)> onSizePreview;
    std::function<void(Id, double)> onSizeChosen;
    std::function<void(Id, SizeStep)> onSizeStep;

    std::function<void(Id, bool)> onCharacterSounds;
    std::function<void(Id, double)> onCharacterVolume; ///< 0...1
    std::function<void(Id, bool)> onMirrored;
    std::function<void(Id, bool)> onReducedMotion;
    std::function<void(Id, const FellowCore::TimerSettings&)> onTimerSettings;

    std::function<void(bool)> onInterfaceSounds;
    std::function<void(double)> onInterfaceVolume; ///< 0...1
    /// Tries to take the shortcut. Unless the answer is `registered` the field keeps the old label and says
    /// why.
    std::function<Platform::ShortcutResult(const Platform::KeyCombination&, const QString& label)>
        onShortcutChanged;
    std::function<void()> onShortcutCleared;
    /// Returns the sentence to show when it failed, empty when it worked.
    std::function<QString(bool)> onStartAtLogin;
    std::function<void(double)> onDefaultHeight;
    std::function<void(FellowCore::ArrangeLayout::Edge)> onArrangeEdge;
    std::function<void(bool)> onArrangeCompact;
    std::function<void()> onArrange;
    std::function<void()> onOpenDataFolder;
};

} // namespace DeskSprites
