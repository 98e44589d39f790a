#include "app/characters/snake/SnakePlates.h"
#include "tests/app/KitHarness.h"
#include "tests/app/SnakeHarness.h"

#include <QThread>

namespace SnakeHarness {
namespace {

using KitHarness::button;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const QRect somewhere(100, 100, 300, 200);

std::string turnsOf(const FellowCore::SnakeGame& game) {
    constexpr std::array names = {"up ", "down ", "left ", "right "};
    std::string text;
    for (const SnakeDirection turn : game.turns()) {
        text += names.at(static_cast<std::size_t>(turn));
    }
    return text;
}

TEST(SnakeGameWindow, AKeyMeansWhatTheHintSays) {
    struct Press {
        int code;
        Qt::KeyboardModifiers modifiers = {};
        bool repeats = false;
        const char* text = "";
        quint32 scanCode = 0;
    };
    const struct {
        const char* fault;
        std::vector<Press> presses;
        const char* turns;
        const char* status;
        int speed;
    } cases[] = {
        {"arrows turn", {{Qt::Key_Up}, {Qt::Key_Left}}, "up left ", "running", 4},
        {"letters turn", {{Qt::Key_S}, {Qt::Key_A}}, "down left ", "running", 4},
        {"W and D turn", {{Qt::Key_W}, {Qt::Key_D}}, "up right ", "running", 4},
        {"a third turn is dropped", {{Qt::Key_W}, {Qt::Key_A}, {Qt::Key_S}}, "up left ", "running", 4},
        {"a held key queues no turns",
         {{Qt::Key_Up}, {Qt::Key_Left, {}, true}, {Qt::Key_Left, {}, true}},
         "up ",
         "running",
         4},
        {"another one's shortcut",
         {{Qt::Key_W, Qt::ControlModifier}, {Qt::Key_Up, Qt::AltModifier}},
         "",
         "running",
         4},
        {"capital letters", {{Qt::Key_W, Qt::ShiftModifier, false, "W"}}, "up ", "running", 4},
        {"letters of another script",
         {{0x0446, {}, false, "ц", 25}, {0x0444, {}, false, "ф", 38}},
         "up left ",
         "running",
         4},
        {"a Latin letter where W would be", {{Qt::Key_Z, {}, false, "z", 25}}, "", "running", 4},
        {"plus, shifted or not", {{Qt::Key_Plus, Qt::ShiftModifier}, {Qt::Key_Equal}}, "", "running", 6},
        {"a held minus goes on", {{Qt::Key_Minus}, {Qt::Key_Minus, {}, true}}, "", "running", 2},
        {"space pauses", {{Qt::Key_Space}}, "", "paused", 4},
        {"a held space does not flicker", {{Qt::Key_Space}, {Qt::Key_Space, {}, true}}, "", "paused", 4},
        {"space twice", {{Qt::Key_Space}, {Qt::Key_Space}}, "", "running", 4},
        {"no turns while paused", {{Qt::Key_Space}, {Qt::Key_Up}, {Qt::Key_Space}}, "", "running", 4},
        {"Return does not start anew in the middle", {{Qt::Key_Up}, {Qt::Key_Return}}, "up ", "running", 4},
        {"Escape leaves", {{Qt::Key_Escape}}, "", "closed", 4},
        {"Escape leaves a pause", {{Qt::Key_Space}, {Qt::Key_Escape}}, "", "closed", 4},
        {"any other key", {{Qt::Key_Tab}, {Qt::Key_F5}, {0}}, "", "running", 4},
    };
    SnakeDesk desk;
    for (const auto& each : cases) {
        ASSERT_TRUE(desk.play()) << each.fault;
        desk.store().setSpeed(FellowCore::SnakeSpeed(4));
        for (const Press& press : each.presses) {
            desk.key(press.code, press.modifiers, press.repeats, press.text, press.scanCode);
        }
        EXPECT_EQ(turnsOf(desk.game()), each.turns) << each.fault;
        EXPECT_EQ(desk.status(), each.status) << each.fault;
        EXPECT_EQ(desk.store().speed().level, each.speed) << each.fault;
        desk.ability->quit(Restore::nothing);
    }
}

TEST(SnakeGameWindow, TheScoreIsKeptAsSheEatsAndOnceMoreAtTheEnd) {
    SnakeDesk desk;
    desk.preferences.setInteger(SnakeStore::bestKey, 2);
    desk.feed(true);
    ASSERT_TRUE(desk.play());
    for (int bite = 1; bite <= 3; ++bite) {
        desk.ability->step();
        EXPECT_EQ(desk.store().bestScore(), bite <= 2 ? 2 : 3);
    }
    desk.store().setSounds(false);
    desk.ability->step();
    desk.feed(false);
    desk.store().setSounds(true);
    desk.ability->step(); // the last food that lay before her
    desk.end();
    EXPECT_EQ(desk.status(), "over");
    EXPECT_THAT(desk.sounds, ElementsAre("open", "open", "open", "open", "end"));
    EXPECT_EQ(desk.store().bestScore(), 5);
    EXPECT_NE(button(*desk.window(), "Play again"), nullptr);

    desk.key(Qt::Key_Return);
    EXPECT_EQ(desk.status(), "running");
    EXPECT_EQ(desk.game().score(), 0);
    EXPECT_FALSE(desk.window()->findChild<SnakeCard*>()->isVisible());
    EXPECT_TRUE(desk.window()->accessibleName() == QStringLiteral("Snake game, best score 5"));
}

TEST(SnakeGameWindow, WhateverEndsTheGameKeepsTheScoreAndBringsEveryoneBack) {
    const struct {
        const char* fault;
        std::function<void(SnakeDesk&)> end;
    } cases[] = {
        {"hidden", [](SnakeDesk& desk) { desk.snake->deactivate(); }},
        {"asleep", [](SnakeDesk& desk) { desk.snake->willSleep(); }},
        {"locked", [](SnakeDesk& desk) { desk.snake->screenLocked(); }},
        {"closed by the window manager", [](SnakeDesk& desk) { desk.window()->close(); }},
        {"left", [](SnakeDesk& desk) { desk.key(Qt::Key_Escape); }},
        {"left from the card",
         [](SnakeDesk& desk) {
             desk.key(Qt::Key_Space);
             button(*desk.window(), "Leave")->click();
         }},
    };
    for (const auto& each : cases) {
        SnakeDesk desk;
        desk.feed(true);
        ASSERT_TRUE(desk.play());
        EXPECT_TRUE(desk.coversScreen);
        EXPECT_FALSE(desk.system.surfaces.at(0)->isVisible());
        EXPECT_EQ(desk.snake->pose(), "playing");
        desk.ability->step();
        desk.preferences.remove(SnakeStore::bestKey); // what counts is what the end writes
        const QPointer<QWidget> window = desk.window();
        each.end(desk);
        EXPECT_EQ(desk.status(), "closed") << each.fault;
        EXPECT_EQ(desk.store().bestScore(), 1) << each.fault;
        EXPECT_FALSE(desk.coversScreen) << each.fault;
        EXPECT_EQ(desk.snake->pose(), "idle") << each.fault;
        EXPECT_EQ(desk.system.surfaces.at(0)->isVisible(), desk.snake->isShown()) << each.fault;
        EXPECT_TRUE(waitUntil([&] { return window.isNull(); })) << each.fault;
        desk.ability->step();
        desk.ability->togglePause();
        Testing::runFor(250);
        EXPECT_EQ(desk.status(), "closed") << each.fault;
    }
}

TEST(SnakeGameWindow, WhoHadTheKeyboardBeforeGetsItBack) {
    Testing::OtherProgram other;
    SnakeDesk desk;
    const xcb_window_t work = other.openWindow(somewhere, Qt::white);
    ASSERT_TRUE(desk.play());
    EXPECT_TRUE(waitUntil([&] { return other.activeWindow() != work; }));
    desk.key(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return other.activeWindow() == work; }));

