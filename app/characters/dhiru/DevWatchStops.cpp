#include "app/characters/dhiru/DevWatchStops.h"

#include "app/characters/dhiru/DevWatchLooks.h"
#include "app/characters/dhiru/DhiruWords.h"
#include "core/devwatch/DevWatchPresentation.h"

#include <algorithm>
#include <set>

namespace DeskSprites {

using FellowCore::DevWatchSignal;
using FellowCore::DevWatchTerminationGate;

DevWatchStops::DevWatchStops(const Platform::Clock& clock, DevWatchSampling& sampling)
    : clock_(clock), sampling_(sampling) {}

DevWatchStops::Key DevWatchStops::keyOf(const FellowCore::DevWatchProcessConfirmation& confirmed) {
    return {confirmed.process.identity, confirmed.port};
}

DevWatchStage DevWatchStops::stage(const Stop& stop) const {
    if (stop.sending) {
        return DevWatchStage::sending;
    }
    if (!stop.sentAt) {
        return DevWatchStage::running;
    }
    const bool graceIsOver = clock_.monotonic() - *stop.sentAt >= stop.gate->graceInterval();
    return graceIsOver ? DevWatchStage::forceable : DevWatchStage::waiting;
}

const DevWatchStops::Stop*
DevWatchStops::underWay(const FellowCore::DevWatchProcessIdentity& identity) const {
    for (auto found = stops_.lower_bound({identity, 0});
         found != stops_.end() && found->first.first == identity; ++found) {
        if (stage(found->second) != DevWatchStage::running) {
            return &found->second;
        }
    }
    return nullptr;
}

void DevWatchStops::stop(const FellowCore::DevWatchProcessConfirmation& confirmed) {
    if (underWay(confirmed.process.identity) != nullptr) {
        return;
    }
    const Key key = keyOf(confirmed);
    stops_.insert_or_assign(key,
                            Stop{.gate = std::make_shared<DevWatchTerminationGate>(confirmed), .sentAt = {}});
    send(key, DevWatchSignal::stop);
}

void DevWatchStops::force(const FellowCore::DevWatchProcessConfirmation& confirmed) {
    const Key key = keyOf(confirmed);
    const auto found = stops_.find(key);
    if (found != stops_.end() && stage(found->second) == DevWatchStage::forceable &&
        found->second.gate->confirmation().matchesProcess(confirmed.process)) {
        send(key, DevWatchSignal::force);
    }
}

void DevWatchStops::send(const Key& key, DevWatchSignal signal) {
    Stop& stop = stops_.at(key);
    stop.sending = true;
    stop.note.clear();
    sampling_.run(
        [gate = stop.gate, signal](const DevWatchReader& reader) {
            const auto& terminator = reader.terminator();
            return signal == DevWatchSignal::stop ? terminator.stop(*gate) : terminator.force(*gate);
        },
        [this, key, gate = stop.gate, signal](const FellowCore::DevWatchTerminationOutcome& outcome) {
            finish(key, gate, signal, outcome);
        });
    onChanged();
}

void DevWatchStops::finish(const Key& key, const std::shared_ptr<DevWatchTerminationGate>& gate,
                           DevWatchSignal signal, const FellowCore::DevWatchTerminationOutcome& outcome) {
    const auto found = stops_.find(key);
    if (found == stops_.end() || found->second.gate != gate) {
        return; // he has left the desktop since
    }
    Stop& stop = found->second;
    stop.sending = false;
    // One that has ended meanwhile is gone from the list, which is all that was wanted.
    stop.isNews = outcome.refusal &&
                  outcome.refusal->refusal != FellowCore::DevWatchTerminationRefusal::Case::processGone;
    stop.note = DhiruWords::plain(FellowCore::DevWatchPresentation::sentence(outcome));
    if (outcome.delivered) {
        stop.sentAt = signal == DevWatchSignal::stop ? gate->stopDeliveredAt() : clock_.monotonic();
        onDelivered({gate->confirmation().process, gate->confirmation().port});
    }
    onChanged();
    // Whether it went well or not, the list is not what it was.
    sampling_.sampleNow();
}

void DevWatchStops::keepOnly(const std::vector<DevWatchServerRow>& rows) {
    std::set<Key> present;
    for (const DevWatchServerRow& row : rows) {
        present.emplace(row.listener.process.identity, row.listener.port);
    }
    std::vector<QString> untold;
    std::erase_if(stops_, [&](const auto& entry) {
        const bool isOver = !entry.second.sending && !present.contains(entry.first);
        if (isOver && entry.second.isNews) {
            untold.push_back(entry.second.note);
        }
        return isOver;
    });
    for (auto& [key, stop] : stops_) {
        stop.isNews = false;
    }
    for (const QString& note : untold) {
        onNotice(note);
    }
}

void DevWatchStops::mark(std::vector<DevWatchServerRow>& rows) const {
    for (DevWatchServerRow& row : rows) {
        const auto& identity = row.listener.process.identity;
        row.stage = DevWatchStage::running;
        row.note.clear();
        if (const auto own = stops_.find({identity, row.listener.port}); own != stops_.end()) {
            row.stage = stage(own->second);
            row.note = own->second.note;
        } else if (const Stop* other = underWay(identity)) {
            // The same process by another port. Force was never confirmed for this one.
            row.stage = std::min(stage(*other), DevWatchStage::waiting);
            row.note = other->note;
        }
    }
}

std::optional<FellowCore::Seconds> DevWatchStops::nextLook() const {
    std::optional<FellowCore::Seconds> soonest;
    for (const auto& [key, stop] : stops_) {
        if (stop.sentAt) {
            const FellowCore::Seconds grace = stop.gate->graceInterval();
            soonest = devWatchSooner(
                soonest, devWatchNextLook(clock_.monotonic() - *stop.sentAt, {0.25, 0.5, 1, 2, 3.5, grace}));
        }
    }
    return soonest;
}

void DevWatchStops::forgetNotes() {
    std::erase_if(stops_,
                  [this](const auto& entry) { return stage(entry.second) == DevWatchStage::running; });
}

} // namespace DeskSprites
