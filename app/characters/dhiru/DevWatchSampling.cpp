#include "app/characters/dhiru/DevWatchSampling.h"

#include "app/characters/dhiru/DevWatchLooks.h"

namespace DeskSprites {

namespace {
/// He is drawn before anything is read, above all when the program starts.
constexpr FellowCore::Seconds timeToAppear = 0.25;
} // namespace

DevWatchSampling::DevWatchSampling(const Platform::Clock& clock,
                                   std::unique_ptr<FellowCore::DevWatchOperations> processes)
    : clock_(clock), processes_(std::move(processes)), queue_("Deskfellow.Dhiru.processes") {
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, &here_, [this] { sampleNow(); });
}

DevWatchReader& DevWatchSampling::reader() {
    if (!reader_) {
        // Not before it is needed, and here, because it reads who this program descends from.
        reader_ = std::make_unique<DevWatchReader>(*processes_, [this] { return clock_.monotonic(); });
    }
    return *reader_;
}

void DevWatchSampling::setActive(bool active) {
    if (std::exchange(active_, active) == active) {
        return;
    }
    ++generation_;
    timer_.stop();
    pending_ = false;
    afresh_ = true;
    if (active_) {
        devWatchStart(timer_, timeToAppear);
    }
}

void DevWatchSampling::sampleNow() {
    if (!active_) {
        return;
    }
    timer_.stop();
    if (reading_) {
        pending_ = true;
        return;
    }
    reading_ = true;
    run(
        [seen = windows(), afresh = std::exchange(afresh_, false)](DevWatchReader& reader) {
            if (afresh) {
                reader.startAfresh();
            }
            return reader.read(seen);
        },
        [this, generation = generation_](DevWatchReading reading) {
            finish(generation, std::move(reading));
        });
}

void DevWatchSampling::finish(std::uint64_t generation, DevWatchReading reading) {
    reading_ = false;
    if (generation == generation_) {
        onReading(std::move(reading));
    }
    if (std::exchange(pending_, false)) {
        sampleNow();
    } else {
        reschedule();
    }
}

void DevWatchSampling::reschedule() {
    // The first reading after becoming active keeps its own time.
    if (active_ && !reading_ && !afresh_) {
        devWatchStart(timer_, nextDelay());
    }
}

} // namespace DeskSprites