    // Whoever has gone on to something else stays there, whatever becomes of the game.
    ASSERT_TRUE(desk.play());
    const xcb_window_t next = other.openWindow(somewhere.translated(400, 0), Qt::blue);
    ASSERT_TRUE(waitUntil([&] { return desk.status() == "paused"; }));
    desk.snake->deactivate();
    Testing::runFor(200);
    EXPECT_EQ(other.activeWindow(), next);
}

TEST(SnakeGameWindow, LosingTheKeyboardPausesUntilTheUserGoesOn) {
    Testing::OtherProgram other;
    SnakeDesk desk;
    ASSERT_TRUE(desk.play());
    const xcb_window_t work = other.openWindow(somewhere, Qt::white);
    ASSERT_TRUE(waitUntil([&] { return desk.status() == "paused" && !desk.coversScreen; }));
    EXPECT_TRUE(desk.system.surfaces.at(0)->isVisible()) << "while the user works elsewhere she can be seen";
    EXPECT_THAT(desk.snake->attachments(), IsEmpty());

    const auto actions = desk.snake->presentation().actions;
    EXPECT_EQ(actions.at(0).title, QStringLiteral("Back to the game"));
    actions.at(0).onPress();
    ASSERT_TRUE(waitUntil([&] { return desk.window()->isActiveWindow() && desk.coversScreen; }));
    Testing::runFor(300);
    EXPECT_EQ(desk.status(), "paused") << "nothing goes on by itself";
    KitHarness::mouse(*desk.window(), QEvent::MouseButtonPress, {500, 900});
    EXPECT_EQ(desk.status(), "running") << "a click goes on";
    KitHarness::mouse(*desk.window(), QEvent::MouseButtonPress, {500, 900});
    EXPECT_EQ(desk.status(), "paused") << "and another pauses, so that a mouse is enough";
    other.closeWindow(work);
}

