#include "platform/BubbleWindow.h"
#include "platform/System.h"
#include "tests/support/OtherProgram.h"
#include "tests/support/Waiting.h"

#include <QLineEdit>
#include <QPushButton>

#include <gmock/gmock.h>

#include <unistd.h>

using Platform::BubbleKeyboard;
using Testing::hands;
using Testing::runFor;
using Testing::waitUntil;

namespace {

class BubbleWindowTest : public testing::Test {
protected:
    void SetUp() override {
        document = other.openWindow({100, 100, 300, 300}, Qt::blue);
        ASSERT_TRUE(hands("mousemove 1500 20"));
    }
    static xcb_window_t id(const QWidget& widget) { return static_cast<xcb_window_t>(widget.winId()); }

    Testing::OtherProgram other;
    xcb_window_t document = XCB_NONE;
};

TEST_F(BubbleWindowTest, StandsExactlyAboveEverythingAndInNoList) {
    QWidget bubble;
    Platform::prepareBubbleWindow(bubble, BubbleKeyboard::never);
    for (int shows = 1; shows <= 2; ++shows) {
        Platform::placeWindow(bubble, {500, 300, 200, 120});
        bubble.show();
        ASSERT_TRUE(waitUntil([&] { return other.frameOf(id(bubble)) == QRect(500, 580, 200, 120); }))
            << shows;
        runFor(80);
        EXPECT_THAT(other.atomNames(id(bubble), "_NET_WM_STATE"),
                    testing::IsSupersetOf(
                        {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"}))
            << "show number " << shows;
        EXPECT_EQ(other.values(id(bubble), "_NET_WM_DESKTOP"), std::vector{0xFFFFFFFFU});
        EXPECT_EQ(other.atomNames(id(bubble), "_NET_WM_WINDOW_TYPE")[0], "_NET_WM_WINDOW_TYPE_UTILITY");
        EXPECT_EQ(other.activeWindow(), document) << "the keyboard was taken on show";
        EXPECT_EQ(Platform::windowFrame(bubble), (FellowCore::Rect{500, 300, 200, 120}));
        bubble.hide();
        runFor(80);
        EXPECT_EQ(other.activeWindow(), document);
    }
    Platform::placeWindow(bubble, {20, 700, 0, 0});
    EXPECT_EQ(Platform::windowFrame(bubble), (FellowCore::Rect{20, 700, 200, 120}))
        << "no size keeps the size";
}

TEST_F(BubbleWindowTest, ButtonsLeaveTheKeyboardAndFieldsTakeIt) {
    QPushButton button(QStringLiteral("Start"));
    Platform::prepareBubbleWindow(button, BubbleKeyboard::never);
    Platform::placeWindow(button, {500, 500, 100, 60});
    int clicks = 0;
    QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
    button.show();
    QLineEdit field;
    Platform::prepareBubbleWindow(field, BubbleKeyboard::onClick);
    Platform::placeWindow(field, {500, 300, 200, 60});
    field.show();
    runFor(120);
    ASSERT_TRUE(hands("mousemove 550 470 click 1"));
    EXPECT_TRUE(waitUntil([&] { return clicks == 1; }));
    runFor(60);
    EXPECT_EQ(other.activeWindow(), document) << "a click on a button takes the keyboard";

    ASSERT_TRUE(hands("mousemove 550 670 click 1"));
    EXPECT_TRUE(waitUntil([&] { return other.activeWindow() == id(field); }));
    ASSERT_TRUE(hands("key o key k"));
    EXPECT_TRUE(waitUntil([&] { return field.text() == QStringLiteral("ok"); }));
}

TEST_F(BubbleWindowTest, TheKeyboardGoesToABubbleAndBack) {
    const auto system = Platform::makeSystem();
    Platform::FrontmostApplication& frontmost = system->frontmost();
    const auto application = frontmost.current();
    ASSERT_TRUE(application);
    EXPECT_EQ(application->window, document);
    EXPECT_EQ(application->pid, ::getpid());
    EXPECT_EQ(application->windowInstance, "other");
    EXPECT_EQ(application->windowClass, "OtherProgram");
    EXPECT_FALSE(application->isOurs);
    int changes = 0;
    frontmost.setOnChange([&] { ++changes; });

    QLineEdit field;
    Platform::prepareBubbleWindow(field, BubbleKeyboard::onClick);
    Platform::placeWindow(field, {500, 300, 200, 60});
    field.show();
    runFor(100);
    EXPECT_EQ(changes, 0);
    Platform::activateBubbleWindow(field);
    EXPECT_TRUE(waitUntil([&] { return changes >= 1 && frontmost.current()->isOurs; }));
    EXPECT_TRUE(frontmost.activate(*application));
    EXPECT_TRUE(waitUntil([&] { return other.activeWindow() == document; }));
    const int before = changes;
    frontmost.setOnChange(nullptr);
    other.closeWindow(document);
    runFor(100);
    EXPECT_LE(changes, before + 1);
    EXPECT_FALSE(frontmost.activate(*application)) << "the window is gone";
}

} // namespace
