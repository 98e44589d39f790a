#include "cli/Usage.h"

#include "cli/MomentOptions.h"
#include "core/agents/ClaudeStatusLineConnector.h"
#include "core/base/Json.h"
#include "core/base/MemoryPreferences.h"
#include "core/base/WholeFile.h"
#include "core/pump/PumpGauge.h"
#include "core/pump/PumpUsageReader.h"
#include "platform/LocalCalendar.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <iostream>

namespace Fellow {

namespace {

using FellowCore::Instant;
using FellowCore::Json;
using FellowCore::PumpClaudeUsage;
using FellowCore::PumpGauge;
using FellowCore::PumpPreferences;
using FellowCore::PumpProvider;
using FellowCore::PumpSourceState;
using FellowCore::PumpUsageSnapshot;
using FellowCore::SupportFolders;

constexpr std::size_t preferencesLimit = 8U << 20U;

/// The running program's plan and budget. Its file is only looked at; one that cannot be understood counts
/// as none.
PumpPreferences preferencesOf(FellowCore::FileOperations& files, const SupportFolders& folders) {
    FellowCore::MemoryPreferences stored;
    try {
        stored.load(readWholeFile(files, folders.preferencesFile(), preferencesLimit));
    } catch (const std::runtime_error&) {
        return PumpPreferences();
    }
    return PumpPreferences::load(stored);
}

PumpUsageSnapshot readUsage(const MomentOptions& options) {
    FellowCore::PosixFileOperations files;
    const SupportFolders& folders = *options.folders;
    FellowCore::PumpUsagePlaces places{.home = folders.home(), .rateLimits = claudeRateLimitsFile(folders)};
    if (!options.isOtherMoment) { // what is learned at another moment is nothing to keep
        places.cacheURL = folders.character("pump") / "usage-cache.json";
    }
    const PumpPreferences preferences = preferencesOf(files, folders);
    FellowCore::PumpUsageReader reader(files, places, Platform::localCalendar());
    while (true) {
        PumpUsageSnapshot snapshot = reader.refresh(options.at, preferences);
        if (!snapshot.isLoading) {
            return snapshot;
        }
    }
}

/// Rounded down to one digit after the point, as the gauge rounds down.
double shownPercent(double percent) {
    return std::floor(percent * 10 + 1e-6) / 10;
}

Json dateOf(const std::optional<Instant>& moment) {
    return moment ? jsonDate(*moment, FellowCore::JsonDateForm::iso8601) : Json(nullptr);
}

template <typename Value>
Json orNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json(nullptr);
}

bool hasClaude(const PumpUsageSnapshot& snapshot) {
    return snapshot.claudeSource == PumpSourceState::ready && snapshot.claude.hasLogs;
}

bool hasCodex(const PumpUsageSnapshot& snapshot) {
    return snapshot.codexSource == PumpSourceState::ready && snapshot.codex &&
           !snapshot.codex->isStale(snapshot.at);
}

Json claudeJson(const PumpUsageSnapshot& snapshot) {
    Json agent{{"agent", "claude"}, {"source", rawValue(snapshot.claudeSource)}};
    if (hasClaude(snapshot)) {
        const PumpClaudeUsage& claude = snapshot.claude;
        agent["certainty"] = claude.isExact() ? "exact" : "estimate";
        agent["used_percent"] = claude.usedPercent;
        agent["left_percent"] = claude.leftPercent();
        agent["week_used_percent"] = orNull(claude.weekUsedPercent);
        agent["resets_at"] = dateOf(claude.resetsAt);
        agent["window_minutes"] = PumpClaudeUsage::blockLength / 60;
        if (!claude.isExact()) {
            agent["block_tokens"] = claude.blockTokens;
            agent["week_tokens"] = claude.weekTokens;
        }
    }
    return agent;
}

Json codexJson(const PumpUsageSnapshot& snapshot) {
    Json agent{{"agent", "codex"}, {"source", rawValue(snapshot.codexSource)}};
    if (const auto& codex = snapshot.codex) {
        agent["stale"] = codex->isStale(snapshot.at);
        agent["observed_at"] = dateOf(codex->observedAt);
        agent["certainty"] = "exact";
        agent["used_percent"] = codex->usedPercent;
        agent["left_percent"] = codex->leftPercent();
        agent["resets_at"] = dateOf(codex->resetsAt);
        agent["window_minutes"] = codex->windowMinutes;
        agent["plan"] = orNull(codex->planType);
    }
    return agent;
}

void printJson(const PumpUsageSnapshot& snapshot) {
    const PumpGauge gauge(snapshot);
    const auto nearest = snapshot.mostUsedProvider();
    const Json document{{"at", dateOf(snapshot.at)},
                        {"nearest", nearest ? Json(rawValue(*nearest)) : Json(nullptr)},
                        {"left_percent", orNull(snapshot.displayLeftPercent())},
                        {"digits", orNull(gauge.digits)},
                        {"light", rawValue(gauge.light)},
                        {"agents", {claudeJson(snapshot), codexJson(snapshot)}}};
    std::cout << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

std::string percentText(double percent) {
    const double shown = shownPercent(percent);
    char text[32];
    std::snprintf(text, sizeof text, std::floor(shown) == shown ? "%.0f%%" : "%.1f%%", shown);
    return text;
}

std::string resetText(const std::optional<Instant>& resetsAt, Instant now) {
    if (!resetsAt || *resetsAt - now < 0) {
        return {};
    }
    const auto minutes = static_cast<long long>((*resetsAt - now) / 60);
    const std::string rest = std::to_string(minutes % 60) + " min";
    return ", reset in " + (minutes >= 60 ? std::to_string(minutes / 60) + " h " : std::string()) + rest;
}

std::string unknownText(PumpSourceState state) {
    switch (state) {
    case PumpSourceState::unreadable:
        return "logs unavailable";
    case PumpSourceState::partial:
        return "partial log, waiting for token count";
    case PumpSourceState::loading:
        return "reading";
    case PumpSourceState::ready:
    case PumpSourceState::missing:
        break;
    }
    return "nothing logged";
}

std::string claudeText(const PumpUsageSnapshot& snapshot) {
    if (!hasClaude(snapshot)) {
        return unknownText(snapshot.claudeSource);
    }
    const PumpClaudeUsage& claude = snapshot.claude;
    std::string text = percentText(claude.leftPercent()) + " left, " +
                       (claude.isExact() ? "exact" : "estimate") + resetText(claude.resetsAt, snapshot.at);
    if (claude.isExact()) {
        return text + ", week " + percentText(*claude.weekUsedPercent) + " used";
    }
    return text + ", " + std::to_string(claude.blockTokens) + " tokens, week " +
           std::to_string(claude.weekTokens);
}

std::string codexText(const PumpUsageSnapshot& snapshot) {
    if (!hasCodex(snapshot)) {
        const bool isStale = snapshot.codexSource == PumpSourceState::ready && snapshot.codex;
        return isStale ? "awaiting update" : unknownText(snapshot.codexSource);
    }
    return percentText(snapshot.codex->leftPercent()) + " left, exact" +
           resetText(snapshot.codex->resetsAt, snapshot.at);
}

void printText(const PumpUsageSnapshot& snapshot) {
    const auto nearest = snapshot.mostUsedProvider();
    const auto mark = [&](PumpProvider agent) { return nearest == agent ? "* " : "  "; };
    std::cout << mark(PumpProvider::claude) << "Claude  " << claudeText(snapshot) << '\n'
              << mark(PumpProvider::codex) << "Codex   " << codexText(snapshot) << '\n';
}

ExitStatus run(Arguments arguments) {
    const MomentOptions options = readMomentOptions(arguments);
    if (options.complaint) {
        return misused(usage, *options.complaint);
    }
    const PumpUsageSnapshot snapshot = readUsage(options);
    if (options.json) {
        printJson(snapshot);
    } else {
        printText(snapshot);
    }
    return ExitStatus::good;
}

} // namespace

const Command usage{
    "usage",
    "usage [--json]",
    "tell what the coding agents have left",
    "One line for each agent; the one whose limit is nearest has a star. \"exact\" was told by the agent,\n"
    "\"estimate\" was counted from its logs against the plan in Pump's settings. With --json the same as "
    "one\n"
    "object, with times in UTC. The first run may take a while; later ones read what is new.\n\n"
    "--home DIR looks beneath another home folder, and --at ISO8601 takes another moment for now, which\n"
    "reads everything anew.\n\n"
    "Exit status: 0 done, 2 the command line is wrong.\n",
    run,
};

} // namespace Fellow
