#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace FellowCore {

/// Text helpers over UTF-8. "Characters" are what a person would count (extended grapheme clusters, by ICU);
/// bytes that are not UTF-8 count as replacement characters and never fail.

/// The text without white space and newlines (Unicode White_Space) at both ends.
std::string trimmed(std::string_view text);
/// How many user-perceived characters the text has.
std::size_t characterCount(std::string_view text);
/// The first `count` user-perceived characters.
std::string characterPrefix(std::string_view text, std::size_t count);
/// The first bytes, at most so many, not ending within a code point.
std::string_view bytePrefix(std::string_view text, std::size_t count);
/// A form for comparing that ignores case and diacritics (NFKD, nonspacing marks removed, case folded).
std::string folded(std::string_view text);
/// The text with bytes that are not UTF-8 replaced by U+FFFD.
std::string wellFormed(std::string_view text);
/// Lower case, independent of any locale.
std::string lowercased(std::string_view text);
/// The text with control characters (tabs too), line separators and directional overrides each replaced by a
/// space, for showing bytes from outside in one line of a log or a label.
std::string singleLine(std::string_view text);

} // namespace FellowCore
