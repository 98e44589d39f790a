#include "app/characters/pump/PumpUsageService.h"

#include "core/agents/ClaudeStatusLineConnector.h"
#include "core/pump/PumpUsageReader.h"
#include "platform/LocalCalendar.h"

#include <exception>
#include <memory>

namespace DeskSprites {

using FellowCore::PumpPreferences;
using FellowCore::PumpUsageReader;
using FellowCore::PumpUsageSnapshot;

PumpUsageService::MakeReader pumpUsageReader(const DesktopServices& services) {
    const FellowCore::SupportFolders& folders = services.folders;
    const FellowCore::PumpUsagePlaces places{folders.home(), folders.character("pump") / "usage-cache.json",
                                             claudeRateLimitsFile(folders)};
    return [&files = services.files, places]() -> PumpUsageService::Read {
        auto reader = std::make_shared<PumpUsageReader>(files, places, Platform::localCalendar());
        return [reader](FellowCore::Instant now, const PumpPreferences& preferences) {
            return reader->refresh(now, preferences);
        };
    };
}

PumpUsageService::PumpUsageService(DesktopServices& services, MakeReader makeReader)
    : services_(services), makeReader_(std::move(makeReader)),
      preferences_(PumpPreferences::load(services.preferences)), queue_("Deskfellow.Pump.usage") {
    timer_.setInterval(periodMilliseconds);
    timer_.setTimerType(Qt::CoarseTimer); // may come up to three seconds late, together with others
    connect(&timer_, &QTimer::timeout, this, &PumpUsageService::refresh);
}

PumpUsageService::~PumpUsageService() = default;

void PumpUsageService::setDesktopActive(bool active) {
    if (std::exchange(desktopActive_, active) != active) {
        updateMonitoring();
    }
}

void PumpUsageService::setInspected(bool inspected) {
    if (std::exchange(inspected_, inspected) != inspected) {
        updateMonitoring();
    }
}

void PumpUsageService::updateMonitoring() {
    if (!isWatched()) {
        timer_.stop();
        ++generation_;
        needsRefresh_ = false;
        return;
    }
    if (!timer_.isActive()) {
        timer_.start();
    }
    refresh();
}

void PumpUsageService::refresh() {
    if (!isWatched()) {
        return;
    }
    if (reading_) {
        needsRefresh_ = true;
        return;
    }
    reading_ = true;
    const FellowCore::Instant now = services_.system.clock().wall();
    queue_.post([this, now, generation = generation_, preferences = preferences_] {
        std::optional<PumpUsageSnapshot> snapshot;
        try {
            if (!read_) {
                read_ = makeReader_();
            }
            snapshot = read_(now, preferences);
        } catch (const std::exception& error) {
            // The reader tells of its troubles in the snapshot; what is left is want of memory, which may
            // pass.
            qWarning("Pump could not read the usage: %s", error.what());
        }
        QMetaObject::invokeMethod(
            this, [this, generation, snapshot = std::move(snapshot)] { finish(generation, snapshot); },
            Qt::QueuedConnection);
    });
    Q_EMIT changed();
}

void PumpUsageService::finish(std::uint64_t generation, std::optional<PumpUsageSnapshot> snapshot) {
    reading_ = false;
    const bool isCurrent = generation == generation_;
    const bool hasMore = snapshot && snapshot->isLoading;
    if (isCurrent && snapshot) {
        snapshot_ = std::move(snapshot);
    }
    if (std::exchange(needsRefresh_, false) || (isCurrent && hasMore && isWatched())) {
        followUp();
    }
    Q_EMIT changed();
}

void PumpUsageService::followUp() {
    QTimer::singleShot(followUpMilliseconds, this, [this, generation = generation_] {
        if (generation == generation_) {
            refresh();
        }
    });
}

void PumpUsageService::apply(const PumpPreferences& preferences) {
    ++generation_;
    preferences_ = preferences.normalized();
    preferences_.save(services_.preferences);
    refresh();
    Q_EMIT changed();
}

} // namespace DeskSprites
