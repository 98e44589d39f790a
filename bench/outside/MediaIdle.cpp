// What following media players costs while nothing plays: wake-ups, processor time and memory, and how soon
// the first line comes. No toolkit here, because pages it shared would count for half.

#include "bench/support/Figures.h"
#include "bench/support/Options.h"
#include "bench/support/RunningProgram.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <thread>

namespace {

constexpr double startBudgetMilliseconds = 100;
constexpr double wakeupBudget = 0;
constexpr double memoryBudgetMegabytes = 10;
constexpr auto settling = std::chrono::seconds(2);
constexpr auto watched = std::chrono::seconds(30);
constexpr auto quickWatched = std::chrono::seconds(5);
constexpr int rounds = 20;
constexpr int quickRounds = 5;

/// Both ends of a pipe, which a child gets only where it is told to.
struct Pipe {
    Pipe() {
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe to be had");
        }
    }
    ~Pipe() {
        ::close(ends[0]);
        ::close(ends[1]);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    std::array<int, 2> ends{};
};

/// `fellow-media` with pipes for its input and its output.
class Media {
public:
    Media(const std::string& path, const Bench::TemporaryHome& home) : program_({path}, home, files()) {
        ::posix_spawn_file_actions_destroy(&files_);
        std::array<char, 256> line{};
        if (::read(output_.ends[0], line.data(), line.size()) <= 0) {
            throw std::runtime_error("fellow-media said nothing");
        }
        untilFirstLine_ = Bench::millisecondsBetween(program_.started(), std::chrono::steady_clock::now());
    }

    const Bench::RunningProgram& program() const { return program_; }
    double untilFirstLine() const { return untilFirstLine_; }

private:
    const posix_spawn_file_actions_t* files() {
        ::posix_spawn_file_actions_init(&files_);
        ::posix_spawn_file_actions_adddup2(&files_, input_.ends[0], STDIN_FILENO);
        ::posix_spawn_file_actions_adddup2(&files_, output_.ends[1], STDOUT_FILENO);
        return &files_;
    }

    Pipe input_;
    Pipe output_;
    posix_spawn_file_actions_t files_{};
    Bench::RunningProgram program_;
    double untilFirstLine_ = 0;
};

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const std::string path = options.program.parent_path() / "fellow-media";
    const Bench::TemporaryHome home;
    Bench::Figures figures;
    std::vector<double> starts;
    for (int round = 0; round < (options.quick ? quickRounds : rounds); ++round) {
        starts.push_back(Media(path, home).untilFirstLine());
    }
    figures.add({"media: run to first line", starts, "ms", startBudgetMilliseconds});

    const Media media(path, home);
    std::this_thread::sleep_for(settling);
    const Bench::Usage before = media.program().usage();
    const auto start = std::chrono::steady_clock::now();
    std::this_thread::sleep_for(options.quick ? quickWatched : watched);
    const Bench::Usage after = media.program().usage();
    const double elapsed = Bench::millisecondsBetween(start, std::chrono::steady_clock::now()) / 1000;
    const auto wakeups = static_cast<double>(after.wakeups - before.wakeups);
    figures.add({"media, nothing plays: wake-ups", {wakeups / elapsed}, "/s", wakeupBudget, 2});
    figures.add({"media, nothing plays: processor",
                 {static_cast<double>(after.processorNanoseconds - before.processorNanoseconds) / 1e6},
                 "ms",
                 {}});
    figures.add(
        {"media: memory, proportional share", {media.program().memory("Pss")}, "MB", memoryBudgetMegabytes});
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
