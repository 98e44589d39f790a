#pragma once

#include "core/agents/PumpAgentEvent.h"

#include <QAction>
#include <QMenu>

#include <functional>
#include <memory>
#include <vector>

namespace DeskSprites {

/// One session in a menu; choosing it leads there.
class SessionMenuItem : public QAction {
    Q_OBJECT

public:
    SessionMenuItem(const FellowCore::PumpAgentEvent& session, FellowCore::Instant now, QObject* parent);

    /// The menu of all sessions, or a line that says there are none.
    static std::unique_ptr<QMenu>
    menu(const std::vector<FellowCore::PumpAgentEvent>& sessions, FellowCore::Instant now,
         const std::function<void(const FellowCore::PumpAgentEvent&)>& onChosen);
};

} // namespace DeskSprites
