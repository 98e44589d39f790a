#include "core/base/FileOperations.h"
#include "tests/cli/RunFellow.h"

#include <gmock/gmock.h>

#include <string>
#include <thread>
#include <vector>

namespace {

using FellowTest::Answer;
using FellowTest::runFellow;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

/// A home folder of its own, in which the real program runs; `words` go through the shell.
class Ledger : public ::testing::Test {
protected:
    Answer fellow(const std::string& words, const std::string& input = {},
                  const std::string& now = "2026-03-01T09:00:00Z") const {
        return runFellow("ledger " + words + " --home '" + home_.path().string() + "' --at " + now, input);
    }
    std::string listed(const std::string& now = "2026-03-01T09:00:00Z") const {
        return fellow("", "", now).out;
    }
    std::filesystem::path file() const {
        return home_ / ".local/share/DeskSprites/sprites/munshi/ledger.json";
    }

    TestSupport::TemporaryFolder home_;
};

TEST_F(Ledger, AddsListsChecksOffAndExports) {
    EXPECT_EQ(listed(), "2026-03-01\n  Nothing written.\n");
    EXPECT_FALSE(std::filesystem::exists(file())) << "looking writes nothing";
    EXPECT_EQ(fellow("add buy milk").out, "Added: [ ] buy milk\n");
    EXPECT_EQ(fellow("add '- a note'").status, 0);
    EXPECT_EQ(fellow("add", "bread\n\n- more\n").out, "Added: [ ] bread\nAdded:  -  more\n");
    EXPECT_EQ(fellow("done MILK").out, "Done: buy milk\n");
    EXPECT_EQ(listed(), "2026-03-01\n  1 [x] buy milk\n  2 [ ] bread\n  3  -  a note\n  4  -  more\n");
    EXPECT_EQ(fellow("export").out, "## 2026-03-01\n- [x] buy milk\n- [ ] bread\n- a note\n- more\n");
    EXPECT_EQ(fellow("undone 1").out, "Open again: buy milk\n");
    EXPECT_EQ(fellow("done 2").out, "Done: bread\n");

    const std::string before = TestSupport::bytesOf(file());
    const std::string tomorrow = "2026-03-02T09:00:00Z";
    EXPECT_EQ(listed(tomorrow), "2026-03-02\n  1 [ ] buy milk (since 2026-03-01)\n");
    EXPECT_EQ(fellow("export --day=2026-03-01", "", tomorrow).out,
              "## 2026-03-01\n- [x] bread\n- a note\n- more\n");
    EXPECT_EQ(TestSupport::bytesOf(file()), before) << "only a change turns the file over";
}

TEST_F(Ledger, RefusesWithASentence) {
    fellow("add call home");
    fellow("add call work");
    fellow("add '- note'");
    const std::string before = TestSupport::bytesOf(file());
    const struct {
        const char* words;
        int status;
        const char* sentence;
    } cases[] = {
        {"done call", 1, "2 open tasks have the text"},
        {"done 3", 1, "is a note"},
        {"undone 1", 1, "is not done"},
        {"done 4", 1, "No open task has the number or the text"},
        {"add -", 1, "no text to add"},
        {"add", 1, "no text to add"},
        {"done", 2, "usage: fellow ledger done"},
        {"add --day 2026-03-01 x", 2, "--day is no option here"},
        {"--day 2026-3-1", 2, "--day wants a day"},
        {"--at yesterday", 2, "--at wants a time"},
        {"lsit", 2, "usage: fellow ledger"},
        {"export x", 2, "usage: fellow ledger export"},
    };
    for (const auto& row : cases) {
        const Answer answer = fellow(row.words);
        EXPECT_EQ(answer.status, row.status) << row.words;
        EXPECT_THAT(answer.err, HasSubstr(row.sentence)) << row.words;
        EXPECT_EQ(answer.out, "") << row.words;
    }
    EXPECT_EQ(TestSupport::bytesOf(file()), before);
}

TEST_F(Ledger, KeepsAFileItDoesNotUnderstand) {
    TestSupport::writeBytes(file(), "{ half a");
    const Answer looked = fellow("");
    EXPECT_EQ(looked.status, 1);
    EXPECT_THAT(looked.err, HasSubstr("could not be understood"));
    EXPECT_EQ(TestSupport::bytesOf(file()), "{ half a") << "looking moves nothing";
    const Answer added = fellow("add milk");
    EXPECT_EQ(added.status, 0);
    EXPECT_THAT(added.err, HasSubstr("was moved to"));
    EXPECT_EQ(TestSupport::bytesOf(file().string() + ".corrupt"), "{ half a");
}

TEST_F(Ledger, ShowsNoControlCharactersToATerminal) {
    fellow("add", "a\x1B[2Jb\n");
    EXPECT_THAT(listed(), AllOf(HasSubstr("a [2Jb"), Not(HasSubstr("\x1B"))));
}

TEST_F(Ledger, ManyAtOnceLoseNothing) {
    constexpr int each = 8;
    std::vector<std::thread> writers;
    for (const char* name : {"p", "q", "r"}) {
        writers.emplace_back([this, name] {
            for (int count = 0; count < each; ++count) {
                const Answer answer = fellow("add " + std::string(name) + std::to_string(count));
                EXPECT_EQ(answer.status, 0) << answer.err;
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    const std::string all = listed() + "\n";
    for (const char* name : {"p", "q", "r"}) {
        for (int count = 0; count < each; ++count) {
            EXPECT_THAT(all, HasSubstr("[ ] " + std::string(name) + std::to_string(count) + "\n"));
        }
    }
}

TEST_F(Ledger, WaitsForAnotherProgramAndThenSaysSo) {
    fellow("add milk");
    FellowCore::PosixFileOperations files;
    const auto lock = files.tryLock(file().string() + ".lock");
    ASSERT_TRUE(lock);
    const Answer answer = fellow("add bread");
    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.err, HasSubstr("busy with the ledger; nothing was changed"));
    std::thread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        files.close(*lock);
    });
    EXPECT_EQ(fellow("add bread").status, 0) << "a save that ends is waited for";
    release.join();
    EXPECT_THAT(listed(), HasSubstr("[ ] bread"));
}

} // namespace
