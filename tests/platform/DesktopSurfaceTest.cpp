#include "platform/ScreenSpace.h"
#include "platform/System.h"
#include "platform/linux/X11DesktopSurface.h"
#include "tests/support/OtherProgram.h"
#include "tests/support/Waiting.h"

#include <QAccessible>
#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QProcess>
#include <QWidget>
#include <QWindow>

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <functional>

using Platform::PointerEvent;
using Testing::hands;
using Testing::runFor;
using Testing::waitUntil;

namespace {

constexpr std::uint8_t boundingKind = 0;
constexpr std::uint8_t inputKind = 2;

/// Paints itself red and writes down what happens to it.
class Figure : public Platform::DesktopSurfaceClient {
public:
    void paint(QPainter& painter, QSizeF size) override {
        painted.append(painter.clipBoundingRect().toAlignedRect());
        painter.fillRect(colouredPart.isNull() ? QRectF(QPointF(), size) : colouredPart, Qt::red);
    }
    void pointerPressed(const PointerEvent& event) override {
        presses.push_back(event);
        if (onPress)
            onPress();
    }
    void pointerMoved(const PointerEvent& event) override { moves.push_back(event); }
    void pointerReleased(const PointerEvent& event) override { releases.push_back(event); }
    void pointerEntered(const PointerEvent&) override { ++entered; }
    void pointerLeft() override { ++left; }
    void pointerCancelled() override { ++cancelled; }
    void wheelTurned(const Platform::WheelEvent& event) override { wheel += event.angleDelta; }
    void contextMenuRequested(FellowCore::Point at) override { menus.push_back(at); }
    void textDropped(const QString& text) override { dropped = text; }
    void backingScaleChanged(double scale) override { scales.push_back(scale); }
    void accessiblePress() override { ++accessiblePresses; }
    void accessibleShowMenu() override { ++accessibleMenus; }

    QRectF colouredPart;
    QList<QRect> painted;
    std::vector<PointerEvent> presses, moves, releases;
    std::vector<FellowCore::Point> menus;
    std::vector<double> scales;
    QPoint wheel;
    QString dropped;
    int entered = 0, left = 0, cancelled = 0, accessiblePresses = 0, accessibleMenus = 0;
    std::function<void()> onPress;
};

class DesktopSurfaceTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(hands("mousemove 1500 20")); }

    /// Shows the surface at a place of the screen in pixels, y down, wholly sensitive to the pointer.
    void showAt(const QRect& frame) {
        surface->setFrame(Platform::fromQt(QRectF(frame)));
        surface->setInputRegion({QRectF(QPointF(), QSizeF(frame.size()))});
        surface->show();
        ASSERT_TRUE(waitUntil([&] { return !figure.painted.isEmpty(); }));
        runFor(50);
    }

    xcb_window_t window() const { return static_cast<xcb_window_t>(surface->windowId()); }
    bool turnsRed(int x, int y) {
        return waitUntil([&] { return other.pixel(x, y) == QColor(Qt::red); });
    }

    std::unique_ptr<Platform::System> system = Platform::makeSystem();
    Testing::OtherProgram other;
    Figure figure;
    std::unique_ptr<Platform::DesktopSurface> surface = system->makeSurface(figure);
};

TEST_F(DesktopSurfaceTest, StandsExactlyWhereItIsPut) {
    showAt({100, 100, 160, 200});
    struct Case {
        const char* fault;
        FellowCore::Rect asked;
        QRect pixels;
    };
    const Case cases[] = {
        {"y runs the wrong way", {10, 20, 160, 200}, {10, 780, 160, 200}},
        {"kept on the screen on the left", {-90, 300, 160, 200}, {-90, 500, 160, 200}},
        {"kept above the lower edge", {700, -150, 160, 200}, {700, 950, 160, 200}},
        {"pushed away from the top", {700, 900, 160, 200}, {700, -100, 160, 200}},
        {"the size changes with a fraction of the place", {10.4, 20.4, 160.2, 200.2}, {10, 780, 160, 200}},
        {"the new size is forgotten", {10.6, 20.6, 80, 90}, {11, 889, 80, 90}},
    };
    for (const Case& row : cases) {
        surface->setFrame(row.asked);
        EXPECT_TRUE(waitUntil([&] { return other.frameOf(window()) == row.pixels; })) << row.fault;
        EXPECT_EQ(Platform::toQt(surface->frame()), row.pixels) << row.fault;
    }
    const FellowCore::Rect before = surface->frame();
    surface->setFrame({0, 0, 0, 10});
    surface->setFrame({0, std::numeric_limits<double>::quiet_NaN(), 10, 10});
    EXPECT_EQ(surface->frame(), before);
}

