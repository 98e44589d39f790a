#pragma once

#include "app/characters/dhiru/DevWatchSampling.h"
#include "core/devwatch/DevWatchTerminationGate.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace DeskSprites {

/// The stops of servers that were asked for: one gate for each listener, for as long as it is in the list.
/// Main thread only.
class DevWatchStops {
public:
    /// Both must outlive it.
    DevWatchStops(const Platform::Clock& clock, DevWatchSampling& sampling);
    DevWatchStops(const DevWatchStops&) = delete;
    DevWatchStops& operator=(const DevWatchStops&) = delete;

    /// What `mark` writes is something else now.
    std::function<void()> onChanged;
    /// A server was asked to stop, or ended.
    std::function<void(const FellowCore::DevWatchListener&)> onDelivered;
    /// Tells what became of a request whose row is gone.
    std::function<void(const QString&)> onNotice;

    /// Nothing happens while a stop of the same process is under way.
    void stop(const FellowCore::DevWatchProcessConfirmation& confirmed);
    /// Nothing happens unless `forceable`, and confirmed as it was for the polite stop.
    void force(const FellowCore::DevWatchProcessConfirmation& confirmed);

    /// Drops the gates of listeners that are in the list no more.
    void keepOnly(const std::vector<DevWatchServerRow>& rows);
    /// Writes stage and note into the rows.
    void mark(std::vector<DevWatchServerRow>& rows) const;
    /// How soon the processes should be looked at because something was asked to stop.
    std::optional<FellowCore::Seconds> nextLook() const;
    /// Forgets what was refused, as the user has had the time to read it.
    void forgetNotes();
    void clear() { stops_.clear(); }

private:
    using Key = std::pair<FellowCore::DevWatchProcessIdentity, std::uint16_t>;
    struct Stop {
        /// The queue's alone while sending.
        std::shared_ptr<FellowCore::DevWatchTerminationGate> gate;
        bool sending = true;
        std::optional<FellowCore::MonotonicInstant> sentAt; ///< of the last signal that was delivered
        QString note = {};
        bool isNews = false; ///< what the note says was never in a list
    };

    static Key keyOf(const FellowCore::DevWatchProcessConfirmation& confirmed);
    DevWatchStage stage(const Stop& stop) const;
    /// The stop under way of a process, by whatever port it was confirmed.
    const Stop* underWay(const FellowCore::DevWatchProcessIdentity& identity) const;
    void send(const Key& key, FellowCore::DevWatchSignal signal);
    void finish(const Key& key, const std::shared_ptr<FellowCore::DevWatchTerminationGate>& gate,
                FellowCore::DevWatchSignal signal, const FellowCore::DevWatchTerminationOutcome& outcome);

    const Platform::Clock& clock_;
    DevWatchSampling& sampling_;
    std::map<Key, Stop> stops_;
};

} // namespace DeskSprites
