#pragma once

#include "app/characters/dhiru/DevWatchReader.h"
#include "app/services/SerialQueue.h"
#include "platform/Clock.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace DeskSprites {

/// When processes are read, and the queue on which they are read and ended: one reading at a time, each after
/// the one before has arrived, and none while inactive. Main thread only.
class DevWatchSampling {
public:
    using Windows = DevWatchReader::Windows;

    /// `clock` must outlive it.
    DevWatchSampling(const Platform::Clock& clock, std::unique_ptr<FellowCore::DevWatchOperations> processes);
    DevWatchSampling(const DevWatchSampling&) = delete;
    DevWatchSampling& operator=(const DevWatchSampling&) = delete;

    /// Gets each reading.
    std::function<void(DevWatchReading)> onReading;
    /// How long after a reading, or after `reschedule`, the next one is due.
    std::function<FellowCore::Seconds()> nextDelay;
    /// The windows behind which a reading looks for applications; nothing when it need not.
    std::function<std::optional<Windows>()> windows;

    /// Reads soon after becoming active. A reading that is on its way on becoming inactive never arrives.
    void setActive(bool active);
    /// Reads now, or directly after the reading that runs.
    void sampleNow();
    /// `nextDelay` may tell something else by now.
    void reschedule();

    /// Does `work(DevWatchReader&)` on the queue; what it gives comes to `then` on the main thread, unless
    /// this has ended by then.
    template <typename Work, typename Then>
    void run(Work work, Then then) {
        queue_.post([this, work = std::move(work), then = std::move(then)] {
            QMetaObject::invokeMethod(
                &here_, [then, result = work(reader())]() mutable { then(std::move(result)); },
                Qt::QueuedConnection);
        });
    }

private:
    DevWatchReader& reader();
    void finish(std::uint64_t generation, DevWatchReading reading);

    const Platform::Clock& clock_;
    std::unique_ptr<FellowCore::DevWatchOperations> processes_;
    std::unique_ptr<DevWatchReader> reader_; ///< touched on the queue only
    QTimer timer_;
    bool active_ = false;
    bool reading_ = false;
    bool pending_ = false;
    bool afresh_ = false;
    std::uint64_t generation_ = 0; ///< a reading from an earlier one counts for nothing
    QObject here_;
    SerialQueue queue_; ///< last, so that it ends before what its work uses
};

} // namespace DeskSprites
