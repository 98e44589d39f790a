// Random edits over simulated weeks against a slow, obvious model: one flat list of everything ever written.

#include "core/ledger/DayKey.h"
#include "core/ledger/MunshiLedger.h"
#include "tests/core/ledger/LedgerScript.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace FellowCore {
namespace {

struct Entry {
    std::string text;
    bool note = false;
    bool done = false;
    int day;
    int firstDay; ///< where it was written, which is shown once it has been carried
    bool carried = false;
};

struct SlowLedger {
    int day = 0;
    bool carryOver = true;
    int keepDays = 30;
    std::vector<Entry> today;
    std::vector<Entry> archive; ///< in the order of archiving, the oldest first

    void add(const std::string& text, bool note) {
        std::size_t place = 0;
        for (std::size_t index = 0; index < today.size(); ++index) {
            if (!today[index].note && !today[index].done) {
                place = index + 1;
            }
        }
        const Entry entry{.text = text, .note = note, .day = day, .firstDay = day};
        today.insert(today.begin() + static_cast<std::ptrdiff_t>(note ? today.size() : place), entry);
    }
    void turnTo(int newDay) {
        if (newDay == day) {
            return;
        }
        std::vector<Entry> kept;
        for (Entry entry : today) {
            if (carryOver && !entry.note && !entry.done) {
                entry.carried = true;
                entry.day = newDay;
                kept.push_back(entry);
            } else {
                archive.push_back(entry);
            }
        }
        today = kept;
        day = newDay;
        std::vector<Entry> young;
        for (const Entry& entry : archive) {
            if (entry.day >= newDay - keepDays) {
                young.push_back(entry);
            }
        }
        archive = young;
    }
};

std::string keyOf(int day) {
    return dayKey(CalendarDay(std::chrono::sys_days(std::chrono::days(day))));
}

std::string shownEntry(const Entry& entry) {
    return (entry.note   ? "- "
            : entry.done ? "[x] "
                         : "[ ] ") +
           entry.text + (entry.carried ? " <" + keyOf(entry.firstDay) : "");
}

std::string shownModel(const SlowLedger& model) {
    std::string text;
    for (const Entry& entry : model.today) {
        text += (text.empty() ? "" : "; ") + shownEntry(entry);
    }
    text += " |";
    for (auto entry = model.archive.rbegin(); entry != model.archive.rend(); ++entry) {
        text += " " + keyOf(entry->day) + " " + shownEntry(*entry) + ";";
    }
    return text;
}

/// Does one thing to both, to the item at `index` where it needs one.
void act(LedgerScript& script, SlowLedger& model, std::mt19937& random) {
    const std::size_t size = model.today.size();
    const std::size_t index = size > 0 ? random() % size : 0;
    const Uuid id = size > 0 ? script.ledger.today[index].id : Uuid{};
    Entry* const entry = size > 0 ? &model.today[index] : nullptr;
    const std::string text = "t" + std::to_string(random() % 1000);
    const bool note = random() % 4 == 0;
    switch (random() % 8) {
    case 0:
        script.ledger.setDone(id, true, script.now);
        if (entry != nullptr) {
            entry->done = !entry->note;
        }
        break;
    case 1:
        script.ledger.edit(id, (note ? "-" : "") + text);
        if (entry != nullptr) {
            entry->text = text;
            entry->note = note;
            entry->done = entry->done && !note;
        }
        break;
    case 2:
        if (const auto deleted = script.ledger.deleteItem(id); deleted && note) {
            script.ledger.restore(deleted->item, static_cast<std::int64_t>(deleted->index));
        } else if (entry != nullptr) {
            model.today.erase(model.today.begin() + static_cast<std::ptrdiff_t>(index));
        }
        break;
    case 3:
        script.ledger.move(id, -1);
        if (index > 0) {
            std::swap(model.today[index], model.today[index - 1]);
        }
        break;
    case 4:
        script.ledger.carryOver = model.carryOver = !note;
        script.ledger.keepDays = model.keepDays = static_cast<int>(random() % 40);
        break;
    default:
        script.add((note ? "- " : "") + text);
        model.add(text, note);
    }
}

TEST(MunshiModel, WeeksOfRandomEditsGoAsTheSlowModelSays) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 random(seed);
        LedgerScript script;
        SlowLedger model;
        model.day = static_cast<int>(std::floor(script.now.toUnix() / 86400));
        for (int step = 0; step < 400; ++step) {
            if (random() % 5 == 0) {
                // Mostly on by hours or days, now and then a clock that is set back.
                const int hours = static_cast<int>(random() % 80) - (random() % 10 == 0 ? 60 : 0);
                script.now = script.now + hours * 3600.0;
                script.ledger.rollIfNeeded(script.now, script.calendar);
                model.turnTo(static_cast<int>(std::floor(script.now.toUnix() / 86400)));
            }
            act(script, model, random);
            ASSERT_EQ(shown(script.ledger), shownModel(model)) << "seed " << seed << ", step " << step;
        }
    }
}

} // namespace
} // namespace FellowCore
