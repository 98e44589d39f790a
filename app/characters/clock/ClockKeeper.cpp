#include "app/characters/clock/ClockKeeper.h"

#include "core/worldclock/WorldClockTiming.h"
#include "platform/FreeMemory.h"
#include "platform/LocalLanguage.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace DeskSprites {

using FellowCore::Calendar;
using FellowCore::Instant;
using FellowCore::WorldClockCatalog;
using FellowCore::WorldClockCity;
using FellowCore::WorldClockFormatter;
using FellowCore::WorldClockPresentation;
using FellowCore::WorldClockRow;
using FellowCore::WorldClockState;
using FellowCore::WorldClockStore;
using FellowCore::WorldClockTiming;
using FellowCore::WorldClockTravel;

ClockKeeper::ClockKeeper(DesktopServices& services, LocalCalendar calendar, std::chrono::milliseconds linger)
    : services_(services), localCalendar_(std::move(calendar)), live_(services.system.clock().wall()),
      queue_("clock-cities") {
    minute_.setSingleShot(true);
    minute_.setTimerType(Qt::PreciseTimer);
    connect(&minute_, &QTimer::timeout, this, &ClockKeeper::minuteDue);
    release_.setSingleShot(true);
    release_.setInterval(linger);
    connect(&release_, &QTimer::timeout, this, &ClockKeeper::release);
}

ClockKeeper::~ClockKeeper() = default;

const WorldClockCatalog& ClockKeeper::catalog() {
    if (!catalog_) {
        catalog_ = std::make_unique<WorldClockCatalog>();
    }
    if (!tableInUse_) {
        release_.start();
    }
    return *catalog_;
}

void ClockKeeper::setTableInUse(bool inUse) {
    tableInUse_ = inUse;
    if (inUse) {
        release_.stop();
    } else if (catalog_) {
        release_.start();
    }
}

void ClockKeeper::release() {
    if (working_ > 0) {
        release_.start();
        return;
    }
    catalog_.reset();
    preparingSearch_ = false;
    searchReady_ = false;
    Platform::returnFreeMemory();
}

/// Works with the table on another thread, and afterwards here.
void ClockKeeper::work(std::function<void()> work, std::function<void()> afterwards) {
    ++working_;
    queue_.post([this, work = std::move(work), afterwards = std::move(afterwards)] {
        work();
        // Nothing comes of this once the keeper is gone: the queue has ended by then, and with it the call.
        QMetaObject::invokeMethod(
            this,
            [this, afterwards] {
                --working_;
                afterwards();
            },
            Qt::QueuedConnection);
    });
}

void ClockKeeper::prepare() {
    if (isReady() || std::exchange(preparing_, true)) {
        return;
    }
    work([&table = catalog()] { table.entries(); },
         [this] {
             if (!isReady()) {
                 load();
                 Q_EMIT changed();
             }
         });
}

void ClockKeeper::prepareSearch() {
    if (std::exchange(preparingSearch_, true)) {
        return;
    }
    work([&table = catalog()] { table.prepareSearch(); },
         [this] {
             searchReady_ = true;
             Q_EMIT changed();
         });
}

const WorldClockState& ClockKeeper::state() {
    if (!isReady()) {
        load();
    }
    return *state_;
}

void ClockKeeper::load() {
    adopt(WorldClockStore(services_.preferences, catalog()).load(systemTimeZone()));
    applyDefaultFaces();
}

/// Takes a state that is normalised, and looks up what the minutes need of it.
void ClockKeeper::adopt(WorldClockState state) {
    const std::string formerHome = cities_.empty() ? std::string() : cities_.front().identifier;
    cities_ = state.orderedCities(catalog(), systemTimeZone());
    state_ = std::move(state);
    if (cities_.front().identifier != formerHome) {
        preview_.reset(); // it was a minute of another home's day
        anchorTravel();
    }
}

void ClockKeeper::applyDefaultFaces() {
    if (!state_ || !hasStood_ || state_->defaultFacesApplied) {
        return;
    }
    WorldClockState wanted = *state_;
    wanted.applyDefaultFacesIfNeeded(catalog(), systemTimeZone(), live_);
    WorldClockStore(services_.preferences, catalog()).save(wanted, systemTimeZone());
    adopt(std::move(wanted));
}

