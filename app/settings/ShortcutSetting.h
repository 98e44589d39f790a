#pragma once

#include "app/settings/FormControls.h"
#include "platform/GlobalShortcuts.h"

#include <functional>
#include <optional>

namespace DeskSprites {

class ShortcutRecorder;

/// A shortcut that works whatever has the keyboard: the button that takes it, and one that clears it.
class ShortcutSetting : public QWidget {
    Q_OBJECT

public:
    explicit ShortcutSetting(QWidget* parent = nullptr);

    /// Asks the desktop for a combination. The answer decides whether it is shown; nothing when nobody asks.
    std::function<std::optional<Platform::ShortcutResult>(const Platform::KeyCombination& combination,
                                                          const QString& label)>
        onChosen;
    std::function<void()> onCleared;

    /// Shows the shortcut in force, in words; empty for none. Nothing can be chosen where the desktop grants
    /// programs no shortcuts.
    void showShortcut(const QString& label, bool supported);

Q_SIGNALS:
    /// Why a combination did not take; empty when there is no complaint any more.
    void complained(const QString& sentence);

private:
    void take(const Platform::KeyCombination& combination);

    ShortcutRecorder* recorder_;
    FormButton* clear_;
};

} // namespace DeskSprites
