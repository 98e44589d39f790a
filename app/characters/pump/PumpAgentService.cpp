#include "app/characters/pump/PumpAgentService.h"

#include "core/agents/PumpAgentConnector.h"
#include "core/agents/PumpAgentLog.h"
#include "core/agents/PumpAgentTail.h"

#include <algorithm>
#include <exception>
#include <system_error>

namespace DeskSprites {

using FellowCore::PumpAgentEvent;
using FellowCore::PumpProvider;

PumpAgentService::PumpAgentService(DesktopServices& services)
    : services_(services), jump_(services), queue_("Deskfellow.Pump.events") {
    timer_.setInterval(periodMilliseconds);
    timer_.setTimerType(Qt::CoarseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] {
        watch(); // the folder may have been removed or replaced
        refresh();
    });
}

PumpAgentService::~PumpAgentService() = default;

std::optional<PumpAgentEvent> PumpAgentService::urgent() const {
    return sessions_.empty() ? std::nullopt : std::optional(sessions_.front());
}

void PumpAgentService::setDesktopActive(bool active) {
    if (std::exchange(desktop_, active) != active) {
        monitor();
    }
}

void PumpAgentService::setInspected(bool inspected) {
    if (std::exchange(inspected_, inspected) != inspected) {
        monitor();
    }
}

void PumpAgentService::monitor() {
    if (!isWatched()) {
        watcher_.reset();
        timer_.stop();
        ++revision_;
        pending_ = false;
        return;
    }
    watch();
    if (!timer_.isActive()) {
        timer_.start();
    }
    refresh();
}

void PumpAgentService::watch() {
    if (watcher_ && watcher_->isWatching()) {
        return;
    }
    const std::filesystem::path folder = services_.folders.deskfellow();
    try {
        services_.files.makeFolders(folder);
    } catch (const std::system_error&) {
        // Then there is nothing to watch; the timer tries again, and sees a file that comes by other ways.
    }
    watcher_ = std::make_unique<Platform::FolderWatch>(folder, [this](const std::string& name) {
        if (name.empty() || name == FellowCore::PumpAgentLog::fileName) {
            refresh();
        }
    });
}

void PumpAgentService::refresh() {
    if (!isWatched()) {
        return;
    }
    if (reading_) {
        pending_ = true;
        return;
    }
    reading_ = true;
    queue_.post([this, revision = revision_, &files = services_.files, &folders = services_.folders] {
        Connected connected;
        for (const PumpProvider agent : FellowCore::allPumpProviders) {
            try {
                if (FellowCore::PumpAgentConnector(files, folders, agent, "/").connected()) {
                    connected.insert(agent);
                }
            } catch (const std::exception&) {
                // What cannot be looked at does not count as connected.
            }
        }
        QMetaObject::invokeMethod(
            this,
            [this, revision, connected, events = readAgentEvents(files, agentEventsFile(folders))] {
                finish(revision, connected, events);
            },
            Qt::QueuedConnection);
    });
}

void PumpAgentService::clearDisconnected() {
    for (const PumpProvider agent : FellowCore::allPumpProviders) {
        if (!isConnected(agent)) {
            state_.clear(agent);
        }
    }
}

void PumpAgentService::finish(std::uint64_t revision, const Connected& connected,
                              const std::vector<PumpAgentEvent>& events) {
    reading_ = false;
    if (revision == revision_) {
        const FellowCore::Instant now = services_.system.clock().wall();
        connected_ = connected;
        std::vector<PumpAgentEvent> alerts = state_.ingest(events, now);
        // After taking in, too: the lines of an agent that is not connected any more are still in the file.
        clearDisconnected();
        std::erase_if(alerts, [this](const PumpAgentEvent& event) { return !isConnected(event.agent); });
        sessions_ = state_.sessions(now);
        const bool isHistory = !std::exchange(replayed_, true);
        Q_EMIT changed();
        if (!isHistory && !alerts.empty() && onNeedsYou) {
            onNeedsYou(alerts);
        }
    }
    if (std::exchange(pending_, false)) {
        refresh();
    }
}

} // namespace DeskSprites
