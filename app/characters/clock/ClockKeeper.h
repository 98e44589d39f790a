#pragma once

#include "app/desktop/DesktopServices.h"
#include "app/services/SerialQueue.h"
#include "core/worldclock/WorldClockCatalog.h"
#include "core/worldclock/WorldClockPresentation.h"
#include "core/worldclock/WorldClockStore.h"
#include "core/worldclock/WorldClockTravel.h"
#include "platform/TimeChanges.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace DeskSprites {

/// Which clocks the user has, and what time they show. It turns over on the minute while it is watched, and
/// when the machine's clock or zone is set. The city table is read when it is needed, or ahead on another
/// thread, and leaves memory again when it is not. Main thread only.
class ClockKeeper : public QObject {
    Q_OBJECT

public:
    using LocalCalendar = std::function<FellowCore::Calendar()>;
    /// How long after a whole minute its turn still counts as met.
    static constexpr FellowCore::Seconds punctuality = 5;
    /// How long the city table stays after its last use, while nobody is about to use it again.
    static constexpr std::chrono::milliseconds lingering{15'000};

    ClockKeeper(DesktopServices& services, LocalCalendar calendar,
                std::chrono::milliseconds linger = lingering);
    ~ClockKeeper() override;

    /// Stays until the event loop runs again, and while the table is in use.
    const FellowCore::WorldClockCatalog& catalog();
    bool holdsTable() const { return catalog_ != nullptr; }
    /// Keeps the table, as while the panel is open.
    void setTableInUse(bool inUse);
    /// Reads the city table ahead on another thread; `changed` tells when it is done.
    void prepare();
    /// Makes the search ready on another thread, once; `changed` tells when it is.
    void prepareSearch();
    bool isSearchReady() const { return searchReady_; }
    /// The state is known, so that asking for it costs nothing.
    bool isReady() const { return state_.has_value(); }
    /// Waits for the city table when it has not been read.
    const FellowCore::WorldClockState& state();
    const std::string& systemTimeZone();
    FellowCore::WorldClockFormatter& formatter();
    /// Changes the state and stores it when it is another one. Hands on what `change` says.
    bool change(const std::function<bool(FellowCore::WorldClockState&)>& change);

    /// Between these the minute's turn is waited for. The first watch of a user's life gives the tower its
    /// two faces.
    void watch();
    void rest();
    bool isWatching() const { return watching_; }
    /// A turn is being waited for.
    bool isArmed() const { return minute_.isActive(); }
    /// The machine's clock or zone may be another one: looks, and shows all anew.
    void systemTimeChanged();

    FellowCore::Instant shownDate() const { return preview_.value_or(live_); }
    const std::optional<FellowCore::WorldClockTravel>& travel();
    bool isPreviewing() const { return preview_.has_value(); }
    void preview(double atMinute);
    void returnToNow();
    /// Home, then every city in the user's order, at the shown date.
    std::vector<FellowCore::WorldClockRow> rows();
    /// Home, then the pinned cities.
    std::vector<FellowCore::WorldClockRow> faces();
    /// Home's zone.
    FellowCore::Calendar homeCalendar();

Q_SIGNALS:
    /// The state, the time or the zone is another one.
    void changed();
    /// Only the shown date is another one, while the user travels.
    void travelled();
    /// A whole minute has just begun, and the program was there to see it.
    void minuteMet(FellowCore::Instant minute);

private:
    void load();
    void adopt(FellowCore::WorldClockState state);
    void work(std::function<void()> work, std::function<void()> afterwards);
    void release();
    void applyDefaultFaces();
    void scheduleMinute();
    void minuteDue();
    void live();
    void lookUpTime();
    enum class Which { all, faces };
    std::vector<FellowCore::WorldClockRow> rowsOf(Which which);
    void anchorTravel();

    DesktopServices& services_;
    LocalCalendar localCalendar_;
    std::unique_ptr<FellowCore::WorldClockCatalog> catalog_;
    std::unique_ptr<FellowCore::WorldClockFormatter> formatter_;
    std::string systemTimeZone_;
    std::optional<FellowCore::WorldClockState> state_;
    std::vector<FellowCore::WorldClockCity> cities_; ///< the state's: home, then the user's
    FellowCore::Instant live_;
    std::optional<FellowCore::Instant> preview_;
    std::optional<FellowCore::WorldClockTravel> travel_;
    FellowCore::Instant due_; ///< the minute that is waited for
    QTimer minute_;
    QTimer release_;
    bool watching_ = false;
    bool hasStood_ = false;
    bool tableInUse_ = false;
    int working_ = 0; ///< pieces of work on the queue
    bool preparing_ = false;
    bool preparingSearch_ = false;
    bool searchReady_ = false;
    std::unique_ptr<Platform::TimeChanges> timeChanges_;
    SerialQueue queue_; ///< last, for its work uses the catalogue
};

} // namespace DeskSprites
