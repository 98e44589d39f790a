#include "app/characters/pump/PumpPanel.h"
#include "app/characters/pump/PumpSessionList.h"
#include "app/characters/pump/PumpSessionRow.h"
#include "tests/app/PumpHarness.h"

#include <QMenu>
#include <QPushButton>

namespace PumpHarness {
namespace {

using enum PumpAgentPhase;
using testing::ElementsAre;
using testing::IsEmpty;
using Testing::runFor;

class PumpAbilityTest : public testing::Test {
protected:
    PumpAbilityTest() {
        desk.connectAgent(PumpProvider::claude);
        desk.setLeft(62.5);
    }

    void write(PumpAgentPhase phase, const std::string& session) {
        desk.write(desk.line(PumpProvider::claude, phase, session, 0));
    }
    std::optional<std::string> lamp() const { return desk.ability->look().lamp; }

    PumpDesk desk;
};

TEST_F(PumpAbilityTest, TheGaugeFollowsTheReadingAndItsDigitsRollOnlyForAMoment) {
    EXPECT_EQ(desk.ability->look().digits, QStringLiteral("---"));
    desk.system.time.run();
    ASSERT_TRUE(desk.comeOut());
    EXPECT_EQ(desk.ability->look().digits, QStringLiteral(" 62"));
    EXPECT_EQ(desk.ability->look().gauge.tankFraction, 0.625);
    EXPECT_EQ(desk.ability->badge(), QStringLiteral("62%"));
    ASSERT_TRUE(waitUntil([&] { return desk.ability->look().rows == 7; }));
    desk.setLeft(4);
    desk.ability->usage().refresh();
    ASSERT_TRUE(waitUntil([&] { return desk.ability->look().digits == QStringLiteral("  4"); }));
    EXPECT_LT(desk.ability->look().rows, 7);
    EXPECT_EQ(desk.ability->look().oldDigits, QStringLiteral(" 62"));
    desk.system.wish.reduced = true;
    desk.pump->motionChanged();
    EXPECT_EQ(desk.ability->look().rows, 7) << "a roll ends with the wish for less motion";
}

TEST_F(PumpAbilityTest, ASessionThatCallsShowsTheCueUntilItIsAnswered) {
    write(needsYou, "old");
    ASSERT_TRUE(desk.comeOut());
    EXPECT_FALSE(desk.ability->cue().isPresented()) << "it called before the program started";
    write(needsYou, "s");
    ASSERT_TRUE(waitUntil([&] { return desk.ability->cue().isPresented(); }));
    EXPECT_EQ(desk.ability->cue().cueKey(), "claude:s");
    EXPECT_THAT(desk.sounds, ElementsAre("pumpNeedsYou"));
    EXPECT_EQ(desk.ability->statusOverride(), QStringLiteral("Claude needs you in parser"));
    EXPECT_EQ(desk.pump->attachments().size(), 1U);
    write(working, "s");
    EXPECT_TRUE(waitUntil([&] { return !desk.ability->cue().isPresented(); }));
}

TEST_F(PumpAbilityTest, AClickPutsTheCueAway) {
    ASSERT_TRUE(desk.comeOut());
    EXPECT_FALSE(desk.ability->clicked()) << "with nothing open the quick actions are wanted";
    write(needsYou, "s");
    ASSERT_TRUE(waitUntil([&] { return desk.ability->cue().isPresented(); }));
    EXPECT_TRUE(desk.ability->clicked());
    EXPECT_FALSE(desk.ability->cue().isPresented());
    EXPECT_THAT(desk.pump->attachments(), IsEmpty());
}

TEST_F(PumpAbilityTest, TheLampTellsTheMostUrgentAndOnlyRedBlinks) {
    ASSERT_TRUE(desk.comeOut());
    EXPECT_EQ(lamp(), std::nullopt);
    write(working, "a");
    EXPECT_TRUE(waitUntil([&] { return lamp() == "lamp-amber"; }));
    write(done, "b");
    EXPECT_TRUE(waitUntil([&] { return lamp() == "lamp-green"; }));
    write(needsYou, "c");
    EXPECT_TRUE(waitUntil([&] { return lamp() == "lamp-red"; }));
    desk.system.time.advance(0.25);
    EXPECT_EQ(lamp(), "lamp-red-dim");
    desk.system.wish.reduced = true;
    desk.pump->motionChanged();
    EXPECT_EQ(lamp(), "lamp-red");
}

TEST_F(PumpAbilityTest, HidingEndsEverythingThatIsOpenAndEveryReading) {
    ASSERT_TRUE(desk.comeOut());
    write(needsYou, "s");
    ASSERT_TRUE(waitUntil([&] { return desk.ability->cue().isPresented(); }));
    desk.pump->deactivate();
    EXPECT_FALSE(desk.ability->cue().isPresented());
    write(needsYou, "t");
    runFor(150);
    EXPECT_EQ(desk.ability->agents().sessions().size(), 1U);
    EXPECT_EQ(desk.sounds.size(), 1U);
}

TEST_F(PumpAbilityTest, ThePanelListsSessionsAndKeepsTheRowOneStandsOn) {
    write(working, "a");
    ASSERT_TRUE(desk.comeOut());
    desk.ability->togglePanel();
    ASSERT_NE(desk.ability->panel(), nullptr);
    ASSERT_TRUE(desk.ability->panel()->isPresented());
    const auto rows = [&] { return desk.ability->panel()->sessions().rows(); };
    ASSERT_EQ(rows().size(), 1U);
    PumpSessionRow* const first = rows()[0];
    EXPECT_EQ(first->accessibleName(), QStringLiteral("Claude is working in parser"));
    write(needsYou, "b");
    ASSERT_TRUE(waitUntil([&] { return rows().size() == 2; }));
    EXPECT_EQ(rows()[1], first) << "the more urgent one goes before it";
    EXPECT_FALSE(desk.ability->cue().isPresented()) << "the panel says it";
    EXPECT_EQ(desk.sounds.size(), 1U);
    first->click();
    EXPECT_FALSE(desk.ability->panel()->isPresented());
}

TEST_F(PumpAbilityTest, ItsActionsLeadToThePanelAndToSessions) {
    ASSERT_TRUE(desk.comeOut());
    const auto ids = [&] {
        Log found;
        for (const QuickAction& action : desk.ability->actions()) {
            found.push_back(action.id.toStdString());
        }
        return found;
    };
    EXPECT_THAT(ids(), ElementsAre("open", "sessions"));
    const auto empty = desk.ability->actions().back().menu();
    EXPECT_EQ(empty->actions().at(0)->text(), QStringLiteral("No sessions right now"));
    EXPECT_FALSE(empty->actions().at(0)->isEnabled());
    write(needsYou, "s");
    ASSERT_TRUE(waitUntil([&] { return ids().size() == 3; }));
    EXPECT_EQ(desk.ability->actions()[1].title, QStringLiteral("Go to parser"));
    EXPECT_EQ(desk.ability->actions()[2].menu()->actions().at(0)->text(),
              QStringLiteral("parser — Claude needs you · now"));
}

} // namespace
} // namespace PumpHarness
