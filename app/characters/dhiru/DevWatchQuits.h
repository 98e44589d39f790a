#pragma once

#include "app/characters/dhiru/DevWatchSampling.h"
#include "core/devwatch/DevWatchAppQuitAttempt.h"
#include "platform/ApplicationWindows.h"

#include <QString>

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace DeskSprites {

/// The applications that were asked to quit: first by closing their windows, then, no sooner than their time
/// is over, by force. Main thread only.
class DevWatchQuits {
public:
    /// How long an application that stays may be forced without being asked again. Someone who answers its
    /// question with "Cancel" goes on working in it.
    static constexpr FellowCore::Seconds memory = 60;

    /// All must outlive it.
    DevWatchQuits(const Platform::Clock& clock, Platform::ApplicationWindows& windows,
                  DevWatchSampling& sampling);
    DevWatchQuits(const DevWatchQuits&) = delete;
    DevWatchQuits& operator=(const DevWatchQuits&) = delete;

    /// What `mark` writes is something else now.
    std::function<void()> onChanged;

    /// Nothing happens while the application is being quit already.
    void quit(const FellowCore::DevWatchApp& app);
    /// Nothing happens unless `forceable`.
    void force(const FellowCore::DevWatchApp& app);

    /// Takes in which applications run now. Drops what is known of the others.
    void observe(const std::vector<DevWatchAppRow>& rows);
    /// Writes stage and note into the rows.
    void mark(std::vector<DevWatchAppRow>& rows) const;
    /// How soon the applications should be looked at because one was asked to quit.
    std::optional<FellowCore::Seconds> nextLook() const;
    /// Whether one has been asked, so that applications are to be read.
    bool isWaiting() const;
    /// Forgets what failed, as the user has had the time to read it.
    void forgetNotes();
    void clear() { quits_.clear(); }

private:
    struct Quit {
        FellowCore::DevWatchAppQuitAttempt attempt;
        DevWatchStage stage = DevWatchStage::sending;
        QString note = {};
    };
    using Quits = std::map<FellowCore::DevWatchProcessIdentity, Quit>;

    void closeWindows(const FellowCore::DevWatchApp& app, const DevWatchReader::Windows& windows);
    void finishForce(const FellowCore::DevWatchApp& app, bool delivered);

    const Platform::Clock& clock_;
    Platform::ApplicationWindows& windows_;
    DevWatchSampling& sampling_;
    Quits quits_;
};

} // namespace DeskSprites
