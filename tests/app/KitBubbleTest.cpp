#include "app/desktop/ControlBubble.h"
#include "app/desktop/QuickActionsPanel.h"
#include "tests/app/KitHarness.h"

#include <QLabel>
#include <QPalette>
#include <QRasterWindow>

namespace {

using namespace KitHarness;
using testing::ElementsAre;
using testing::IsEmpty;

class KitBubble : public testing::Test {
protected:
    Log log;
    QuickActionsPanel panel;
    int dismissals = 0;

    KitBubble() {
        panel.setContent(timerContent(log));
        panel.onDismissed = [this] { ++dismissals; };
    }
};

/// A window of ours that is no widget, as a character's is.
class CharacterWindow : public QRasterWindow {
public:
    CharacterWindow() {
        setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
        setGeometry(20, 20, 60, 60);
        show();
    }
    void press() {
        QMouseEvent event(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(25, 25), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(this, &event);
    }

protected:
    void paintEvent(QPaintEvent*) override {}
};

TEST_F(KitBubble, StandsWhereItIsPlacedAndTakesNoKeyboard) {
    ASSERT_TRUE(showStill(panel));
    runFor(100);
    EXPECT_EQ(Platform::windowFrame(panel), placementFor(panel).frame);
    EXPECT_FALSE(panel.isActiveWindow());
    panel.place(placementFor(panel, 420, 90));
    EXPECT_TRUE(
        waitUntil([&] { return Platform::windowFrame(panel) == placementFor(panel, 420, 90).frame; }));
    EXPECT_EQ(panel.placedFrame(), placementFor(panel, 420, 90).frame);
}

TEST_F(KitBubble, OpensWithMotionAndThenRests) {
    ASSERT_TRUE(panel.present(placementFor(panel), BubbleMotion::full));
    EXPECT_LT(panel.windowOpacity(), 1);
    EXPECT_TRUE(waitUntil([&] { return panel.windowOpacity() >= 1; }));
    EXPECT_TRUE(waitUntil([&] { return Platform::windowFrame(panel) == placementFor(panel).frame; }));
    runFor(100);
    EventCount awake(panel, {QEvent::Paint, QEvent::Timer, QEvent::Move, QEvent::UpdateRequest});
    runFor(300);
    EXPECT_THAT(awake.seen, IsEmpty());
}

TEST_F(KitBubble, AnOpeningThatWasCutShortDoesNotGoOn) {
    ASSERT_TRUE(panel.present(placementFor(panel), BubbleMotion::full));
    runFor(40);
    panel.dismiss();
    ASSERT_TRUE(panel.present(placementFor(panel), BubbleMotion::reduced));
    runFor(25);
    EXPECT_EQ(panel.windowOpacity(), 1);
}

TEST_F(KitBubble, ReducedMotionOpensAtOnce) {
    EventCount moves(panel, {QEvent::Move});
    ASSERT_TRUE(panel.present(placementFor(panel), BubbleMotion::reduced));
    EXPECT_EQ(panel.windowOpacity(), 1);
    EXPECT_EQ(Platform::windowFrame(panel), placementFor(panel).frame);
}

TEST_F(KitBubble, HasAHardEdgeOnlyWithoutACompositor) {
    ASSERT_TRUE(showStill(panel));
    EXPECT_TRUE(panel.mask().isEmpty());
    panel.setTranslucent(false);
    EXPECT_FALSE(panel.mask().contains(QPoint(0, 0))) << "a corner would be black";
    EXPECT_TRUE(panel.mask().contains(panel.rect().center()));
    FellowCore::BubblePlacement turned = placementFor(panel);
    const QRegion before = panel.mask();
    turned.pointerOnLeft = false;
    panel.place(turned);
    EXPECT_NE(panel.mask(), before) << "the pointer changed sides";
    panel.setTranslucent(true);
    EXPECT_TRUE(panel.mask().isEmpty());
}

TEST_F(KitBubble, DoesNotOpenWithoutAClearPlace) {
    FellowCore::BubblePlacement nowhere = placementFor(panel);
    nowhere.canPresent = false;
    EXPECT_FALSE(panel.present(nowhere));
    EXPECT_FALSE(panel.isPresented());
    EXPECT_EQ(dismissals, 0);
}

TEST_F(KitBubble, EscapeDismissesOnceItHasTheKeyboardWhereverTheFocusIs) {
    for (const char* title : {"", "Reset"}) {
        ASSERT_TRUE(showStill(panel));
        ASSERT_TRUE(activate(panel));
        if (PanelButton* target = button(panel, title)) {
            target->setFocus(Qt::MouseFocusReason);
        }
        dismissals = 0;
        key(panel, Qt::Key_Escape);
        EXPECT_FALSE(panel.isPresented());
        EXPECT_EQ(dismissals, 1);
        panel.dismiss();
        EXPECT_EQ(dismissals, 1) << "a hidden bubble is not dismissed again";
    }
}

TEST_F(KitBubble, APressInAnotherWindowOfOursDismissesUnlessItIsTheOwners) {
    CharacterWindow character;
    ASSERT_TRUE(showStill(panel));
    panel.isOwnPlace = [](const QPoint& place) { return QRect(20, 20, 60, 60).contains(place); };
    character.press();
    EXPECT_TRUE(panel.isPresented());
    panel.isOwnPlace = {};
    character.press();
    EXPECT_FALSE(panel.isPresented());

    ControlBubble notice;
    ASSERT_TRUE(showStill(notice));
    character.press();
    EXPECT_TRUE(notice.isPresented()) << "a notice waits to be read";
}

TEST_F(KitBubble, LosingTheKeyboardDismisses) {
    ASSERT_TRUE(showStill(panel));
    ASSERT_TRUE(activate(panel));
    QWidget other;
    other.resize(100, 100);
    other.show();
    other.activateWindow();
    EXPECT_TRUE(waitUntil([&] { return !panel.isPresented(); }));
    EXPECT_EQ(dismissals, 1);
}

TEST_F(KitBubble, TellsOfANewPreferredSizeAndOnlyThen) {
    int told = 0;
    panel.onPreferredSizeChanged = [&] {
        ++told;
        panel.place(placementFor(panel));
    };
    ASSERT_TRUE(showStill(panel));
    QuickActionsContent other = timerContent(log, "11:11", 0.1);
    other.status = QStringLiteral("Short rest");
    other.actions[1].title = QStringLiteral("Begin");
    panel.setContent(other);
    runFor(60);
    EXPECT_EQ(told, 0) << "other words in the same room";
    const FellowCore::Size before = panel.preferredSize();
    QuickActionsContent longer = timerContent(log);
    longer.status = QStringLiteral("Paused while asleep, and waiting for somebody to press the button again");
    panel.setContent(longer);
    EXPECT_GT(panel.preferredSize().height, before.height) << "known before anything is drawn";
    EXPECT_EQ(panel.preferredSize().width, before.width) << "sentences wrap";
    EXPECT_TRUE(waitUntil([&] { return told == 1; }));
    EXPECT_TRUE(waitUntil([&] { return Platform::windowFrame(panel) == placementFor(panel).frame; }));
    panel.setContent(timerContent(log));
    EXPECT_TRUE(waitUntil([&] { return told == 2; }));
    EXPECT_EQ(panel.preferredSize(), before);
}

TEST_F(KitBubble, FollowsTheDesktopBetweenLightAndDark) {
    const QPalette original = QApplication::palette();
    QPalette dark = original;
    dark.setColor(QPalette::Window, QColor(0x20, 0x20, 0x24));
    dark.setColor(QPalette::WindowText, Qt::white);
    QPalette light = original;
    light.setColor(QPalette::Window, Qt::white);
    light.setColor(QPalette::WindowText, Qt::black);

    QApplication::setPalette(light);
    panel.setAccent({0.77, 0.38, 0.25});
    EXPECT_EQ(panel.dialoguePalette().theme(), DesktopTheme::light);
    QApplication::setPalette(dark);
    EXPECT_TRUE(waitUntil([&] { return panel.dialoguePalette().theme() == DesktopTheme::dark; }));
    const QColor text = panel.findChild<QLabel*>()->palette().color(QPalette::WindowText);
    EXPECT_EQ(text, panel.dialoguePalette().ink) << "the words inside must turn, too";
    QApplication::setPalette(original);
}

ControlNotice noticeOf(std::optional<FellowCore::Seconds> lifetime) {
    ControlNotice notice;
    notice.text = QStringLiteral("Hide a character to make room.");
    notice.lifetime = lifetime;
    return notice;
}

TEST(KitControlBubble, GoesByItselfOnlyWhenGivenALifetime) {
    ControlBubble passing;
    passing.setNotice(noticeOf(0.15));
    ControlBubble staying;
    staying.setNotice(noticeOf(std::nullopt));
    runFor(250);
    ASSERT_TRUE(showStill(passing)) << "the lifetime begins with the showing";
    ASSERT_TRUE(showStill(staying));
    EXPECT_TRUE(passing.isPresented());
    EXPECT_TRUE(waitUntil([&] { return !passing.isPresented(); }));
    EXPECT_TRUE(staying.isPresented());
}

TEST(KitControlBubble, WaitsWhileItIsLookedAt) {
    ControlBubble notice;
    notice.setNotice(noticeOf(0.15));
    ASSERT_TRUE(showStill(notice));
    QEnterEvent enter(QPointF(40, 20), QPointF(40, 20), QPointF(240, 20));
    QApplication::sendEvent(&notice, &enter);
    runFor(300);
    EXPECT_TRUE(notice.isPresented());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&notice, &leave);
    EXPECT_TRUE(waitUntil([&] { return !notice.isPresented(); }));
}

TEST(KitControlBubble, AnActionPressesAndClosesInThatOrderOfSight) {
    Log log;
    ControlBubble notice;
    ControlNotice content = noticeOf(std::nullopt);
    content.actions = {action("again", "Try again", [&] { log.emplace_back("again"); })};
    notice.setNotice(content);
    notice.onDismissed = [&] { log.emplace_back("dismissed"); };
    ASSERT_TRUE(showStill(notice));
    button(notice, "Try again")->click();
    EXPECT_THAT(log, ElementsAre("dismissed", "again"))
        << "an action may show the next notice in the same bubble";
    ASSERT_TRUE(showStill(notice));
    button(notice, "Close")->click();
    EXPECT_THAT(log, ElementsAre("dismissed", "again", "dismissed"));
}

TEST(KitControlBubble, IsAsWideAsItsWordsUpToALine) {
    ControlBubble small;
    small.setNotice(noticeOf(std::nullopt));
    ControlBubble large;
    ControlNotice content;
    content.text = QString(400, u'm').replace(7, 1, QStringLiteral(" ")) + QStringLiteral(" and more");
    for (int place = 20; place < content.text.size(); place += 13) {
        content.text[place] = u' ';
    }
    large.setNotice(content);
    EXPECT_LT(small.preferredSize().width, large.preferredSize().width);
    EXPECT_LT(large.preferredSize().width, 340);
    EXPECT_GT(large.preferredSize().height, 2 * small.preferredSize().height);
}

} // namespace
