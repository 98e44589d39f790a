#include "platform/linux/process/ProcText.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace Platform::ProcText {

namespace {

/// Takes blank-separated numbers off the front of a text.
class Numbers {
public:
    explicit Numbers(std::string_view text) : rest_(text) {}

    template <typename Number>
    bool next(Number& number) {
        const std::string_view word = take();
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
        return error == std::errc() && end == word.data() + word.size();
    }

    bool skip(int count) {
        while (count > 0 && !take().empty()) {
            --count;
        }
        return count == 0;
    }

private:
    std::string_view take() {
        constexpr std::string_view blanks = " \t\n";
        rest_.remove_prefix(std::min(rest_.find_first_not_of(blanks), rest_.size()));
        const std::string_view word = rest_.substr(0, rest_.find_first_of(blanks));
        rest_.remove_prefix(word.size());
        return word;
    }

    std::string_view rest_;
};

} // namespace

std::optional<Stat> stat(std::string_view text) {
    // The name may hold anything, brackets and line feeds too; behind it come only a letter and numbers.
    const std::size_t open = text.find('(');
    const std::size_t close = text.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open ||
        close + 3 > text.size()) {
        return std::nullopt;
    }
    Stat stat;
    stat.command = text.substr(open + 1, close - open - 1);
    stat.state = text[close + 2];
    constexpr int betweenParentAndStart = 17; // fields 5 to 21
    Numbers behind(text.substr(close + 3));
    const bool complete = Numbers(text.substr(0, open)).next(stat.pid) && behind.next(stat.parent) &&
                          behind.skip(betweenParentAndStart) && behind.next(stat.startTicks);
    return complete ? std::optional(std::move(stat)) : std::nullopt;
}

std::optional<FellowCore::DevWatchProcessOwners> owners(std::string_view text) {
    // A line feed in the process's name is written as two characters here, so that this begins a line.
    constexpr std::string_view key = "\nUid:";
    const std::size_t found = text.find(key);
    if (found == std::string_view::npos) {
        return std::nullopt;
    }
    Numbers numbers(text.substr(found + key.size()));
    FellowCore::DevWatchProcessOwners owners;
    const bool complete = numbers.next(owners.real) && numbers.next(owners.effective);
    return complete ? std::optional(owners) : std::nullopt;
}

std::optional<FellowCore::DevWatchSystemCPUSample> systemTicks(std::string_view text) {
    constexpr std::string_view key = "cpu ";
    if (!text.starts_with(key)) {
        return std::nullopt;
    }
    enum Field { user, nice, system, idle, waiting, interrupts, softInterrupts, count };
    std::array<std::uint64_t, count> ticks{};
    Numbers numbers(text.substr(key.size()));
    for (std::uint64_t& field : ticks) {
        if (!numbers.next(field)) {
            return std::nullopt;
        }
    }
    return FellowCore::DevWatchSystemCPUSample{ticks[user] + ticks[nice] + ticks[system] + ticks[interrupts] +
                                                   ticks[softInterrupts],
                                               ticks[idle] + ticks[waiting]};
}

std::uint64_t socket(std::string_view target) {
    constexpr std::string_view opening = "socket:[";
    std::uint64_t number = 0;
    if (!target.starts_with(opening) || !target.ends_with(']')) {
        return 0;
    }
    const std::string_view digits = target.substr(opening.size(), target.size() - opening.size() - 1);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc() && end == digits.data() + digits.size() ? number : 0;
}

} // namespace Platform::ProcText
