#include "tests/cli/RunFellow.h"

#include "core/base/Json.h"
#include "core/base/SupportFolders.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <string>

namespace {

using FellowTest::Answer;
using FellowTest::runFellow;
using ::testing::HasSubstr;

/// A home folder with what the program has stored there.
class Clocks : public testing::Test {
protected:
    Answer fellow(const std::string& words) const {
        return runFellow("clocks --home " + home_.path().string() + " --at 2026-11-21T18:45:00Z " + words);
    }
    void prefer(const std::string& document) const {
        const FellowCore::SupportFolders folders({.home = home_.path()});
        std::filesystem::create_directories(folders.preferencesFile().parent_path());
        TestSupport::writeBytes(folders.preferencesFile(), document);
    }
    void store(const std::string& state) const {
        prefer(FellowCore::Json{{"clock.worldClocks.v1", state}}.dump());
    }

    TestSupport::TemporaryFolder home_;
};

TEST_F(Clocks, TellsHomeFirstAndThenEveryCity) {
    store(R"({"homeTimeZoneIdentifier":"Asia/Kolkata","cityIdentifiers":["America/New_York","Asia/Tokyo"],
              "pinnedTimeZoneIdentifiers":["Asia/Tokyo"]})");
    EXPECT_EQ(fellow("").out, "Kolkata        00:15  home    Today, Sun Nov 22\n"
                              "New York City  13:45  −10:30  Yesterday, Sat Nov 21\n"
                              "Tokyo          03:45  +3:30   Today, Sun Nov 22\n");
    const FellowCore::Json list = FellowCore::parseJson(fellow("--json").out);
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[0]["home"], true);
    EXPECT_EQ(list[1]["day_difference"], -1);
    EXPECT_EQ(list[1]["difference_seconds"], -37800);
    EXPECT_EQ(list[2]["time_zone"], "Asia/Tokyo");
    EXPECT_EQ(list[2]["pinned"], true);
}

TEST_F(Clocks, WithoutChoicesTellsTheMachinesTime) {
    const std::string machine = "UTC  18:45  home  Today, Sat Nov 21\n";
    EXPECT_EQ(fellow("").out, machine);
    for (const char* broken :
         {"", "{", "[]", R"({"clock.worldClocks.v1":7})", R"({"clock.worldClocks.v1":"{"})"}) {
        prefer(broken);
        const Answer answer = fellow("");
        EXPECT_EQ(answer.out, machine) << broken;
        EXPECT_EQ(answer.status, 0) << broken;
    }
}

TEST_F(Clocks, RefusesWhatItDoesNotUnderstand) {
    for (const char* words : {"--nosuch", "London", "--at tomorrow", "--home"}) {
        const Answer answer = fellow(words);
        EXPECT_EQ(answer.status, 2) << words;
        EXPECT_THAT(answer.err, HasSubstr("usage: fellow clocks")) << words;
    }
}

} // namespace
