#include "app/characters/dhiru/DevWatchContainers.h"

#include "app/characters/dhiru/DevWatchLooks.h"
#include "app/characters/dhiru/DhiruWords.h"
#include "core/containers/DevWatchDockerFailure.h"
#include "core/containers/DevWatchHTTPFailure.h"
#include "core/devwatch/DevWatchPose.h"

#include <QCoreApplication>

#include <algorithm>
#include <exception>
#include <utility>

namespace DeskSprites {

using FellowCore::DevWatchDockerFailure;
using Outcome = DevWatchContainerOutcome;

namespace {

QString stopped() {
    return DhiruWords::words("Container stopped");
}

QString sentence(Outcome outcome) {
    switch (outcome) {
    case Outcome::stopped:
        return stopped();
    case Outcome::unconfirmed:
        return DhiruWords::words("Stop unconfirmed. Checking container…");
    case Outcome::withdrawn:
        return {};
    case Outcome::changed:
        return DhiruWords::words("Container unavailable or changed");
    case Outcome::unsupported:
        return DhiruWords::words("Docker needs API 1.42 or later");
    case Outcome::unavailable:
        break;
    }
    return DhiruWords::words("Docker unavailable");
}

std::optional<std::string> textOf(const std::optional<std::filesystem::path>& path) {
    return path ? std::optional(path->string()) : std::nullopt;
}

Outcome outcomeOf(const DevWatchDockerFailure& failure) {
    using Kind = DevWatchDockerFailure::Kind;
    constexpr int notFound = 404;
    constexpr int conflict = 409;
    switch (failure.kind()) {
    case Kind::changedContainer:
        return Outcome::changed;
    case Kind::unsupportedAPI:
        return Outcome::unsupported;
    case Kind::status:
        return failure.status() == notFound || failure.status() == conflict ? Outcome::changed
                                                                            : Outcome::unavailable;
    case Kind::unavailable:
    case Kind::invalidResponse:
        break;
    }
    return Outcome::unavailable;
}

} // namespace

Outcome devWatchContainerOutcome() {
    try {
        throw;
    } catch (const DevWatchDockerFailure& failure) {
        return outcomeOf(failure);
    } catch (const FellowCore::DevWatchHTTPFailure&) {
        return Outcome::unconfirmed;
    } catch (const std::exception&) {
        return Outcome::unconfirmed; // such as want of memory: nobody knows how far it came
    }
}

DevWatchContainers::DevWatchContainers(const FellowCore::SupportFolders& folders,
                                       const Platform::Clock& clock)
    : engines_(folders.home().string(), textOf(folders.runtime())), clock_(clock),
      queue_("Deskfellow.Dhiru.containers") {
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, &here_, [this] { list(); });
}

DevWatchContainers::~DevWatchContainers() {
    // What waits in the queue gives up; only an exchange that runs is waited for.
    ending_ = true;
    authorization_.advance();
}

bool DevWatchContainers::isFollowed(const Stop& stop) const {
    return stop.sentAt && clock_.monotonic() - *stop.sentAt < followTime;
}

bool DevWatchContainers::isWanted() const {
    return open_ ||
           std::ranges::any_of(stops_, [this](const auto& entry) { return isFollowed(entry.second); });
}

DevWatchStage DevWatchContainers::stage(const Stop& stop) const {
    if (stop.sending) {
        return DevWatchStage::sending;
    }
    const bool isWaiting = stop.sentAt && clock_.monotonic() - *stop.sentAt < retryTime;
    return isWaiting ? DevWatchStage::waiting : DevWatchStage::running;
}

std::vector<DevWatchContainerRow> DevWatchContainers::rows() const {
    std::vector<DevWatchContainerRow> rows;
    for (const Entry& entry : entries_) {
        const auto found = stops_.find(entry.container.id);
        const bool isAsked = found != stops_.end();
        rows.push_back({.entry = entry,
                        .stage = isAsked ? stage(found->second) : DevWatchStage::running,
                        .note = isAsked ? found->second.note : QString()});
    }
    return rows;
}

QString DevWatchContainers::note() const {
    switch (state_) {
    case ListState::reading:
        return DhiruWords::words("Reading your containers…");
    case ListState::available:
        return entries_.empty() ? DhiruWords::words("No running containers") : QString();
    case ListState::unavailable:
        break;
    }
    return DhiruWords::words("Docker unavailable");
}

void DevWatchContainers::setOpen(bool open) {
    if (std::exchange(open_, open) == open) {
        return;
    }
    std::erase_if(stops_,
                  [this](const auto& entry) { return !entry.second.sending && !isFollowed(entry.second); });
    if (open) {
        return list();
    }
    withdraw();
    ++generation_;
    state_ = ListState::reading;
    entries_.clear();
    onChanged();
    arm();
}

void DevWatchContainers::close() {
    setOpen(false);
    stops_.clear();
    pending_ = false;
    timer_.stop();
}

void DevWatchContainers::refresh() {
    if (open_) {
        list();
    }
}

void DevWatchContainers::withdraw() {
    authorization_.advance();
}

void DevWatchContainers::list() {
    timer_.stop();
    if (listing_) {
        pending_ = true;
        return;
    }
    listing_ = true;
    std::vector<Entry> followed;
    for (const auto& [id, stop] : stops_) {
        if (stop.sentAt) {
            followed.push_back(stop.entry);
        }
    }
    queue_.post([this, followed, generation = generation_] {
        if (ending_) {
            return;
        }
        QMetaObject::invokeMethod(
            &here_,
            [this, generation, listing = look(followed)]() mutable {
                finishList(generation, std::move(listing));
            },
            Qt::QueuedConnection);
    });
}

