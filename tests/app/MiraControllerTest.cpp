#include "tests/app/MiraHarness.h"

#include "app/characters/mira/MiraPresentation.h"

namespace AppHarness {
namespace {

using FellowCore::BreathingSession;
using FellowCore::BreathingSessionStore;
using FellowCore::BreathingStatus;
using testing::ElementsAre;
using testing::IsEmpty;

struct SessionCase {
    const char* what;
    const char* script;
    const char* expected; ///< status, seconds, phase, round, why it stands: what was asked of the program
};

const SessionCase sessions[] = {
    {"begins with the time to settle", "show start +2 look", "running 2.0 settle 1: start"},
    {"a second press on start changes nothing", "show start +2 start", "running 2.0 settle 1: start"},
    {"a pause does not count", "show start +10 pause +3600 start +5 look",
     "running 15.0 inhale 2: start pause start"},
    {"hiding pauses at the right second, showing does not resume", "show start +10 hide +60 show +9 look",
     "paused 10.0 exhale 1 hidden: start"},
    {"the lock pauses", "show start +10 lock +60 look", "paused 10.0 exhale 1 locked: start"},
    {"sleep pauses, waking does not resume", "show start +10 sleep +60 wake look",
     "paused 10.0 exhale 1 asleep: start"},
    {"the first reason stays", "show start +10 lock hide show", "paused 10.0 exhale 1 locked: start"},
    {"a press clears the reason", "show start +10 lock start pause",
     "paused 10.0 exhale 1: start start pause"},
    {"a paused session has no reason when hidden", "show start +10 pause hide show",
     "paused 10.0 exhale 1: start pause"},
    {"idle stays idle over it all", "show hide show lock sleep wake pause end look", "idle 0.0 settle 1:"},
    {"a clock set back costs nothing", "show start +10 look clock-86400 +5 look pause",
     "paused 15.0 inhale 2: start pause"},
    {"a clock set ahead ends nothing", "show start +10 look clock+86400 +5 look",
     "running 15.0 inhale 2: start"},
    {"giving up begins anew next time", "show start +10 end start +1",
     "running 1.0 settle 1: start end start"},
    {"giving up a paused one", "show start +10 lock end", "idle 0.0 settle 1: start end"},
    {"the end is said once", "show start +63 look look +60 look",
     "completed 63.0 exhale 6: start miraComplete"},
    {"a late look still ends it once", "show start +4000 look look",
     "completed 63.0 exhale 6: start miraComplete"},
    {"a press in the last moment is the end, no pause", "show start +63 pause",
     "completed 63.0 exhale 6: start miraComplete"},
    {"so is the lock", "show start +63 lock", "completed 63.0 exhale 6: start miraComplete"},
    {"and hiding", "show start +63 hide show", "completed 63.0 exhale 6: start miraComplete"},
    {"after the end another begins", "show start +63 look start +4",
     "running 4.0 inhale 1: start miraComplete start"},
    {"a new rhythm waits for the next session", "show start +10 box look", "running 10.0 exhale 1: start"},
    {"and for the end of a paused one", "show start +10 pause 478 start +5",
     "running 15.0 inhale 2: start pause start"},
    {"then it is taken", "show start +10 box end start +8 look", "running 8.0 hold 1: start end start"},
    {"an idle one takes it at once", "show 478 start +154 look",
     "completed 79.0 exhale 4: start miraComplete"},
    {"without voice and breath not even the end sounds", "show quiet start +63 look",
     "completed 63.0 exhale 6:"},
    {"a start from elsewhere brings her out", "start +1", "running 1.0 settle 1: bring start"},
    {"quitting keeps the second", "show start +20.5 quit +60 show look", "paused 20.5 exhale 2: start"},
    {"and it goes on there", "show start +20.5 quit show start +1", "running 21.5 exhale 2: start start"},
    {"a crash costs no more than a round", "show start +13.1 look +5 look crash show",
     "paused 13.1 inhale 2: start"},
    {"a finished one stays finished", "show start +63 look quit show",
     "completed 63.0 exhale 6: start miraComplete"},
    {"an idle one takes new settings after a start", "box quit show start +8", "running 8.0 hold 1: start"},
};

TEST(MiraControllerTest, ASessionGoesAsTold) {
    for (const SessionCase& row : sessions) {
        MiraScript script;
        EXPECT_EQ(script.run(row.script), row.expected) << row.what;
        EXPECT_EQ(script.mira->isFrameTimerActive(),
                  script.mira->session().status == BreathingStatus::running)
            << row.what << ": a timer runs only with the session";
        EXPECT_EQ(script.mira->sprite().breath().has_value(), script.mira->isFrameTimerActive()) << row.what;
        script.desk.saver.flush();
        if (script.mira->session().status == BreathingStatus::paused) {
            EXPECT_EQ(BreathingSessionStore::decoded(TestSupport::bytesOf(script.file())),
                      script.mira->session())
                << row.what;
        }
    }
}

TEST(MiraControllerTest, SaysWhereTheSessionStandsAndOffersWhatIsPossible) {
    struct Row {
        const char* script;
        const char* status;
        const char* actions; ///< a disabled one in brackets
    };
    for (const Row& row : {
             Row{"show", "Ready to breathe", "Start breathing [End] Calm"},
             Row{"show start +14 look", "Breathe in · 2 of 6", "Pause End Calm"},
             Row{"show box start +14 look +5 lock", "Paused while locked · 2 of 4",
                 "Continue End Box · 4–4–4–4"},
             Row{"show start +14 pause", "Paused · 2 of 6", "Continue End Calm"},
             Row{"show start +99 look", "Well breathed", "Start breathing [End] Calm"},
         }) {
        MiraScript script;
        script.run(row.script);
        const CharacterPresentation shown = script.mira->presentation();
        QStringList actions;
        for (const QuickAction& action : shown.actions) {
            actions << (action.enabled ? action.title : QLatin1Char('[') + action.title + QLatin1Char(']'));
        }
        EXPECT_EQ(shown.status.toStdString(), row.status) << row.script;
        EXPECT_EQ(actions.join(QLatin1Char(' ')).toStdString(), row.actions) << row.script;
    }
}

TEST(MiraControllerTest, SheGuidesBySoundOnlyWhileItRunsAndIsHeard) {
    MiraScript script;
    script.run("show");
    EXPECT_FALSE(script.mira->guidesBySound());
    script.run("start");
    EXPECT_TRUE(script.mira->guidesBySound());
    script.preferences().setVoice({false, 0.5});
    EXPECT_TRUE(script.mira->guidesBySound()) << "her breath is heard";
    script.preferences().setBreath({false, 0.5});
    EXPECT_FALSE(script.mira->guidesBySound());
    script.preferences().setBreath({true, 0.5});
    script.run("pause");
    EXPECT_FALSE(script.mira->guidesBySound());
}

TEST(MiraControllerTest, TheMenuOffersEveryRhythmAndPattern) {
    MiraScript script;
    script.run("show");
    ASSERT_TRUE(script.preferences().savePattern("Salt & Sea"));
    script.preferences().setRhythm(FellowCore::BreathingMode::custom);
    const auto menu = rhythmMenu(*script.mira);
    std::vector<std::string> entries;
    for (const QAction* entry : menu->actions()) {
        entries.push_back(entry->text().toStdString() + (entry->isChecked() ? " *" : ""));
    }
    EXPECT_THAT(entries,
                ElementsAre("Calm", "Reset", "Box · 4–4–4–4", "4–7–8", "Custom", "", "Salt && Sea *"));
    menu->actions().at(4)->trigger();
    EXPECT_FALSE(script.preferences().chosenPattern()) << "Custom is the one without a name";
    menu->actions().at(6)->trigger();
    EXPECT_EQ(script.preferences().rhythmTitle(), "Salt & Sea");
    menu->actions().at(2)->trigger();
    EXPECT_EQ(script.mira->session().settings.mode(), FellowCore::BreathingMode::box);
}

TEST(MiraControllerTest, TheCueSpeaksWhileTheSessionRunsAndTheUserMayCloseIt) {
    MiraScript script;
    script.mira->place({800, 300});
    script.run("show start +1 look");
    ASSERT_NE(script.mira->cue(), nullptr);
    EXPECT_EQ(script.mira->cue()->title(), QLatin1String("Get comfortable"));
    EXPECT_EQ(script.mira->attachments().size(), 1U);
    const FellowCore::Rect before = script.mira->attachments().front();
    script.mira->place({900, 400});
    EXPECT_NE(script.mira->attachments().front(), before) << "it moves along";
    script.run("+2 look");
    EXPECT_EQ(script.mira->cue()->title(), QLatin1String("Breathe in"));
    script.run("pause");
    EXPECT_EQ(script.mira->cue(), nullptr);
    script.run("start");
    ASSERT_NE(script.mira->cue(), nullptr);
    const_cast<MiraCue*>(script.mira->cue())->dismiss();
    script.run("+5 look +5 look");
    EXPECT_EQ(script.mira->cue(), nullptr) << "closed by the user, it stays closed";
    script.run("+55 look");
    ASSERT_NE(script.mira->cue(), nullptr);
    EXPECT_EQ(script.mira->cue()->title(), MiraCue::farewell());
    script.run("hide");
    EXPECT_EQ(script.mira->cue(), nullptr);
}

TEST(MiraControllerTest, TheFrameTimerFollowsTheBreathByItself) {
    MiraScript script;
    script.run("show start +2.9");
    script.mira->look();
    script.desk.system.time.run();
    ASSERT_TRUE(waitUntil([&] { return script.mira->cue()->title() == QLatin1String("Breathe in"); }));
    EXPECT_TRUE(waitUntil([&] { return script.mira->sprite().breath()->pose > 0; }));
    script.run("+59.5");
    EXPECT_TRUE(waitUntil([&] { return script.mira->session().status == BreathingStatus::completed; }));
    EXPECT_FALSE(script.mira->isFrameTimerActive());
}

TEST(MiraControllerTest, SheFollowsTheWishForLessMotionAtOnce) {
    MiraScript script;
    script.run("show start +8 look"); // full
    EXPECT_EQ(script.mira->sprite().breath()->pose, MiraFrame::poses - 1);
    script.preferences().setReducedMotion(true);
    script.mira->preferencesChanged();
    EXPECT_EQ(script.mira->sprite().breath()->pose, 0);
    script.preferences().setReducedMotion(false);
    script.desk.system.wish.reduced = true;
    script.mira->motionChanged();
    EXPECT_EQ(script.mira->sprite().breath()->pose, 0);
}

TEST(MiraSessionFileTest, AFileThatIsCutOffAnywhereIsKept) {
    Desk desk;
    BreathingSession session;
    session.start(TestClock::start);
    const std::string whole = BreathingSessionStore::encoded(session, TestClock::start + 20);
    const auto folder = desk.folders.character("mira");
    const auto file = folder / std::string(BreathingSessionStore::fileName);
    testing::internal::CaptureStderr();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        std::filesystem::remove_all(folder);
        TestSupport::writeBytes(file, whole.substr(0, length));
        MiraSessionFile opened(desk.services);
        EXPECT_FALSE(opened.load()) << length;
        EXPECT_EQ(TestSupport::bytesOf(file.string() + ".corrupt"), whole.substr(0, length));
    }
    testing::internal::GetCapturedStderr();
    TestSupport::writeBytes(file, whole);
    EXPECT_EQ(MiraSessionFile(desk.services).load()->accumulatedSeconds, 20);
}

TEST(MiraSessionFileTest, WhatCannotBeUsedIsNeitherObeyedNorLost) {
    const std::string good =
        R"({"settings":{"inhale":5,"hold":0,"exhale":5,"rounds":6},"accumulatedSeconds":20,)";
    struct Row {
        const char* what;
        std::string content;
        int failAt;
        const char* expected;
        bool isAside;
    };
    for (const Row& row : {
             Row{"an unknown word", good + R"("status":"floating"})", 0, "idle 0.0 settle 1:", true},
             Row{"no number", good + R"("status":"paused","settlingDuration":"NaN"})", 0,
                 "idle 0.0 settle 1:", true},
             Row{"huge", std::string(2'000'000, ' '), 0, "idle 0.0 settle 1:", true},
             Row{"unreadable", good + R"("status":"paused"})", 1, "idle 0.0 settle 1:", false},
             Row{"running an hour ago", good + R"("status":"running","startedAt":799996400})", 0,
                 "paused 20.0 inhale 3:", false},
             Row{"idle, but begun", good + R"("status":"idle"})", 0, "idle 0.0 settle 1:", false},
         }) {
        MiraScript script;
        script.mira.reset();
        TestSupport::writeBytes(script.file(), row.content);
        script.desk.files.calls = 0;
        script.desk.files.failAt = row.failAt;
        script.make();
        EXPECT_EQ(script.run("show"), row.expected) << row.what;
        script.run("start pause");
        script.desk.saver.flush();
        const auto kept = script.file().string() + (row.isAside ? ".corrupt" : "");
        EXPECT_EQ(TestSupport::bytesOf(kept) == row.content, row.isAside || row.failAt > 0) << row.what;
        EXPECT_THAT(script.desk.failures, IsEmpty()) << row.what;
    }
}

TEST(MiraSessionFileTest, ASessionGoesOnWhenItCannotBeSaved) {
    MiraScript script;
    std::filesystem::create_directories(script.file()); // no file can take a folder's place
    script.make();
    EXPECT_EQ(script.run("show start +5 pause"), "paused 5.0 inhale 1: start pause");
    script.desk.saver.flush();
    EXPECT_TRUE(std::filesystem::is_directory(script.file()));
}

} // namespace
} // namespace AppHarness
