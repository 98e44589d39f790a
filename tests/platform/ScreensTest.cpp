#include "platform/ScreenSpace.h"
#include "platform/System.h"
#include "platform/linux/WorkArea.h"
#include "tests/support/OtherProgram.h"
#include "tests/support/Waiting.h"

#include <QRegularExpression>

#include <gmock/gmock.h>

using FellowCore::Rect;
using Platform::Strut;
using Testing::runFor;
using Testing::waitUntil;

namespace {

/// Qt reads this once, when the application object is made: a monitor called "fine" has two pixels in a
/// point.
[[maybe_unused]] const bool isScaled = qputenv("QT_SCREEN_SCALE_FACTORS", "fine=2");

TEST(WorkAreaTest, ScreensLoseWhatPanelsOnThemKeep) {
    // Two screens side by side on one desktop, the right one lower: its bottom lies 200 above the desktop's.
    const QSize desktop(3000, 1200);
    const QRect left(0, 0, 1600, 1200);
    const QRect right(1600, 0, 1400, 1000);
    struct Case {
        const char* fault;
        std::vector<std::vector<std::uint32_t>> struts;
        QRect left, right;
    };
    const Case cases[] = {
        {"no panel takes something", {}, left, right},
        {"a panel on one screen shortens the other",
         {{0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 0, 1599}},
         {0, 0, 1600, 1160},
         right},
        {"a strut is measured from the screen",
         {{0, 0, 0, 240, 0, 0, 0, 0, 0, 0, 1600, 2999}},
         left,
         {1600, 0, 1400, 960}},
        {"the bar at the top counts on one screen",
         {{0, 0, 30, 0}},
         {0, 30, 1600, 1170},
         {1600, 30, 1400, 970}},
        {"a dock between screens eats the far one",
         {{1660, 0, 0, 0, 0, 1199, 0, 0, 0, 0, 0, 0}},
         left,
         {1660, 0, 1340, 1000}},
        {"the right edge is off by one",
         {{0, 50, 0, 0, 0, 0, 0, 999, 0, 0, 0, 0}},
         left,
         {1600, 0, 1350, 1000}},
        {"two panels do not add up",
         {{0, 0, 30, 0}, {64, 0, 0, 0}},
         {64, 30, 1536, 1170},
         {1600, 30, 1400, 970}},
        {"nonsense numbers leave nothing", {{99999, 99999, 99999, 99999}}, left, right},
    };
    for (const Case& row : cases) {
        std::vector<Strut> struts;
        for (const auto& values : row.struts)
            struts.push_back(*Strut::fromValues(values));
        EXPECT_EQ(Platform::freeOfStruts(left, desktop, struts), row.left) << row.fault;
        EXPECT_EQ(Platform::freeOfStruts(right, desktop, struts), row.right) << row.fault;
    }
    EXPECT_FALSE(Strut::fromValues({0, 0, 0, 0}));
    EXPECT_FALSE(Strut::fromValues({1, 2, 3}));
}

class ScreensTest : public testing::Test {
protected:
    void TearDown() override {
        if (!monitors_.isEmpty())
            setMonitors({});
    }

    /// Divides the virtual screen into monitors given as "NAME WIDTHxHEIGHT+X+Y", the first one primary.
    void setMonitors(const QStringList& descriptions) {
        QStringList fresh;
        for (const QString& description : descriptions) {
            const QStringList parts = description.split(QRegularExpression(QStringLiteral("[ x+]")));
            const bool first = fresh.isEmpty();
            const QString geometry =
                QStringLiteral("%1/%1x%2/%2+%3+%4").arg(parts[1], parts[2], parts[3], parts[4]);
            ASSERT_TRUE(Testing::run(QStringLiteral("xrandr"),
                                     {QStringLiteral("--setmonitor"),
                                      (first ? QStringLiteral("*") : QString()) + parts[0], geometry,
                                      first ? QStringLiteral("screen") : QStringLiteral("none")}));
            fresh.append(parts[0]);
        }
        for (const QString& old : monitors_) {
            if (fresh.contains(old))
                continue;
            ASSERT_TRUE(Testing::run(QStringLiteral("xrandr"), {QStringLiteral("--delmonitor"), old}));
        }
        monitors_ = fresh;
    }

