#include "cli/LedgerOptions.h"

#include "core/base/Json.h"
#include "core/base/SupportFolders.h"
#include "core/ledger/DayKey.h"

#include <chrono>
#include <cstdlib>

namespace Fellow {

namespace {

using FellowCore::Instant;
using FellowCore::SupportFolders;

std::optional<std::filesystem::path> folderFrom(const char* variable) {
    const char* const value = std::getenv(variable);
    return value == nullptr || *value == '\0' ? std::nullopt : std::optional<std::filesystem::path>(value);
}

/// With --home nothing of the environment counts, so that the answer can be reproduced.
std::optional<std::filesystem::path> ledgerFile(const std::optional<std::string>& home) {
    if (home) {
        return SupportFolders({.home = std::filesystem::absolute(*home)}).ledgerFile();
    }
    const auto own = folderFrom("HOME");
    if (!own || !own->is_absolute()) {
        return std::nullopt;
    }
    return SupportFolders({.home = *own, .dataHome = folderFrom("XDG_DATA_HOME")}).ledgerFile();
}

Instant clockTime() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return Instant::fromUnix(std::chrono::duration<double>(now).count());
}

/// Takes words off a command line.
class Reader {
public:
    Reader(Arguments arguments, DayOption day) : rest_(arguments), day_(day) {}

    LedgerOptions read() {
        while (!rest_.empty() && !options_.complaint) {
            const std::string_view word = take();
            if (word == "--") {
                options_.words.insert(options_.words.end(), rest_.begin(), rest_.end());
                rest_ = {};
            } else if (word.starts_with("--")) {
                readOption(word.substr(0, word.find('=')), word);
            } else {
                options_.words.emplace_back(word);
            }
        }
        finish();
        return options_;
    }

private:
    std::string_view take() {
        const std::string_view word = rest_.front();
        rest_ = rest_.subspan(1);
        return word;
    }

    void complain(std::string complaint) {
        if (!options_.complaint) {
            options_.complaint = std::move(complaint);
        }
    }

    void readOption(std::string_view name, std::string_view word) {
        const std::string named(name);
        if (name != "--home" && name != "--at" && (name != "--day" || day_ == DayOption::refused)) {
            return complain(named + " is no option here; text that begins with \"--\" goes behind \"--\".");
        }
        const bool joined = word.size() > name.size();
        if (!joined && rest_.empty()) {
            return complain(named + " wants a value.");
        }
        const std::string value(joined ? word.substr(name.size() + 1) : take());
        if (name == "--home") {
            readHome(value);
        } else if (name == "--at") {
            readTime(value);
        } else {
            readDay(value);
        }
    }

    void readHome(const std::string& value) {
        if (value.empty()) {
            return complain("--home wants a folder.");
        }
        home_ = value;
    }

    void readTime(const std::string& value) {
        at_ = FellowCore::instantFromIso8601(value);
        if (!at_) {
            complain("--at wants a time such as 2026-03-01T09:00:00Z.");
        }
    }

    void readDay(const std::string& value) {
        if (!FellowCore::dayFromKey(value)) {
            return complain("--day wants a day such as 2026-03-01.");
        }
        options_.day = value;
    }

    void finish() {
        options_.at = at_ ? *at_ : clockTime();
        if (const auto file = ledgerFile(home_)) {
            options_.file = *file;
        } else {
            complain("HOME is not set; say --home.");
        }
    }

    Arguments rest_;
    DayOption day_;
    LedgerOptions options_;
    std::optional<std::string> home_;
    std::optional<Instant> at_;
};

} // namespace

LedgerOptions readLedgerOptions(Arguments arguments, DayOption day) {
    return Reader(arguments, day).read();
}

} // namespace Fellow
