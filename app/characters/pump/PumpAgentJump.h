#pragma once

#include "app/desktop/DesktopServices.h"
#include "app/services/SerialQueue.h"
#include "core/agents/PumpAgentEvent.h"
#include "core/agents/PumpAgentTarget.h"
#include "platform/TerminalPlace.h"

#include <QObject>

#include <optional>

namespace DeskSprites {

/// Takes the user to the window in which an agent's session runs: the terminal with its tab or pane, the
/// editor with its project, or else the application. Where nothing is found, nothing happens. Main thread
/// only; what has to be asked of other programs is asked on a queue.
class PumpAgentJump : public QObject {
    Q_OBJECT

public:
    explicit PumpAgentJump(DesktopServices& services);
    ~PumpAgentJump() override;

    void to(const FellowCore::PumpAgentEvent& event);

private:
    using Target = FellowCore::PumpAgentTarget;

    void raiseTerminal(const std::optional<Platform::TerminalPlace>& place,
                       const std::optional<Target>& target);
    void raiseApplication(const Target& target);
    bool raiseWindowOf(const Target& target);

    DesktopServices& services_;
    SerialQueue queue_; ///< last, so that it ends before what its work uses
};

} // namespace DeskSprites
