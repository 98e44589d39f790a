// What three idle characters cost: processor time and wake-ups, blinking and with motion reduced.

#include "bench/support/CharacterWatch.h"
#include "bench/support/Figures.h"
#include "bench/support/Options.h"
#include "bench/support/SettingsPortal.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <stdexcept>

namespace {

constexpr double processorBudgetPercent = 0;
constexpr double wakeupBudget = 1; ///< a second
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
    double processorPercent; ///< of one processor
    double wakeups;          ///< a second
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
    const auto used = static_cast<double>(after.processorNanoseconds - before.processorNanoseconds) / 1e9;
    return {100 * used / elapsed, static_cast<double>(after.wakeups - before.wakeups) / elapsed};
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const QCoreApplication application(count, values);
    Bench::Figures figures;
    const Idle blinking = measure(options);
    figures.add({"idle, three characters blinking: processor", {blinking.processorPercent}, "%", processorBudgetPercent});
    figures.add({"idle, three characters blinking: wake-ups", {blinking.wakeups}, "/s", {}, 2});

    Bench::SettingsPortal portal;
    const Idle still = measure(options);
    if (!portal.wasAsked()) {
        throw std::runtime_error("the program did not ask the settings portal, so motion was not reduced");
    }
    figures.add({"idle, motion reduced: processor", {still.processorPercent}, "%", processorBudgetPercent});
    figures.add({"idle, motion reduced: wake-ups", {still.wakeups}, "/s", wakeupBudget, 2});
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
