#pragma once

#include "app/characters/dhiru/DevWatchRows.h"
#include "app/characters/dhiru/DhiruLine.h"

#include <QString>

#include <functional>
#include <optional>

namespace DeskSprites {

class DevWatchController;

/// What the user is asked before anything is ended. The answer acts on exactly what the question shows,
/// whatever becomes of the lists meanwhile.
struct DhiruQuestion {
    QString key{};  ///< of the line it is about
    DhiruAct act{}; ///< what was pressed
    QString title{};
    QString details{}; ///< exactly what will be ended
    QString body{};    ///< what that means for it
    QString answer{};  ///< the word on the button that does it
    QString gone{};    ///< what to say when it is not there any more
    std::function<void()> onAnswer{};
};

/// The question for a press on a line's button; nothing when the line is not in the view, or when the button
/// ends nothing. The controller outlives the question.
std::optional<DhiruQuestion> dhiruQuestion(DevWatchController& controller, const QString& key, DhiruAct act);
/// Whether the line is still in the view, or may be: a list that cannot be read tells nothing.
bool hasLine(const DevWatchView& view, const QString& key);
/// Where a browser finds the line; empty for nowhere.
QString urlOf(const DevWatchView& view, const QString& key);

} // namespace DeskSprites
