#include "core/base/Text.h"

#include <unicode/brkiter.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>

namespace FellowCore {

namespace {

std::int32_t icuLength(std::string_view text) {
    if (text.size() > std::size_t{std::numeric_limits<std::int32_t>::max()}) {
        throw std::length_error("text of more than 2 GiB");
    }
    return static_cast<std::int32_t>(text.size());
}

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), icuLength(text)));
}

std::string utf8(const icu::UnicodeString& text) {
    std::string bytes;
    return text.toUTF8String(bytes);
}

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char byte) { return (byte & 0x80) == 0; });
}

/// ICU fails here only when its own data is missing or memory is out, which no caller could mend.
void requireSuccess(UErrorCode status) {
    if (U_FAILURE(status)) {
        throw std::runtime_error(std::string("ICU: ") + u_errorName(status));
    }
}

/// Code points straight from the bytes, positions being byte positions; what is not UTF-8 reads as U+FFFD.
class UnicodeWalk {
public:
    explicit UnicodeWalk(std::string_view text) {
        UErrorCode status = U_ZERO_ERROR;
        utext_openUTF8(&source_, text.data(), icuLength(text), &status);
        requireSuccess(status);
    }
    ~UnicodeWalk() { utext_close(&source_); }
    UnicodeWalk(const UnicodeWalk&) = delete;
    UnicodeWalk& operator=(const UnicodeWalk&) = delete;

    UText* source() { return &source_; }
    std::size_t position() const { return static_cast<std::size_t>(utext_getNativeIndex(&source_)); }

private:
    UText source_ = UTEXT_INITIALIZER;
};

/// A character iterator takes longer to make than most texts take to walk, so each thread keeps one.
icu::BreakIterator& characterIterator() {
    thread_local const std::unique_ptr<icu::BreakIterator> iterator = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> made(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        requireSuccess(status);
        return made;
    }();
    return *iterator;
}

struct CharacterSpan {
    std::size_t count = 0;
    std::size_t bytes = 0;
};

/// Walks the first `atMost` characters, and says how many there were and how many bytes they took.
CharacterSpan walkCharacters(std::string_view text, std::size_t atMost) {
    UnicodeWalk walk(text);
    icu::BreakIterator& iterator = characterIterator();
    UErrorCode status = U_ZERO_ERROR;
    iterator.setText(walk.source(), status);
    requireSuccess(status);

    CharacterSpan walked;
    while (walked.count < atMost) {
        const std::int32_t boundary = iterator.next();
        if (boundary == icu::BreakIterator::DONE) {
            break;
        }
        ++walked.count;
        walked.bytes = static_cast<std::size_t>(boundary);
    }
    return walked;
}

/// Overrides and isolates can make a line show its neighbours in another order; the plain marks U+200E and
/// U+200F, which right-to-left writing needs, cannot.
bool breaksLine(UChar32 character) {
    const auto category = u_charType(character);
    return category == U_CONTROL_CHAR || category == U_LINE_SEPARATOR || category == U_PARAGRAPH_SEPARATOR ||
           (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

} // namespace

std::string trimmed(std::string_view text) {
    UnicodeWalk walk(text);
    std::size_t begin = 0;
    while (u_isUWhiteSpace(utext_next32(walk.source()))) {
        begin = walk.position();
    }
    utext_setNativeIndex(walk.source(), icuLength(text));
    std::size_t end = text.size();
    while (end > begin && u_isUWhiteSpace(utext_previous32(walk.source()))) {
        end = walk.position();
    }
    return std::string(text.substr(begin, end - begin));
}

std::size_t characterCount(std::string_view text) {
    return walkCharacters(text, std::numeric_limits<std::size_t>::max()).count;
}

std::string characterPrefix(std::string_view text, std::size_t count) {
    return std::string(text.substr(0, walkCharacters(text, count).bytes));
}

std::string folded(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const decomposer = icu::Normalizer2::getNFKDInstance(status);
    requireSuccess(status);
    icu::UnicodeString bare;
    const icu::UnicodeString decomposed = decomposer->normalize(unicode(text), status);
    requireSuccess(status);
    for (std::int32_t index = 0; index < decomposed.length(); index = decomposed.moveIndex32(index, 1)) {
        const UChar32 character = decomposed.char32At(index);
        if (u_charType(character) != U_NON_SPACING_MARK) {
            bare.append(character);
        }
    }
    return utf8(bare.foldCase());
}

std::string wellFormed(std::string_view text) {
    return isAscii(text) ? std::string(text) : utf8(unicode(text));
}

std::string lowercased(std::string_view text) {
    if (isAscii(text)) { // most texts are, and a search lowers thousands
        std::string lower(text);
        for (char& letter : lower) {
            letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter | 0x20) : letter;
        }
        return lower;
    }
    std::string lower;
    icu::StringByteSink<std::string> sink(&lower);
    UErrorCode status = U_ZERO_ERROR;
    const icu::StringPiece bytes(text.data(), icuLength(text));
    icu::CaseMap::utf8ToLower("", 0, bytes, sink, nullptr, status);
    requireSuccess(status);
    return lower;
}

std::string singleLine(std::string_view text) {
    const icu::UnicodeString source = unicode(text);
    icu::UnicodeString line;
    for (std::int32_t index = 0; index < source.length(); index = source.moveIndex32(index, 1)) {
        const UChar32 character = source.char32At(index);
        line.append(breaksLine(character) ? UChar32{' '} : character);
    }
    return utf8(line);
}

std::string_view bytePrefix(std::string_view text, std::size_t count) {
    if (text.size() <= count) {
        return text;
    }
    constexpr int longestTail = 3;
    for (int tail = 0; tail < longestTail && count > 0 && (text[count] & 0xC0) == 0x80; ++tail) {
        --count;
    }
    return text.substr(0, count);
}

} // namespace FellowCore