TEST_F(DesktopSurfaceTest, LetsClicksThroughWhereTheArtIsClear) {
    other.openWindow({300, 300, 400, 400}, Qt::blue);
    showAt({400, 400, 100, 100});
    surface->setInputRegion({{0, 0, 50, 100}, {50, 90, 20, 10}});
    struct Case {
        const char* fault;
        const char* click;
        std::size_t ours;
        int theirs;
    };
    const Case cases[] = {
        {"the art is deaf", "mousemove 425 450 click 1", 1, 0},
        {"the hole swallows clicks", "mousemove 475 450 click 1", 0, 1},
        {"only the first rectangle counts", "mousemove 465 495 click 1", 1, 0},
        {"rectangles are joined to a box", "mousemove 465 450 click 1", 0, 1},
    };
    for (const Case& row : cases) {
        figure.presses.clear();
        other.takePresses();
        ASSERT_TRUE(hands(row.click));
        runFor(60);
        EXPECT_EQ(figure.presses.size(), row.ours) << row.fault;
        EXPECT_EQ(other.takePresses(), row.theirs) << row.fault;
    }
    surface->setInputWhole(true);
    ASSERT_TRUE(hands("mousemove 475 450 click 1"));
    EXPECT_TRUE(waitUntil([&] { return figure.presses.size() == 1; }))
        << "a drag loses the pointer over holes";
    surface->setInputWhole(false);
    surface->setInputRegion({});
    other.takePresses();
    ASSERT_TRUE(hands("mousemove 425 450 click 1"));
    EXPECT_TRUE(waitUntil([&] { return other.takePresses() == 1; })) << "an empty region must be deaf";
}

TEST_F(DesktopSurfaceTest, SendsARegionOnlyWhenItChanges) {
    showAt({400, 400, 100, 100});
    const auto& shape = static_cast<Platform::X11DesktopSurface&>(*surface).shape();
    surface->setInputRegion({{10.4, 10.6, 20, 20}});
    const int before = shape.requestCount();
    surface->setInputRegion({{10.4, 10.6, 20, 20}});
    surface->setInputRegion({{10.3, 10.7, 20.2, 20.1}}); // The same whole pixels.
    EXPECT_EQ(shape.requestCount(), before);
    ASSERT_EQ(other.shape(window(), inputKind), std::vector{QRect(10, 10, 21, 21)});
    surface->setInputRegion({{10, 10, 20, 20}, {-5, -5, 3, 3}, {5, 5, -1, 4}, {0, 0, 1e9, 1}});
    EXPECT_EQ(shape.requestCount(), before + 1);
    surface->setFrame({0, 0, 50, 50});
    EXPECT_EQ(shape.requestCount(), before + 1) << "moving and sizing need no new region";
}

TEST_F(DesktopSurfaceTest, StaysAboveAndOutOfTheWay) {
    const xcb_window_t document = other.openWindow({200, 200, 500, 500}, Qt::blue);
    figure.colouredPart = QRectF(0, 0, 50, 100);
    showAt({400, 400, 100, 100});
    EXPECT_TRUE(turnsRed(425, 450));
    EXPECT_EQ(other.pixel(475, 450), QColor(Qt::blue)) << "what is not painted must be clear";

    ASSERT_TRUE(hands("mousemove 425 450 click 1"));
    EXPECT_TRUE(waitUntil([&] { return figure.presses.size() == 1; }));
    EXPECT_EQ(other.activeWindow(), document);
    EXPECT_EQ(other.focusWindow(), document) << "a click must leave the keyboard where it is";
    EXPECT_FALSE(other.listsAsClient(window()));
    EXPECT_TRUE(other.listsAsClient(document));

    other.openWindow({0, 0, 1600, 1000}, Qt::green, true);
    EXPECT_TRUE(waitUntil([&] { return other.pixel(800, 100) == QColor(Qt::green); }));
    EXPECT_EQ(other.pixel(425, 450), QColor(Qt::red)) << "hidden by a full-screen window";
}

TEST_F(DesktopSurfaceTest, RaisesOneAboveTheOther) {
    showAt({400, 400, 100, 100});
    Figure second;
    const auto above = system->makeSurface(second);
    second.colouredPart = QRectF(0, 0, 1, 1);
    above->setFrame(surface->frame());
    above->setInputRegion({{0, 0, 100, 100}});
    above->show();
    runFor(50);
    ASSERT_TRUE(hands("mousemove 450 450 click 1"));
    ASSERT_TRUE(waitUntil([&] { return second.presses.size() == 1; }));
    surface->raise();
    ASSERT_TRUE(hands("click 1"));
    EXPECT_TRUE(waitUntil([&] { return figure.presses.size() == 1; }));
}

