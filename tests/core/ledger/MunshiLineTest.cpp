#include "core/ledger/MunshiLine.h"

#include "core/base/Text.h"

#include <gmock/gmock.h>

namespace FellowCore {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string parsed(std::string_view raw) {
    const auto line = MunshiLine::parse(raw);
    return line ? std::string(rawValue(line->kind)) + ":" + line->text : "nothing";
}

TEST(MunshiLine, ReadsWhatPeopleWrite) {
    const struct {
        const char* fault;
        const char* raw;
        const char* line;
    } cases[] = {
        {"a plain task", "buy milk", "task:buy milk"},
        {"white space at the ends", " \t buy milk \n", "task:buy milk"},
        {"a dash makes a note", "- buy milk", "note:buy milk"},
        {"without a blank too", "-buy", "note:buy"},
        {"so does a bullet", "\u2022 x", "note:x"},
        {"only one dash is taken", "-- x", "note:- x"},
        {"a dash inside is text", "buy - milk", "task:buy - milk"},
        {"a dash alone is nothing", "-", "nothing"},
        {"nor with blanks", " - \n ", "nothing"},
        {"nor nothing", "", "nothing"},
        {"nor wide blanks", "\u3000\u00A0", "nothing"},
        {"a line feed becomes a blank", "buy\nmilk", "task:buy milk"},
        {"each of them", "a\n\nb", "task:a  b"},
        {"line ends from elsewhere", "a\r\nb\rc\u2028d\u0085e", "task:a b c d e"},
        {"a note after a line feed", "\n- x", "note:x"},
        {"a dash under a mark is a letter", "-\u0323x", "task:-\u0323x"},
        {"bytes that are no text", "a\xFF", "task:a\uFFFD"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(parsed(row.raw), row.line) << row.fault;
    }
}

TEST(MunshiLine, CutsWhatIsTooLong) {
    EXPECT_EQ(MunshiLine::parse(std::string(600, 'x'))->text, std::string(500, 'x'));
    EXPECT_EQ(MunshiLine::parse("- " + std::string(500, 'x'))->text, std::string(500, 'x'));

    std::string families;
    for (int count = 0; count < 501; ++count) {
        families += "\U0001F468\u200D\U0001F469\u200D\U0001F467";
    }
    const std::string cut = MunshiLine::parse(families)->text;
    EXPECT_EQ(characterCount(cut), 500) << "characters, not bytes, and none torn";
    EXPECT_EQ(cut.size(), 500 * 18);

    std::string marks = "x";
    while (marks.size() < 10'000'000) {
        marks += "\u0323";
    }
    const std::string tower = MunshiLine::parse(marks)->text;
    EXPECT_LE(tower.size(), MunshiLine::maximumBytes) << "one character of ten megabytes";
    EXPECT_EQ(tower.find("\uFFFD"), std::string::npos) << "cut between code points";
}

TEST(MunshiLine, SplitsWhatIsDroppedOnHim) {
    EXPECT_THAT(munshiLines("a\r\n\n  \n- b\u2028c", 10), ElementsAre("a", "- b", "c"));
    EXPECT_THAT(munshiLines("a\nb\nc", 2), ElementsAre("a", "b"));
    EXPECT_THAT(munshiLines("\n\n", 10), IsEmpty());
}

} // namespace
} // namespace FellowCore
