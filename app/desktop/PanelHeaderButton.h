#pragma once

#include "app/desktop/PanelButton.h"

namespace DeskSprites {

/// A quiet button of one icon, 24 by 24 points, as it stands beside a panel's title. `title` is its
/// accessible name and its tool tip. `parent` owns it.
PanelButton* panelHeaderButton(const QString& title, PixelIcon icon, QWidget* parent);

} // namespace DeskSprites
