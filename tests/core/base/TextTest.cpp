#include "core/base/Text.h"

#include <gtest/gtest.h>

#include <unicode/locid.h>

namespace FellowCore {
namespace {

TEST(Text, CountsWhatAPersonCounts) {
    const struct {
        const char* fault;
        std::string_view text;
        std::size_t count;
    } cases[] = {
        {"nothing", "", 0},
        {"accents as marks of their own", "e\u0301te\u0301", 3},
        {"a family of emoji, joined", "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466!", 2},
        {"skin tones", "\U0001F44D\U0001F3FD", 1},
        {"flags are pairs", "\U0001F1EE\U0001F1F3\U0001F1E9\U0001F1EA", 2},
        {"a carriage return with its newline", "a\r\nb", 3},
        {"Devanagari vowel signs", "\u0938\u093E\u0930\u093E", 2},
        {"a broken byte counts as one", "a\xFFz", 3},
        {"a sequence cut off at the end", "a\xF0\x9F\x91", 2},
        {"a zero byte is a character", std::string_view("a\0b", 3), 3},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(characterCount(row.text), row.count) << row.fault;
        EXPECT_EQ(characterPrefix(row.text, row.count), row.text) << row.fault;
    }
}

TEST(Text, PrefixNeverCutsACharacter) {
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
    EXPECT_EQ(characterPrefix(family + "abc", 1), family);
    EXPECT_EQ(characterPrefix(family + "abc", 2), family + "a");
    EXPECT_EQ(characterPrefix(family, 0), "");
    EXPECT_EQ(bytePrefix("a\u20AC", 3), "a") << "half a code point";
    EXPECT_EQ(bytePrefix("a\u20AC", 4), "a\u20AC");
    EXPECT_EQ(bytePrefix("\x80\x80\x80\x80\x80", 4).size(), 1U) << "no text at all, but still short";
    EXPECT_EQ(bytePrefix("\x80\x80", 0), "");
}

TEST(Text, TrimsEveryKindOfWhiteSpaceAndNothingElse) {
    const struct {
        const char* fault;
        std::string_view text;
        std::string_view trimmed;
    } cases[] = {
        {"only white space", " \t\r\n ", ""},
        {"no-break and ideographic spaces", "\u00A0\u3000tea time\u2028\u0085", "tea time"},
        {"marks of direction belong to the text", "\u200Fabc\u200F ", "\u200Fabc\u200F"},
        {"broken bytes at the ends stay", " \xFFx\xC2 ", "\xFFx\xC2"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(trimmed(row.text), row.trimmed) << row.fault;
    }
}

TEST(Text, FoldedFormsMeet) {
    const struct {
        const char* fault;
        std::string_view one;
        std::string_view other;
    } cases[] = {
        {"composed and decomposed", "S\u00E3o Paulo", "sa\u0303o paulo"},
        {"accents left out", "Z\u00FCrich", "ZURICH"},
        {"sharp s", "Stra\u00DFe", "STRASSE"},
        {"dotted capital I", "\u0130stanbul", "istanbul"},
        {"Vietnamese, two marks on a letter", "Hu\u1EBF", "hue"},
        {"full width forms", "\uFF34\uFF4F\uFF4B\uFF59\uFF4F", "tokyo"},
        {"broken bytes", "a\xFF", "A\uFFFD"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(folded(row.one), folded(row.other)) << row.fault;
    }
    EXPECT_NE(folded("Aden"), folded("Eden"));
}

TEST(Text, CaseDoesNotDependOnTheUsersLanguage) {
    const icu::Locale usual;
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault("tr", status);
    EXPECT_EQ(lowercased("\u0130I\u00C9"), "i\u0307i\u00E9");
    EXPECT_EQ(folded("MIRA"), "mira");
    icu::Locale::setDefault(usual, status);
    EXPECT_TRUE(U_SUCCESS(status));
}

TEST(Text, OneLineCannotBeBrokenOrTurnedAround) {
    const struct {
        const char* fault;
        std::string_view text;
        std::string_view line;
    } cases[] = {
        {"newlines and tabs", "a\nb\r\tc", "a b  c"},
        {"an escape sequence for a terminal", "\x1B[2J", " [2J"},
        {"Unicode's own line breaks", "a\u2028b\u0085c", "a b c"},
        {"an override that reverses what follows", "\u202Egpj.exe", " gpj.exe"},
        {"marks and joiners that writing needs", "\u200Fa\u200D\U0001F469", "\u200Fa\u200D\U0001F469"},
        {"broken bytes", "a\xFF", "a\uFFFD"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(singleLine(row.text), row.line) << row.fault;
    }
}

} // namespace
} // namespace FellowCore
