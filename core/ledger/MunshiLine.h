#pragma once

#include "core/ledger/MunshiItem.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// What a person wrote into the one field: a task, or a note when it begins with "-" or "•".
struct MunshiLine {
    static constexpr std::size_t maximumCharacters = 500; ///< user-perceived
    /// A character may be any number of marks on top of each other; this many bytes hold 500 of the longest
    /// that writing and emoji need.
    static constexpr std::size_t maximumBytes = 64'000;

    std::string text;
    MunshiItem::Kind kind = MunshiItem::Kind::task;

    /// Nothing when no text remains. Each line break becomes a blank, blanks at the ends go, and what is too
    /// long is cut.
    static std::optional<MunshiLine> parse(std::string_view raw);
    /// A text from elsewhere forced into the same bounds: one line of valid UTF-8, not too long.
    static std::string bounded(std::string_view text);
};

/// The lines of a text that hold more than white space, as they stand, at most `atMost` of them; for text
/// that is dropped or piped in, each line being one for `MunshiLedger::add`.
std::vector<std::string> munshiLines(std::string_view text, std::size_t atMost);

} // namespace FellowCore
