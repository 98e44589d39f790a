#pragma once

#include "app/desktop/DesktopServices.h"
#include "app/services/SerialQueue.h"
#include "core/pump/PumpPreferences.h"
#include "core/pump/PumpUsageSnapshot.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <optional>

namespace DeskSprites {

/// When usage is read: once a minute while someone can see the result, one reading at a time, and never on
/// the thread that draws. Main thread only.
class PumpUsageService : public QObject {
    Q_OBJECT

public:
    /// Reads once; called on the service's own queue, where it may block.
    using Read = std::function<FellowCore::PumpUsageSnapshot(FellowCore::Instant now,
                                                             const FellowCore::PumpPreferences& preferences)>;
    /// Makes what reads. Called on the queue, before the first reading.
    using MakeReader = std::function<Read()>;

    static constexpr int periodMilliseconds = 60'000;
    static constexpr int followUpMilliseconds = 200;

    PumpUsageService(DesktopServices& services, MakeReader makeReader);
    ~PumpUsageService() override;

    /// The last reading; nothing before the first.
    const std::optional<FellowCore::PumpUsageSnapshot>& snapshot() const { return snapshot_; }
    const FellowCore::PumpPreferences& preferences() const { return preferences_; }
    bool isReading() const { return reading_; }

    /// Whether Pump is on the desktop, and whether its settings are open. Nothing is read while neither
    /// holds.
    void setDesktopActive(bool active);
    void setInspected(bool inspected);
    /// Reads now. While a reading runs, one more follows it, however often this is called.
    void refresh();
    /// Takes normalised preferences, stores them and reads anew; a reading that runs is not shown any more.
    void apply(const FellowCore::PumpPreferences& preferences);

Q_SIGNALS:
    /// The snapshot, the preferences or `isReading` has changed.
    void changed();

private:
    bool isWatched() const { return desktopActive_ || inspected_; }
    void updateMonitoring();
    void finish(std::uint64_t generation, std::optional<FellowCore::PumpUsageSnapshot> snapshot);
    void followUp();

    DesktopServices& services_;
    MakeReader makeReader_;
    Read read_; ///< touched on the queue only
    FellowCore::PumpPreferences preferences_;
    std::optional<FellowCore::PumpUsageSnapshot> snapshot_;
    QTimer timer_;
    bool reading_ = false;
    bool needsRefresh_ = false;
    bool desktopActive_ = false;
    bool inspected_ = false;
    std::uint64_t generation_ = 0; ///< a reading from an earlier one is not shown
    SerialQueue queue_;            ///< last, so that it ends before what its work uses
};

/// Makes the reader of the user's own logs, with its cache.
PumpUsageService::MakeReader pumpUsageReader(const DesktopServices& services);

} // namespace DeskSprites
