#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// The form in which city names and queries are compared: "_" as a space, no case, no diacritics, no white
/// space at the ends.
std::string worldClockFolded(std::string_view text);
/// The words of a folded text, split on white space, in order; none is empty. They live as long as the text.
std::vector<std::string_view> worldClockWords(std::string_view folded);

} // namespace FellowCore
