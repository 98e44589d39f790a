#include "app/characters/pump/PumpPresentation.h"

#include "app/characters/pump/PumpDates.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace DeskSprites::PumpPresentation {

using FellowCore::PumpClaudeUsage;
using FellowCore::PumpCodexUsage;
using FellowCore::PumpProvider;
using FellowCore::PumpSourceState;
using FellowCore::PumpUsageSnapshot;

namespace {

QString words(const char* source) {
    return QCoreApplication::translate("Pump", source);
}

QString fromCore(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// With one digit after the point at most, rounded up: what is used and what is left add up to the whole, and
/// what is left never reads as more than the digits on the pump say.
double roundedUp(double percent) {
    constexpr double tolerance = 1e-6; // of a figure that came out of a division
    return std::ceil(percent * 10 - tolerance) / 10;
}

QString percent(double value) {
    return std::isfinite(value) ? words("%1%").arg(number(value)) : number(value);
}

QString used(double usedPercent) {
    return words("%1 used").arg(percent(roundedUp(usedPercent)));
}

QString left(double usedPercent) {
    return words("%1 left").arg(percent(std::clamp(100 - roundedUp(usedPercent), 0.0, 100.0)));
}

QString tokens(std::int64_t count) {
    return words("%1 tokens").arg(QLocale().toString(static_cast<qlonglong>(count)));
}

QString joined(const QStringList& parts) {
    return parts.join(QStringLiteral(" · "));
}

struct StateWords {
    const char* value;
    const char* usage;
};

StateWords stateWords(PumpProvider agent, PumpSourceState state) {
    const bool isClaude = agent == PumpProvider::claude;
    switch (state) {
    case PumpSourceState::loading:
        return {QT_TRANSLATE_NOOP("Pump", "Reading…"), QT_TRANSLATE_NOOP("Pump", "Reading local history…")};
    case PumpSourceState::unreadable:
        return {QT_TRANSLATE_NOOP("Pump", "Logs unavailable"),
                isClaude ? QT_TRANSLATE_NOOP("Pump", "Read .claude/projects")
                         : QT_TRANSLATE_NOOP("Pump", "Read .codex/sessions")};
    case PumpSourceState::partial:
        return {isClaude ? QT_TRANSLATE_NOOP("Pump", "Partial logs")
                         : QT_TRANSLATE_NOOP("Pump", "Partial log"),
                QT_TRANSLATE_NOOP("Pump", "Waiting for token count")};
    case PumpSourceState::ready:
    case PumpSourceState::missing:
        break; // logs without a figure in them are as good as none
    }
    return isClaude ? StateWords{QT_TRANSLATE_NOOP("Pump", "No usage logs"),
                                 QT_TRANSLATE_NOOP("Pump", "Use Claude Code to log usage")}
                    : StateWords{QT_TRANSLATE_NOOP("Pump", "No limit logged"),
                                 QT_TRANSLATE_NOOP("Pump", "Use Codex to record a limit")};
}

void describeState(Row& row, PumpProvider agent, PumpSourceState state) {
    const StateWords said = stateWords(agent, state);
    row.value = words(said.value);
    row.usage = words(said.usage);
}

void describeExact(Row& row, const PumpClaudeUsage& claude) {
    row.certainty = Certainty::exact;
    row.left = claude.leftPercent();
    row.value = left(claude.usedPercent);
    row.usage =
        joined({used(claude.usedPercent), words("reset %1").arg(PumpDates::dayAndTime(claude.resetsAt))});
    row.window = words("5-hour limit · exact");
    const double week = *claude.weekUsedPercent;
    row.detail = words("Week %1").arg(used(week));
    if (week > claude.usedPercent) {
        row.detail = joined({row.detail, words("the week is nearer its limit")});
    }
}

void describeEstimate(Row& row, const PumpClaudeUsage& claude) {
    row.certainty = Certainty::estimate;
    row.left = claude.leftPercent();
    row.value = joined({left(claude.usedPercent), words("estimate")});
    row.usage = claude.resetsAt ? joined({used(claude.usedPercent),
                                          words("reset ≈ %1").arg(PumpDates::dayAndTime(claude.resetsAt))})
                                : joined({used(claude.usedPercent), words("no active block")});
    row.window = words("5-hour block · estimate");
    row.detail = joined({tokens(claude.blockTokens), words("week %1").arg(tokens(claude.weekTokens))});
}

Row claudeRow(const PumpUsageSnapshot& snapshot, FellowCore::Instant now) {
    Row row;
    row.window = words("Local usage logs");
    row.updated = fromCore(snapshot.updatedDescription(now));
    if (snapshot.claudeSource != PumpSourceState::ready || !snapshot.claude.hasLogs) {
        describeState(row, PumpProvider::claude, snapshot.claudeSource);
    } else if (snapshot.claude.isExact()) {
        describeExact(row, snapshot.claude);
    } else {
        describeEstimate(row, snapshot.claude);
    }
    return row;
}

void describeCodex(Row& row, const PumpCodexUsage& codex) {
    row.certainty = Certainty::exact;
    row.left = codex.leftPercent();
    row.value = left(codex.usedPercent);
    QStringList parts{used(codex.usedPercent), words("%1 min").arg(number(codex.windowMinutes))};
    if (codex.resetsAt) {
        parts.push_back(words("reset %1").arg(PumpDates::dayAndTime(codex.resetsAt)));
    }
    row.usage = joined(parts);
    if (codex.planType) {
        row.detail = words("Plan: %1").arg(QString::fromStdString(*codex.planType));
    }
}

Row codexRow(const PumpUsageSnapshot& snapshot, FellowCore::Instant now) {
    Row row;
    row.window = words("Local rate limits");
    row.updated = fromCore(snapshot.updatedDescription(now));
    const auto& codex = snapshot.codex;
    if (snapshot.codexSource != PumpSourceState::ready || !codex) {
        describeState(row, PumpProvider::codex, snapshot.codexSource);
        return row;
    }
    // The sample is as old as the moment at which Codex wrote it, however often it is read.
    PumpUsageSnapshot sampled = snapshot;
    sampled.at = codex->observedAt;
    row.updated = fromCore(sampled.updatedDescription(now));
    if (codex->isStale(snapshot.at)) {
        row.value = words("Awaiting update");
        row.usage = words("The limit was reset since Codex last logged it");
    } else {
        describeCodex(row, *codex);
    }
    return row;
}

} // namespace

std::array<Row, 2> rows(const PumpUsageSnapshot& snapshot, FellowCore::Instant now) {
    std::array<Row, 2> made{claudeRow(snapshot, now), codexRow(snapshot, now)};
    for (std::size_t index = 0; index < made.size(); ++index) {
        const PumpProvider agent = FellowCore::allPumpProviders.at(index);
        made.at(index).name = fromCore(title(agent));
        made.at(index).binds = snapshot.mostUsedProvider() == agent;
    }
    return made;
}

QString nearest(const PumpUsageSnapshot& snapshot) {
    const auto agent = snapshot.mostUsedProvider();
    if (!agent) {
        return snapshot.isLoading ? words("Reading local history…") : words("No usage known yet");
    }
    return words("%1 is nearest its limit").arg(fromCore(title(*agent)));
}

QString status(const std::optional<PumpUsageSnapshot>& snapshot) {
    if (!snapshot) {
        return words("Reading…");
    }
    const auto agent = snapshot->mostUsedProvider();
    if (!agent) {
        return nearest(*snapshot);
    }
    const auto shown = rows(*snapshot, snapshot->at);
    const Row& row = shown.at(static_cast<std::size_t>(*agent));
    return joined({row.name, row.value});
}

bool couldBeExact(const PumpUsageSnapshot& snapshot) {
    return snapshot.claude.hasLogs && !snapshot.claude.isExact();
}

QString number(double value) {
    if (!std::isfinite(value)) {
        return words("Unavailable");
    }
    const bool isWhole = std::abs(value - std::round(value)) < 0.05;
    return QLocale().toString(value, 'f', isWhole ? 0 : 1);
}

QString phase(FellowCore::PumpAgentPhase phase) {
    return words(std::string(title(phase)).c_str());
}

QString title(const FellowCore::PumpAgentEvent& session) {
    return QString::fromStdString(session.project().value_or(std::string(title(session.agent))));
}

QString shortTitle(const FellowCore::PumpAgentEvent& session) {
    constexpr int longest = 28;
    const QString whole = title(session);
    return whole.size() <= longest
               ? whole
               : whole.left(longest / 2) + QStringLiteral("…") + whole.right(longest / 2 - 1);
}

QString sentence(const FellowCore::PumpAgentEvent& session) {
    const QString phrase = words(session.phrase().c_str());
    return session.project() ? words("%1 in %2").arg(phrase, shortTitle(session)) : phrase;
}

QString age(const FellowCore::PumpAgentEvent& session, FellowCore::Instant now) {
    constexpr int minute = 60;
    constexpr int hour = 3600;
    const auto seconds = static_cast<int>(std::clamp(session.age(now), 0.0, 1e6));
    return seconds < minute ? words("now")
           : seconds < hour ? words("%1 min").arg(seconds / minute)
                            : words("%1 h").arg(seconds / hour);
}

} // namespace DeskSprites::PumpPresentation
