#pragma once

#include <functional>
#include <map>
#include <string>

class QWidget;

namespace DeskSprites {

/// Makes the settings that are a character's own. Called each time the character's pane is built; the widget
/// belongs to the given parent and is destroyed with the window.
using SettingsFormFactory = std::function<QWidget*(QWidget* parent)>;

/// The one table of which character has a form of its own, by identifier.
using SettingsForms = std::map<std::string, SettingsFormFactory>;

} // namespace DeskSprites
