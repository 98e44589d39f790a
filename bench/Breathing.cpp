// What a running breathing session costs: the questions that every frame asks, and the whole program while
// Mira breathes.

#include "app/characters/mira/MiraFrame.h"
#include "bench/support/CharacterWatch.h"
#include "bench/support/Figures.h"
#include "bench/support/Options.h"
#include "core/base/FileOperations.h"
#include "core/breathing/BreathingSessionStore.h"

#include <chrono>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {
long allocations = 0;
} // namespace

void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size != 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using FellowCore::BreathingSession;
using FellowCore::Instant;

constexpr double processorBudgetPercent = 3;
constexpr double questionsBudgetMicroseconds = 5;
constexpr int settlingSeconds = 4;
constexpr int seconds = 60;
constexpr int quickSeconds = 10;

/// Everything that is asked of a session in one frame. The sum keeps the compiler from leaving any of it out.
double askAll(const BreathingSession& session, Instant at) {
    const auto frame =
        DeskSprites::MiraFrame::at(session.timeline(), session.elapsed(at), DeskSprites::MiraMotion::full);
    return session.elapsed(at) + session.round(at) + static_cast<int>(session.phase(at)) +
           session.phaseDuration(at) + session.phaseElapsed(at) + session.phaseProgress(at) +
           session.expansion(at) + frame.pose + frame.glow + frame.ring + frame.wait;
}

void measureQuestions(Bench::Figures& figures) {
    BreathingSession session(FellowCore::settings(FellowCore::BreathingMode::box, 75));
    const Instant start{800000000};
    session.start(start);
    constexpr int frames = 100'000;
    std::vector<double> times;
    double sum = 0;
    long made = 0;
    for (int round = 0; round < 9; ++round) {
        const long before = allocations;
        const auto began = std::chrono::steady_clock::now();
        for (int frame = 0; frame < frames; ++frame) {
            sum += askAll(session, start + frame * session.totalDuration() / frames);
        }
        const std::chrono::duration<double, std::micro> lasted = std::chrono::steady_clock::now() - began;
        made += allocations - before;
        times.push_back(lasted.count() / frames);
    }
    if (!(sum > 0)) {
        throw std::runtime_error("the session did not run");
    }
    figures.add({"breathing: all questions of a frame", times, "us", questionsBudgetMicroseconds, 3});
    figures.add({"breathing: allocations in them", {static_cast<double>(made)}, "", 0, 0});
}

FellowCore::BreathingSession saved(const Bench::TemporaryHome& home) {
    FellowCore::PosixFileOperations files;
    const auto file =
        home.folders().character("mira") / std::string(FellowCore::BreathingSessionStore::fileName);
    return FellowCore::BreathingSessionStore(files, file).read();
}

/// Processor time of all threads of the program, in percent of one core.
double measureRunning(const Bench::Options& options) {
    const Bench::TemporaryHome home({"mira"});
    double percent = 0;
    {
        Bench::CharacterWatch watch;
        const Bench::RunningProgram program(options.program, home, {"deskfellow://do/mira/primary"});
        watch.wait(1);
        std::this_thread::sleep_for(std::chrono::seconds(settlingSeconds));
        const Bench::Usage before = program.usage();
        const auto start = std::chrono::steady_clock::now();
        std::this_thread::sleep_for(
            std::chrono::seconds(options.quick ? quickSeconds : seconds - 2 * settlingSeconds));
        const double elapsed = Bench::millisecondsBetween(start, std::chrono::steady_clock::now());
        const double used =
            static_cast<double>(program.usage().processorNanoseconds - before.processorNanoseconds) / 1e6;
        percent = 100 * used / elapsed;
    }
    if (saved(home).accumulatedSeconds < (options.quick ? quickSeconds : seconds - 2 * settlingSeconds)) {
        throw std::runtime_error("no session ran meanwhile");
    }
    return percent;
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    Bench::Figures figures;
    measureQuestions(figures);
    figures.add(
        {"breathing: Mira running, processor", {measureRunning(options)}, "%", processorBudgetPercent});
    figures.note("calm, at the standard size, with her cue; the X server's share not counted");
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
