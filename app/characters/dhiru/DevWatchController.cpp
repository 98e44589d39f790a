#include "app/characters/dhiru/DevWatchController.h"

#include "app/characters/dhiru/DevWatchLooks.h"
#include "core/devwatch/DevWatchPose.h"
#include "platform/Processes.h"

#include <algorithm>
#include <utility>

namespace DeskSprites {

using FellowCore::DevWatchListener;
using FellowCore::DevWatchProcessListState;

namespace {

/// How soon after the panel opened processor use is measured again, so that it shows at once.
constexpr FellowCore::Seconds secondLook = 1;
/// Over less than this the use of the processor says nothing about what lasts.
constexpr FellowCore::Seconds shortestSpan = 0.9;

bool holds(const std::vector<FellowCore::DevWatchProcessIdentity>& sorted,
           const FellowCore::DevWatchProcessIdentity& identity) {
    return std::ranges::binary_search(sorted, identity);
}

} // namespace

DevWatchController::DevWatchController(DesktopServices& services)
    : services_(services), sampling_(services.system.clock(), Platform::processOperations()),
      stops_(services.system.clock(), sampling_),
      quits_(services.system.clock(), services.system.windows(), sampling_),
      containers_(services.folders, services.system.clock()) {
    const auto tell = [this](const QString& sentence) { Q_EMIT noticed(sentence); };
    sampling_.onReading = [this](DevWatchReading reading) { takeIn(std::move(reading)); };
    sampling_.nextDelay = [this] { return nextDelay(); };
    sampling_.windows = [this]() -> std::optional<DevWatchSampling::Windows> {
        return open_ || quits_.isWaiting() ? std::optional(services_.system.windows().list()) : std::nullopt;
    };
    stops_.onChanged = [this] { update(); };
    stops_.onNotice = tell;
    stops_.onDelivered = [this](const DevWatchListener& stopped) {
        // What was asked and then forced comes back once.
        std::erase_if(relaunch_.stopped, [&stopped](const auto& earlier) {
            return earlier.pid == stopped.process.identity.pid && earlier.port == stopped.port;
        });
        relaunch_.recordStop(stopped, services_.system.clock().monotonic());
    };
    quits_.onChanged = [this] { update(); };
    containers_.onChanged = [this] { update(); };
    containers_.onNotice = tell;
    update();
}

DevWatchController::~DevWatchController() = default;

void DevWatchController::setDesktopActive(bool active) {
    if (std::exchange(active_, active) == active) {
        return;
    }
    sampling_.setActive(active);
    if (active) {
        containers_.setOpen(open_);
        return;
    }
    containers_.close();
    stops_.clear();
    quits_.clear();
    tracker_.reset();
    relaunch_ = {};
    listening_.clear();
    reading_ = {};
    list_ = DevWatchProcessListState::reading;
    update();
}

void DevWatchController::setPanelOpen(bool open) {
    if (std::exchange(open_, open) == open) {
        return;
    }
    containers_.setOpen(open && active_);
    if (open) {
        openedAt_ = services_.system.clock().monotonic();
        sampling_.sampleNow();
        return;
    }
    openedAt_.reset();
    stops_.forgetNotes();
    quits_.forgetNotes();
    sampling_.reschedule();
    update();
}

void DevWatchController::refresh() {
    sampling_.sampleNow();
    containers_.refresh();
}

void DevWatchController::stop(const FellowCore::DevWatchProcessConfirmation& confirmed) {
    if (active_) {
        stops_.stop(confirmed);
    }
}

void DevWatchController::force(const FellowCore::DevWatchProcessConfirmation& confirmed) {
    stops_.force(confirmed);
}

void DevWatchController::quit(const FellowCore::DevWatchApp& app) {
    if (active_) {
        quits_.quit(app);
    }
}

void DevWatchController::forceQuit(const FellowCore::DevWatchApp& app) {
    quits_.force(app);
}

void DevWatchController::stopContainer(const FellowCore::DevWatchDockerEngines::Entry& confirmed) {
    if (active_) {
        containers_.stop(confirmed);
    }
}

void DevWatchController::withdraw() {
    containers_.withdraw();
}

void DevWatchController::takeIn(DevWatchReading reading) {
    reading_ = std::move(reading);
    if (!reading_.snapshot.enumerationSucceeded) {
        // Nothing is known, least of all that something lasted or that a server is gone.
        list_ = DevWatchProcessListState::unavailable;
        tracker_.reset();
        return update();
    }
    list_ = DevWatchProcessListState::available;
    judge(reading_.snapshot);
    stops_.keepOnly(reading_.servers);
    if (reading_.applications) {
        quits_.observe(*reading_.applications);
    }
    noticeRelaunch(reading_.snapshot.listeners);
    update();
}

void DevWatchController::judge(const FellowCore::DevWatchSnapshot& snapshot) {
    const auto& last = tracker_.previousTime;
    const bool isTooSoon = last && snapshot.sampledAt > *last && snapshot.sampledAt - *last < shortestSpan;
    if (!isTooSoon) {
        tracker_.observe(snapshot.systemCPUPercent, snapshot.usages, snapshot.listeners, snapshot.sampledAt);
    }
}

void DevWatchController::noticeRelaunch(const std::vector<DevWatchListener>& listeners) {
    // Several processes may have shared the port all along; only one that was not there before came back.
    std::vector<DevWatchListener> newcomers;
    std::ranges::copy_if(listeners, std::back_inserter(newcomers), [this](const DevWatchListener& listener) {
        return !listening_.contains(listener.process.identity);
    });
    listening_.clear();
    for (const DevWatchListener& listener : listeners) {
        listening_.insert(listener.process.identity);
    }
    while (const auto back = relaunch_.relaunched(newcomers, services_.system.clock().monotonic())) {
        Q_EMIT noticed(QString::fromStdString(FellowCore::DevWatchPresentation::sentence(*back)));
    }
}

void DevWatchController::update() {
    DevWatchView view;
    view.list = list_;
    view.activity = tracker_.state;
    view.systemCPUPercent = reading_.snapshot.systemCPUPercent;
    if (!view.systemCPUPercent && list_ == DevWatchProcessListState::available) {
        view.systemCPUPercent = view_.systemCPUPercent; // too soon after the last reading to have moved
    }
    view.servers = reading_.servers;
    for (DevWatchServerRow& row : view.servers) {
        row.quiet = holds(tracker_.idleServers, row.listener.process.identity);
        row.hog = holds(tracker_.hogs, row.listener.process.identity);
    }
    view.processes = reading_.processes;
    for (DevWatchProcessRow& row : view.processes) {
        row.hog = holds(tracker_.hogs, row.process.identity);
    }
    if (open_ && reading_.applications) {
        view.applications = *reading_.applications;
    }
    stops_.mark(view.servers);
    quits_.mark(view.applications);
    view.containers = containers_.rows();
    view.containersNote = containers_.note();
    if (view != view_) {
        view_ = std::move(view);
        Q_EMIT changed();
    }
}

FellowCore::Seconds DevWatchController::nextDelay() const {
    // A server that comes back is noticed only while its end is remembered.
    const bool looksClosely = open_ || !relaunch_.stopped.empty();
    auto soonest = std::optional(FellowCore::DevWatchPolling::interval(looksClosely));
    soonest = devWatchSooner(soonest, devWatchSooner(stops_.nextLook(), quits_.nextLook()));
    if (openedAt_) {
        const FellowCore::Seconds age = services_.system.clock().monotonic() - *openedAt_;
        soonest = devWatchSooner(soonest, devWatchNextLook(age, {secondLook}));
    }
    return *soonest;
}

} // namespace DeskSprites
