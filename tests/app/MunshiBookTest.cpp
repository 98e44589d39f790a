#include "tests/app/MunshiHarness.h"

namespace MunshiHarness {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(MunshiBookTest, WhatIsWrittenIsInTheFileAndNothingElseIs) {
    BookDesk at;
    ASSERT_TRUE(at.opened());
    EXPECT_EQ(at.other.lines(), "no file") << "a book that nobody wrote in needs no file";
    EXPECT_FALSE(at.book->add(QStringLiteral(" - ")));
    EXPECT_TRUE(at.book->add(QStringLiteral("- the plumber\ncomes")));
    EXPECT_TRUE(at.book->add(QStringLiteral("milk")));
    at.book->setDone(at.item("milk").id, true);
    EXPECT_TRUE(at.filed("[x] milk|- the plumber comes"));
    at.make();
    ASSERT_TRUE(at.opened());
    EXPECT_EQ(at.today(), "[x] milk|- the plumber comes");
    EXPECT_THAT(at.told, IsEmpty());
}

TEST(MunshiBookTest, LinesWrittenBeforeTheFileIsReadJoinIt) {
    BookDesk at;
    at.other.change([](MunshiLedger& ledger) { ledger.keepDays = 7; });
    at.other.add("older");
    at.book->add(QStringLiteral("quick"));
    ASSERT_TRUE(at.opened());
    EXPECT_TRUE(waitUntil([&] { return at.other.held().today.size() == 2; }));
    EXPECT_THAT(at.other.lines(), testing::AllOf(HasSubstr("older"), HasSubstr("quick")));
    EXPECT_EQ(at.other.held().keepDays, 7)
        << "settings that were never looked at overwrote those of the file";
}

TEST(MunshiBookTest, EndingSavesWithoutAnEventLoop) {
    BookDesk at;
    at.book->open();
    at.book->add(QStringLiteral("last words"));
    at.book.reset();
    EXPECT_EQ(at.other.lines(), "[ ] last words");
}

TEST(MunshiBookTest, TwoProgramsLoseNothingOfEachOther) {
    BookDesk at;
    ASSERT_TRUE(at.opened());
    MunshiBook second(at.desk.services, [] { return Calendar::utc(); });
    second.open();
    for (int number = 0; number < 20; ++number) {
        at.book->add(QStringLiteral("one %1").arg(number));
        second.add(QStringLiteral("two %1").arg(number));
        Testing::runFor(number % 4);
    }
    EXPECT_TRUE(waitUntil([&] {
        return at.book->ledger().today.size() == 40 && at.book->ledger().today == second.ledger().today;
    })) << at.today();
    EXPECT_TRUE(waitUntil([&] { return at.other.held().today.size() == 40; }));
    EXPECT_THAT(at.told, IsEmpty());
}

TEST(MunshiBookTest, WhatAnotherProgramDoesIsSeenHoweverItWrites) {
    BookDesk at;
    ASSERT_TRUE(at.opened());
    at.other.add("from fellow");
    EXPECT_TRUE(waitUntil([&] { return at.today() == "[ ] from fellow"; }));
    // An editor that writes in place takes no lock and renames nothing.
    MunshiLedger edited = at.other.held();
    edited.today[0].text = "from an editor";
    TestSupport::writeBytes(at.other.url(), MunshiStore::encoded(edited));
    EXPECT_TRUE(waitUntil([&] { return at.today() == "[ ] from an editor"; })) << at.today();
    // Half a file is no news, and is neither taken over nor overwritten before there is something to save.
    TestSupport::writeBytes(at.other.url(), "{\"today\": [");
    Testing::runFor(100);
    EXPECT_EQ(at.today(), "[ ] from an editor");
    at.book->add(QStringLiteral("mine"));
    EXPECT_TRUE(waitUntil([&] { return !at.told.empty(); }));
    EXPECT_THAT(at.told, ElementsAre(HasSubstr("was moved to")));
    EXPECT_TRUE(at.filed("[ ] from an editor|[ ] mine"));
}

TEST(MunshiBookTest, AChoiceBetweenTwoTextsIsTold) {
    BookDesk at;
    ASSERT_TRUE(at.opened());
    at.book->add(QStringLiteral("tea"));
    at.filed("[ ] tea");
    at.diskIsFull(true); // so that both stand unmerged
    at.book->edit(at.item("tea").id, QStringLiteral("green tea"));
    EXPECT_TRUE(waitUntil([&] { return !at.book->trouble().isEmpty(); }));
    at.other.change([](MunshiLedger& ledger) { ledger.today[0].text = "black tea"; });
    at.diskIsFull(false);
    EXPECT_TRUE(waitUntil([&] { return at.book->trouble().isEmpty(); }));
    EXPECT_THAT(at.other.lines(), testing::AllOf(HasSubstr("green tea"), HasSubstr("black tea")));
    EXPECT_THAT(at.told, ElementsAre(HasSubstr("both lines are kept")));
}

TEST(MunshiBookTest, AFullDiskIsToldAndTriedAgainUntilThereIsRoom) {
    BookDesk at;
    ASSERT_TRUE(at.opened());
    at.diskIsFull(true);
    at.book->add(QStringLiteral("kept"));
    EXPECT_TRUE(waitUntil([&] { return !at.book->trouble().isEmpty(); }));
    EXPECT_THAT(at.book->trouble().toStdString(), HasSubstr("No space left on device"));
    EXPECT_EQ(at.today(), "[ ] kept");
    const int before = at.desk.files.calls;
    EXPECT_TRUE(waitUntil([&] { return at.desk.files.calls > before + 2; })) << "it is not tried again";
    at.diskIsFull(false);
    EXPECT_TRUE(at.filed("[ ] kept"));
    EXPECT_TRUE(waitUntil([&] { return at.book->trouble().isEmpty(); }));
    const int after = at.desk.files.calls;
    Testing::runFor(300);
    EXPECT_LE(at.desk.files.calls, after + 3) << "a saved book is saved again and again";
}

TEST(MunshiBookTest, ACorruptFileIsMovedAsideAndToldOnce) {
    BookDesk at;
    std::filesystem::create_directories(at.other.url().parent_path());
    TestSupport::writeBytes(at.other.url(), "not a ledger");
    ASSERT_TRUE(at.opened());
    EXPECT_THAT(at.told, ElementsAre(HasSubstr("could not be understood")));
    at.book->add(QStringLiteral("fresh"));
    EXPECT_TRUE(at.filed("[ ] fresh"));
    EXPECT_EQ(TestSupport::bytesOf(at.other.url().string() + ".corrupt"), "not a ledger");
    EXPECT_EQ(at.told.size(), 1U);
}

TEST(MunshiBookTest, UndoLastsUntilTheNextEdit) {
    using Act = std::function<void(BookDesk&)>;
    struct Case {
        const char* fault;
        Act act;
        bool stays;
    };
    const Case cases[] = {
        {"adding keeps it", [](BookDesk& at) { at.book->add(QStringLiteral("c")); }, false},
        {"checking off keeps it", [](BookDesk& at) { at.book->setDone(at.item("b").id, true); }, false},
        {"rewriting keeps it", [](BookDesk& at) { at.book->edit(at.item("b").id, QStringLiteral("x")); },
         false},
        {"a setting keeps it", [](BookDesk& at) { at.book->setCarryOver(false); }, false},
        {"erasing keeps it", [](BookDesk& at) { at.book->eraseEverything(); }, false},
        {"a move to nowhere forgets it", [](BookDesk& at) { at.book->move(at.item("b").id, 1); }, true},
        {"an empty line forgets it", [](BookDesk& at) { at.book->add(QStringLiteral("-")); }, true},
        {"another program's line forgets it",
         [](BookDesk& at) {
             at.other.add("d");
             EXPECT_TRUE(waitUntil([&] { return at.book->ledger().today.size() == 2; }));
         },
         true},
        {"midnight forgets it",
         [](BookDesk& at) {
             at.desk.system.time.advance(untilMidnight);
             at.book->timeChanged();
         },
         true},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.fault);
        BookDesk at;
        ASSERT_TRUE(at.opened());
        at.book->add(QStringLiteral("a"));
        at.book->add(QStringLiteral("b"));
        at.filed("[ ] a|[ ] b");
        at.book->remove(at.item("a").id);
        at.filed("[ ] b");
        each.act(at);
        EXPECT_EQ(at.book->deleted().has_value(), each.stays);
        at.book->undo();
        at.book->undo();
        const auto& ledger = at.book->ledger();
        const auto everywhere = lines(ledger.today) + lines(ledger.history);
        EXPECT_EQ(everywhere.find("[ ] a") != std::string::npos, each.stays);
        EXPECT_EQ(everywhere.find("[ ] a"), everywhere.rfind("[ ] a")) << "undone twice";
    }
}

