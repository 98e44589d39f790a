#include "app/characters/thumka/ThumkaForm.h"
#include "app/characters/thumka/ThumkaPoseTimes.h"
#include "tests/app/ThumkaHarness.h"

namespace ThumkaHarness {
namespace {

using FellowCore::NowPlayingState;
using testing::ElementsAre;
using testing::IsEmpty;
using Testing::runFor;

class ThumkaAbilityTest : public testing::Test {
protected:
    std::string status() const { return desk.ability->statusOverride()->toStdString(); }
    std::string shown() const { return desk.thumka->pose(); }
    bool says(const char* title) {
        return waitUntil([&] { return desk.ability->title().title() == QString::fromUtf8(title); });
    }
    /// Her pose so long after now, looked at anew.
    std::string poseAfter(FellowCore::Seconds length) {
        desk.system.time.advance(length);
        desk.thumka->motionChanged();
        return shown();
    }
    Log actionIds() {
        Log ids;
        for (const QuickAction& action : desk.ability->actions()) {
            ids.push_back(action.id.toStdString() + (action.enabled ? "" : " off"));
        }
        return ids;
    }

    ThumkaDesk desk;
};

TEST(ThumkaPoseTimesTest, APoseLastsExactlyUntilTheNextIsDue) {
    NowPlayingState quiet;
    quiet.available = true;
    quiet.quietSince = {100.3};
    NowPlayingState playing = quiet;
    playing.track = FellowCore::NowPlayingTrack{.title = "Rain",
                                                .artist = {},
                                                .bundleIdentifier = {},
                                                .playing = true,
                                                .artworkData = {},
                                                .identifier = {}};
    NowPlayingState away = quiet;
    away.available = false;
    struct Case {
        const char* name;
        NowPlayingState state;
        bool reduced;
        double longest; ///< seconds between two poses
    };
    const Case cases[] = {{"dancing", playing, false, 0.5},
                          {"dancing with reduced motion", playing, true, 2},
                          {"idle, until she dozes", quiet, false, 2},
                          {"idle for ever where music cannot be followed", away, false, 2}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        for (int step = 0; step < 800; ++step) {
            const double time = 100.3 + 0.37 * step;
            const auto wait = untilNextPose(each.state, {time}, each.reduced);
            ASSERT_TRUE(wait);
            ASSERT_GT(*wait, 0);
            ASSERT_LE(*wait, each.longest + 1e-9);
            const auto pose = each.state.pose({time}, each.reduced);
            EXPECT_EQ(each.state.pose({time + *wait - 1e-6}, each.reduced), pose) << time;
            EXPECT_NE(each.state.pose({time + *wait + 1e-6}, each.reduced), pose) << time;
        }
    }
    EXPECT_FALSE(untilNextPose(quiet, {400.4}, false)) << "asleep, nothing is due";
}

TEST_F(ThumkaAbilityTest, SheDancesOnTheHalfSecondsAndNothingElseMoves) {
    desk.system.time.run();
    desk.comeOut();
    EXPECT_EQ(shown(), "idle");
    EXPECT_EQ(status(), "Nothing playing");
    ASSERT_TRUE(desk.plays());
    EXPECT_EQ(status(), "Rain — Leela");
    Log poses;
    waitUntil(
        [&] {
            if (poses.empty() || poses.back() != shown()) {
                poses.push_back(shown());
            }
            return poses.size() == 9;
        },
        6000);
    const Log dance{"dance-1", "dance-2", "dance-3", "dance-4", "dance-5", "dance-6", "dance-7", "dance-2"};
    ASSERT_EQ(poses.size(), 9U);
    const auto first = std::ranges::find(poses, "dance-7");
    ASSERT_NE(first, poses.end()) << "eight changes hold every pose";
    for (std::size_t index = 0; index + static_cast<std::size_t>(first - poses.begin()) < poses.size();
         ++index) {
        EXPECT_EQ(first[static_cast<std::ptrdiff_t>(index)], dance[(index + 6) % 8]);
    }
}

TEST_F(ThumkaAbilityTest, ItsPosesFollowTheMusicAndTheQuiet) {
    desk.comeOut();
    EXPECT_EQ(poseAfter(2.1), "idle-breathe");
    ASSERT_TRUE(desk.plays());
    EXPECT_EQ(shown().substr(0, 5), "dance");
    EXPECT_FALSE(desk.ability->canBlink()) << "closed eyes are drawn for the idle pose";
    desk.system.wish.reduced = true;
    EXPECT_EQ(poseAfter(0).substr(0, 4), "idle") << "less motion";
    desk.system.wish.reduced = false;
    ASSERT_TRUE(desk.hears(change(R"("playing":false)"), [&] { return status() == "Paused: Rain — Leela"; }));
    EXPECT_EQ(poseAfter(1), "idle");
    EXPECT_EQ(poseAfter(298.5), "idle-breathe");
    EXPECT_EQ(poseAfter(0.6), "doze");
    EXPECT_FALSE(desk.ability->canBlink());
    ASSERT_TRUE(desk.hears(change(R"("playing":true)"), [&] { return shown() != "doze"; }));
    EXPECT_EQ(shown().substr(0, 5), "dance");
    ASSERT_TRUE(desk.hears(change(R"("title":null)"), [&] { return status() == "Nothing playing"; }));
}

TEST_F(ThumkaAbilityTest, ANewPieceIsSaidForThreeSecondsAndAPauseIsNot) {
    desk.system.time.run();
    desk.comeOut();
    ASSERT_TRUE(desk.plays());
    ASSERT_TRUE(says("Rain"));
    EXPECT_EQ(desk.thumka->attachments().size(), 1U);
    const auto began = desk.system.time.monotonic();
    EXPECT_TRUE(waitUntil([&] { return !desk.ability->title().isPresented(); }, 5000));
    EXPECT_NEAR(desk.system.time.monotonic() - began, 3, 0.4);
    for (const char* playing : {"false", "true"}) {
        desk.hears(change(std::string(R"("playing":)") + playing), [] { return true; });
        runFor(80);
    }
    EXPECT_FALSE(desk.ability->title().isPresented());
    desk.helper.write(change(R"("title":"Sun")"));
    EXPECT_TRUE(says("Sun"));
    EXPECT_FALSE(desk.ability->clicked()) << "the quick actions are wanted";
    EXPECT_THAT(desk.thumka->attachments(), IsEmpty());
}

TEST_F(ThumkaAbilityTest, NothingIsSaidWhereItIsNotWanted) {
    desk.comeOut();
    ASSERT_TRUE(desk.plays());
    ASSERT_TRUE(says("Rain"));
    const auto isSilentAfter = [&](const char* title) {
        const bool heard = desk.hears(change(std::string(R"("title":")") + title + '"'),
                                      [&] { return status().starts_with(title); });
        return heard && !desk.ability->title().isPresented();
    };
    ThumkaForm form(*desk.ability);
    form.findChild<FormSwitch*>()->click();
    EXPECT_FALSE(desk.ability->title().isPresented()) << "what is said now, too";
    EXPECT_TRUE(isSilentAfter("setting off"));
    desk.ability->setSaysTitles(true);
    desk.thumka->screenLocked();
    EXPECT_TRUE(isSilentAfter("locked"));
    const std::string pose = shown();
    desk.system.time.run();
    runFor(700);
    EXPECT_EQ(shown(), pose) << "nobody sees her dance";
    desk.thumka->screenUnlocked();
    desk.ability->togglePanel();
    EXPECT_TRUE(isSilentAfter("the panel says it"));
    EXPECT_TRUE(desk.ability->clicked());
    desk.helper.write(change(R"("title":"again")"));
    EXPECT_TRUE(says("again"));
}

TEST_F(ThumkaAbilityTest, LeavingEndsTheHelperAndAllThatIsOpen) {
    desk.comeOut();
    ASSERT_TRUE(desk.plays());
    desk.ability->togglePanel();
    desk.thumka->deactivate();
    EXPECT_THAT(desk.thumka->attachments(), IsEmpty());
    EXPECT_EQ(shown(), "idle");
    EXPECT_EQ(status(), "Nothing playing");
    EXPECT_TRUE(waitUntil([&] { return !desk.helper.isAlive(); }));
    desk.system.time.advance(1000);
    desk.comeOut();
    EXPECT_EQ(shown(), "idle") << "she comes out awake";
    ASSERT_TRUE(desk.plays());
    EXPECT_TRUE(says("Rain"));
}

TEST_F(ThumkaAbilityTest, SheOffersWhatThePlayerCanDo) {
    desk.comeOut();
    EXPECT_THAT(actionIds(), ElementsAre("open"));
    ASSERT_TRUE(desk.plays(line(R"("playing":true,"canGoNext":true)")));
    EXPECT_THAT(actionIds(), ElementsAre("play", "previous off", "next", "open"));
    EXPECT_EQ(desk.ability->actions().front().title, QStringLiteral("Pause"));
    desk.ability->actions().front().onPress();
    desk.ability->actions()[2].onPress();
    EXPECT_TRUE(waitUntil([&] { return desk.helper.read("commands") == "play-pause\nnext\n"; }));
}

TEST_F(ThumkaAbilityTest, TitlesFromOutsideAreShownOnOneLineAndNotWithoutEnd) {
    desk.comeOut();
    struct Case {
        const char* fault;
        std::string title;
        std::string shown;
    };
    const Case cases[] = {
        {"a line break and a bell", R"(Ra\nin\u0007)", "Ra in — Leela"},
        {"the order of letters turned round", R"(\u202eniaR\u202c)", "niaR — Leela"},
        {"a title without end", std::string(100000, 'x'), std::string(40, 'x') + "… — Leela"},
        {"marks without end",
         "e" +
             [] {
                 std::string marks;
                 for (int index = 0; index < 5000; ++index) {
                     marks += "\xcc\x81";
                 }
                 return marks;
             }(),
         {}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.fault);
        const std::string before = status();
        ASSERT_TRUE(desk.hears(line(R"("playing":true)", each.title), [&] { return status() != before; }));
        EXPECT_LT(status().size(), 2200U);
        if (!each.shown.empty()) {
            EXPECT_EQ(status(), each.shown);
        }
        ASSERT_TRUE(desk.ability->title().isPresented());
        EXPECT_LT(desk.ability->title().frames().at(0).width, 300);
        EXPECT_LT(desk.ability->title().frames().at(0).height, 120);
    }
}

} // namespace
} // namespace ThumkaHarness
