#include "tests/app/AppHarness.h"
#include "tests/core/focus/TimerScript.h"
#include "tests/support/OtherProgram.h"

#include <sstream>

namespace AppHarness {
namespace {

using FellowCore::FocusTimer;
using FellowCore::InterfaceSoundCue;
using FellowCore::TimerSettings;
using testing::HasSubstr;
using testing::IsEmpty;

const char* cueName(InterfaceSoundCue cue) {
    switch (cue) {
    case InterfaceSoundCue::start:
        return "start";
    case InterfaceSoundCue::pause:
        return "pause";
    case InterfaceSoundCue::end:
        return "end";
    case InterfaceSoundCue::complete:
        return "complete";
    default:
        return "another";
    }
}

/// Batti on a desktop, told what happens in words (see `perform`), with what it asked of the program in
/// `log`.
class BattiScript {
public:
    Desk desk;
    std::unique_ptr<BattiController> batti;
    std::string log;

    void make() {
        batti = desk.makeBatti();
        batti->onCue = [this](InterfaceSoundCue cue) { log += std::string(" ") + cueName(cue); };
        batti->onPhaseEnded = [this] { log += " ended"; };
    }

    /// "+25:00" lets time pass; "quiet" switches Batti's sounds off, "manual" the automatic rests.
    std::string run(const std::string& script) {
        std::istringstream words(script);
        for (std::string word; words >> word;) {
            perform(word);
        }
        const FocusTimer& timer = batti->timerSession().timer;
        return batti->timerPresentation().statusTitle + ", " +
               FellowCore::timerBadge(timer.timeRemaining(desk.system.time.wall())) + ", " +
               std::to_string(timer.completedFocusSessions) + ":" + log;
    }

private:
    void perform(const std::string& word) {
        if (word.front() == '+') {
            desk.system.time.advance(60 * std::stod(word.substr(1)) +
                                     std::stod(word.substr(word.find(':') + 1)));
            return;
        }
        const std::map<std::string, std::function<void()>> verbs{
            {"show", [this] { batti->activate(); }},
            {"hide", [this] { batti->deactivate(); }},
            {"press", [this] { batti->primaryAction(); }},
            {"reset", [this] { batti->resetSession(); }},
            {"tick", [this] { batti->tick(); }},
            {"sleep", [this] { batti->willSleep(); }},
            {"wake", [this] { batti->didWake(); }},
            {"quiet", [this] { batti->setSounds(false); }},
            {"manual", [this] { batti->applySettings(TimerSettings(25, 5, 15, 4, false)); }},
            {"ten", [this] { batti->applySettings(TimerSettings(10, 5, 15, 4, true)); }},
            {"again", [this] {
                 desk.saver.flush();
                 batti.reset();
                 make();
             }}};
        verbs.at(word)();
    }
};

struct SessionCase {
    const char* what;
    const char* script;
    const char* expected; ///< status, badge, focus sessions: what was asked of the program
};

const SessionCase sessions[] = {
    {"starts and pauses with a sound each", "press +1:00 press", "Focus paused, 24:00, 0: start pause"},
    {"hiding pauses, showing does not resume", "press +1:00 hide +9:00 show tick",
     "Paused while hidden, 24:00, 0: start"},
    {"a press clears the reason", "press hide show press press", "Focus paused, 25:00, 0: start start pause"},
    {"a reset clears the reason", "press hide show reset", "Ready for focus, 25:00, 0: start end"},
    {"sleep pauses, waking does not resume", "press sleep +60:00 wake",
     "Paused while asleep, 25:00, 0: start"},
    {"sleep while paused sets no reason", "press press sleep wake", "Focus paused, 25:00, 0: start pause"},
    {"sleep keeps the older reason", "press hide sleep wake show", "Paused while hidden, 25:00, 0: start"},
    {"idle stays idle over hiding and sleep", "hide show sleep wake", "Ready for focus, 25:00, 0:"},
    {"the reason does not outlive a launch", "press hide again show", "Focus paused, 25:00, 0: start"},
    {"the end sounds before the program is told; the rest begins", "press +25:00 tick",
     "Short rest, 05:00, 1: start complete ended"},
    {"a late tick ends it once, and the rest is whole", "press +40:00 tick tick",
     "Short rest, 05:00, 1: start complete ended"},
    {"no rest where rests wait for a press", "manual press +25:00 tick",
     "Focus complete, 00:00, 1: start complete ended"},
    {"a press on the deadline ends the phase and is no tick", "press +25:00 press",
     "Short rest, 05:00, 1: start complete"},
    {"sounds off: the end is silent, presses still ask", "quiet press +25:00 tick press",
     "Short rest paused, 05:00, 1: start ended pause"},
    {"sounds off: a press on the deadline is silent", "quiet press +25:00 press",
     "Short rest, 05:00, 1: start"},
    {"focus never begins by itself", "press +25:00 tick +5:00 tick +1:00 tick",
     "Short rest complete, 00:00, 1: start complete ended complete ended"},
    {"a phase over in the moment of hiding: no reason, no sound, no rest", "press +25:00 hide show tick",
     "Focus complete, 00:00, 1: start"},
    {"a phase over in the moment of sleep: the same", "press +25:00 sleep wake",
     "Focus complete, 00:00, 1: start"},
    {"a reset keeps the count", "press +25:00 tick reset",
     "Ready for focus, 25:00, 1: start complete ended end"},
    {"settings leave the running phase alone", "press +1:00 ten", "Focus, 24:00, 0: start"},
    {"settings leave a paused phase alone", "press +1:00 press ten press",
     "Focus, 24:00, 0: start pause start"},
    {"settings take an idle phase at once", "ten", "Ready for focus, 10:00, 0:"},
    {"a running phase comes back paused, without a reason", "press +5:00 tick again show +9:00 tick",
     "Focus paused, 20:00, 0: start"},
    {"a paused phase does not run on while the program is closed", "press +5:00 again +25:00 again show tick",
     "Focus paused, 20:00, 0: start"},
};

TEST(BattiControllerTest, ASessionGoesAsTold) {
    for (const SessionCase& row : sessions) {
        BattiScript script;
        script.make();
        script.batti->activate();
        EXPECT_EQ(script.run(row.script), row.expected) << row.what;
        const FocusTimer saved = script.desk.savedTimer("batti");
        const FocusTimer& shown = script.batti->timerSession().timer;
        EXPECT_EQ(std::tuple(rawStatus(saved), saved.deadline, saved.completedFocusSessions, saved.settings),
                  std::tuple(rawStatus(shown), shown.deadline, shown.completedFocusSessions, shown.settings))
            << row.what;
    }
}

TEST(BattiControllerTest, ADeadlineThatWentByBeforeTheLaunchMakesNoSound) {
    BattiScript script;
    FocusTimer left;
    left.start(TestClock::start - 7200);
    script.desk.writeTimer("batti", left);
    script.make();
    EXPECT_EQ(script.run("show tick sleep wake"), "Focus complete, 00:00, 1:");
}

TEST(BattiControllerTest, AFileThatCannotBeUsedIsKept) {
    struct Row {
        const char* what;
        std::string content;
        int failAt;   ///< the call that fails: the folder is made first, then the file opened
        bool isAside; ///< moved out of the way, and a good one written
    };
    for (const Row& row :
         {Row{"garbage", "{\"status\": 5}", 0, true}, Row{"huge", std::string(2'000'000, ' '), 0, true},
          Row{"no folder", "{}", 1, false}, Row{"unreadable", "{}", 2, false}}) {
        BattiScript script;
        const std::filesystem::path file = script.desk.timerFile("batti");
        TestSupport::writeBytes(file, row.content);
        script.desk.files.failAt = row.failAt;
        script.make();
        EXPECT_EQ(script.run("show press"), "Focus, 25:00, 0: start") << row.what;
        script.desk.saver.flush();
        EXPECT_EQ(TestSupport::bytesOf(row.isAside ? file.string() + ".corrupt" : file.string()), row.content)
            << row.what;
        EXPECT_TRUE(!row.isAside || rawStatus(script.desk.savedTimer("batti")) == "running") << row.what;
        EXPECT_THAT(script.desk.failures, IsEmpty()) << row.what;
    }
}

TEST(BattiControllerTest, KeepsRunningWhenItsFileCannotBeWritten) {
    BattiScript script;
    script.make();
    script.desk.saver.flush();
    const std::filesystem::path file = script.desk.timerFile("batti");
    std::filesystem::remove(file);
    std::filesystem::create_directory(file); // no file can take a folder's place
    EXPECT_EQ(script.run("show press +1:00 tick"), "Focus, 24:00, 0: start");
    script.desk.saver.flush();
    ASSERT_EQ(script.desk.failures.size(), 1U);
    EXPECT_THAT(script.desk.failures.front(), HasSubstr("Batti could not save its timer: "));
    std::filesystem::remove(file);
    EXPECT_EQ(script.run("press"), "Focus paused, 24:00, 0: start pause");
    EXPECT_EQ(rawStatus(script.desk.savedTimer("batti")), "paused");
}

TEST(BattiControllerTest, TheBadgeChangesWithEverySecondWhereverTheTimerWakes) {
    BattiScript script;
    script.make();
    script.run("show press");
    script.desk.system.time.run();
    const auto badge = [&script] { return *script.batti->presentation().badge; };
    const auto intoSecond = [&script] {
        const double left = script.batti->timerSession().timer.timeRemaining(script.desk.system.time.wall());
        return left - std::floor(left);
    };
    // How much of a second is left when the timer looks: just before it turns, a look must not sleep through
    // it.
    for (const double rest : {0.99, 0.5, 0.03, 0.015}) {
        script.desk.system.time.advance(intoSecond() + 1 - rest);
        script.batti->tick();
        const double due = intoSecond();
        const QString before = badge();
        QString told = before;
        script.batti->onChange = [&] { told = badge(); };
        QElapsedTimer waited;
        waited.start();
        EXPECT_TRUE(waitUntil([&] { return told != before; }));
        script.batti->onChange = nullptr;
        EXPECT_LT(static_cast<double>(waited.elapsed()) / 1000, due + 0.12) << rest;
        EXPECT_EQ(told.right(2).toInt(), (before.right(2).toInt() + 59) % 60) << rest;
    }
}

TEST(BattiControllerTest, ATimerThatDoesNotRunWakesNobody) {
    for (const char* state : {"show press press", "show press hide"}) {
        BattiScript script;
        script.make();
        script.run(state);
        int changes = 0;
        script.batti->onChange = [&changes] { ++changes; };
        Testing::runFor(1200);
        EXPECT_EQ(changes, 0) << state;
    }
}

TEST(BattiControllerTest, MirroringKeepsTheFootAndTurnsEverythingElse) {
    Desk desk;
    PackForm form{.id = "batti", .grid = {40, 50}, .clearLeft = 10};
    std::array<QImage, 3> lamps{QImage(40, 50, QImage::Format_ARGB32_Premultiplied)};
    const auto made = std::make_unique<BattiController>(desk.pack(form), lamps, desk.services);
    BattiController& batti = *made;
    batti.place({800, 400});
    batti.activate();
    const auto input = [&desk] {
        const Testing::OtherProgram other;
        const auto window = static_cast<xcb_window_t>(desk.system.surfaces.front()->windowId());
        return other.shape(window, 2).front();
    };
    const FellowCore::Point foot = batti.anchor();
    const auto straight = batti.layoutAt(batti.visibleHeight(), FellowCore::Sizing::snapped);
    const QRect region = input();

    batti.setMirrored(true);
    const auto turned = batti.layoutAt(batti.visibleHeight(), FellowCore::Sizing::snapped);
    const double width = straight.size.width;
    EXPECT_EQ(turned.visible.x, width - straight.visible.maxX());
    EXPECT_EQ(turned.face.x, width - straight.face.x);
    EXPECT_EQ(turned.ground.x, width - straight.ground.x);
    EXPECT_EQ(turned.face.y, straight.face.y);
    EXPECT_EQ(batti.anchor(), foot);
    EXPECT_NE(batti.geometry().frame.x, foot.x);
    EXPECT_TRUE(waitUntil([&] { return input().left() == width - 1 - region.right(); }))
        << input().left() << " for " << region.right() << " of " << width;
    EXPECT_EQ(input().width(), region.width());

    batti.setMirrored(false);
    batti.setMirrored(true);
    EXPECT_EQ(batti.anchor(), foot) << "turning back and forth carries Batti nowhere";
    EXPECT_TRUE(desk.preferences.boolean(FellowCore::PreferenceKeys::battiMirrored).value_or(false));
}

TEST(BattiControllerTest, ReadsItsViewStateAndSurvivesAnAbsurdOne) {
    namespace Keys = FellowCore::PreferenceKeys;
    Desk desk;
    EXPECT_TRUE(desk.makeBatti()->sounds());
    desk.preferences.setNumber(Keys::battiHeight, 1e300);
    desk.preferences.setBoolean(Keys::battiSounds, false);
    desk.preferences.setBoolean(Keys::battiReducedMotion, true);
    desk.preferences.setString(Keys::battiMirrored, "yes");
    desk.preferences.setNumber(Keys::desktopHeight("batti"), -7);
    const auto batti = desk.makeBatti();
    EXPECT_FALSE(batti->sounds());
    EXPECT_TRUE(batti->hasOwnReducedMotion());
    EXPECT_FALSE(batti->isMirrored());
    EXPECT_EQ(batti->visibleHeight(), batti->crispVisibleHeight(140));
}

/// Batti's view that tells which part of it was painted.
class WatchedView final : public PixelSpriteView {
public:
    using PixelSpriteView::PixelSpriteView;
    std::vector<QRectF> painted;

