#pragma once

#include "app/characters/dhiru/DevWatchApplications.h"
#include "app/characters/dhiru/DevWatchRows.h"
#include "core/devwatch/DevWatchSampler.h"
#include "core/devwatch/DevWatchTerminator.h"

#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

namespace DeskSprites {

/// What one look at the system gave. The rows know nothing yet of what lasts or was asked for.
struct DevWatchReading {
    FellowCore::DevWatchSnapshot snapshot;
    std::vector<DevWatchServerRow> servers;
    std::vector<DevWatchProcessRow> processes;
    std::optional<std::vector<DevWatchAppRow>> applications; ///< absent unless asked for
};

/// Everything that reads or ends processes and blocks for it: belongs to one queue, which makes it too.
class DevWatchReader {
public:
    using Windows = std::vector<Platform::RunningApplication>;

    /// `system` must outlive it. `gateClock` is called on the queue.
    DevWatchReader(const FellowCore::DevWatchOperations& system,
                   std::function<FellowCore::MonotonicInstant()> gateClock);
    DevWatchReader(const DevWatchReader&) = delete;
    DevWatchReader& operator=(const DevWatchReader&) = delete;

    /// Looks at processes, and at the applications behind the windows if there are any given.
    DevWatchReading read(const std::optional<Windows>& windows);
    /// What was measured before is no beginning any more, as after a time without readings.
    void startAfresh();

    const FellowCore::DevWatchTerminator& terminator() const { return terminator_; }
    /// The application as these windows tell it now.
    std::optional<FellowCore::DevWatchApp> fresh(const FellowCore::DevWatchApp& app, const Windows& windows);
    /// Its windows among these; none unless it may be asked to quit.
    Windows closableWindows(const FellowCore::DevWatchApp& app, const Windows& windows) const;

private:
    struct Judged {
        FellowCore::DevWatchProcess process;
        FellowCore::DevWatchKind kind;
        std::optional<FellowCore::DevWatchSafetyRefusal> refusal;
    };
    using Judgements = std::unordered_map<FellowCore::DevWatchProcessIdentity, Judged>;

    const Judged& judge(Judgements& round, const FellowCore::DevWatchProcess& process) const;
    std::optional<FellowCore::DevWatchSafetyRefusal> refusal(const FellowCore::DevWatchApp& app) const;
    std::vector<DevWatchAppRow> applicationRows(const Windows& windows,
                                                const FellowCore::DevWatchSnapshot& snapshot);

    const FellowCore::DevWatchOperations& system_;
    FellowCore::DevWatchSafetyPolicy policy_;
    std::optional<FellowCore::DevWatchSampler> sampler_; ///< always there; made anew by `startAfresh`
    FellowCore::DevWatchTerminator terminator_;
    DevWatchApplications applications_;
    Judgements judged_; ///< of the last reading, so that links are not followed anew each time
};

} // namespace DeskSprites
