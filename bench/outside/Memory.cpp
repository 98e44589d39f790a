// The memory of the idle program. This one links no toolkit, because pages it shared would count for half.

#include "bench/support/CharacterWatch.h"
#include "bench/support/Figures.h"
#include "bench/support/Options.h"

#include <algorithm>
#include <fstream>
#include <string>
#include <thread>

namespace {

constexpr double budgetMegabytes = 40;
constexpr int rounds = 3;
constexpr auto settling = std::chrono::seconds(3);

struct Memory {
    std::vector<double> proportional; ///< megabytes, one for each round: shared pages count by their share
    std::vector<double> resident;     ///< the same with every page counted whole
    int sharers = 0;                  ///< other programs with the toolkit in memory, at most at any time
};

/// How many other programs on this machine have the toolkit in memory.
int toolkitUsers(pid_t besides) {
    int users = 0;
    std::error_code failure;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", failure)) {
        if (entry.path().filename() == std::to_string(besides)) {
            continue;
        }
        std::ifstream maps(entry.path() / "maps"); // opens for processes only, and only for ours
        for (std::string line; std::getline(maps, line);) {
            if (line.find("libQt6Core") != std::string::npos) {
                ++users;
                break;
            }
        }
    }
    return users;
}

Memory measure(const Bench::Options& options, const std::vector<std::string>& onScreen) {
    Memory memory;
    for (int round = 0; round < (options.quick ? 1 : rounds); ++round) {
        const Bench::TemporaryHome home(onScreen);
        Bench::CharacterWatch watch;
        const Bench::RunningProgram program(options.program, home);
        watch.wait(onScreen.size());
        std::this_thread::sleep_for(settling);
        memory.proportional.push_back(program.memory("Pss"));
        memory.resident.push_back(program.memory("Rss"));
        memory.sharers = std::max(memory.sharers, toolkitUsers(program.pid()));
    }
    return memory;
}

void report(Bench::Figures& figures, const std::string& who, const Memory& memory) {
    figures.add({"memory, " + who + ": proportional share", memory.proportional, "MB", budgetMegabytes});
    figures.add({"memory, " + who + ": resident, shared or not", memory.resident, "MB", {}});
    if (memory.sharers > 0) {
        figures.note("Up to " + std::to_string(memory.sharers) +
                     " other programs had the toolkit in memory, so the share is smaller than alone.");
    }
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    Bench::Figures figures;
    report(figures, "one character", measure(options, {"batti"}));
    report(figures, "three characters", measure(options, {"batti", "munshi", "devwatch"}));
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
