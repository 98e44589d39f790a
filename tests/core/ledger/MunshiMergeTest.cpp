#include "core/ledger/MunshiMerge.h"

#include "core/ledger/MunshiStore.h"
#include "tests/core/ledger/LedgerScript.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace FellowCore {
namespace {

using Kind = MunshiMergeChoice::Kind;
using Change = void (*)(LedgerScript&);

LedgerScript common() {
    LedgerScript script;
    return script.add("a").add("b").add("c").add("- n");
}

/// What comes of two changes to the same ledger, seen at a later moment.
MunshiMerge merged(Change mine, Change theirs, const char* now = "2026-03-01T10:00:00Z") {
    const LedgerScript base = common();
    LedgerScript left = base;
    LedgerScript right = base;
    left.lastId = 100;
    right.lastId = 200;
    mine(left);
    theirs(right);
    return mergeLedgers(base.ledger, left.ledger, right.ledger, at(now), base.calendar);
}

const Change nothing = [](LedgerScript&) {};

TEST(MunshiMerge, KeepsWhatEitherDid) {
    const struct {
        const char* fault;
        Change mine;
        Change theirs;
        const char* result;
    } cases[] = {
        {"both added", [](LedgerScript& s) { s.add("mine").add("- my note"); },
         [](LedgerScript& s) { s.add("theirs").add("- their note"); },
         "[ ] a; [ ] b; [ ] c; [ ] mine; [ ] theirs; - n; - my note; - their note |"},
        {"one checked off, one rewrote the same line", [](LedgerScript& s) { s.done("b"); },
         [](LedgerScript& s) { s.edit("b", "B"); }, "[ ] a; [x] B; [ ] c; - n |"},
        {"both checked off the same", [](LedgerScript& s) { s.done("b"); },
         [](LedgerScript& s) { s.now = s.now + 5, s.done("b"); }, "[ ] a; [x] b; [ ] c; - n |"},
        {"one deleted what the other left", [](LedgerScript& s) { s.erase("a"); },
         [](LedgerScript& s) { s.erase("n").add("d"); }, "[ ] b; [ ] c; [ ] d |"},
        {"one moved, one added", [](LedgerScript& s) { s.move("c", -2); },
         [](LedgerScript& s) { s.add("d"); }, "[ ] c; [ ] d; [ ] a; [ ] b; - n |"},
        {"they moved, I deleted", [](LedgerScript& s) { s.erase("b"); },
         [](LedgerScript& s) { s.move("c", -2); }, "[ ] c; [ ] a; - n |"},
        {"everything erased but the new", [](LedgerScript& s) { s.ledger.eraseEverything(); },
         [](LedgerScript& s) { s.add("d"); }, "[ ] d |"},
        {"settings of one, lines of the other", [](LedgerScript& s) { s.ledger.keepDays = 7; },
         [](LedgerScript& s) { s.ledger.carryOver = false; }, "[ ] a; [ ] b; [ ] c; - n |"},
    };
    for (const auto& row : cases) {
        const MunshiMerge merge = merged(row.mine, row.theirs);
        // Which of two neighbours that both added comes first is nobody's business.
        std::string result = shown(merge.ledger);
        for (const auto& [one, other] : {std::pair{"[ ] theirs; [ ] mine", "[ ] mine; [ ] theirs"},
                                         std::pair{"- their note; - my note", "- my note; - their note"}}) {
            if (const auto found = result.find(one); found != std::string::npos) {
                result.replace(found, std::string_view(one).size(), other);
            }
        }
        EXPECT_EQ(result, row.result) << row.fault;
        EXPECT_TRUE(merge.choices.empty()) << row.fault << ": " << merge.choices.at(0).sentence();
    }
    const MunshiLedger settings = merged([](LedgerScript& s) { s.ledger.keepDays.reset(); },
                                         [](LedgerScript& s) { s.ledger.carryOver = false; })
                                      .ledger;
    EXPECT_FALSE(settings.keepDays || settings.carryOver);
}

TEST(MunshiMerge, TellsWhereItHadToChoose) {
    const struct {
        const char* fault;
        Change mine;
        Change theirs;
        const char* result;
        MunshiMergeChoice choice;
    } cases[] = {
        {"one line written in two ways",
         [](LedgerScript& s) { s.edit("b", "mine"); },
         [](LedgerScript& s) { s.edit("b", "theirs").done("theirs"); },
         "[ ] a; [x] mine; [x] theirs; [ ] c; - n |",
         {Kind::keptBothTexts, "mine"}},
        {"changed here, deleted there",
         [](LedgerScript& s) { s.done("b"); },
         [](LedgerScript& s) { s.erase("b"); },
         "[ ] a; [x] b; [ ] c; - n |",
         {Kind::keptChanged, "b"}},
        {"deleted here, changed there",
         [](LedgerScript& s) { s.erase("b"); },
         [](LedgerScript& s) { s.edit("b", "B"); },
         "[ ] a; [ ] B; [ ] c; - n |",
         {Kind::keptChanged, "B"}},
        {"a note here, done there",
         [](LedgerScript& s) { s.edit("b", "- b"); },
         [](LedgerScript& s) { s.done("b"); },
         "[ ] a; - b; [ ] c; - n |",
         {Kind::keptNote, "b"}},
        {"moved in both",
         [](LedgerScript& s) { s.move("a", 1); },
         [](LedgerScript& s) { s.move("a", 2); },
         "[ ] b; [ ] a; [ ] c; - n |",
         {Kind::keptOrder, ""}},
        {"one setting, two values",
         [](LedgerScript& s) { s.ledger.keepDays = 7; },
         [](LedgerScript& s) { s.ledger.keepDays = 90; },
         "[ ] a; [ ] b; [ ] c; - n |",
         {Kind::keptSettings, ""}},
    };
    for (const auto& row : cases) {
        const MunshiMerge merge = merged(row.mine, row.theirs);
        EXPECT_EQ(shown(merge.ledger), row.result) << row.fault;
        EXPECT_THAT(merge.choices, testing::ElementsAre(row.choice)) << row.fault;
        EXPECT_THAT(row.choice.sentence(), testing::HasSubstr(row.choice.text)) << row.fault;
    }
}

TEST(MunshiMerge, MidnightSeenByOneOnlyChangesNothing) {
    const Change late = [](LedgerScript& s) { s.done("a").on("2026-03-02").done("b").add("new"); };
    const char* const tomorrow = "2026-03-02T12:00:00Z";
    const std::string expected = "[x] b <2026-03-01; [ ] c <2026-03-01; [ ] new | "
                                 "2026-03-01 - n; 2026-03-01 [x] a;";
    EXPECT_EQ(shown(merged(nothing, late, tomorrow).ledger), expected);
    EXPECT_EQ(shown(merged(late, nothing, tomorrow).ledger), expected);
    const MunshiMerge both = merged([](LedgerScript& s) { s.edit("c", "C"); }, late, tomorrow);
    EXPECT_EQ(shown(both.ledger), "[x] b <2026-03-01; [ ] C <2026-03-01; [ ] new | "
                                  "2026-03-01 - n; 2026-03-01 [x] a;");
    EXPECT_TRUE(both.choices.empty());
}

TEST(MunshiMerge, WithoutACommonBeginningNothingIsDropped) {
    LedgerScript left;
    left.add("mine");
    LedgerScript right;
    right.add("theirs").add("second"); // the same identity as "mine", with another text
    const MunshiMerge merge = mergeLedgers(MunshiLedger(left.now, left.calendar), left.ledger, right.ledger,
                                           left.now, left.calendar);
    EXPECT_EQ(shown(merge.ledger), "[ ] mine; [ ] theirs; [ ] second |");
    EXPECT_EQ(shown(mergeLedgers({}, left.ledger, left.ledger, left.now, left.calendar).ledger),
              "[ ] mine |");
}

/// A few edits at random that any of the programs may make.
void edit(LedgerScript& script, std::mt19937& random, const std::string& name) {
    const int edits = static_cast<int>(random() % 6);
    for (int count = 0; count < edits; ++count) {
        const std::size_t size = script.ledger.today.size();
        const Uuid id = size > 0 ? script.ledger.today[random() % size].id : Uuid{};
        switch (random() % 6) {
        case 0:
        case 1:
            script.add((random() % 3 == 0 ? "- " : "") + name + std::to_string(script.lastId));
            break;
        case 2:
            script.ledger.setDone(id, random() % 2 == 0, script.now);
            break;
        case 3:
            script.ledger.edit(id, name + "'" + std::to_string(++script.lastId));
            break;
        case 4:
            script.ledger.deleteItem(id);
            break;
        default:
            script.ledger.move(id, static_cast<std::int64_t>(random() % 7) - 3);
        }
    }
}

std::set<std::string> textsOf(const MunshiLedger& ledger) {
    std::set<std::string> texts;
    for (const auto* const list : {&ledger.today, &ledger.history}) {
        for (const MunshiItem& item : *list) {
            texts.insert(item.text);
        }
    }
    return texts;
}

TEST(MunshiMerge, AtRandomNoNewTextIsEverLostAndNothingDoubled) {
    std::mt19937 random(20260301);
    LedgerScript base;
    base.ledger.keepDays.reset();
    for (int round = 0; round < 400; ++round) {
        LedgerScript left = base;
        LedgerScript right = base;
        left.lastId = static_cast<std::uint32_t>(20 * round + 10);
        right.lastId = left.lastId + 10;
        right.now = right.now + static_cast<double>(random() % 2) * 50000;
        edit(left, random, "l");
        edit(right, random, "r");
        const MunshiLedger ledger =
            mergeLedgers(base.ledger, left.ledger, right.ledger, right.now, base.calendar).ledger;
        const std::set<std::string> before = textsOf(base.ledger);
        const std::set<std::string> after = textsOf(ledger);
        for (const auto* const side : {&left.ledger, &right.ledger}) {
            for (const std::string& text : textsOf(*side)) {
                ASSERT_TRUE(before.contains(text) || after.contains(text)) << round << ": lost " << text;
            }
        }
        for (const std::string& text : after) {
            ASSERT_TRUE(before.contains(text) || textsOf(left.ledger).contains(text) ||
                        textsOf(right.ledger).contains(text));
        }
        ASSERT_EQ(after.size(), ledger.today.size() + ledger.history.size()) << round << ": doubled";
        ASSERT_EQ(MunshiStore::decoded(MunshiStore::encoded(ledger)), MunshiStore::asStored(ledger));
        ASSERT_EQ(mergeLedgers(base.ledger, base.ledger, ledger, right.now, base.calendar).ledger, ledger);
        ASSERT_EQ(mergeLedgers(base.ledger, ledger, base.ledger, right.now, base.calendar).ledger, ledger);
        base.ledger = ledger;
        base.now = right.now + static_cast<double>(random() % 3) * 20000;
        if (round % 50 == 49) {
            base.ledger.eraseEverything();
        }
    }
}

} // namespace
} // namespace FellowCore
