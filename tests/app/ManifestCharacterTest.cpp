#include "tests/app/AppHarness.h"

namespace AppHarness {
namespace {

using FellowCore::FocusTimer;
using testing::ElementsAre;
using testing::IsEmpty;
using Behaviour = FellowCore::CharacterManifest::Behaviour;
namespace Keys = FellowCore::PreferenceKeys;

const PackForm timerForm{.behaviours = {Behaviour::idle, Behaviour::timer},
                         .poses = {"idle", "active", "paused", "complete", "busy"}};
const PackForm blinkForm{.behaviours = {Behaviour::idle, Behaviour::blink},
                         .poses = {"idle", "blink", "busy"}};

/// A job that writes down what it is told.
class Job final : public ManifestCharacterAbility {
public:
    struct State {
        Log log;
        std::optional<std::string> pose;
        FellowCore::Seconds interval = 0.1;
        FellowCore::Seconds duration = 0.05;
        const ManifestCharacterController* owner = nullptr;
    };
    explicit Job(State& state) : state_(state) {}

    std::vector<FellowCore::Rect> attachmentWindows() const override { return {{1, 2, 3, 4}}; }
    std::optional<std::string> artworkPose() const override { return state_.pose; }
    FellowCore::Seconds blinkInterval() const override { return state_.interval; }
    FellowCore::Seconds blinkDuration() const override { return state_.duration; }
    void activate() override { note("activate"); }
    void deactivate() override { note("deactivate"); }
    void pause() override { note("pause"); }
    void resumeMonitoring() override { note("resume"); }
    void motionChanged() override { note("motion"); }

private:
    void note(const std::string& what) {
        state_.log.push_back(what + " " + rawStatus(state_.owner->timer()) +
                             (state_.owner->isShown() ? " shown" : ""));
    }