TEST(MunshiBookTest, TheDayTurnsOverAtMidnightByItself) {
    BookDesk at;
    at.desk.system.time.advance(untilMidnight - 0.3);
    ASSERT_TRUE(at.opened());
    at.book->add(QStringLiteral("open"));
    at.book->add(QStringLiteral("- note"));
    at.book->remove(at.item("note").id);
    at.desk.system.time.run();
    EXPECT_TRUE(waitUntil([&] { return at.book->ledger().currentDay == secondDay; }));
    EXPECT_TRUE(waitUntil([&] { return at.other.held().currentDay == secondDay; })) << "not saved";
    EXPECT_EQ(at.item("open").carriedFrom, firstDay);
    at.book->undo();
    EXPECT_EQ(lines(at.book->ledger().history), "- note") << "undo brought yesterday's line into today";
}

TEST(MunshiBookTest, ASleepOrAnotherTimeZoneMayPassMidnight) {
    BookDesk at;
    ASSERT_TRUE(at.opened());
    at.calendar = Calendar::inTimeZone("Pacific/Kiritimati").value(); // 20:13 on the same day
    at.book->timeChanged();
    EXPECT_EQ(at.book->ledger().currentDay, firstDay);
    at.desk.system.time.advance(4 * 60 * 60);
    at.book->timeChanged();
    EXPECT_EQ(at.book->ledger().currentDay, secondDay);
    at.desk.system.time.setWall(-24.0 * 60 * 60);
    at.book->timeChanged();
    EXPECT_EQ(at.book->ledger().currentDay, firstDay) << "a clock that was set back";
}

