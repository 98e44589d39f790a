#pragma once

#include "core/agents/PumpAgentEvent.h"
#include "core/pump/PumpUsageSnapshot.h"

#include <QString>

#include <array>
#include <optional>

namespace DeskSprites {

/// What Pump's readings are in words. Numbers and dates are written as the user's locale has them.
namespace PumpPresentation {

/// How a figure came about.
enum class Certainty {
    none,     ///< there is no figure
    estimate, ///< counted from local logs, against a reference budget
    exact,    ///< told by the agent itself
};

/// One agent.
struct Row {
    QString name;
    QString value;  ///< "62% left · estimate", or what is the matter
    QString usage;  ///< "38% used · reset ≈ 21 Nov, 14:00", or what to do about it
    QString window; ///< what is measured
    QString detail; ///< the figures behind it, and the week; may be empty
    QString updated;
    Certainty certainty = Certainty::none;
    std::optional<double> left; ///< 0...100
    bool binds = false;         ///< this agent's limit is nearest
};

/// In the order of the agents. `now` is for the ages.
std::array<Row, 2> rows(const FellowCore::PumpUsageSnapshot& snapshot, FellowCore::Instant now);
/// Which limit is nearest, in one line.
QString nearest(const FellowCore::PumpUsageSnapshot& snapshot);
/// The reading in few words, for the line beside the character.
QString status(const std::optional<FellowCore::PumpUsageSnapshot>& snapshot);
/// Whether Claude's figure could be exact but is counted.
bool couldBeExact(const FellowCore::PumpUsageSnapshot& snapshot);

/// "62", "61.9"; "Unavailable" for what is no number.
QString number(double value);
/// What a session is doing, as a sentence would have it: "working", "needs you", "done".
QString phase(FellowCore::PumpAgentPhase phase);
/// The project, or else the agent's name.
QString title(const FellowCore::PumpAgentEvent& session);
/// The same for a button or a menu: what is longer than fits there has its middle left out.
QString shortTitle(const FellowCore::PumpAgentEvent& session);
/// "Claude needs you in parser"; with the project left out when it is not known.
QString sentence(const FellowCore::PumpAgentEvent& session);
/// How long ago: "now", "5 min", "2 h".
QString age(const FellowCore::PumpAgentEvent& session, FellowCore::Instant now);

} // namespace PumpPresentation

} // namespace DeskSprites