const std::string& ClockKeeper::systemTimeZone() {
    if (systemTimeZone_.empty()) {
        systemTimeZone_ = localCalendar_().timeZone();
    }
    return systemTimeZone_;
}

WorldClockFormatter& ClockKeeper::formatter() {
    if (!formatter_) {
        formatter_ = std::make_unique<WorldClockFormatter>(Platform::localTimeLocale());
    }
    return *formatter_;
}

bool ClockKeeper::change(const std::function<bool(WorldClockState&)>& change) {
    WorldClockState wanted = state();
    const bool said = change(wanted);
    wanted.normalize(catalog(), systemTimeZone());
    if (wanted == *state_) {
        return said;
    }
    WorldClockStore(services_.preferences, catalog()).save(wanted, systemTimeZone());
    adopt(std::move(wanted));
    Q_EMIT changed();
    return said;
}

void ClockKeeper::watch() {
    if (!timeChanges_) {
        timeChanges_ = std::make_unique<Platform::TimeChanges>([this] { systemTimeChanged(); });
    }
    hasStood_ = true;
    watching_ = true;
    applyDefaultFaces();
    prepare();
    systemTimeChanged();
}

void ClockKeeper::rest() {
    watching_ = false;
    minute_.stop();
    timeChanges_.reset();
}

void ClockKeeper::systemTimeChanged() {
    const std::string former = systemTimeZone();
    systemTimeZone_ = localCalendar_().timeZone();
    preview_.reset();
    if (isReady() && systemTimeZone_ != former) {
        // From what is stored, for a city that was left out while one was at home there comes back.
        adopt(WorldClockStore(services_.preferences, catalog()).load(systemTimeZone_));
    }
    scheduleMinute();
    live();
}

void ClockKeeper::scheduleMinute() {
    if (!watching_) {
        return;
    }
    const Instant now = services_.system.clock().wall();
    due_ = WorldClockTiming::nextMinute(now);
    minute_.start(static_cast<int>(std::ceil((due_ - now) * 1000)));
}

void ClockKeeper::minuteDue() {
    const Instant now = services_.system.clock().wall();
    const Instant due = due_;
    scheduleMinute();
    if (now < due) {
        return; // the timer's clock and the wall's do not run quite alike
    }
    live();
    if (now - due < punctuality) {
        Q_EMIT minuteMet(due);
    }
}

/// Takes the present time and shows it.
void ClockKeeper::live() {
    live_ = services_.system.clock().wall();
    if (isReady() && !isPreviewing()) {
        anchorTravel();
    }
    Q_EMIT changed();
}

Calendar ClockKeeper::homeCalendar() {
    state();
    return cities_.front().timeZone().value_or(Calendar::utc());
}

void ClockKeeper::anchorTravel() {
    travel_ = WorldClockTravel::anchor(live_, homeCalendar());
}

const std::optional<WorldClockTravel>& ClockKeeper::travel() {
    state();
    return travel_;
}

void ClockKeeper::preview(double atMinute) {
    if (!travel()) {
        return;
    }
    const Instant date = travel_->date(atMinute);
    if (preview_ != date) {
        preview_ = date;
        Q_EMIT travelled();
    }
}

void ClockKeeper::returnToNow() {
    if (std::exchange(preview_, std::nullopt)) {
        live_ = services_.system.clock().wall();
        if (isReady()) {
            anchorTravel();
        }
        Q_EMIT travelled();
    }
}

/// While nobody waits for the minutes, nobody keeps the time.
void ClockKeeper::lookUpTime() {
    if (!watching_ && !isPreviewing()) {
        live_ = services_.system.clock().wall();
    }
}

std::vector<WorldClockRow> ClockKeeper::rowsOf(Which which) {
    lookUpTime();
    state();
    std::vector<WorldClockRow> rows;
    for (const WorldClockCity& city : cities_) {
        const bool isPinned = state_->isPinned(city.identifier);
        if (which == Which::all || isPinned || rows.empty()) {
            rows.push_back(
                WorldClockPresentation::row(city, cities_.front(), shownDate(), isPinned, formatter()));
        }
    }
    return rows;
}

std::vector<WorldClockRow> ClockKeeper::rows() {
    return rowsOf(Which::all);
}

std::vector<WorldClockRow> ClockKeeper::faces() {
    return rowsOf(Which::faces);
}

} // namespace DeskSprites
