#pragma once

#include "app/desktop/QuickActionsContent.h"

#include <QColor>
#include <QString>

#include <optional>
#include <vector>

namespace DeskSprites {

/// What a character says of itself: in its quick actions, in its menus and to assistive technology.
struct CharacterPresentation {
    QString status;                 ///< one line, such as "Ready for focus"
    std::optional<QString> badge;   ///< "24:59"
    QString spoken;                 ///< the status as it is read aloud
    std::optional<double> progress; ///< 0...1
    std::optional<QColor> lamp;
    std::vector<QuickAction> actions; ///< the character's own, the primary one first
};

} // namespace DeskSprites
