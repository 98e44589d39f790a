#include "app/desktop/BadgeView.h"
#include "app/desktop/PanelSlider.h"
#include "app/desktop/PanelToggle.h"
#include "app/desktop/QuickActionsPanel.h"
#include "app/desktop/SegmentBar.h"
#include "tests/app/KitHarness.h"

#include <QMenu>
#include <QVBoxLayout>

namespace {

using namespace KitHarness;
using testing::ElementsAre;
using testing::IsEmpty;

class KitPanel : public testing::Test {
protected:
    Log log;
    QuickActionsPanel panel;

    void show(const QuickActionsContent& content) {
        panel.setContent(content);
        ASSERT_TRUE(showStill(panel));
        runFor(50);
    }
    PanelSlider& slider() { return *panel.findChild<PanelSlider*>(); }
};

TEST_F(KitPanel, ATickRepaintsWhatChangedAndNothingElse) {
    show(timerContent(log));
    const auto widgets = panel.findChildren<QWidget*>();
    EventCount built(panel, {QEvent::ChildAdded, QEvent::ChildRemoved, QEvent::Resize, QEvent::Move,
                             QEvent::Show, QEvent::Hide});
    {
        EventCount painted(panel, {QEvent::Paint});
        panel.setContent(timerContent(log, "24:58", 0.5));
        runFor(80);
        // The bubble and the view lie below the badge and are asked for the same few pixels.
        EXPECT_THAT(painted.seen, testing::Contains("DeskSprites::BadgeView"));
        EXPECT_THAT(painted.seen, testing::Not(testing::Contains("DeskSprites::PanelButton")));
        EXPECT_THAT(painted.seen, testing::Not(testing::Contains("DeskSprites::PanelSlider")));
    }
    {
        EventCount painted(panel, {QEvent::Paint, QEvent::UpdateRequest});
        panel.setContent(timerContent(log, "24:58", 0.5));
        runFor(80);
        EXPECT_THAT(painted.seen, IsEmpty()) << "the same content again is no change";
    }
    EXPECT_THAT(built.seen, IsEmpty());
    EXPECT_EQ(panel.findChildren<QWidget*>(), widgets);
}

TEST_F(KitPanel, AButtonKeepsItsFocusWhenItsMeaningChanges) {
    show(timerContent(log));
    ASSERT_TRUE(activate(panel));
    PanelButton* primary = button(panel, "Pause");
    primary->setFocus(Qt::TabFocusReason);
    QuickActionsContent paused = timerContent(log, "24:57");
    paused.actions[0] = action(
        "primary", "Start focus", [this] { log.emplace_back("start"); }, Emphasis::primary);
    paused.actions.erase(paused.actions.begin() + 1);
    panel.setContent(paused);
    EXPECT_EQ(button(panel, "Start focus"), primary);
    EXPECT_EQ(focused(), "Start focus");
    EXPECT_EQ(button(panel, "Reset"), nullptr);
    key(panel, Qt::Key_Return);
    EXPECT_THAT(log, ElementsAre("start")) << "the new closure, not the old one";
}

TEST_F(KitPanel, APressMayReplaceTheContentThatItCameFrom) {
    QuickActionsContent first = timerContent(log);
    first.actions[1].onPress = [this] {
        log.emplace_back("replaced");
        QuickActionsContent bare;
        bare.name = QStringLiteral("Batti");
        panel.setContent(bare);
    };
    show(first);
    QPointer<PanelButton> reset = button(panel, "Reset");
    reset->click();
    EXPECT_THAT(log, ElementsAre("replaced"));
    EXPECT_TRUE(waitUntil([&] { return reset.isNull(); })) << "a button that is gone must not linger";
}

TEST_F(KitPanel, TabGoesThroughEverythingInReadingOrder) {
    QuickActionsContent content = timerContent(log);
    content.actions[2].enabled = false;
    show(content);
    ASSERT_TRUE(activate(panel));
    Log order;
    for (int press = 0; press < 8; ++press) {
        key(panel, Qt::Key_Tab);
        order.push_back(focused());
    }
    EXPECT_THAT(order, ElementsAre("Pause", "Reset", "Smaller", "DeskSprites::PanelSlider", "Larger", "Hide",
                                   "Swap", "Settings"));
}

TEST_F(KitPanel, ArrowsGoWhereTheyPoint) {
    show(timerContent(log));
    ASSERT_TRUE(activate(panel));
    struct Step {
        int key;
        const char* lands;
    };
    const Step steps[] = {
        {Qt::Key_Down, "Pause"},     {Qt::Key_Down, "Reset"}, {Qt::Key_Right, "Skip"},
        {Qt::Key_Right, "Skip"},     {Qt::Key_Up, "Pause"},   {Qt::Key_Down, "Reset"},
        {Qt::Key_Down, "Smaller"},   {Qt::Key_Down, "Hide"},  {Qt::Key_Right, "Swap"},
        {Qt::Key_Right, "Settings"}, {Qt::Key_Up, "Larger"},
    };
    for (const Step& step : steps) {
        key(panel, step.key);
        EXPECT_EQ(focused(), step.lands);
    }
}

TEST_F(KitPanel, EnterAndSpacePressAndADisabledButtonDoesNot) {
    QuickActionsContent content = timerContent(log);
    content.actions[2].enabled = false;
    show(content);
    ASSERT_TRUE(activate(panel));
    key(panel, Qt::Key_Return);
    EXPECT_THAT(log, IsEmpty()) << "nothing is ready to be pressed before a key or a click chose it";
    button(panel, "Reset")->setFocus(Qt::TabFocusReason);
    key(panel, Qt::Key_Space);
    key(panel, Qt::Key_Enter);
    button(panel, "Skip")->click();
    EXPECT_THAT(log, ElementsAre("Reset", "Reset"));
}

TEST_F(KitPanel, TakingTheKeyboardPutsTheFocusOnTheFirstButton) {
    show(timerContent(log));
    EXPECT_FALSE(panel.isActiveWindow()) << "showing must not take it";
    for (int showing = 0; showing < 2; ++showing) {
        panel.takeKeyboard();
        ASSERT_TRUE(waitUntil([this] { return panel.isActiveWindow(); })) << showing;
        EXPECT_EQ(focused(), "Pause");
        panel.dismiss();
        ASSERT_TRUE(showStill(panel));
    }
}

TEST_F(KitPanel, EverythingHasAName) {
    show(timerContent(log));
    EXPECT_EQ(spokenName(panel.findChild<BadgeView*>()), "24:59 in words");
    panel.setContent(timerContent(log, "24:58"));
    EXPECT_EQ(spokenName(panel.findChild<BadgeView*>()), "24:58 in words");
    for (QWidget* widget : panel.findChildren<QWidget*>()) {
        if ((widget->focusPolicy() & Qt::TabFocus) == Qt::TabFocus) {
            EXPECT_NE(spokenName(widget), "") << widget->metaObject()->className();
        }
    }
    QAccessibleInterface* size = QAccessible::queryAccessibleInterface(&slider());
    ASSERT_NE(size->valueInterface(), nullptr);
    EXPECT_EQ(size->role(), QAccessible::Slider);
    EXPECT_EQ(size->valueInterface()->currentValue().toInt(), 320);
    QAccessibleInterface* bar = QAccessible::queryAccessibleInterface(panel.findChild<SegmentBar*>());
    EXPECT_EQ(bar->role(), QAccessible::ProgressBar);
    EXPECT_EQ(bar->valueInterface()->currentValue().toInt() * 2,
              bar->valueInterface()->maximumValue().toInt());
}

TEST_F(KitPanel, AnAmpersandIsALetter) {
    QuickActionsContent content = timerContent(log);
    content.actions[1].title = QStringLiteral("Rest & stretch");
    show(content);
    EXPECT_EQ(spokenName(button(panel, "Rest & stretch")), "Rest & stretch");
}

TEST_F(KitPanel, DraggingTheSliderIsOneEdit) {
    show(timerContent(log));
    PanelSlider& control = slider();
    const double middle = control.height() / 2.0;
    mouse(control, QEvent::MouseButtonPress, {control.width() / 2.0, middle});
    EXPECT_TRUE(panel.isEditingSize());
    QuickActionsContent meanwhile = timerContent(log);
    meanwhile.size->height = 141;
    panel.setContent(meanwhile);
    EXPECT_EQ(control.sliderPosition(), 370) << "the hand that holds the slider wins";
    mouse(control, QEvent::MouseMove, {control.width() + 50.0, middle});
    mouse(control, QEvent::MouseButtonRelease, {control.width() + 50.0, middle});
    EXPECT_THAT(log, ElementsAre("begin", "370", "600", "end"));
    EXPECT_FALSE(panel.isEditingSize());
    panel.setContent(meanwhile);
    EXPECT_EQ(control.value(), 141);
    EXPECT_EQ(log.size(), 4U) << "showing a height is no request";
}

TEST_F(KitPanel, ASizeEditAlwaysEnds) {
    show(timerContent(log));
    ASSERT_TRUE(activate(panel));
    slider().setFocus(Qt::TabFocusReason);
    key(panel, Qt::Key_Right);
    EXPECT_THAT(log, ElementsAre("begin", "330", "end"));
    log.clear();
    slider().setValue(400); // as assistive tools do
    EXPECT_THAT(log, ElementsAre("begin", "400", "end"));
    for (const bool withKeyboard : {true, false}) {
        log.clear();
        mouse(slider(), QEvent::MouseButtonPress, {0, 0});
        panel.dismiss();
        EXPECT_THAT(log, ElementsAre("begin", "140", "end"))
            << "the panel went away under the hand " << withKeyboard;
        slider().showValue(400);
        ASSERT_TRUE(showStill(panel));
    }
}

TEST_F(KitPanel, ARightToLeftSliderGrowsToTheLeft) {
    panel.setLayoutDirection(Qt::RightToLeft);
    show(timerContent(log));
    const double middle = slider().height() / 2.0;
    mouse(slider(), QEvent::MouseButtonPress, {2, middle});
    mouse(slider(), QEvent::MouseButtonRelease, {2, middle});
    EXPECT_EQ(slider().value(), 600);
    EXPECT_GT(button(panel, "Reset")->x(), button(panel, "Skip")->x());
}

TEST_F(KitPanel, AMenuIsBuiltOnEachPressAndGoesWithThePanel) {
    int built = 0;
    QPointer<QMenu> open;
    QuickActionsContent content = timerContent(log);
    content.footer[1].menu = [&] {
        ++built;
        auto menu = std::make_unique<QMenu>();
        menu->addAction(QStringLiteral("Mira"));
        open = menu.get();
        return menu;
    };
    show(content);
    for (int press = 1; press <= 2; ++press) {
        button(panel, "Swap")->click();
        ASSERT_TRUE(open && open->isVisible());
        EXPECT_EQ(built, press);
        if (press == 1) {
            open->close();
            EXPECT_TRUE(waitUntil([&] { return open.isNull(); }));
        }
    }
    panel.dismiss();
    EXPECT_TRUE(waitUntil([&] { return open.isNull(); }));
    EXPECT_THAT(log, IsEmpty()) << "a menu takes the place of the press";
}

TEST_F(KitPanel, AnExtraWidgetIsTakenAndGivenUp) {
    QPointer<QWidget> extra = new PanelToggle(QStringLiteral("Sounds"));
    QuickActionsContent content = timerContent(log);
    content.extra = extra;
    show(content);
    panel.setContent(content);
    EXPECT_TRUE(extra && extra->isVisible());
    ASSERT_TRUE(activate(panel));
    key(panel, Qt::Key_Tab);
    EXPECT_EQ(focused(), "DeskSprites::PanelToggle") << "it stands above the buttons";
    content.extra = nullptr;
    panel.setContent(content);
    EXPECT_TRUE(waitUntil([&] { return extra.isNull(); }));
}

TEST_F(KitPanel, OddProgressIsForcedIntoItsBounds) {
    struct Case {
        double given;
        int shown;
    };
    for (const Case& row : {Case{-1, 0}, Case{7, 1000}, Case{std::nan(""), 0}, Case{0.5, 500}}) {
        panel.setContent(timerContent(log, "1:00", row.given));
        EXPECT_EQ(panel.findChild<SegmentBar*>()->value(), row.shown) << row.given;
    }
}

} // namespace
