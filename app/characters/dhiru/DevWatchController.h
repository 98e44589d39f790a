#pragma once

#include "app/characters/dhiru/DevWatchContainers.h"
#include "app/characters/dhiru/DevWatchQuits.h"
#include "app/characters/dhiru/DevWatchRows.h"
#include "app/characters/dhiru/DevWatchSampling.h"
#include "app/characters/dhiru/DevWatchStops.h"
#include "app/desktop/DesktopServices.h"
#include "core/devwatch/DevWatchRelaunch.h"

#include <QObject>

#include <optional>
#include <set>

namespace DeskSprites {

/// What Dhiru knows and can do: reads processes, applications and containers in the background, judges them,
/// and stops what the user has confirmed. Nothing is read while he is off the desktop. Main thread only.
class DevWatchController : public QObject {
    Q_OBJECT

public:
    explicit DevWatchController(DesktopServices& services);
    /// Waits for what runs in the background: milliseconds, or seconds for an engine that does not answer.
    ~DevWatchController() override;

    /// The texts of processes and applications in it are the system's bytes, to be made one clean line before
    /// they are shown.
    const DevWatchView& view() const { return view_; }

    /// Whether Dhiru is on the desktop.
    void setDesktopActive(bool active);
    /// Reads more often, and applications and containers too, while the panel is open.
    void setPanelOpen(bool open);
    /// Reads now, as after a press on "Refresh".
    void refresh();

    /// Asks a server to stop, exactly the one that the user saw when confirming. What becomes of it is told
    /// by the row's stage and note.
    void stop(const FellowCore::DevWatchProcessConfirmation& confirmed);
    /// Ends it without its consent; only where the row is `forceable`.
    void force(const FellowCore::DevWatchProcessConfirmation& confirmed);
    /// Asks an application to quit by closing its windows; and ends it without its consent.
    void quit(const FellowCore::DevWatchApp& app);
    void forceQuit(const FellowCore::DevWatchApp& app);
    /// Asks a container to stop. `withdraw` takes the consent back: what has not been sent yet never is.
    void stopContainer(const FellowCore::DevWatchDockerEngines::Entry& confirmed);
    void withdraw();

Q_SIGNALS:
    /// The view is another one now.
    void changed();
    /// Something the user should know although no row tells it, such as a server that came back.
    void noticed(const QString& sentence);

private:
    void takeIn(DevWatchReading reading);
    void judge(const FellowCore::DevWatchSnapshot& snapshot);
    void noticeRelaunch(const std::vector<FellowCore::DevWatchListener>& listeners);
    void update();
    FellowCore::Seconds nextDelay() const;

    DesktopServices& services_;
    DevWatchView view_;
    DevWatchReading reading_;
    FellowCore::DevWatchActivityTracker tracker_;
    FellowCore::DevWatchRelaunch relaunch_;
    std::set<FellowCore::DevWatchProcessIdentity> listening_; ///< as of the last reading
    FellowCore::DevWatchProcessListState list_ = FellowCore::DevWatchProcessListState::reading;
    bool active_ = false;
    bool open_ = false;
    std::optional<FellowCore::MonotonicInstant> openedAt_;
    DevWatchSampling sampling_;
    DevWatchStops stops_;
    DevWatchQuits quits_;
    DevWatchContainers containers_;
};

} // namespace DeskSprites
