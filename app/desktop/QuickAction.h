#pragma once

#include "app/desktop/PixelIcon.h"

#include <QMenu>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace DeskSprites {

/// How much a button asks to be pressed.
enum class Emphasis { primary, plain, quiet };

/// One button of a bubble. `id` names it from one content to the next: a button with the same id is kept,
/// whatever else about it changes, and keeps its hover and focus.
struct QuickAction {
    QString id;
    QString title;
    Emphasis emphasis = Emphasis::plain;
    bool enabled = true;
    std::function<void()> onPress;
    /// When set, a press opens this menu instead of calling `onPress`; it is built anew each time.
    std::function<std::unique_ptr<QMenu>()> menu;
    std::optional<PixelIcon> icon;
    /// A sentence for who lingers on the button, and for assistive technology.
    QString help{};
};

} // namespace DeskSprites