TEST_F(DesktopSurfaceTest, PaintsOnlyWhatChanged) {
    showAt({400, 400, 100, 100});
    figure.painted.clear();
    runFor(150);
    EXPECT_TRUE(figure.painted.isEmpty()) << "repaints although nothing changed";
    surface->update(QRect(10, 20, 30, 40));
    ASSERT_TRUE(waitUntil([&] { return !figure.painted.isEmpty(); }));
    EXPECT_EQ(figure.painted, QList<QRect>{QRect(10, 20, 30, 40)});
}

TEST_F(DesktopSurfaceTest, TellsOfAClickADoubleClickAndADrag) {
    showAt({400, 400, 100, 100});
    ASSERT_TRUE(hands("mousemove 420 430 click 1 click 1"));
    ASSERT_TRUE(waitUntil([&] { return figure.releases.size() == 2; }));
    EXPECT_EQ(figure.presses[0].clickCount, 1);
    EXPECT_EQ(figure.presses[1].clickCount, 2);
    EXPECT_EQ(figure.presses[0].button, Qt::LeftButton);
    EXPECT_EQ(figure.presses[0].screen, (FellowCore::Point{420, 570}));
    EXPECT_EQ(figure.presses[0].window, (FellowCore::Point{20, 70}));
    EXPECT_EQ(figure.entered, 1);

    figure.moves.clear();
    ASSERT_TRUE(hands("mousedown 1 mousemove 900 200 sleep 0.05 mousemove 1000 100 sleep 0.05 mouseup 1"));
    ASSERT_TRUE(waitUntil([&] { return figure.releases.size() == 3; }));
    EXPECT_EQ(figure.moves.back().screen, (FellowCore::Point{1000, 900}));
    EXPECT_TRUE(figure.moves.back().held & Qt::LeftButton);
    EXPECT_TRUE(waitUntil([&] { return figure.left == 1; })) << "the drag ended elsewhere";

    ASSERT_TRUE(hands("mousemove 450 450 click 3 click 4 click 5 click 5"));
    EXPECT_TRUE(waitUntil([&] { return figure.wheel == QPoint(0, -120); }));
    ASSERT_EQ(figure.menus.size(), 1U);
    EXPECT_EQ(figure.menus[0], (FellowCore::Point{450, 550}));
    EXPECT_EQ(figure.presses.size(), 3U) << "the right button is the menu's alone";
}

TEST_F(DesktopSurfaceTest, AHiddenSurfaceGivesThePointerUp) {
    showAt({400, 400, 100, 100});
    ASSERT_TRUE(hands("mousemove 420 430 mousedown 1"));
    ASSERT_TRUE(waitUntil([&] { return figure.presses.size() == 1; }));
    surface->hide();
    EXPECT_EQ(figure.cancelled, 1);
    EXPECT_EQ(figure.left, 1);
    ASSERT_TRUE(hands("mouseup 1"));
    runFor(60);
    EXPECT_TRUE(figure.releases.empty());
    surface->show();
    ASSERT_TRUE(hands("mousemove 440 440 click 1"));
    EXPECT_TRUE(waitUntil([&] { return figure.releases.size() == 1; }));
    EXPECT_EQ(other.frameOf(window()), QRect(400, 400, 100, 100));
}

TEST_F(DesktopSurfaceTest, ABlinkUnderAStillPointerIsNoLeave) {
    showAt({400, 400, 100, 100});
    ASSERT_TRUE(hands("mousemove 450 450"));
    ASSERT_TRUE(waitUntil([&] { return figure.entered == 1; }));
    surface->setInputRegion({{0, 0, 10, 10}});
    runFor(120);
    surface->setInputRegion({{0, 0, 100, 100}});
    runFor(400);
    EXPECT_EQ(figure.left, 0);
    EXPECT_EQ(figure.entered, 1);
    surface->setInputRegion({{0, 0, 10, 10}});
    EXPECT_TRUE(waitUntil([&] { return figure.left == 1; })) << "a lasting change must not leave it lit";
    surface->setInputRegion({{0, 0, 100, 100}});
    runFor(60);
    EXPECT_EQ(figure.entered, 1) << "the pointer has not moved";
    ASSERT_TRUE(hands("mousemove 451 450"));
    EXPECT_TRUE(waitUntil([&] { return figure.entered == 2; }));
}

