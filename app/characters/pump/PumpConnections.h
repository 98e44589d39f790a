#pragma once

#include "app/desktop/DesktopServices.h"
#include "app/services/SerialQueue.h"
#include "core/agents/PumpAgentHook.h"

#include <QObject>
#include <QString>

#include <array>
#include <filesystem>
#include <functional>

namespace DeskSprites {

/// What Pump can be connected to, in the order in which the settings list it.
enum class PumpLink { claudeHooks, codexHooks, statusLine };

/// How one connection stands.
struct PumpLinkState {
    bool isKnown = false; ///< whether it was looked at yet
    bool isConnected = false;
    bool includesProject = false; ///< the consent with which hooks are connected
    bool isBusy = false;          ///< being connected or disconnected now
    QString error;                ///< why the last attempt failed; empty when it did not
};

/// Connects Pump to the agents and takes it out again, one connection at a time and never on the thread that
/// draws. The agents' settings are touched by the connectors alone. Main thread only.
class PumpConnections : public QObject {
    Q_OBJECT

public:
    /// `hookProgram` is where fellow-hook is installed; absolute.
    PumpConnections(DesktopServices& services, std::filesystem::path hookProgram);
    ~PumpConnections() override;

    const PumpLinkState& state(PumpLink link) const { return states_.at(static_cast<std::size_t>(link)); }
    /// Looks anew at how everything stands.
    void look();
    /// Nothing happens while the connection is busy. The consent is for hooks only.
    void connectTo(PumpLink link, FellowCore::PumpProjectConsent consent);
    void disconnectFrom(PumpLink link);

Q_SIGNALS:
    /// Some state has changed.
    void changed();
    /// A connection was made or taken out.
    void settled();

private:
    enum class Attempt { look, change };

    PumpLinkState& stateOf(PumpLink link) { return states_.at(static_cast<std::size_t>(link)); }
    void change(PumpLink link, const std::function<void(PumpLink)>& work);
    PumpLinkState found(PumpLink link) const;
    void show(PumpLink link, const PumpLinkState& state, Attempt attempt);

    DesktopServices& services_;
    std::filesystem::path hookProgram_;
    std::array<PumpLinkState, 3> states_;
    SerialQueue queue_; ///< last, so that it ends before what its work uses
};

} // namespace DeskSprites