TEST(SnakeGameWindow, ASnakeThatNobodySteersDoesNotMove) {
    Testing::OtherProgram other;
    SnakeDesk desk;
    ASSERT_TRUE(desk.play());
    other.openWindow(somewhere, Qt::white);
    ASSERT_TRUE(waitUntil([&] { return desk.status() == "paused"; }));
    const auto body = desk.game().body();
    desk.ability->togglePause(); // as assistive technology may, while the keyboard is elsewhere
    EXPECT_EQ(desk.status(), "running");
    EXPECT_TRUE(waitUntil([&] { return desk.status() == "paused"; }));
    EXPECT_EQ(desk.game().body(), body);
}

TEST(SnakeGameWindow, KeepsItsPaceAndTakesEveryChangeOfItAtOnce) {
    SnakeDesk desk;
    desk.system.time.run();
    desk.store().setRampAsEating(false);
    desk.store().setSpeed(FellowCore::SnakeSpeed(1));
    ASSERT_TRUE(desk.play());
    const auto stepsIn = [&desk](int milliseconds) {
        const int before = desk.game().body().front().x;
        Testing::runFor(milliseconds);
        return desk.game().body().front().x - before;
    };
    EXPECT_LE(stepsIn(540), 3);
    desk.store().setSpeed(FellowCore::SnakeSpeed(9));
    Testing::runFor(260); // the step that is under way
    const int quick = stepsIn(540);
    EXPECT_GE(quick, 6);
    EXPECT_LE(quick, 10);

    QThread::msleep(500); // a machine that hangs: eight steps are due
    const int before = desk.game().body().front().x;
    QCoreApplication::processEvents();
    Testing::runFor(20);
    EXPECT_LE(desk.game().body().front().x - before, 1) << "a late step is followed by a burst";
}

TEST(SnakeGameWindow, TheBackdropIsAsDarkAsTheSettingSays) {
    Testing::OtherProgram other;
    const auto behind = other.openWindow({0, 0, 1600, 1000}, Qt::white);
    // One that gets the keyboard late would pause the game, which dims it too.
    ASSERT_TRUE(waitUntil([&] { return other.activeWindow() == behind; }));
    SnakeDesk desk;
    desk.store().setBackdropDim(0);
    ASSERT_TRUE(desk.play());
    const auto light = [&other] { return other.pixel(800, 900).green(); };
    EXPECT_TRUE(waitUntil([&] { return light() > 250; }));
    for (const double dim : {0.4, 0.8}) {
        desk.store().setBackdropDim(dim);
        const int expected = static_cast<int>(255 * (1 - dim) + 20 * dim);
        EXPECT_TRUE(waitUntil([&] { return std::abs(light() - expected) < 6; })) << dim << " " << light();
    }
}

