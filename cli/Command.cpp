#include "cli/Command.h"

#include <algorithm>
#include <iostream>

namespace Fellow {

bool asksForHelp(Arguments arguments) {
    return std::ranges::any_of(arguments,
                               [](std::string_view word) { return word == "--help" || word == "-h"; });
}

ExitStatus misused(const Command& command, std::string_view complaint) {
    std::cerr << "fellow " << command.name << ": " << complaint << "\nusage: fellow " << command.synopsis
              << '\n';
    return ExitStatus::usage;
}

ExitStatus runCommand(const Command& command, Arguments arguments) {
    if (asksForHelp(arguments)) {
        std::cout << "usage: fellow " << command.synopsis << "\n\n" << command.help;
        return ExitStatus::good;
    }
    return command.run(arguments);
}

} // namespace Fellow