DevWatchContainers::Listing DevWatchContainers::look(const std::vector<Entry>& followed) const {
    Listing listing;
    try {
        listing.entries = engines_.containers();
        listing.state = ListState::available;
    } catch (const std::exception&) {
        // The state says so already; why makes no difference to the user.
    }
    const auto isListed = [](const std::vector<FellowCore::DevWatchDockerContainer>& list,
                             const std::string& id) {
        return std::ranges::find(list, id, &FellowCore::DevWatchDockerContainer::id) != list.end();
    };
    for (const Entry& entry : followed) {
        if (ending_) {
            break; // each may take seconds, and nobody waits for the answer any more
        }
        const std::string& id = entry.container.id;
        Presence& presence = listing.followed[id] = Presence::running;
        if (std::ranges::find(listing.entries, id, [](const Entry& e) { return e.container.id; }) !=
            listing.entries.end()) {
            continue;
        }
        try {
            // Not in the list may also mean that its engine gave none. So it is asked for itself.
            presence = isListed(entry.engine.containers(), id) ? Presence::running : Presence::gone;
        } catch (const std::exception&) {
            presence = Presence::unknown;
        }
    }
    return listing;
}

void DevWatchContainers::finishList(std::uint64_t generation, Listing listing) {
    listing_ = false;
    const bool isShown = open_ && generation == generation_;
    if (isShown) {
        state_ = listing.state;
        entries_ = std::move(listing.entries);
        tellMissed();
    }
    settle(listing.followed);
    if (isShown) {
        onChanged();
    }
    if (std::exchange(pending_, false) && isWanted()) {
        list();
    } else {
        arm();
    }
}

void DevWatchContainers::tellMissed() {
    std::vector<QString> missed;
    std::erase_if(stops_, [&](const auto& entry) {
        const bool isGone = std::ranges::none_of(
            entries_, [&](const Entry& listed) { return listed.container.id == entry.first; });
        if (isGone && entry.second.isNews) {
            missed.push_back(entry.second.note);
        }
        return isGone && entry.second.isNews;
    });
    for (auto& [id, stop] : stops_) {
        stop.isNews = false;
    }
    for (const QString& note : missed) {
        onNotice(note);
    }
}

void DevWatchContainers::settle(const std::map<std::string, Presence>& followed) {
    bool hasStopped = false;
    for (const auto& [id, presence] : followed) {
        const auto found = stops_.find(id);
        if (found == stops_.end() || found->second.sending) {
            continue;
        }
        if (presence == Presence::gone) {
            hasStopped = true;
            stops_.erase(found);
        } else if (presence == Presence::running && found->second.confirmed) {
            stops_.erase(found); // it was started again
        }
    }
    if (hasStopped) {
        onNotice(stopped());
    }
}

void DevWatchContainers::stop(const Entry& confirmed) {
    const std::string& id = confirmed.container.id;
    const auto known = stops_.find(id);
    if (known != stops_.end() && stage(known->second) != DevWatchStage::running) {
        return;
    }
    stops_.insert_or_assign(
        id, Stop{.entry = confirmed, .sentAt = {}, .note = DhiruWords::words("Requesting container Stop…")});
    queue_.post([this, confirmed, generation = authorization_.current()] {
        const auto stillAuthorized = [&] { return authorization_.matches(generation); };
        Outcome outcome = Outcome::withdrawn;
        try {
            if (stillAuthorized()) {
                confirmed.engine.stop(confirmed.container, stillAuthorized);
                outcome = Outcome::stopped;
            }
        } catch (const std::exception&) {
            outcome = devWatchContainerOutcome();
            if (outcome == Outcome::changed && !stillAuthorized()) {
                outcome = Outcome::withdrawn;
            }
        }
        QMetaObject::invokeMethod(
            &here_, [this, confirmed, outcome] { finishStop(confirmed, outcome); }, Qt::QueuedConnection);
    });
    onChanged();
}

void DevWatchContainers::finishStop(const Entry& entry, Outcome outcome) {
    const auto found = stops_.find(entry.container.id);
    if (found == stops_.end()) {
        return; // he has left the desktop since
    }
    Stop& stop = found->second;
    stop.sending = false;
    stop.note = sentence(outcome);
    stop.confirmed = outcome == Outcome::stopped;
    stop.isNews = outcome == Outcome::changed;
    if (outcome == Outcome::stopped || outcome == Outcome::unconfirmed) {
        stop.sentAt = clock_.monotonic();
    } else if (outcome == Outcome::withdrawn || !open_) {
        stops_.erase(found);
    }
    onChanged();
    if (isWanted()) {
        list();
    }
}

void DevWatchContainers::arm() {
    if (!isWanted()) {
        return timer_.stop();
    }
    FellowCore::Seconds delay = FellowCore::DevWatchPolling::interval(open_);
    for (const auto& [id, stop] : stops_) {
        if (stop.sentAt) {
            delay = std::min(
                delay,
                devWatchNextLook(clock_.monotonic() - *stop.sentAt, {0.5, 1, 2, 4, 8, 15}).value_or(delay));
        }
    }
    devWatchStart(timer_, delay);
}

} // namespace DeskSprites
