#include "app/characters/dhiru/DevWatchQuits.h"

#include "app/characters/dhiru/DevWatchLooks.h"
#include "app/characters/dhiru/DhiruWords.h"
#include "core/devwatch/DevWatchPresentation.h"

#include <QCoreApplication>

#include <algorithm>

namespace DeskSprites {

using FellowCore::DevWatchApp;
using FellowCore::DevWatchAppQuitAttempt;

namespace {

QString failed() {
    return DhiruWords::words("Could not quit this application");
}

QString warning() {
    return DhiruWords::plain(FellowCore::DevWatchPresentation::quitWarning);
}

} // namespace

DevWatchQuits::DevWatchQuits(const Platform::Clock& clock, Platform::ApplicationWindows& windows,
                             DevWatchSampling& sampling)
    : clock_(clock), windows_(windows), sampling_(sampling) {}

void DevWatchQuits::quit(const DevWatchApp& app) {
    const auto known = quits_.find(app.identity);
    if (known != quits_.end() && known->second.stage != DevWatchStage::running) {
        return;
    }
    quits_.insert_or_assign(app.identity, Quit{.attempt = {app, clock_.monotonic()}});
    sampling_.run(
        [app, seen = windows_.list()](DevWatchReader& reader) {
            // Whoever is another application by now, although by the same process, was not meant.
            return reader.fresh(app, seen) == app ? reader.closableWindows(app, seen)
                                                  : DevWatchReader::Windows{};
        },
        [this, app](const DevWatchReader::Windows& found) { closeWindows(app, found); });
    onChanged();
}

void DevWatchQuits::closeWindows(const DevWatchApp& app, const DevWatchReader::Windows& windows) {
    const auto found = quits_.find(app.identity);
    if (found == quits_.end() || found->second.stage != DevWatchStage::sending) {
        return; // he has left the desktop since
    }
    // The window system may give a number anew: a window is closed only if it is still the one that was
    // judged.
    const DevWatchReader::Windows present = windows_.list();
    bool closing = false;
    for (const Platform::RunningApplication& window : windows) {
        const bool isThere = std::ranges::find(present, window) != present.end();
        closing = (isThere && windows_.close(window)) || closing;
    }
    Quit& quit = found->second;
    quit.attempt.requestedAt = clock_.monotonic();
    quit.stage = closing ? DevWatchStage::waiting : DevWatchStage::running;
    quit.note = closing ? DhiruWords::words("Asked to quit. Waiting for exit…") : failed();
    onChanged();
    sampling_.reschedule();
}

void DevWatchQuits::force(const DevWatchApp& app) {
    const auto found = quits_.find(app.identity);
    if (found == quits_.end() || found->second.stage != DevWatchStage::forceable) {
        return;
    }
    found->second.stage = DevWatchStage::sending;
    found->second.note.clear();
    sampling_.run(
        [attempt = found->second.attempt, seen = windows_.list()](DevWatchReader& reader) {
            return reader.terminator().forceQuit(attempt, [&] { return reader.fresh(attempt.app, seen); });
        },
        [this, app](bool delivered) { finishForce(app, delivered); });
    onChanged();
}

void DevWatchQuits::finishForce(const DevWatchApp& app, bool delivered) {
    const auto found = quits_.find(app.identity);
    if (found == quits_.end() || found->second.stage != DevWatchStage::sending) {
        return;
    }
    Quit& quit = found->second;
    quit.stage = delivered ? DevWatchStage::waiting : DevWatchStage::running;
    quit.note = delivered ? DhiruWords::plain(FellowCore::DevWatchPresentation::stopSent) : failed();
    if (delivered) {
        quit.attempt.requestedAt = clock_.monotonic();
    }
    onChanged();
    sampling_.sampleNow();
}

void DevWatchQuits::observe(const std::vector<DevWatchAppRow>& rows) {
    const FellowCore::MonotonicInstant now = clock_.monotonic();
    Quits kept;
    for (auto& [identity, quit] : quits_) {
        const auto row =
            std::ranges::find(rows, identity, [](const auto& each) { return each.app.identity; });
        const bool isOver = row == rows.end() || now - quit.attempt.requestedAt > memory;
        if (isOver && quit.stage != DevWatchStage::sending) {
            continue;
        }
        if (quit.stage == DevWatchStage::waiting && quit.attempt.canForce(row->app, now)) {
            quit.stage = DevWatchStage::forceable;
            quit.note = warning();
        }
        kept.emplace(identity, std::move(quit));
    }
    quits_ = std::move(kept);
}

void DevWatchQuits::mark(std::vector<DevWatchAppRow>& rows) const {
    for (DevWatchAppRow& row : rows) {
        const auto found = quits_.find(row.app.identity);
        row.stage = found == quits_.end() ? DevWatchStage::running : found->second.stage;
        row.note = found == quits_.end() ? QString() : found->second.note;
    }
}

std::optional<FellowCore::Seconds> DevWatchQuits::nextLook() const {
    std::optional<FellowCore::Seconds> soonest;
    for (const auto& [identity, quit] : quits_) {
        if (quit.stage == DevWatchStage::waiting) {
            soonest = devWatchSooner(soonest,
                                     devWatchNextLook(clock_.monotonic() - quit.attempt.requestedAt,
                                                      {0.25, 0.5, 1, 2, DevWatchAppQuitAttempt::patience}));
        }
    }
    return soonest;
}

bool DevWatchQuits::isWaiting() const {
    return std::ranges::any_of(
        quits_, [](const auto& entry) { return entry.second.stage != DevWatchStage::running; });
}

void DevWatchQuits::forgetNotes() {
    std::erase_if(quits_, [](const auto& entry) { return entry.second.stage == DevWatchStage::running; });
}

} // namespace DeskSprites
