// How long saving holds up the thread that draws. The writing itself happens on the saver's queue, to real
// files.

#include "bench/support/Figures.h"
#include "bench/support/Options.h"
#include "bench/support/TemporaryHome.h"

#include "app/characters/TimerFile.h"
#include "app/services/PreferencesKeeper.h"
#include "core/art/BuiltinCharacters.h"
#include "core/host/PreferenceKeys.h"
#include "platform/System.h"

#include <QApplication>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <stdexcept>

namespace {

using Clock = std::chrono::steady_clock;

constexpr double budgetMilliseconds = 1;
constexpr int rounds = 1000;
constexpr int quickRounds = 100;

enum class Spacing {
    settled, ///< each save finds the one before it written
    burst,   ///< each follows the one before at once
};

template <typename Save>
std::vector<double> measure(int count, DeskSprites::BackgroundSaver& saver, Spacing spacing,
                            const Save& save) {
    std::vector<double> each;
    for (int round = 0; round < count; ++round) {
        const auto start = Clock::now();
        save(round);
        each.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        if (spacing == Spacing::settled) {
            saver.flush();
        }
    }
    saver.flush();
    return each;
}

void report(Bench::Figures& figures, const std::string& what, const std::vector<double>& samples) {
    figures.add({what, samples, "ms", budgetMilliseconds, 3});
    const auto late =
        std::ranges::count_if(samples, [](double sample) { return sample > budgetMilliseconds; });
    if (late > 0) {
        figures.note(std::to_string(late) + " of these took longer than the budget");
    }
}

/// As many values as a person has who has placed every character.
void fill(FellowCore::Preferences& preferences) {
    for (const char* id :
         {"batti", "munshi", "devwatch", "pump", "snake", "mira", "nori", "intern", "clock"}) {
        preferences.setNumber(FellowCore::PreferenceKeys::desktopHeight(id), 320);
        preferences.setString(FellowCore::PreferenceKeys::frame(id), "{{1283, 32}, {272, 418}}");
        preferences.setString(FellowCore::PreferenceKeys::desktopAnchor(id), "{1419, 48}");
    }
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const QApplication application(count, values);
    const int times = options.quick ? quickRounds : rounds;
    const Bench::TemporaryHome home({"batti", "munshi", "devwatch"});
    const auto system = Platform::makeSystem();
    FellowCore::PosixFileOperations files;
    std::atomic<int> failures = 0;
    DeskSprites::BackgroundSaver saver([&failures](const std::string&) { ++failures; });
    DeskSprites::PreferencesKeeper keeper(files, home.folders().preferencesFile(), saver);
    fill(keeper.preferences());
    DeskSprites::DesktopServices services{*system, keeper.preferences(), files, saver, home.folders()};
    DeskSprites::TimerFile timerFile(FellowCore::BuiltinCharacters::batti(), services);
    FellowCore::FocusTimer timer;

    Bench::Figures figures;
    const auto savePreferences = [&](int round) {
        keeper.preferences().setString(FellowCore::PreferenceKeys::frame("batti"),
                                       "{{" + std::to_string(round) + ", 32}, {272, 418}}");
        keeper.saveNow();
    };
    const auto saveTimer = [&](int round) {
        timer.completedFocusSessions = round;
        timerFile.save(timer);
    };
    report(figures, "save: settings", measure(times, saver, Spacing::settled, savePreferences));
    report(figures, "save: settings, in a burst", measure(times, saver, Spacing::burst, savePreferences));
    report(figures, "save: timer", measure(times, saver, Spacing::settled, saveTimer));
    report(figures, "save: timer, in a burst", measure(times, saver, Spacing::burst, saveTimer));
    if (failures > 0 ||
        timerFile.load(DeskSprites::TimerRules::plain, system->clock().wall())->completedFocusSessions !=
            timer.completedFocusSessions) {
        throw std::runtime_error("what was saved is not what stands in the files");
    }
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