TEST(SnakeGameWindow, AStepPaintsOnlyWhatItChanged) {
    class PaintedArea : public QObject {
    public:
        double pixels = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::Paint) {
                for (const QRect& rect : static_cast<QPaintEvent*>(event)->region()) {
                    pixels += rect.width() * rect.height();
                }
            }
            return false;
        }
    } painted;
    SnakeDesk desk;
    ASSERT_TRUE(desk.play());
    Testing::runFor(400);
    desk.window()->installEventFilter(&painted);
    const int before = desk.game().body().front().x;
    Testing::runFor(500);
    const int steps = desk.game().body().front().x - before;
    ASSERT_GE(steps, 2);
    EXPECT_GT(painted.pixels, 0);
    EXPECT_LT(painted.pixels / steps, 0.02 * 1600 * 1000);
    desk.key(Qt::Key_Space);
    Testing::runFor(100);
    painted.pixels = 0;
    Testing::runFor(300);
    EXPECT_EQ(painted.pixels, 0) << "a paused game paints nothing";
}

TEST(SnakeGameWindow, ASpeedIsNamedForAMomentEvenWhereItCannotChange) {
    SnakeDesk desk;
    desk.store().setSpeed(FellowCore::SnakeSpeed(9));
    ASSERT_TRUE(desk.play());
    const auto* plate = desk.window()->findChild<SnakeSpeedPlate*>();
    for (const bool reduced : {false, true}) {
        desk.system.wish.reduced = reduced;
        desk.snake->motionChanged();
        desk.key(Qt::Key_Plus);
        EXPECT_TRUE(plate->isVisible());
        EXPECT_EQ(plate->accessibleName(), QStringLiteral("Speed 9, Super fast"));
        EXPECT_TRUE(waitUntil([plate] { return !plate->isVisible(); }));
    }
}

TEST(SnakeGameWindow, ForgettingTheBestScoreInTheMiddleMakesTheNextOneNew) {
    SnakeDesk desk;
    desk.preferences.setInteger(SnakeStore::bestKey, 40);
    desk.feed(true);
    ASSERT_TRUE(desk.play());
    desk.ability->step();
    desk.store().forgetBest();
    desk.feed(false);
    desk.ability->step();
    desk.end();
    EXPECT_EQ(desk.store().bestScore(), 2);
    EXPECT_THAT(desk.window()->findChild<SnakeCard*>()->accessibleName().toStdString(),
                HasSubstr("New best"));
}

TEST(SnakeGameWindow, AScreenThatGoesEndsTheGameKindly) {
    const auto xrandr = [](const char* words) {
        return Testing::run(QStringLiteral("xrandr"), QString::fromUtf8(words).split(QLatin1Char(' ')));
    };
    ASSERT_TRUE(xrandr("--setmonitor *left 800/400x1000/400+0+0 screen"));
    ASSERT_TRUE(xrandr("--setmonitor right 800/400x1000/400+800+0 none"));
    {
        SnakeDesk desk;
        ASSERT_TRUE(waitUntil([&] { return desk.system.screens().all().size() == 2; }));
        desk.snake->activate();
        desk.snake->place({1200, 40});
        desk.ability->play();
        ASSERT_TRUE(waitUntil([&] { return desk.window()->x() == 800 && desk.window()->width() == 800; }));
        EXPECT_THAT(desk.snake->attachments(), ElementsAre(FellowCore::Rect{800, 0, 800, 1000}));
        desk.snake->place({1300, 60});
        EXPECT_NE(desk.status(), "closed") << "that she is moved is no reason";
        desk.system.screens().onChange = [&] { desk.snake->clampFrame(); };
        ASSERT_TRUE(xrandr("--delmonitor right"));
        ASSERT_TRUE(waitUntil([&] { return desk.status() == "closed"; }));
        EXPECT_THAT(desk.told, ElementsAre(HasSubstr("Your score: 0")));
        EXPECT_FALSE(desk.coversScreen);
    }
    xrandr("--delmonitor left");
}

} // namespace
} // namespace SnakeHarness