    void paint(QPainter& painter, QSizeF size) override {
        painted.push_back(painter.clipBoundingRect());
        PixelSpriteView::paint(painter, size);
    }
};

TEST(BattiSpriteTest, ASecondOnTheBadgePaintsNoMoreThanTheBadge) {
    Desk desk;
    const Companion batti = desk.batti();
    WatchedView view(batti.pack, {QImage(120, 193, QImage::Format_ARGB32_Premultiplied)}, desk.system.time);
    const auto surface = desk.system.makeSurface(view);
    view.attach(*surface);
    view.setLayout(batti.pack->layout(320, 1, FellowCore::Sizing::snapped));
    surface->setFrame({600, 300, view.layout().size.width, view.layout().size.height});
    view.setLight(PixelSpriteView::Light::red, false);
    view.setBadge(QStringLiteral("24:59"));
    surface->show();
    ASSERT_TRUE(waitUntil([&view] { return !view.painted.empty(); }));
    Testing::runFor(200);
    view.painted.clear();

    view.setLight(PixelSpriteView::Light::red, false);
    view.setBadge(QStringLiteral("24:58"));
    ASSERT_TRUE(waitUntil([&view] { return !view.painted.empty(); }));
    Testing::runFor(100);
    for (const QRectF& part : view.painted) {
        EXPECT_LT(part.height(), view.layout().size.height / 5);
    }
    view.painted.clear();
    view.setLight(PixelSpriteView::Light::red, false);
    view.setBadge(QStringLiteral("24:58"));
    Testing::runFor(100);
    EXPECT_THAT(view.painted, IsEmpty()) << "nothing has changed";
}

} // namespace
} // namespace AppHarness
