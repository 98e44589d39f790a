// The memory of the idle program. This one links no toolkit, because pages it shared would count for half.

#include "bench/support/CharacterWatch.h"
#include "bench/support/Figures.h"
#include "bench/support/Options.h"

#include <fstream>
#include <string>
#include <thread>

namespace {

constexpr double budgetMegabytes = 40;
constexpr int rounds = 3;
constexpr auto settling = std::chrono::seconds(3);

struct Memory {
    std::vector<double> proportional; ///< megabytes, one for each round
    std::vector<double> own;
};

Memory measure(const Bench::Options& options, const std::vector<std::string>& onScreen) {
    Memory memory;
    for (int round = 0; round < (options.quick ? 1 : rounds); ++round) {
        const Bench::TemporaryHome home(onScreen);
        Bench::CharacterWatch watch;
        const Bench::RunningProgram program(options.program, home);
        watch.wait(onScreen.size());
        std::this_thread::sleep_for(settling);
        memory.proportional.push_back(program.memory("Pss"));
        memory.own.push_back(program.memory("Private_Clean") + program.memory("Private_Dirty"));
    }
    return memory;
}

/// How many programs on this machine have the toolkit in memory.
int toolkitUsers() {
    int users = 0;
    std::error_code failure;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", failure)) {
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

int run(int count, char** values) {
    const Bench::Options options(count, values);
    Bench::Figures figures;
    const int others = toolkitUsers();
    const Memory one = measure(options, {"batti"});
    figures.add({"memory, one character: proportional set", one.proportional, "MB", budgetMegabytes});
    const Memory three = measure(options, {"batti", "munshi", "devwatch"});
    figures.add({"memory, three characters: proportional set", three.proportional, "MB", budgetMegabytes});
    figures.add({"memory, three characters: shared with no one", three.own, "MB", {}});
    if (others > 0) {
        figures.note(std::to_string(others) +
                     " other programs share the toolkit's pages, so this is less than alone");
    }
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
