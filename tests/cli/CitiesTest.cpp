#include "tests/cli/RunFellow.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using FellowTest::Answer;
using FellowTest::runFellow;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

Answer fellow(const std::string& words) {
    return runFellow("cities " + words);
}

TEST(Cities, ListsThoseThatAreMeantFirst) {
    const Answer code = fellow("SHA");
    EXPECT_EQ(code.status, 0) << code.err;
    EXPECT_THAT(code.out, StartsWith("Shanghai "));
    EXPECT_THAT(code.out, HasSubstr("Asia/Shanghai\n"));
    EXPECT_THAT(code.out, HasSubstr("\nand "));
    const Answer words = fellow("--limit=1 sao paulo --home /nowhere");
    EXPECT_THAT(words.out, StartsWith("São Paulo  São Paulo, Brazil  America/Sao_Paulo\nand "));
    EXPECT_THAT(fellow("nyc --limit 3").out, Not(HasSubstr("and ")));
}

TEST(Cities, RefusesWhatItCannotAnswer) {
    const Answer nothing = fellow("no such city anywhere");
    EXPECT_EQ(nothing.status, 1);
    EXPECT_THAT(nothing.err, HasSubstr("No city answers to"));
    EXPECT_EQ(fellow("-- --limit").status, 1) << "behind the dashes it is a query";
    for (const char* words :
         {"", "'  '", "--limit", "--limit 0 x", "--limit=-1 x", "--limit 3x x", "--home", "--nosuch x"}) {
        const Answer answer = fellow(words);
        EXPECT_EQ(answer.status, 2) << words;
        EXPECT_THAT(answer.err, HasSubstr("usage: fellow cities")) << words;
    }
}

} // namespace
