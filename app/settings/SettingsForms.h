#pragma once

#include <functional>
#include <string>

class QWidget;

namespace DeskSprites {

/// Makes the settings that are a character's own, or nothing when it has none. Called each time the
/// character's pane is built; the widget belongs to the given parent and is destroyed with the window.
using SettingsFormFactory = std::function<QWidget*(const std::string& character, QWidget* parent)>;

} // namespace DeskSprites
