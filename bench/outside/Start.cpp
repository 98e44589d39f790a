// How long the program takes from being run to its first character on the screen, seen from outside.

#include "bench/support/CharacterWatch.h"
#include "bench/support/Figures.h"
#include "bench/support/Options.h"

#include <optional>

namespace {

constexpr double budgetMilliseconds = 60;
constexpr int rounds = 25;
constexpr int quickRounds = 7;

struct Start {
    std::vector<double> mapped; ///< milliseconds, one for each round
    std::vector<double> first;
    std::vector<double> last;
};

Start measure(const Bench::Options& options, const std::vector<std::string>& onScreen) {
    Start start;
    const int count = options.quick ? quickRounds : rounds;
    std::optional<Bench::TemporaryHome> home;
    for (int round = -1; round < count; ++round) {
        if (!home || onScreen.empty()) {
            home.emplace(
                onScreen); // a new user's home is new each time; another one keeps what was saved there
        }
        Bench::CharacterWatch watch;
        const Bench::RunningProgram program(options.program, *home);
        const auto seen = watch.wait(onScreen.empty() ? 1 : onScreen.size());
        if (round < 0) {
            continue; // this one warmed the caches
        }
        start.mapped.push_back(Bench::millisecondsBetween(program.started(), seen.front().mapped));
        start.first.push_back(Bench::millisecondsBetween(program.started(), seen.front().drawn));
        start.last.push_back(Bench::millisecondsBetween(program.started(), seen.back().drawn));
    }
    return start;
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    Bench::Figures figures;
    const Start fresh = measure(options, {});
    figures.add({"start, new home: first window shows", fresh.mapped, "ms", {}});
    figures.add({"start, new home: first character drawn", fresh.first, "ms", budgetMilliseconds});
    const Start three = measure(options, {"batti", "munshi", "devwatch"});
    figures.add({"start, three characters: first one drawn", three.first, "ms", budgetMilliseconds});
    figures.add({"start, three characters: all three drawn", three.last, "ms", {}});
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
