#pragma once

#include <span>
#include <string_view>

/// The programs behind `fellow`.
namespace Fellow {

/// What a run of the program answers to its caller.
enum class ExitStatus : int {
    good = 0,
    refused = 1, ///< with a sentence on standard error
    usage = 2,   ///< the command line was not understood
};

using Arguments = std::span<const std::string_view>;

/// One word of the command line and what it does.
struct Command {
    std::string_view name;
    std::string_view synopsis; ///< the command line in short
    std::string_view summary;  ///< one line for the list of commands
    std::string_view help;     ///< the full text behind --help
    ExitStatus (*run)(Arguments arguments);
};

/// Whether the arguments ask for help instead of work.
bool asksForHelp(Arguments arguments);
/// Tells on standard error what was not understood and how the command is meant.
ExitStatus misused(const Command& command, std::string_view complaint);
/// Runs a command, or shows its help.
ExitStatus runCommand(const Command& command, Arguments arguments);

} // namespace Fellow
