#include "cli/Ledger.h"

#include "cli/LedgerOptions.h"
#include "core/base/Json.h"
#include "core/base/Text.h"
#include "core/ledger/MunshiLine.h"
#include "core/ledger/MunshiStore.h"
#include "platform/LocalCalendar.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>

namespace Fellow {

namespace {

using FellowCore::MunshiItem;
using FellowCore::MunshiLedger;
using FellowCore::MunshiStore;

/// Why a command cannot be carried out, as a sentence.
class Refusal : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The ledger's file and the day on which it is looked at.
class LedgerDesk {
public:
    explicit LedgerDesk(const LedgerOptions& options)
        : store_(files_, options.file), now_(options.at), calendar_(Platform::localCalendar()) {}

    FellowCore::Instant now() const { return now_; }
    const FellowCore::Calendar& calendar() const { return calendar_; }

    /// The ledger as it is today, the file left alone.
    MunshiLedger read() const {
        try {
            return today(store_.held());
        } catch (const FellowCore::JsonError& error) {
            throw Refusal(store_.url().string() + " could not be understood: " + error.what() + ".");
        }
    }

    /// Changes the file; `change` gets the ledger as it is today and may be asked again.
    void write(const std::function<void(MunshiLedger&)>& change) {
        const auto changed = [&](const std::optional<MunshiLedger>& held) {
            MunshiLedger ledger = today(held);
            change(ledger);
            return ledger;
        };
        // The running program holds its lock for as long as one save takes.
        constexpr int attempts = 40;
        for (int attempt = 0; attempt < attempts; ++attempt) {
            if (const auto saved = store_.update(changed)) {
                if (saved->preserved) {
                    std::cerr << "The ledger could not be understood and was moved to "
                              << FellowCore::singleLine(saved->preserved->string()) << ".\n";
                }
                return;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        throw Refusal("Another program is busy with the ledger; nothing was changed.");
    }

private:
    MunshiLedger today(const std::optional<MunshiLedger>& held) const {
        MunshiLedger ledger = held.value_or(MunshiLedger(now_, calendar_));
        ledger.rollIfNeeded(now_, calendar_);
        return ledger;
    }

    FellowCore::PosixFileOperations files_;
    MunshiStore store_;
    FellowCore::Instant now_;
    FellowCore::Calendar calendar_;
};

std::string shown(const MunshiItem& item) {
    const bool isNote = item.kind == MunshiItem::Kind::note;
    std::string text = isNote ? " -  " : item.done ? "[x] " : "[ ] ";
    text += FellowCore::singleLine(item.text);
    return item.carriedFrom ? text + " (since " + FellowCore::singleLine(*item.carriedFrom) + ")" : text;
}

std::string inQuotes(std::string_view text) {
    return "\u201C" + FellowCore::singleLine(text) + "\u201D";
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

/// Runs a command's work and turns what it refuses into a sentence on standard error.
template <typename Work>
ExitStatus refusable(Work work) {
    try {
        work();
        return ExitStatus::good;
    } catch (const Refusal& refusal) {
        std::cerr << FellowCore::singleLine(refusal.what()) << '\n';
    } catch (const FellowCore::FileError& error) {
        std::cerr << FellowCore::singleLine(error.what()) << '\n';
    }
    return ExitStatus::refused;
}

void printDay(const MunshiLedger& ledger, const std::string& day) {
    std::cout << day << '\n';
    const auto items = ledger.items(day);
    const std::size_t width = std::to_string(items.size()).size();
    for (std::size_t index = 0; index < items.size(); ++index) {
        const std::string number = std::to_string(index + 1);
        std::cout << "  " << std::string(width - number.size(), ' ') << number << ' ' << shown(items[index])
                  << '\n';
    }
    if (items.empty()) {
        std::cout << "  Nothing written.\n";
    }
}

ExitStatus list(Arguments arguments) {
    const LedgerOptions options = readLedgerOptions(arguments, DayOption::taken);
    if (options.complaint) {
        return misused(ledgerList, *options.complaint);
    }
    if (!options.words.empty() && options.words != std::vector<std::string>{"list"}) {
        return misused(ledgerList, inQuotes(options.words[0]) + " is none of its commands.");
    }
    return refusable([&] {
        const MunshiLedger ledger = LedgerDesk(options).read();
        printDay(ledger, options.day.value_or(ledger.currentDay));
    });
}

ExitStatus exportDay(Arguments arguments) {
    const LedgerOptions options = readLedgerOptions(arguments, DayOption::taken);
    if (options.complaint || !options.words.empty()) {
        return misused(ledgerExport, options.complaint.value_or("nothing but options is wanted."));
    }
    return refusable([&] { std::cout << LedgerDesk(options).read().markdown(options.day) << '\n'; });
}

/// The lines to add: the words as one, or what comes in on standard input.
std::vector<std::string> linesToAdd(const LedgerOptions& options) {
    constexpr std::size_t mostLines = 1000;
    constexpr std::size_t mostBytes = 1'000'000;
    if (!options.words.empty()) {
        return {joined(options.words)};
    }
    std::string text(mostBytes + 1, '\0');
    std::cin.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(std::cin.gcount()));
    auto lines = FellowCore::munshiLines(text, mostLines + 1);
    if (text.size() > mostBytes || lines.size() > mostLines) {
        throw Refusal("That is more than " + std::to_string(mostLines) +
                      " lines or a megabyte; nothing was added.");
    }
    return lines;
}

ExitStatus add(Arguments arguments) {
    const LedgerOptions options = readLedgerOptions(arguments, DayOption::refused);
    if (options.complaint) {
        return misused(ledgerAdd, *options.complaint);
    }
    return refusable([&] {
        const auto lines = linesToAdd(options);
        std::vector<MunshiItem> added;
        LedgerDesk desk(options);
        if (std::ranges::none_of(lines, [](const std::string& line) {
                return FellowCore::MunshiLine::parse(line).has_value();
            })) {
            throw Refusal("There is no text to add.");
        }
        desk.write([&](MunshiLedger& ledger) {
            added.clear();
            for (const std::string& line : lines) {
                if (const auto item = ledger.add(line, desk.now(), desk.calendar(), FellowCore::randomUuid)) {
                    added.push_back(*item);
                }
            }
        });
        for (const MunshiItem& item : added) {
            std::cout << "Added: " << shown(item) << '\n';
        }
    });
}

/// The number that a text is, as the list shows them; 0 for one that is none.
std::size_t numberFrom(const std::string& text) {
    constexpr std::size_t mostDigits = 9;
    const bool isNumber = !text.empty() && text.size() <= mostDigits &&
                          std::ranges::all_of(text, [](char digit) { return digit >= '0' && digit <= '9'; });
    return isNumber ? std::stoul(text) : 0;
}

/// The task that is meant by its number or by a part of its text that only it has. `done` is what it is now.
MunshiItem taskMeant(const MunshiLedger& ledger, const std::string& meant, bool done) {
    if (const std::size_t number = numberFrom(meant); number >= 1 && number <= ledger.today.size()) {
        const MunshiItem& item = ledger.today[number - 1];
        if (item.kind == MunshiItem::Kind::note) {
            throw Refusal(inQuotes(item.text) + " is a note.");
        }
        if (item.done != done) {
            throw Refusal(inQuotes(item.text) + (item.done ? " is done already." : " is not done."));
        }
        return item;
    }
    const std::string wanted = FellowCore::lowercased(meant);
    std::vector<MunshiItem> candidates;
    for (const MunshiItem& item : done ? ledger.doneToday() : ledger.openTasks()) {
        const std::string text = FellowCore::lowercased(item.text);
        if (text == wanted) {
            return item;
        }
        if (text.find(wanted) != std::string::npos) {
            candidates.push_back(item);
        }
    }
    const std::string tasks = done ? "done task" : "open task";
    if (candidates.empty()) {
        throw Refusal("No " + tasks + " has the number or the text " + inQuotes(meant) + ".");
    }
    if (candidates.size() > 1) {
        throw Refusal(std::to_string(candidates.size()) + " " + tasks + "s have the text " + inQuotes(meant) +
                      "; say more of it, or the number.");
    }
    return candidates[0];
}

ExitStatus mark(const Command& command, Arguments arguments, bool done) {
    const LedgerOptions options = readLedgerOptions(arguments, DayOption::refused);
    const std::string meant = FellowCore::trimmed(joined(options.words));
    if (options.complaint || meant.empty()) {
        return misused(command, options.complaint.value_or("the number or the text of a task is wanted."));
    }
    return refusable([&] {
        std::string text;
        LedgerDesk desk(options);
        desk.write([&](MunshiLedger& ledger) {
            const MunshiItem item = taskMeant(ledger, meant, !done);
            ledger.setDone(item.id, done, desk.now());
            text = item.text;
        });
        std::cout << (done ? "Done: " : "Open again: ") << FellowCore::singleLine(text) << '\n';
    });
}

} // namespace

const Command ledgerList{
    "ledger",
    "ledger [--day DAY]",
    "list what Munshi has for today, or for an earlier day",
    "Each line has its number, its check box or a dash for a note, and the day it was carried from.\n\n"
    "Every ledger command takes --home DIR, which looks beneath another home folder, and --at ISO8601,\n"
    "which takes another moment for now. Days are those of the system's time zone (TZ).\n\n"
    "Exit status: 0 done, 1 refused with a sentence on standard error, 2 the command line is wrong.\n",
    list,
};

const Command ledgerAdd{
    "ledger add",
    "ledger add [TEXT...]",
    "add a task, or a note when the text begins with \"-\"",
    "The words make one line. Without any, each line of standard input is added. Options as for\n"
    "`fellow ledger`; text that begins with \"--\" goes behind \"--\".\n",
    add,
};

const Command ledgerDone{
    "ledger done",
    "ledger done NUMBER|TEXT",
    "check off a task of today",
    "The task is named by its number in the list, or by a part of its text that no other open task\n"
    "has. Options as for `fellow ledger`.\n",
    [](Arguments arguments) { return mark(ledgerDone, arguments, true); },
};

const Command ledgerUndone{
    "ledger undone",
    "ledger undone NUMBER|TEXT",
    "take the check mark off again",
    "The task is named as for `fellow ledger done`. Options as for `fellow ledger`.\n",
    [](Arguments arguments) { return mark(ledgerUndone, arguments, false); },
};

const Command ledgerExport{
    "ledger export",
    "ledger export [--day DAY]",
    "write a day as Markdown to standard output",
    "Options as for `fellow ledger`.\n",
    exportDay,
};

} // namespace Fellow
