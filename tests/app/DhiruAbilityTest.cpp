#include "app/characters/dhiru/DhiruForm.h"
#include "core/devwatch/DevWatchPose.h"
#include "tests/app/DhiruHarness.h"

#include <QElapsedTimer>
#include <QLabel>

namespace DhiruHarness {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Testing::runFor;
using testing::SizeIs;

TEST(DhiruTaps, FourBeatsAndThenNothingUntilTheNext) {
    TestClock clock;
    clock.run();
    DhiruTaps taps(clock);
    Log poses;
    taps.onBeat = [&] {
        poses.emplace_back(FellowCore::DevWatchPose::name(FellowCore::DevWatchActivityState::idleServer,
                                                          taps.elapsed(), false));
    };
    taps.setWanted(true);
    ASSERT_TRUE(waitUntil([&] { return !taps.isTapping(); }));
    EXPECT_THAT(poses, ElementsAre("idle-server", "idle-server-tap", "idle-server", "idle-server-tap",
                                   "idle-server"));
    taps.setWanted(true); // as each reading says anew
    runFor(400);
    EXPECT_THAT(poses, SizeIs(5)) << "a quiet server makes him tap on and on";
    taps.setWanted(false);
    taps.setWanted(true);
    EXPECT_TRUE(taps.isTapping());
    taps.setWanted(false);
    EXPECT_EQ(taps.elapsed(), std::nullopt);
}

/// A hold that the test grants, and that says when it ends.
class TestHold final : public Platform::KeepAwake {
public:
    TestHold(const bool& granted, int& holds, TestHold*& last) : granted_(granted), holds_(holds) {
        ++holds_;
        last = this;
    }
    ~TestHold() override { --holds_; }
    bool isHeld() const override { return granted_; }

private:
    const bool& granted_;
    int& holds_;
};

class DhiruAwakeTest : public testing::Test {
protected:
    std::unique_ptr<DhiruAwake> make() {
        return std::make_unique<DhiruAwake>(
            preferences, [this] { return std::make_unique<TestHold>(granted, holds, last); });
    }
    void grant(bool grants) {
        granted = grants;
        last->onChanged();
    }

    FellowCore::MemoryPreferences preferences;
    bool granted = true;
    int holds = 0;
    TestHold* last = nullptr;
};

TEST_F(DhiruAwakeTest, HoldsOnlyWhileWantedAndThere) {
    auto awake = make();
    awake->setWanted(true);
    EXPECT_EQ(holds, 0) << "he is away";
    awake->setDesktopActive(true);
    EXPECT_EQ(holds, 1);
    EXPECT_EQ(awake->words(), QStringLiteral("Keeping awake"));
    awake->setDesktopActive(false);
    EXPECT_EQ(holds, 0);
    EXPECT_TRUE(awake->words().isEmpty());
    awake->setDesktopActive(true);
    awake->setWanted(false);
    EXPECT_EQ(holds, 0);
    awake->setWanted(true);
    awake.reset();
    EXPECT_EQ(holds, 0) << "the program quits";
    awake = make();
    EXPECT_TRUE(awake->isWanted()) << "the wish outlives the program";
    EXPECT_EQ(preferences.boolean("sprites.devwatch.keepAwake.v1"), true);
}

TEST_F(DhiruAwakeTest, SaysSoWhenTheSessionWillNot) {
    granted = false;
    const auto awake = make();
    int changes = 0;
    QObject::connect(awake.get(), &DhiruAwake::changed, [&] { ++changes; });
    awake->setDesktopActive(true);
    awake->setWanted(true);
    EXPECT_TRUE(awake->words().isEmpty()) << "too early to tell";
    ASSERT_TRUE(waitUntil([&] { return !awake->words().isEmpty(); }, 4000));
    EXPECT_EQ(awake->words(), QStringLiteral("This session cannot be kept awake."));
    const int told = changes;
    runFor(900);
    EXPECT_EQ(changes, told) << "it goes on asking";
    grant(true);
    EXPECT_EQ(awake->words(), QStringLiteral("Keeping awake"))
        << "a service that answers late, or comes later";
    EXPECT_EQ(changes, told + 1);
    grant(false);
    EXPECT_TRUE(awake->words().isEmpty()) << "a service that restarts may hold again";
    EXPECT_TRUE(waitUntil([&] { return !awake->words().isEmpty(); }, 4000));
}

TEST(DhiruAbility, OffersTheWatchTheServersAndTheSwitch) {
    DhiruDesk desk;
    Program server;
    ASSERT_TRUE(desk.comeOut());
    ASSERT_TRUE(desk.lists(server));
    const auto actions = [&] { return desk.ability->actions(); };
    ASSERT_THAT(actions(), SizeIs(3));
    EXPECT_EQ(actions()[0].title, QStringLiteral("Close watch"));
    const auto menu = actions()[1].menu();
    const QString port = QStringLiteral(":%1").arg(server.port());
    const QList<QAction*> items = menu->actions();
    const auto item = std::ranges::find_if(items, [&](QAction* each) { return each->text().endsWith(port); });
    ASSERT_NE(item, items.end());
    (*item)->trigger();
    EXPECT_THAT(desk.opened, ElementsAre(HasSubstr(port.toStdString())));
    actions()[2].onPress();
    EXPECT_TRUE(desk.ability->awake().isWanted());
    EXPECT_TRUE(desk.panel().awakeLine().toggle().isChecked()) << "the open panel follows";
    desk.panel().awakeLine().toggle().click();
    EXPECT_FALSE(desk.ability->awake().isWanted());
    EXPECT_TRUE(desk.ability->clicked()) << "a click on him closes the panel";
    EXPECT_FALSE(desk.ability->clicked());
}

TEST(DhiruForm, SwitchesAndNamesEverySocketItAsks) {
    DhiruDesk desk;
    DhiruForm form(desk.ability->awake(), desk.folders, nullptr);
    auto* keep = form.findChild<FormSwitch*>();
    ASSERT_NE(keep, nullptr);
    keep->click();
    EXPECT_TRUE(desk.ability->awake().isWanted());
    desk.ability->awake().setWanted(false);
    EXPECT_FALSE(keep->isChecked());
    const QString socket = QStringLiteral("~/.docker/run/docker.sock");
    const auto labels = form.findChildren<QLabel*>();
    EXPECT_TRUE(
        std::ranges::any_of(labels, [&](const QLabel* label) { return label->text().contains(socket); }));
}

} // namespace
} // namespace DhiruHarness
