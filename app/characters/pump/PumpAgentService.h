#pragma once

#include "app/characters/pump/PumpAgentJump.h"
#include "app/desktop/DesktopServices.h"
#include "app/services/SerialQueue.h"
#include "core/agents/PumpAgentState.h"
#include "platform/FolderWatch.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace DeskSprites {

/// What the agents' sessions are doing, read from the file that their hooks write: when it changes, and every
/// half minute, because old states expire. Main thread only.
class PumpAgentService : public QObject {
    Q_OBJECT

public:
    static constexpr int periodMilliseconds = 30'000;

    explicit PumpAgentService(DesktopServices& services);
    ~PumpAgentService() override;

    /// Gets the sessions that newly need the user, the newest first.
    std::function<void(const std::vector<FellowCore::PumpAgentEvent>&)> onNeedsYou;

    /// The live sessions, the most urgent first.
    const std::vector<FellowCore::PumpAgentEvent>& sessions() const { return sessions_; }
    std::optional<FellowCore::PumpAgentEvent> urgent() const;
    /// Whether the agent's hooks are connected, as far as was seen last.
    bool isConnected(FellowCore::PumpProvider agent) const { return connected_.contains(agent); }

    /// Whether Pump is on the desktop, and whether its settings are open. Nothing is watched or read while
    /// neither holds.
    void setDesktopActive(bool active);
    void setInspected(bool inspected);
    void refresh();
    /// Takes the user to the session: its terminal's tab, its editor's project, or its application.
    void focus(const FellowCore::PumpAgentEvent& event) { jump_.to(event); }

Q_SIGNALS:
    /// The file was looked at; what it holds, or what of it is still alive, may have changed.
    void changed();

private:
    using Connected = std::set<FellowCore::PumpProvider>;

    bool isWatched() const { return desktop_ || inspected_; }
    void monitor();
    void watch();
    void finish(std::uint64_t revision, const Connected& connected,
                const std::vector<FellowCore::PumpAgentEvent>& events);
    void clearDisconnected();

    DesktopServices& services_;
    PumpAgentJump jump_;
    FellowCore::PumpAgentState state_;
    std::vector<FellowCore::PumpAgentEvent> sessions_;
    Connected connected_;
    std::unique_ptr<Platform::FolderWatch> watcher_;
    QTimer timer_;
    bool desktop_ = false;
    bool inspected_ = false;
    bool replayed_ = false; ///< whether the history was taken in, which alerts nobody
    bool reading_ = false;
    bool pending_ = false;
    std::uint64_t revision_ = 0; ///< a reading from an earlier one counts for nothing
    SerialQueue queue_;          ///< last, so that it ends before what its work uses
};

} // namespace DeskSprites
