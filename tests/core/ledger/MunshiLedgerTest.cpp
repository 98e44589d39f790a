#include "core/ledger/MunshiLedger.h"

#include "tests/core/ledger/LedgerScript.h"

#include <gmock/gmock.h>

#include <limits>

namespace FellowCore {
namespace {

using ::testing::IsEmpty;

constexpr auto farthest = std::numeric_limits<std::int64_t>::max();

TEST(MunshiLedger, StartsEmptyWithItsDefaults) {
    const LedgerScript script;
    EXPECT_EQ(script.ledger.currentDay, "2026-03-01");
    EXPECT_EQ(script.ledger.keepDays, 30);
    EXPECT_TRUE(script.ledger.carryOver);
    EXPECT_EQ(script.ledger.countLabel(), "0");
    EXPECT_EQ(script.ledger.tooltip(), "Nothing for today");
    EXPECT_FALSE(script.ledger.allDone()) << "nothing done is not all done";
}

TEST(MunshiLedger, CollectsTasksAboveNotesAndDoneItems) {
    LedgerScript script;
    script.add("one").add("two").add("- note").add("ready").done("ready").add("three");
    EXPECT_EQ(shown(script.ledger.today), "[ ] one; [ ] two; [ ] three; [x] ready; - note");
    EXPECT_EQ(shown(script.ledger.openTasks()), "[ ] one; [ ] two; [ ] three");
    EXPECT_EQ(shown(script.ledger.notes()), "- note");
    EXPECT_EQ(shown(script.ledger.doneToday()), "[x] ready");

    LedgerScript none;
    none.add("- note").add("ready").done("ready").add("first").add("- last");
    EXPECT_EQ(shown(none.ledger.today), "[ ] first; [x] ready; - note; - last") << "no open task: at the top";

    LedgerScript apart;
    apart.add("one").add("two").move("two", 9).add("- note").move("two", 9).add("three");
    EXPECT_EQ(shown(apart.ledger.today), "[ ] one; - note; [ ] two; [ ] three")
        << "behind the last open task";
}

TEST(MunshiLedger, AnItemKnowsWhenItWasWritten) {
    LedgerScript script;
    const auto item = script.ledger.add("milk", script.now, script.calendar, script.ids());
    ASSERT_TRUE(item);
    EXPECT_EQ(*item, script.ledger.today.at(0));
    EXPECT_EQ(item->createdAt, script.now);
    EXPECT_EQ(item->day, "2026-03-01");
    EXPECT_FALSE(item->carriedFrom || item->doneAt || item->done);
    const auto tomorrow = script.ledger.add("later", script.now + 86400, script.calendar, script.ids());
    EXPECT_EQ(tomorrow->day, "2026-03-02") << "added past midnight before anyone looked";
    EXPECT_EQ(script.ledger.today.at(0).day, "2026-03-02");
    EXPECT_FALSE(script.ledger.add("-", script.now + 2 * 86400, script.calendar, script.ids()));
    EXPECT_EQ(script.ledger.currentDay, "2026-03-03") << "even nothing turns the day over";
}

TEST(MunshiLedger, CountsAndTellsWhatIsNext) {
    LedgerScript script;
    script.add("- a note").add("milk").add("bread");
    EXPECT_EQ(script.ledger.tooltip(), "2 open \u00B7 next: milk");
    EXPECT_EQ(script.done("milk").ledger.tooltip(), "1 open \u00B7 next: bread");
    EXPECT_FALSE(script.ledger.allDone());
    EXPECT_EQ(script.done("bread").ledger.tooltip(), "All done for today");
    EXPECT_TRUE(script.ledger.allDone());
    for (int count = 1; count <= 10; ++count) {
        script.add("task " + std::to_string(count));
        EXPECT_EQ(script.ledger.countLabel(), count > 9 ? "9+" : std::to_string(count));
    }
}

TEST(MunshiLedger, ChecksOffTasksOnly) {
    LedgerScript script;
    script.add("milk").add("- note").done("note").done("milk");
    EXPECT_EQ(script.ledger.today.at(0).doneAt, script.now);
    script.now = script.now + 60;
    script.done("milk");
    EXPECT_EQ(script.ledger.today.at(0).doneAt, script.now - 60) << "done twice keeps the first time";
    script.done("milk", false);
    EXPECT_EQ(shown(script.ledger.today), "[ ] milk; - note");
    EXPECT_FALSE(script.ledger.today.at(0).doneAt);
    const MunshiLedger before = script.ledger;
    script.ledger.setDone(randomUuid(), true, script.now);
    EXPECT_EQ(script.ledger, before);
}

TEST(MunshiLedger, EditingDecidesTheKindAnew) {
    LedgerScript script;
    script.add("milk").done("milk").add("- note");
    const Uuid milk = script.id("milk");
    EXPECT_FALSE(script.ledger.edit(milk, " - "));
    EXPECT_EQ(shown(script.ledger.today), "[x] milk; - note") << "an empty edit leaves it alone";
    EXPECT_TRUE(script.ledger.edit(milk, "milk"));
    EXPECT_TRUE(script.ledger.edit(milk, "cream\n"));
    EXPECT_EQ(shown(script.ledger.today), "[x] cream; - note") << "a new text is as done as the old";
    EXPECT_TRUE(script.ledger.edit(milk, "- cream"));
    EXPECT_EQ(shown(script.ledger.today), "- cream; - note");
    EXPECT_FALSE(script.ledger.today.at(0).doneAt) << "a note is not done";
    EXPECT_TRUE(script.ledger.edit(milk, "cream"));
    EXPECT_EQ(shown(script.ledger.today), "[ ] cream; - note") << "and a task again is still to do";
    EXPECT_FALSE(script.ledger.edit(randomUuid(), "x"));
}

TEST(MunshiLedger, MovesAsFarAsTheListGoes) {
    const struct {
        const char* fault;
        const char* what;
        std::int64_t by;
        bool moves;
        const char* order;
    } cases[] = {
        {"down by one", "a", 1, true, "[ ] b; [ ] a; [ ] c"},
        {"to the end", "a", 2, true, "[ ] b; [ ] c; [ ] a"},
        {"beyond the end", "a", farthest, true, "[ ] b; [ ] c; [ ] a"},
        {"up by one", "c", -1, true, "[ ] a; [ ] c; [ ] b"},
        {"beyond the top", "c", -farthest - 1, true, "[ ] c; [ ] a; [ ] b"},
        {"the top stays", "a", -1, false, "[ ] a; [ ] b; [ ] c"},
        {"the end stays", "c", 7, false, "[ ] a; [ ] b; [ ] c"},
        {"by nothing", "b", 0, false, "[ ] a; [ ] b; [ ] c"},
    };
    for (const auto& row : cases) {
        LedgerScript script;
        script.add("a").add("b").add("c");
        EXPECT_EQ(script.ledger.move(script.id(row.what), row.by), row.moves) << row.fault;
        EXPECT_EQ(shown(script.ledger.today), row.order) << row.fault;
    }
    EXPECT_FALSE(LedgerScript().ledger.move(randomUuid(), 1));
}

TEST(MunshiLedger, UndoPutsAnItemWhereItBelongs) {
    LedgerScript script;
    script.add("a").add("b").add("c");
    EXPECT_FALSE(script.ledger.deleteItem(randomUuid()));
    const auto deleted = script.ledger.deleteItem(script.id("b"));
    ASSERT_TRUE(deleted);
    EXPECT_EQ(deleted->index, 1);
    const auto index = static_cast<std::int64_t>(deleted->index);
    script.ledger.restore(deleted->item, index);
    script.ledger.restore(deleted->item, index);
    EXPECT_EQ(shown(script.ledger), "[ ] a; [ ] b; [ ] c |") << "undone twice stands once";

    const auto again = script.ledger.deleteItem(script.id("b"));
    script.ledger.restore(again->item, farthest);
    EXPECT_EQ(shown(script.ledger), "[ ] a; [ ] c; [ ] b |");
    const auto lastTime = script.ledger.deleteItem(script.id("b"));
    script.ledger.carryOver = false;
    script.on("2026-03-02");
    script.ledger.restore(lastTime->item, -5);
    EXPECT_EQ(shown(script.ledger), " | 2026-03-01 [ ] b; 2026-03-01 [ ] c; 2026-03-01 [ ] a;")
        << "after midnight it belongs to the day before";
    script.ledger.restore(lastTime->item, 0);
    EXPECT_EQ(script.ledger.history.size(), 3);
}

TEST(MunshiLedger, FindsWhateverTheCase) {
    LedgerScript script;
    script.add("Buy MILK")
        .done("Buy MILK")
        .on("2026-03-02")
        .add("milk again")
        .add("\u00C9clair")
        .add("bread");
    const struct {
        const char* fault;
        const char* query;
        const char* found;
    } cases[] = {
        {"today comes first", " milk ", "[ ] milk again; [x] Buy MILK"},
        {"beyond ASCII", "\u00E9CLAIR", "[ ] \u00C9clair"},
        {"a part of a word", "REA", "[ ] bread"},
        {"nothing asked, nothing found", " \t", ""},
        {"not there", "milk bread", ""},
        {"bytes that are no text", "\xFF", ""},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(shown(script.ledger.search(row.query)), row.found) << row.fault;
    }
}

TEST(MunshiLedger, WritesADayAsMarkdown) {
    LedgerScript script;
    script.ledger.carryOver = false;
    EXPECT_EQ(script.ledger.markdown(), "## 2026-03-01");
    script.add("a").add("b").done("b").add("- c").on("2026-03-02").add("d");
    EXPECT_EQ(script.ledger.markdown("2026-03-01"), "## 2026-03-01\n- [ ] a\n- [x] b\n- c")
        << "in the day's own order";
    EXPECT_EQ(script.ledger.markdown(), "## 2026-03-02\n- [ ] d");
    EXPECT_EQ(script.ledger.markdown("2026-03-02"), script.ledger.markdown());
    EXPECT_EQ(script.ledger.markdown("1999-01-01"), "## 1999-01-01");
}

TEST(MunshiLedger, ErasesTheLinesAndNotTheSettings) {
    LedgerScript script;
    script.add("- a").on("2026-03-05").add("b");
    script.ledger.keepDays.reset();
    script.ledger.carryOver = false;
    script.ledger.eraseEverything();
    EXPECT_EQ(shown(script.ledger), " |");
    EXPECT_EQ(script.ledger.lastGapDays, 3);
    EXPECT_EQ(script.ledger.currentDay, "2026-03-05");
    EXPECT_FALSE(script.ledger.carryOver || script.ledger.keepDays);
    EXPECT_THAT(script.ledger.historyDays(), IsEmpty());
}

} // namespace
} // namespace FellowCore
