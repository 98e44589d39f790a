// What three idle characters cost: processor time and wake-ups, blinking and with motion reduced.

#include "bench/support/CharacterWatch.h"
#include "bench/support/Figures.h"
#include "bench/support/Options.h"
#include "bench/support/SettingsPortal.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <cstdio>
#include <stdexcept>

namespace {

constexpr double processorBudgetPercent = 0;
constexpr double stillWakeupBudget = 1; ///< a second, while nothing blinks
constexpr int settlingSeconds = 4;
constexpr int seconds = 60;
constexpr int quickSeconds = 10;

/// Answers on the bus meanwhile.
void waitFor(int duration) {
    QEventLoop loop;
    QTimer::singleShot(duration * 1000, &loop, &QEventLoop::quit);
    loop.exec();
}

struct Idle {
    double elapsed;               ///< seconds
    double processorMilliseconds; ///< of all threads
    double wakeups;

    double processorPercent() const { return processorMilliseconds / 10 / elapsed; }
    double wakeupsPerSecond() const { return wakeups / elapsed; }
};

Idle measure(const Bench::Options& options) {
    const Bench::TemporaryHome home({"batti", "munshi", "devwatch"});
    Bench::CharacterWatch watch;
    const Bench::RunningProgram program(options.program, home);
    watch.wait(3);
    waitFor(settlingSeconds);
    const Bench::Usage before = program.usage();
    const auto start = std::chrono::steady_clock::now();
    waitFor(options.quick ? quickSeconds : seconds);
    const Bench::Usage after = program.usage();
    const double elapsed = Bench::millisecondsBetween(start, std::chrono::steady_clock::now()) / 1000;
    return {elapsed, static_cast<double>(after.processorNanoseconds - before.processorNanoseconds) / 1e6,
            static_cast<double>(after.wakeups - before.wakeups)};
}

void report(Bench::Figures& figures, const std::string& what, const Idle& idle,
            std::optional<double> wakeupBudget) {
    figures.add({what + ": processor", {idle.processorPercent()}, "%", processorBudgetPercent});
    figures.add({what + ": wake-ups", {idle.wakeupsPerSecond()}, "/s", wakeupBudget, 2});
    char text[80];
    std::snprintf(text, sizeof text, "%.1f ms of processor time in %.0f s", idle.processorMilliseconds,
                  idle.elapsed);
    figures.note(text);
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const QCoreApplication application(count, values);
    Bench::Figures figures;
    report(figures, "idle, three characters blinking", measure(options), {});

    Bench::SettingsPortal portal;
    const Idle still = measure(options);
    if (!portal.wasAsked()) {
        throw std::runtime_error("the program did not ask the settings portal, so motion was not reduced");
    }
    report(figures, "idle, motion reduced", still, stillWakeupBudget);
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