    State& state_;
};

void give(ManifestCharacterController& to, Job::State& state) {
    state.owner = &to;
    to.setAbility(std::make_unique<Job>(state));
}

std::string standing(const ManifestCharacterController& moth) {
    return moth.pose() + " " + rawStatus(moth.timer());
}

TEST(ManifestTimerTest, EachPoseFollowsTheTimerAndTheFileFollowsBoth) {
    Desk desk;
    const auto moth = desk.makePack(timerForm);
    EXPECT_EQ(moth->primaryTitle(), QStringLiteral("Start focus"));
    moth->performPrimaryAction();
    EXPECT_EQ(standing(*moth), "idle idle") << "a character that is not out starts nothing";
    moth->prepareForActivation();
    moth->activate();
    struct Step {
        double after;
        const char* standing;
        const char* title;
    };
    for (const Step& step :
         {Step{0, "active running", "Pause"}, Step{60, "paused paused", "Resume"},
          Step{0, "active running", "Pause"}, Step{1440, "complete completed", "Start rest"},
          Step{0, "active running", "Pause"}}) {
        desk.system.time.advance(step.after);
        moth->performPrimaryAction();
        EXPECT_EQ(standing(*moth), step.standing);
        EXPECT_EQ(moth->primaryTitle(), QString::fromUtf8(step.title));
        EXPECT_EQ(rawStatus(desk.savedTimer("moth")), rawStatus(moth->timer()));
    }
    EXPECT_EQ(moth->timer().phase, FellowCore::TimerPhase::shortBreak);
    moth->reset();
    EXPECT_EQ(standing(*moth), "idle idle");
    EXPECT_EQ(desk.savedTimer("moth").completedFocusSessions, 1);
}

TEST(ManifestTimerTest, APhaseEndsByItselfAndThenTheTimerRests) {
    Desk desk;
    const auto moth = desk.makePack(timerForm);
    moth->activate();
    moth->performPrimaryAction();
    desk.system.time.advance(25 * 60);
    EXPECT_TRUE(waitUntil([&] { return standing(*moth) == "complete completed"; }));
    EXPECT_EQ(rawStatus(desk.savedTimer("moth")), "completed");
    int changes = 0;
    moth->onChange = [&changes] { ++changes; };
    Testing::runFor(1300);
    EXPECT_EQ(changes, 0) << "a timer that has ended must not tick on";
}

TEST(ManifestTimerTest, AHiddenOneComesBackPaused) {
    Desk desk;
    const auto moth = desk.makePack(timerForm);
    moth->activate();
    moth->performPrimaryAction();
    moth->deactivate();
    EXPECT_EQ(standing(*moth), "idle paused");
    moth->prepareForActivation();
    moth->activate();
    EXPECT_EQ(standing(*moth), "paused paused");
    moth->performPrimaryAction();
    moth->willSleep();
    moth->didWake();
    EXPECT_EQ(standing(*moth), "paused paused");
}

TEST(ManifestTimerTest, APhaseThatRanWhenTheProgramDiedEndsOnTime) {
    Desk desk;
    FocusTimer left;
    left.start(TestClock::start - 60);
    desk.writeTimer("moth", left);
    const auto moth = desk.makePack(timerForm);
    moth->prepareForActivation();
    moth->activate();
    EXPECT_EQ(standing(*moth), "active running");
    desk.system.time.advance(24 * 60);
    EXPECT_TRUE(waitUntil([&] { return standing(*moth) == "complete completed"; })) << standing(*moth);
}

TEST(ManifestTimerTest, OneWithoutATimerHasNoneOfItsParts) {
    Desk desk;
    const auto moth = desk.makePack({});
    moth->activate();
    moth->performPrimaryAction();
    moth->deactivate();
    desk.saver.flush();
    EXPECT_FALSE(std::filesystem::exists(desk.folders.character("moth")));
    EXPECT_EQ(moth->primaryTitle(), QString());
    EXPECT_EQ(moth->presentation().badge, std::nullopt);
    EXPECT_THAT(moth->presentation().actions, IsEmpty());
}

TEST(ManifestAbilityTest, ItsPoseWinsOverTheTimersEvenWhileThatRuns) {
    Desk desk;
    Job::State job;
    const auto moth = desk.makePack(timerForm);
    give(*moth, job);
    moth->activate();
    moth->performPrimaryAction();
    EXPECT_EQ(moth->pose(), "active");
    for (const auto& [pose, shown] : {std::pair{"busy", "busy"}, std::pair{"no such pose", "idle"}}) {
        job.pose = pose;
        moth->abilityChanged();
        EXPECT_EQ(moth->pose(), shown);
        Testing::runFor(1100); // past a tick, which must not take the pose away
        EXPECT_EQ(moth->pose(), shown);
    }
    job.pose.reset();
    moth->abilityChanged();
    EXPECT_EQ(moth->pose(), "active");
}

TEST(ManifestAbilityTest, HearsOfEverythingOnceAndAtTheRightMoment) {
    Desk desk;
    Job::State job;
    const auto moth = desk.makePack(timerForm);
    give(*moth, job);
    moth->didWake();
    EXPECT_THAT(job.log, IsEmpty()) << "waking says nothing to a character that is not out";
    EXPECT_THAT(moth->obstacles(), IsEmpty());
    moth->prepareForActivation();
    moth->activate();
    EXPECT_EQ(moth->obstacles().size(), 2U) << "its own window and the job's";
    moth->performPrimaryAction();
    moth->motionChanged();
    moth->willSleep();
    moth->didWake();
    moth->performPrimaryAction();
    moth->deactivate();
    moth->willSleep();
    EXPECT_THAT(job.log, ElementsAre("activate idle shown", "motion running shown", "pause running shown",
                                     "resume paused shown", "deactivate running shown", "pause paused"));
}

struct BlinkCase {
    const char* what;
    PackForm form;
    bool reduced;
    bool shown;
    bool blinks;
};

TEST(ManifestBlinkTest, HappensWhereItShouldAndOpensItsEyesAgain) {
    PackForm still = blinkForm;
    still.behaviours = {Behaviour::idle};
    for (const BlinkCase& row : {BlinkCase{"out on the desktop", blinkForm, false, true, true},
                                 BlinkCase{"reduced motion", blinkForm, true, true, false},
                                 BlinkCase{"not out", blinkForm, false, false, false},
                                 BlinkCase{"a pack without the behaviour", still, false, true, false}}) {
        SCOPED_TRACE(row.what);
        Desk desk;
        Job::State job;
        desk.system.wish.reduced = row.reduced;
        const auto moth = desk.makePack(row.form);
        give(*moth, job);
        if (row.shown) {
            moth->activate();
        }
        const auto closed = [&] { return moth->pose() == "blink"; };
        EXPECT_EQ(waitUntil(closed, 400), row.blinks);
        EXPECT_TRUE(waitUntil([&] { return moth->pose() == "idle"; }, 400));
        EXPECT_EQ(waitUntil(closed, 400), row.blinks) << "the second time";
        moth->deactivate();
        EXPECT_EQ(moth->pose(), "idle");
        EXPECT_FALSE(waitUntil(closed, 300)) << "after leaving";
    }
}

TEST(ManifestBlinkTest, TakesTheAbilitysTimesAndAWishForStillnessOpensTheEyesAtOnce) {
    Desk desk;
    Job::State job;
    job.interval = 0.3;
    job.duration = 0.4;
    const auto moth = desk.makePack(blinkForm);
    give(*moth, job);
    const auto closed = [&moth] { return moth->pose() == "blink"; };
    QElapsedTimer since;
    since.start();
    moth->activate();
    ASSERT_TRUE(waitUntil(closed));
    EXPECT_NEAR(static_cast<double>(since.restart()), 300, 80);
    ASSERT_TRUE(waitUntil([&] { return !closed(); }));
    EXPECT_NEAR(static_cast<double>(since.elapsed()), 400, 80);
    ASSERT_TRUE(waitUntil(closed));
    desk.system.wish.reduced = true;
    moth->motionChanged();
    EXPECT_FALSE(waitUntil(closed, 400));
}

TEST(ManifestFrameTest, ADragSavesOnceASecondAndAlwaysItsEnd) {
    Desk desk;
    const auto moth = desk.makePack({});
    moth->place({800, 500});
    moth->activate();
    const std::string key = Keys::frame("moth");
    const auto saved = [&] { return *FellowCore::rectFromText(*desk.preferences.string(key)); };
    int saves = 0;
    desk.preferences.onChange = [&saves] { ++saves; };

    desk.drag(0, 200, 100, 50); // no time passes
    EXPECT_EQ(saves, 2) << "the first move and the end";
    EXPECT_EQ(saved(), moth->geometry().frame);
    EXPECT_EQ(moth->anchor(), (FellowCore::Point{1000, 600}));
    desk.drag(0, 3, 0);
    EXPECT_EQ(saves, 2) << "a click moves nothing";

    saves = 0;
    moth->moveWindow(moth->geometry().frame.translated(10, 0));
    moth->saveFrame(FrameSave::throttled);
    desk.system.time.advance(1);
    moth->saveFrame(FrameSave::throttled);
    EXPECT_EQ(saves, 0) << "no more than a second";
    desk.system.time.advance(0.01);
    moth->saveFrame(FrameSave::throttled);
    EXPECT_EQ(saves, 1);
    moth->moveWindow(moth->geometry().frame.translated(10, 0));
    moth->deactivate();
    EXPECT_EQ(saved(), moth->geometry().frame) << "leaving saves at once";
}

TEST(ManifestFrameTest, ASavedFrameIsTakenOnlyWhenItCanBeOne) {
    Desk desk;
    const FellowCore::Rect usual = desk.makePack({})->geometry().frame;
    EXPECT_EQ(usual.maxX(), Desk::screen.maxX() - 45);
    EXPECT_EQ(usual.y, 32);
    struct Row {
        const char* saved;
        FellowCore::Point origin;
    };
    for (const Row& row :
         {Row{"{{300, 200}, {10, 10}}", {300, 200}}, Row{"{{-900, 4000}, {10, 10}}", {-900, 4000}},
          Row{"{{1e300, 5}, {10, 10}}", usual.origin()}, Row{"{{nan, 5}, {10, 10}}", usual.origin()},
          Row{"{{300, 200}, {0, 10}}", usual.origin()}, Row{"{{300, 200}", usual.origin()},
          Row{"", usual.origin()}}) {
        desk.preferences.setString(Keys::frame("moth"), row.saved);
        const auto moth = desk.makePack({});
        EXPECT_EQ(moth->geometry().frame, usual.at(row.origin)) << row.saved;
        moth->activate();
        const CharacterGeometry stands = moth->geometry();
        EXPECT_TRUE(Desk::screen.contains(stands.foot.translated(stands.frame.x, stands.frame.y)))
            << row.saved;
        moth->deactivate();
    }
}

} // namespace
} // namespace AppHarness
