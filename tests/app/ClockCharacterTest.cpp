#include "app/characters/clock/ClockForm.h"
#include "tests/app/ClockHarness.h"

#include <QClipboard>
#include <QGuiApplication>

namespace {

using namespace ClockHarness;
using testing::HasSubstr;
using testing::IsEmpty;
using Testing::runFor;

constexpr double minute = 60;
/// The desk's clock starts at 06:13:20 on 9 May 2026, by UTC.
constexpr double toSeven = 46 * minute + 40;

bool isDark(const QImage& picture, int x, int y) {
    return qAlpha(picture.pixel(x, y)) == 255 && qGray(picture.pixel(x, y)) < 64;
}

TEST(ClockCharacter, TheHandsOfEveryDialStandAtItsCitysTime) {
    ClockDesk desk;
    desk.choose({"America/New_York", "Asia/Tokyo"}, 2);
    desk.desk.system.time.advance(toSeven - 30 * minute); // 6:30 at home, 2:30 and 15:30 at the sides
    ASSERT_TRUE(desk.comeOut());
    const QImage drawn = desk.drawn();
    const std::pair<QPoint, int> dials[] = {{{62, 155}, 12}, {{18, 155}, 5}, {{106, 155}, 5}};
    for (const auto& [middle, reach] : dials) {
        SCOPED_TRACE(middle.x());
        EXPECT_TRUE(isDark(drawn, middle.x(), middle.y() + reach)) << "half past the hour is straight down";
        EXPECT_FALSE(isDark(drawn, middle.x(), middle.y() - reach));
    }
    EXPECT_TRUE(isDark(drawn, 60, 164)) << "home's short hand is halfway from six to seven";
    EXPECT_TRUE(isDark(drawn, 20, 154)) << "half past two";
    EXPECT_TRUE(isDark(drawn, 109, 156)) << "half past three";
    EXPECT_TRUE(isDark(drawn, 30, 183)) << "a plate hangs at the left";
    EXPECT_TRUE(isDark(drawn, 106, 183)) << "and one at the right";
}

TEST(ClockCharacter, WithoutAPinADialHasNoHands) {
    ClockDesk desk;
    desk.choose({"America/New_York"}, 1);
    ASSERT_TRUE(desk.comeOut());
    const QImage drawn = desk.drawn();
    int dark = 0;
    for (int y = 145; y < 197; ++y) {
        for (int x = 94; x < 118; ++x) {
            dark += isDark(drawn, x, y);
        }
    }
    EXPECT_EQ(dark, 4) << "the bare hub, and no plate";
}

TEST(ClockCharacter, ThoseBehindHomeStandLeftOfItAndThoseAheadRight) {
    struct Case {
        const char* name;
        std::vector<std::string> zones;
        std::size_t pins;
        const char* shown;
    };
    const Case cases[] = {
        {"the later one was pinned first", {"Asia/Tokyo", "America/New_York"}, 2, "New York City|Tokyo"},
        {"both are behind", {"Europe/London", "America/New_York"}, 2, "New York City|London"},
        {"one behind", {"America/New_York"}, 1, "New York City|"},
        {"one ahead", {"Asia/Tokyo"}, 1, "|Tokyo"},
        {"none", {"Asia/Tokyo"}, 0, "|"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        ClockDesk desk("Asia/Kolkata");
        desk.choose(each.zones, each.pins);
        ASSERT_TRUE(desk.comeOut());
        EXPECT_EQ(desk.beside(), each.shown);
    }
}

TEST(ClockCharacter, TheFirstFacesAreGivenOnce) {
    ClockDesk desk("Asia/Kolkata");
    EXPECT_FALSE(desk.desk.preferences.contains(WorldClockStore::key));
    ASSERT_TRUE(desk.comeOut());
    EXPECT_EQ(desk.beside(), "London|Seoul");
    desk.clock->change([](WorldClockState& state) {
        state.cityIdentifiers.clear();
        return true;
    });
    EXPECT_EQ(desk.beside(), "|");
    desk.make();
    ASSERT_TRUE(desk.comeOut());
    EXPECT_EQ(desk.beside(), "|") << "what the user took off came back";
}

TEST(ClockCharacter, WaitsForTheMinuteOnlyWhileItStands) {
    ClockDesk desk;
    const auto armed = [&] { return desk.clock->keeper().isArmed(); };
    EXPECT_FALSE(armed());
    ASSERT_TRUE(desk.comeOut());
    EXPECT_TRUE(armed());
    desk.tower->willSleep();
    EXPECT_FALSE(armed());
    desk.tower->didWake();
    EXPECT_TRUE(armed());
    desk.tower->deactivate();
    EXPECT_FALSE(armed());
    desk.zoneBecomes("Asia/Kolkata");
    EXPECT_FALSE(armed()) << "nobody sees the dials";
    desk.desk.system.time.advance(minute);
    EXPECT_THAT(desk.clock->rows().front().time, HasSubstr("11:44")) << "asked for while it is away";
}

TEST(ClockCharacter, TurnsOverOnTheMinute) {
    ClockDesk desk;
    desk.desk.system.time.advance(39.8);
    ASSERT_TRUE(desk.comeOut());
    const ClockFaces::Look before = desk.clock->look();
    int turns = 0;
    QObject::connect(desk.clock, &ClockCharacter::changed, [&] { ++turns; });
    runFor(300); // the timer fires, but by the wall's clock it is too early
    EXPECT_EQ(desk.clock->look(), before);
    EXPECT_EQ(turns, 0);
    desk.desk.system.time.run();
    ASSERT_TRUE(waitUntil([&] { return turns > 0; }));
    EXPECT_FALSE(desk.clock->look() == before);
    EXPECT_TRUE(desk.clock->keeper().isArmed()) << "the next one is waited for";
    runFor(300);
    EXPECT_EQ(turns, 1);
}

TEST(ClockCharacter, RingsOnHomesHourAndOnlyThen) {
    using Act = void (*)(ClockDesk&);
    struct Case {
        const char* name;
        const char* zone;
        double until; ///< seconds to the minute that comes
        Act act;
        int strokes;
    };
    const Act nothing = [](ClockDesk&) {};
    const Case cases[] = {
        {"the hour", "Etc/UTC", toSeven, nothing, 1},
        {"another minute", "Etc/UTC", toSeven - minute, nothing, 0},
        {"another zone's hour", "Asia/Kolkata", toSeven, nothing, 0},
        {"the hour of a zone of half hours", "Asia/Kolkata", toSeven - 30 * minute, nothing, 1},
        {"not asked for", "Etc/UTC", toSeven, [](ClockDesk& desk) { desk.clock->setRingsHourly(false); }, 0},
        {"locked", "Etc/UTC", toSeven, [](ClockDesk& desk) { desk.tower->screenLocked(); }, 0},
        {"unlocked again", "Etc/UTC", toSeven,
         [](ClockDesk& desk) {
             desk.tower->screenLocked();
             desk.tower->screenUnlocked();
         },
         1},
        {"slept over", "Etc/UTC", toSeven, [](ClockDesk& desk) { desk.desk.system.time.advance(20); }, 0},
        {"set over", "Etc/UTC", toSeven,
         [](ClockDesk& desk) {
             desk.desk.system.time.setWall(2);
             desk.clock->keeper().systemTimeChanged();
         },
         0},
        {"put away", "Etc/UTC", toSeven, [](ClockDesk& desk) { desk.tower->deactivate(); }, 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        ClockDesk desk(each.zone);
        desk.clock->setRingsHourly(true);
        desk.desk.system.time.advance(each.until - 0.2);
        ASSERT_TRUE(desk.comeOut());
        each.act(desk);
        desk.desk.system.time.run();
        waitUntil([&] { return desk.strokes > 0; }, 500);
        EXPECT_EQ(desk.strokes, each.strokes);
        EXPECT_EQ(desk.tower->pose(), each.strokes > 0 ? "ring" : "idle");
    }
}

TEST(ClockCharacter, TheBellSwingsForAMomentUnlessMotionIsUnwelcome) {
    ClockDesk desk;
    EXPECT_FALSE(desk.clock->ringsHourly()) << "until it is asked for";
    ASSERT_TRUE(desk.comeOut());
    desk.clock->bell().ring();
    EXPECT_EQ(desk.tower->pose(), "ring");
    EXPECT_TRUE(waitUntil([&] { return desk.tower->pose() == "idle"; }));
    desk.desk.system.wish.reduced = true;
    desk.clock->bell().ring();
    EXPECT_EQ(desk.tower->pose(), "idle");
    EXPECT_EQ(desk.strokes, 2);
}

TEST(ClockCharacter, HomeFollowsTheMachineAndAPinThatWasHomeForAWhileComesBack) {
    ClockDesk desk("Asia/Kolkata");
    desk.choose({"Europe/London", "Asia/Tokyo"}, 2);
    ASSERT_TRUE(desk.comeOut());
    desk.clock->preview(0);
    desk.zoneBecomes("Europe/London");
    EXPECT_EQ(desk.home(), "London");
    EXPECT_EQ(desk.beside(), "|Tokyo");
    EXPECT_FALSE(desk.clock->isPreviewing()) << "it was a minute of another day";
    EXPECT_EQ(desk.clock->travel()->homeTimeZone.timeZone(), "Europe/London");
    desk.zoneBecomes("Asia/Kolkata");
    EXPECT_EQ(desk.beside(), "London|Tokyo");
}

TEST(ClockCharacter, TheTowerTravelsWithThePanel) {
    ClockDesk desk;
    desk.choose({"Asia/Tokyo"}, 1);
    ASSERT_TRUE(desk.comeOut());
    const ClockFaces::Look now = desk.clock->look();
    desk.clock->preview(12 * 60);
    EXPECT_FALSE(desk.clock->look() == now);
    EXPECT_THAT(desk.clock->rows().back().time, HasSubstr("21:00"));
    desk.clock->returnToNow();
    EXPECT_EQ(desk.clock->look(), now);
}

TEST(ClockCharacter, AStoredStateThatIsNoneIsHarmless) {
    const std::string cases[] = {
        "",
        "[]",
        "{\"cityIdentifiers\":7,\"pinnedTimeZoneIdentifiers\":[{}],\"homeTimeZoneIdentifier\":\"../etc\"}",
        "{\"pinnedTimeZoneIdentifiers\":[\"Asia/Tokyo\",\"Asia/Tokyo\",\"\\u0000|\",\"Nowhere/Else|\"]}",
        std::string(WorldClockStore::mostBytes + 1, ' ') + "{}",
    };
    for (const std::string& text : cases) {
        SCOPED_TRACE(text.substr(0, 40));
        ClockDesk desk("Asia/Kolkata");
        desk.store(text);
        ASSERT_TRUE(desk.comeOut());
        EXPECT_EQ(desk.home(), "Kolkata");
        EXPECT_EQ(desk.beside(), "London|Seoul");
        EXPECT_FALSE(desk.drawn().isNull());
    }
}

TEST(ClockCharacter, AMachineWithoutANamedZoneStillHasATime) {
    ClockDesk desk("GMT+05:45");
    desk.choose({"Asia/Tokyo"}, 1);
    ASSERT_TRUE(desk.comeOut());
    EXPECT_THAT(desk.clock->rows().front().time, HasSubstr("11:58"));
    EXPECT_EQ(desk.beside(), "|Tokyo");
    EXPECT_EQ(desk.clock->rows().back().difference, "+3:15");
    desk.clock->setRingsHourly(true);
    EXPECT_TRUE(desk.clock->keeper().isArmed());
    ClockForm form(*desk.clock, nullptr);
    auto& follows = *form.findChildren<FormSwitch*>().front();
    follows.click();
    EXPECT_TRUE(follows.isChecked()) << "the switch shows a home that cannot be kept";
}

TEST(ClockKeeper, KeepsTheCityTableOnlyWhileItIsUsed) {
    Desk desk;
    ClockKeeper keeper(
        desk.services, [] { return *Calendar::inTimeZone("Asia/Kolkata"); }, std::chrono::milliseconds(30));
    const auto letGo = [&] { return waitUntil([&] { return !keeper.holdsTable(); }); };
    keeper.watch();
    ASSERT_TRUE(waitUntil([&] { return keeper.isReady(); }));
    EXPECT_TRUE(letGo());
    EXPECT_EQ(keeper.rows().size(), 3U);
    EXPECT_EQ(keeper.homeCalendar().timeZone(), "Asia/Kolkata");
    EXPECT_FALSE(keeper.holdsTable()) << "a minute's turn must not read it anew";

    keeper.setTableInUse(true);
    keeper.prepareSearch();
    ASSERT_TRUE(waitUntil([&] { return keeper.isSearchReady(); }));
    runFor(100);
    EXPECT_TRUE(keeper.holdsTable()) << "the answers of a search point into it";
    keeper.setTableInUse(false);
    EXPECT_TRUE(letGo());
    EXPECT_FALSE(keeper.isSearchReady());
}

TEST(ClockCharacter, SaysItsTimesAndCopiesHomes) {
    ClockDesk desk("Asia/Kolkata");
    desk.choose({"America/New_York"}, 1);
    EXPECT_EQ(desk.tower->presentation().status, QStringLiteral("World clocks")) << "without reading a table";
    EXPECT_FALSE(desk.clock->keeper().isReady());
    ASSERT_TRUE(desk.comeOut());
    EXPECT_THAT(desk.tower->presentation().status.toStdString(), HasSubstr(" in Kolkata"));
    EXPECT_THAT(desk.tower->presentation().spoken.toStdString(),
                HasSubstr("New York City, 9 hours 30 minutes behind home"));
    desk.tower->presentation().actions.at(1).onPress();
    EXPECT_THAT(QGuiApplication::clipboard()->text().toStdString(), HasSubstr("Kolkata: "));
    EXPECT_THAT(desk.told.back(), HasSubstr("Copied: Kolkata: "));
}

TEST(ClockForm, ChangesHomeFacesAndBell) {
    ClockDesk desk("Asia/Kolkata");
    desk.choose({"Europe/London"}, 1);
    ClockForm form(*desk.clock, nullptr);
    form.resize(560, 700);
    form.show();
    ASSERT_TRUE(waitUntil([&] { return desk.clock->keeper().isReady(); }));
    const auto switches = form.findChildren<FormSwitch*>();
    ASSERT_EQ(switches.size(), 2);
    EXPECT_TRUE(switches[0]->isChecked());
    switches[0]->click();
    desk.zoneBecomes("Asia/Tokyo");
    EXPECT_EQ(desk.home(), "Kolkata") << "it was to stay where it was";
    switches[0]->click();
    EXPECT_EQ(desk.home(), "Tokyo");
    switches[1]->click();
    EXPECT_TRUE(desk.clock->ringsHourly());
    for (auto* button : form.findChildren<QPushButton*>()) {
        if (button->accessibleName() == QStringLiteral("Unpin London")) {
            button->click();
            EXPECT_FALSE(button->isVisible());
        }
    }
    EXPECT_EQ(desk.beside(), "|");
    EXPECT_EQ(desk.clock->state().cityIdentifiers.size(), 1U) << "its clock stays in the list";
}

} // namespace
