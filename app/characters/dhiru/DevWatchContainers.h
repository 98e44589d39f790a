#pragma once

#include "app/characters/dhiru/DevWatchRows.h"
#include "app/services/SerialQueue.h"
#include "core/base/SupportFolders.h"
#include "core/devwatch/DevWatchAuthorization.h"
#include "platform/Clock.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace DeskSprites {

/// What became of a request to an engine to stop a container.
enum class DevWatchContainerOutcome {
    stopped,
    unconfirmed, ///< it may have arrived
    withdrawn,
    changed,
    unsupported,
    unavailable,
};

/// What an engine's failure to stop a container means; call in a handler of any exception.
DevWatchContainerOutcome devWatchContainerOutcome();

/// The containers of the user's engines: listed while someone looks or a stop is not confirmed yet, on a
/// queue of their own, because an engine may take seconds. Main thread only.
class DevWatchContainers {
public:
    using Entry = FellowCore::DevWatchDockerEngines::Entry;

    /// How long a stop that nobody confirmed is looked after once nobody looks any more, and how long before
    /// the user may ask again.
    static constexpr FellowCore::Seconds followTime = 60;
    static constexpr FellowCore::Seconds retryTime = 15;

    /// `clock` must outlive it.
    DevWatchContainers(const FellowCore::SupportFolders& folders, const Platform::Clock& clock);
    ~DevWatchContainers();
    DevWatchContainers(const DevWatchContainers&) = delete;
    DevWatchContainers& operator=(const DevWatchContainers&) = delete;

    /// The rows or the note are others now.
    std::function<void()> onChanged;
    /// Tells what became of a container whose row is gone.
    std::function<void(const QString&)> onNotice;

    /// As they are to be shown.
    std::vector<DevWatchContainerRow> rows() const;
    /// In place of rows.
    QString note() const;

    /// Whether someone looks. Who stops looking takes back what was not sent yet.
    void setOpen(bool open);
    /// Forgets everything, and stops looking.
    void close();
    void refresh();
    /// Nothing happens while the container is being stopped already.
    void stop(const Entry& confirmed);
    /// Takes every consent back that was not acted upon.
    void withdraw();

private:
    enum class ListState { reading, available, unavailable };
    enum class Presence { running, gone, unknown };

    struct Stop {
        Entry entry;
        bool sending = true;
        bool confirmed = false;                             ///< the engine says that it has stopped
        std::optional<FellowCore::MonotonicInstant> sentAt; ///< absent when nothing was sent
        QString note;
        bool isNews = false; ///< what the note says was never in a list
    };
    struct Listing {
        ListState state = ListState::unavailable;
        std::vector<Entry> entries;
        std::map<std::string, Presence> followed; ///< by id
    };

    bool isWanted() const;
    bool isFollowed(const Stop& stop) const;
    DevWatchStage stage(const Stop& stop) const;
    void list();
    Listing look(const std::vector<Entry>& followed) const;
    void finishList(std::uint64_t generation, Listing listing);
    void tellMissed();
    void settle(const std::map<std::string, Presence>& followed);
    void finishStop(const Entry& entry, DevWatchContainerOutcome outcome);
    void arm();

    const FellowCore::DevWatchDockerEngines engines_;
    const Platform::Clock& clock_;
    FellowCore::DevWatchAuthorization authorization_;
    std::atomic<bool> ending_ = false;
    ListState state_ = ListState::reading;
    std::vector<Entry> entries_;
    std::map<std::string, Stop> stops_; ///< by id
    QTimer timer_;
    bool open_ = false;
    bool listing_ = false;
    bool pending_ = false;
    std::uint64_t generation_ = 0; ///< a list from an earlier one counts for nothing
    QObject here_;
    SerialQueue queue_; ///< last, so that it ends before what its work uses
};

} // namespace DeskSprites