TEST(MunshiBookTest, ALineThatWentAwayWhileItWasEditedIsWrittenAnew) {
    BookDesk at;
    ASSERT_TRUE(at.opened());
    at.book->add(QStringLiteral("- thought"));
    const auto id = at.item("thought").id;
    at.desk.system.time.advance(untilMidnight);
    at.book->edit(id, QStringLiteral("- a longer thought"));
    EXPECT_EQ(at.today(), "- a longer thought");
    EXPECT_EQ(lines(at.book->ledger().history), "- thought");
    EXPECT_THAT(at.told, ElementsAre(HasSubstr("your words stand in a new one")));
}

TEST(MunshiBookTest, DroppedTextIsTakenLineByLineUpToALimit) {
    BookDesk at;
    ASSERT_TRUE(at.opened());
    auto added = at.book->addLines(QStringLiteral("one\n\n  - two \r\n-\nthree"));
    EXPECT_EQ(added.lines, 3U);
    EXPECT_FALSE(added.more);
    EXPECT_EQ(at.today(), "[ ] one|[ ] three|- two");
    added = at.book->addLines(QStringLiteral("line\n").repeated(60));
    EXPECT_EQ(added.lines, MunshiBook::mostLinesAtOnce);
    EXPECT_TRUE(added.more);
    EXPECT_EQ(at.book->addLines(QStringLiteral(" \n-\n")).lines, 0U);
}

} // namespace
} // namespace MunshiHarness