    QStringList monitors_;
    std::unique_ptr<Platform::System> system = Platform::makeSystem();
    Platform::Screens& screens = system->screens();
};

TEST_F(ScreensTest, OneScreenFollowsItsPanels) {
    ASSERT_EQ(screens.all().size(), 1U);
    const Rect whole{0, 0, 1600, 1000};
    EXPECT_EQ(screens.all()[0].frame, whole);
    EXPECT_EQ(screens.all()[0].visibleFrame, whole);
    EXPECT_TRUE(screens.all()[0].isMain);
    int changes = 0;
    screens.onChange = [&] { ++changes; };

    Testing::OtherProgram other;
    const xcb_window_t panel = other.openPanel({0, 960, 1600, 40}, {0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 0, 1599});
    EXPECT_TRUE(waitUntil([&] { return screens.all()[0].visibleFrame == Rect{0, 40, 1600, 960}; }));
    runFor(150);
    EXPECT_EQ(changes, 1) << "one change is told more than once";
    other.setStrut(panel, {0, 0, 0, 70, 0, 0, 0, 0, 0, 0, 0, 1599});
    EXPECT_TRUE(waitUntil([&] { return screens.all()[0].visibleFrame == Rect{0, 70, 1600, 930}; }));
    other.closeWindow(panel);
    EXPECT_TRUE(waitUntil([&] { return screens.all()[0].visibleFrame == whole; }));
    const int before = changes;
    other.openWindow({10, 10, 50, 50}, Qt::blue);
    runFor(200);
    EXPECT_EQ(changes, before) << "a window that is no panel changes nothing";
}

TEST_F(ScreensTest, TwoScreensKeepTheirOwnPanels) {
    int changes = 0;
    screens.onChange = [&] { ++changes; };
    setMonitors({QStringLiteral("right 900x1000+700+0"), QStringLiteral("left 700x600+0+0")});
    ASSERT_TRUE(waitUntil([&] { return screens.all().size() == 2; }));
    // The main screen is the right one: its lower left corner is the origin, the other lies to the left of
    // it.
    EXPECT_TRUE(waitUntil([&] { return screens.all()[0].frame == Rect{0, 0, 900, 1000}; }));
    EXPECT_EQ(screens.all()[1].frame, (Rect{-700, 400, 700, 600}));
    EXPECT_TRUE(screens.all()[0].isMain);
    EXPECT_FALSE(screens.all()[1].isMain);

    Testing::OtherProgram other;
    other.openPanel({0, 0, 700, 30}, {0, 0, 30, 0, 0, 0, 0, 0, 0, 699, 0, 0});
    other.openPanel({700, 950, 900, 50}, {0, 0, 0, 50, 0, 0, 0, 0, 0, 0, 700, 1599});
    EXPECT_TRUE(waitUntil([&] { return screens.all()[0].visibleFrame == Rect{0, 50, 900, 950}; }));
    EXPECT_EQ(screens.all()[1].visibleFrame, (Rect{-700, 400, 700, 570}));
    EXPECT_GE(changes, 2);
}

TEST_F(ScreensTest, SurfacesAndPointsFollowTheOrigin) {
    setMonitors({QStringLiteral("right 800x1000+800+0"), QStringLiteral("left 800x1000+0+0")});
    ASSERT_TRUE(waitUntil([&] { return screens.all().size() == 2 && screens.all()[0].frame.width == 800; }));
    EXPECT_EQ(Platform::fromQt(QPointF(800, 1000)), (FellowCore::Point{0, 0}));
    EXPECT_EQ(Platform::toQt(Rect{-800, 10, 100, 50}), QRect(0, 940, 100, 50));
    EXPECT_EQ(Platform::fromQt(QRectF(0, 940, 100, 50)), (Rect{-800, 10, 100, 50}));
}

class ScaleWitness : public Platform::DesktopSurfaceClient {
public:
    void paint(QPainter&, QSizeF) override {}
    void backingScaleChanged(double scale) override { scales.push_back(scale); }
    std::vector<double> scales;
};

TEST_F(ScreensTest, ASurfaceFollowsTheScaleOfItsScreen) {
    setMonitors({QStringLiteral("coarse 800x1000+0+0"), QStringLiteral("fine 800x1000+800+0")});
    ASSERT_TRUE(waitUntil([&] { return screens.all().size() == 2 && screens.all()[1].backingScale == 2; }));
    EXPECT_EQ(screens.all()[1].frame.size(), (FellowCore::Size{400, 500}));
    ScaleWitness witness;
    const auto surface = system->makeSurface(witness);
    surface->setFrame({100, 100, 50, 40});
    surface->setInputRegion({{1, 2, 3, 4}});
    surface->show();
    runFor(60);
    Testing::OtherProgram other;
    const auto window = static_cast<xcb_window_t>(surface->windowId());
    constexpr std::uint8_t inputKind = 2;
    EXPECT_EQ(other.shape(window, inputKind), std::vector{QRect(1, 2, 3, 4)});
    EXPECT_EQ(surface->backingScale(), 1);

    const Rect fine = screens.all()[1].frame;
    surface->setFrame({fine.x + 100, fine.y + 100, 50, 40});
    EXPECT_TRUE(waitUntil([&] { return other.frameOf(window).size() == QSize(100, 80); }));
    EXPECT_TRUE(waitUntil([&] { return witness.scales == std::vector{2.0}; }));
    EXPECT_EQ(other.shape(window, inputKind), std::vector{QRect(2, 4, 6, 8)});
    EXPECT_EQ(surface->backingScale(), 2);
}

} // namespace