TEST_F(DesktopSurfaceTest, MayBeDestroyedFromItsOwnClick) {
    showAt({400, 400, 100, 100});
    figure.onPress = [this] { surface.reset(); };
    ASSERT_TRUE(hands("mousemove 450 450 click 1"));
    EXPECT_TRUE(waitUntil([&] { return !surface; }));
    runFor(60);
    EXPECT_TRUE(figure.releases.empty());
}

TEST_F(DesktopSurfaceTest, WithoutACompositorItIsCutToItsRegion) {
    const int compositor = qEnvironmentVariableIntValue("DESKFELLOW_COMPOSITOR_PID");
    if (compositor == 0)
        GTEST_SKIP() << "no compositor of our own to end";
    showAt({400, 400, 100, 100});
    surface->setInputRegion({{20, 30, 40, 50}});
    ASSERT_TRUE(system->hasCompositor());
    ASSERT_EQ(other.shape(window(), boundingKind), std::vector{QRect(0, 0, 100, 100)});

    kill(compositor, SIGTERM);
    EXPECT_TRUE(
        waitUntil([&] { return other.shape(window(), boundingKind) == std::vector{QRect(20, 30, 40, 50)}; }));
    EXPECT_FALSE(system->hasCompositor());
    surface->setInputWhole(true);
    EXPECT_EQ(other.shape(window(), boundingKind), std::vector{QRect(20, 30, 40, 50)})
        << "black edges in a drag";
    surface->setInputWhole(false);
    EXPECT_TRUE(turnsRed(430, 440));
    EXPECT_NE(other.pixel(410, 410), QColor(Qt::red));

    ASSERT_TRUE(Testing::run(QStringLiteral("picom"), {QStringLiteral("--backend"), QStringLiteral("xrender"),
                                                       QStringLiteral("--config"),
                                                       QStringLiteral("/dev/null"), QStringLiteral("-b")}));
    EXPECT_TRUE(
        waitUntil([&] { return other.shape(window(), boundingKind) == std::vector{QRect(0, 0, 100, 100)}; }));
}

/// Something to drag a text from.
class TextSource : public QWidget {
protected:
    void mouseMoveEvent(QMouseEvent*) override {
        auto* drag = new QDrag(this);
        auto* content = new QMimeData;
        content->setText(QStringLiteral("water the plants"));
        drag->setMimeData(content);
        drag->exec(Qt::CopyAction);
    }
};

TEST_F(DesktopSurfaceTest, TakesDroppedTextOnlyWhenAsked) {
    TextSource source;
    source.setGeometry(100, 100, 200, 200);
    source.show();
    showAt({400, 400, 100, 100});
    const char* drag =
        "mousemove 200 200 mousedown 1 sleep 0.05 mousemove 230 230 sleep 0.1 mousemove 440 440 sleep "
        "0.1 mousemove 450 450 sleep 0.1 mouseup 1";
    ASSERT_TRUE(hands(drag));
    runFor(100);
    EXPECT_EQ(figure.dropped, QString());
    surface->setAcceptsText(true);
    ASSERT_TRUE(hands(drag));
    EXPECT_TRUE(waitUntil([&] { return figure.dropped == QStringLiteral("water the plants"); }));
}

TEST_F(DesktopSurfaceTest, IsAButtonToAssistiveTechnology) {
    showAt({400, 400, 100, 100});
    surface->setAccessible(QStringLiteral("Batti"), QStringLiteral("Ready for focus"),
                           QStringLiteral("Focus light"));
    const QWindowList windows = QGuiApplication::topLevelWindows();
    const auto found = std::find_if(windows.begin(), windows.end(), [](const QWindow* one) {
        return one->title() == QStringLiteral("Batti");
    });
    ASSERT_NE(found, windows.end());
    QAccessibleInterface* button = (*found)->accessibleRoot();
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->role(), QAccessible::Button);
    EXPECT_EQ(button->text(QAccessible::Name), QStringLiteral("Batti"));
    EXPECT_EQ(button->text(QAccessible::Value), QStringLiteral("Ready for focus"));
    EXPECT_EQ(button->text(QAccessible::Description), QStringLiteral("Ready for focus. Focus light"));
    EXPECT_EQ(button->rect(), QRect(400, 400, 100, 100));
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    button->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    EXPECT_EQ(figure.accessiblePresses, 1);
    EXPECT_EQ(figure.accessibleMenus, 1);
    surface->hide();
    EXPECT_TRUE(button->state().invisible);
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(figure.accessiblePresses, 1) << "a hidden character cannot be pressed";
}

} // namespace
