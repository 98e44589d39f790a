// What a ledger with ten thousand lines behind it costs the thread that draws, and what saving it costs the
// other.

#include "bench/support/Figures.h"
#include "bench/support/Options.h"

#include "core/ledger/MunshiStore.h"

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;
using FellowCore::Calendar;
using FellowCore::Instant;
using FellowCore::MunshiItem;
using FellowCore::MunshiLedger;
using FellowCore::MunshiStore;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr double budgetMilliseconds = 5;
constexpr double saveBudgetMilliseconds = 1; // what of a save the drawing thread sees
constexpr int historyItems = 10'000;
constexpr int todayItems = 100;
constexpr int daysBehind = 28;
const Instant now = FellowCore::Instant::fromUnix(1772355600); // 2026-03-01T09:00:00Z
const Calendar calendar = Calendar::inTimeZone("Asia/Kolkata").value();

/// Every other line in a script that takes more than ASCII's way to lower case.
MunshiLedger fullLedger() {
    MunshiLedger ledger(now, calendar);
    for (int number = 0; number < historyItems; ++number) {
        const std::string text = number % 2 == 0
                                     ? "Bread and milk from the corner shop, and ask about "
                                     : "\u0926\u0942\u0927 \u0914\u0930 \u0930\u094B\u091F\u0940 ";
        const int day = daysBehind - number * daysBehind / historyItems;
        ledger.history.push_back(
            {.id = FellowCore::randomUuid(),
             .text = text + std::to_string(number),
             .createdAt = now,
             .day = "2026-02-" + std::string(day < 10 ? "0" : "") + std::to_string(day)});
    }
    for (int number = 0; number < todayItems; ++number) {
        ledger.add("task " + std::to_string(number), now, calendar, FellowCore::randomUuid);
    }
    return ledger;
}

void require(bool holds, const char* otherwise) {
    if (!holds) {
        throw std::runtime_error(otherwise);
    }
}

/// How long one thing takes to do to a ledger of its own.
std::vector<double> measured(int times, const MunshiLedger& ledger,
                             const std::function<void(MunshiLedger&)>& once) {
    std::vector<double> each;
    for (int round = 0; round < times; ++round) {
        MunshiLedger own = ledger;
        const auto start = Clock::now();
        once(own);
        each.push_back(Milliseconds(Clock::now() - start).count());
    }
    return each;
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const int times = options.quick ? 5 : 50;
    const MunshiLedger ledger = fullLedger();
    const std::string text = MunshiStore::encoded(ledger);
    Bench::Figures figures;
    const auto tell = [&](const std::string& what, std::optional<double> budget,
                          const std::function<void(MunshiLedger&)>& once) {
        figures.add({"ledger of 10,000: " + what, measured(times, ledger, once), "ms", budget, 2});
    };
    tell("add", budgetMilliseconds, [](MunshiLedger& own) {
        require(own.add("one more", now, calendar, FellowCore::randomUuid).has_value(), "nothing was added");
    });
    tell("search that finds one", budgetMilliseconds,
         [](MunshiLedger& own) { require(own.search("ABOUT 9998").size() == 1, "found another number"); });
    tell("search that finds half", budgetMilliseconds,
         [](MunshiLedger& own) { require(own.search("milk").size() == historyItems / 2, "not half"); });
    tell("rollover", budgetMilliseconds, [](MunshiLedger& own) {
        require(own.rollIfNeeded(now + 86400, calendar), "the day did not turn over");
    });
    tell("handing a copy over for saving", saveBudgetMilliseconds, [](MunshiLedger& own) {
        const MunshiLedger copy = own;
        require(copy.history.size() == own.history.size(), "not a copy");
    });
    tell("encoding, on the saving thread", std::nullopt,
         [&](MunshiLedger& own) { require(MunshiStore::encoded(own) == text, "another text"); });
    tell("decoding, on the saving thread", std::nullopt,
         [&](MunshiLedger& own) { require(MunshiStore::decoded(text) == own, "another ledger"); });
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
