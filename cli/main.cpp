#include "cli/Cities.h"
#include "cli/Clocks.h"
#include "cli/Command.h"
#include "cli/Ledger.h"
#include "cli/PackCheck.h"
#include "cli/Ports.h"
#include "cli/Sessions.h"
#include "cli/Usage.h"

#include <algorithm>
#include <array>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Fellow::Arguments;
using Fellow::Command;
using Fellow::ExitStatus;

// The first whose name begins the command line is meant.
const std::array<const Command*, 11> commands{
    &Fellow::packCheck,    &Fellow::ledgerAdd,  &Fellow::ledgerDone, &Fellow::ledgerUndone,
    &Fellow::ledgerExport, &Fellow::ledgerList, &Fellow::ports,      &Fellow::usage,
    &Fellow::sessions,     &Fellow::cities,     &Fellow::clocks};

void printOverview(std::ostream& out) {
    out << "Deskfellow's companion for the command line, for scripts and status bars.\n\nusage: fellow "
           "COMMAND\n\n";
    std::size_t widest = 0;
    for (const Command* command : commands) {
        widest = std::max(widest, command->synopsis.size());
    }
    for (const Command* command : commands) {
        out << "  " << command->synopsis << std::string(widest - command->synopsis.size() + 2, ' ')
            << command->summary << '\n';
    }
    out << "\n`fellow COMMAND --help` tells more; `fellow --version` tells the version.\n";
}

/// How many words of the command line the command's name takes, or 0 when they are not its name.
std::size_t wordsOf(const Command& command, Arguments words) {
    std::istringstream names{std::string(command.name)};
    std::size_t count = 0;
    for (std::string name; names >> name; ++count) {
        if (count >= words.size() || words[count] != name) {
            return 0;
        }
    }
    return count;
}

ExitStatus run(Arguments words) {
    if (words.size() == 1 && words[0] == "--version") {
        std::cout << "fellow " DESKFELLOW_VERSION "\n";
        return ExitStatus::good;
    }
    for (const Command* command : commands) {
        if (const std::size_t taken = wordsOf(*command, words); taken > 0) {
            return Fellow::runCommand(*command, words.subspan(taken));
        }
    }
    if (Fellow::asksForHelp(words)) {
        printOverview(std::cout);
        return ExitStatus::good;
    }
    if (!words.empty()) {
        std::cerr << "fellow: \"" << words[0] << "\" is no complete command.\n\n";
    }
    printOverview(std::cerr);
    return ExitStatus::usage;
}

} // namespace

int main(int count, char** texts) {
    const std::vector<std::string_view> words(texts + std::min(count, 1), texts + count);
    try {
        return static_cast<int>(run(words));
    } catch (const std::exception& error) {
        std::cerr << "fellow: " << error.what() << '\n';
        return static_cast<int>(ExitStatus::refused);
    }
}
