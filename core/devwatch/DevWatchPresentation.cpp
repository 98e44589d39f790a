#include "core/devwatch/DevWatchPresentation.h"

#include "core/base/Text.h"

#include <array>
#include <cmath>
#include <filesystem>

namespace FellowCore {

std::string_view emptyTitle(DevWatchProcessListState state) {
    switch (state) {
    case DevWatchProcessListState::reading:
        return "Reading your processes…";
    case DevWatchProcessListState::available:
        return "Nothing running";
    case DevWatchProcessListState::unavailable:
        break;
    }
    return "Process list unavailable";
}

namespace DevWatchPresentation {

std::string uptime(Seconds length) {
    struct Unit {
        Seconds seconds;
        const char* letter;
    };
    constexpr std::array<Unit, 3> units{{{86400, "d"}, {3600, "h"}, {60, "m"}}};
    constexpr Seconds longest = 86400.0 * 365 * 1000; // of which no clock that is right would tell
    for (const Unit& unit : units) {
        if (length >= unit.seconds && length <= longest) {
            return std::to_string(static_cast<long>(length / unit.seconds)) + unit.letter;
        }
    }
    return "<1m";
}

std::string serverMeta(Seconds length, bool quiet) {
    return quiet ? "quiet 2h+" : "up " + uptime(length);
}

std::optional<std::string_view> reason(DevWatchActivityState state) {
    switch (state) {
    case DevWatchActivityState::calm:
        break;
    case DevWatchActivityState::busy:
        return "CPU busy for one minute";
    case DevWatchActivityState::hog:
        return "Process CPU high for two minutes";
    case DevWatchActivityState::idleServer:
        return "Listening process quiet for over two hours";
    }
    return std::nullopt;
}

std::string title(const DevWatchKind& kind) {
    switch (kind.kind) {
    case DevWatchKind::Case::appHelper:
        return singleLine(kind.application);
    case DevWatchKind::Case::devServer:
        return "Dev server";
    case DevWatchKind::Case::database:
        return "Database";
    case DevWatchKind::Case::tool:
        return "Tool";
    case DevWatchKind::Case::system:
        break;
    }
    return "System";
}

std::string_view sentence(DevWatchSafetyRefusal refusal) {
    switch (refusal) {
    case DevWatchSafetyRefusal::protectedPID:
    case DevWatchSafetyRefusal::protectedPath:
        return "Part of the system. Dhiru leaves it alone.";
    case DevWatchSafetyRefusal::anotherUser:
        return "Belongs to another user.";
    case DevWatchSafetyRefusal::incompleteIdentity:
        return "Dhiru cannot be sure which process this is.";
    case DevWatchSafetyRefusal::protectedProcess:
        return "Your desktop session needs this one.";
    case DevWatchSafetyRefusal::selfProcess:
        break;
    }
    return "This is Deskfellow itself.";
}

std::string_view sentence(const DevWatchTerminationOutcome& outcome) {
    using Case = DevWatchTerminationRefusal::Case;
    if (outcome.delivered) {
        return stopSent;
    }
    const bool isOther = outcome.refusal && (outcome.refusal->refusal == Case::processChanged ||
                                             outcome.refusal->refusal == Case::listenerChanged);
    return isOther ? "Process changed. Nothing stopped." : "Could not stop this process";
}

std::string sentence(const DevWatchRelaunch::Stopped& back) {
    return singleLine(back.name) + " came back. Something restarts it automatically.";
}

std::optional<std::string> project(const std::string& workingDirectory, const std::string& home) {
    const auto plain = [](const std::string& path) {
        const std::filesystem::path folder = std::filesystem::path(path).lexically_normal();
        return folder.has_filename() ? folder : folder.parent_path();
    };
    const std::filesystem::path folder = plain(workingDirectory);
    if (folder.filename().empty() || folder == plain(home)) {
        return std::nullopt;
    }
    return singleLine(folder.filename().string());
}

} // namespace DevWatchPresentation

} // namespace FellowCore
