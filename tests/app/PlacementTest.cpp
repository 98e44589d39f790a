#include "app/desktop/Arrangement.h"
#include "app/desktop/DesktopPlacement.h"
#include "app/desktop/SizeSlider.h"
#include "tests/app/AppHarness.h"

#include <random>

namespace AppHarness {
namespace {

using FellowCore::Point;
using FellowCore::Rect;
using FellowCore::Sizing;
using FellowCore::ArrangeLayout::Edge;
using testing::ElementsAre;
using testing::IsEmpty;
namespace Keys = FellowCore::PreferenceKeys;

/// Two or three packs, all out on the desktop. Their art is forty pixels high, so crisp heights are multiples
/// of it.
class PlacementTest : public testing::Test {
protected:
    Desk desk;
    CharacterStage stage{desk.services};
    DesktopPlacement placement{stage, desk.services};
    SizeSlider slider{placement, desk.services};
    Arrangement arrangement{stage, placement, desk.services};

    void open(const std::vector<PackForm>& forms) {
        for (const PackForm& form : forms) {
            stage.add(desk.makePack(form));
        }
        stage.open();
        for (const PackForm& form : forms) {
            placement.initializeSize(character(form.id));
            stage.host().add(form.id);
        }
        stage.host().setVisible(true);
    }
    DesktopCharacter& character(const std::string& id) { return *stage.find(id); }
    std::optional<double> number(const std::string& key) const { return desk.preferences.number(key); }
    void set(std::string_view key, double value) { desk.preferences.setNumber(key, value); }
};

TEST_F(PlacementTest, TheArrangedHeightGoesBeforeTheCompactBeforeTheOwn) {
    open({{.id = "ant"}});
    struct Row {
        std::optional<double> arranged;
        std::optional<double> compact;
        std::optional<double> own;
        double height;
    };
    for (const Row& row : {Row{{}, {}, {}, 320}, Row{{}, {}, 400, 400}, Row{{}, 160, 400, 160},
                           Row{240, 160, 400, 240}, Row{240, {}, 400, 240}, Row{{}, {}, 1e9, 600},
                           Row{{}, 20, {}, 140}, Row{5, 160, 400, 140}, Row{{}, {}, 330, 320}}) {
        desk.preferences.load("{}");
        for (const auto& [key, value] : {std::pair{Keys::arrangeHeight("ant"), row.arranged},
                                         std::pair{std::string(Keys::arrangeCompactHeight), row.compact},
                                         std::pair{Keys::desktopHeight("ant"), row.own}}) {
            if (value) {
                set(key, *value);
            }
        }
        placement.applyDesktopHeight(character("ant"));
        EXPECT_EQ(character("ant").visibleHeight(), row.height) << row.own.value_or(0);
    }
}

TEST_F(PlacementTest, TheUsersResizeLeavesTheArrangementForAllOnlyWhenItIsCompact) {
    for (const bool compact : {true, false}) {
        desk.preferences.load("{}");
        if (!stage.all().size()) {
            open({{.id = "ant"}, {.id = "bee"}});
        }
        for (const char* id : {"ant", "bee"}) {
            set(Keys::desktopHeight(id), 400);
            set(Keys::arrangeHeight(id), 160);
        }
        if (compact) {
            set(Keys::arrangeCompactHeight, 160);
        }
        placement.applyDesktopHeight(character("ant"));
        placement.applyDesktopHeight(character("bee"));
        placement.setDesktopHeight(character("ant"), 200);
        EXPECT_EQ(character("ant").visibleHeight(), 200);
        EXPECT_EQ(number(Keys::desktopHeight("ant")), 200);
        EXPECT_EQ(number(Keys::arrangeHeight("ant")), std::nullopt);
        EXPECT_FALSE(placement.isCompact());
        EXPECT_EQ(character("bee").visibleHeight(), compact ? 400 : 160);
        EXPECT_EQ(number(Keys::arrangeHeight("bee")), compact ? std::nullopt : std::optional(160.0));
        EXPECT_EQ(number(Keys::desktopHeight("bee")), 400);
    }
}

TEST_F(PlacementTest, TheCollectionsHeightIsTakenOnceAndOnlyByThoseWithoutTheirOwn) {
    desk.preferences.setNumber(Keys::sharedDesktopHeight, 239.6);
    desk.preferences.setNumber(Keys::desktopHeight("bee"), 400);
    open({{.id = "ant"}, {.id = "bee"}});
    EXPECT_EQ(number(Keys::desktopHeight("ant")), 240);
    EXPECT_EQ(character("ant").visibleHeight(), 240);
    EXPECT_EQ(character("bee").visibleHeight(), 400);
    set(Keys::sharedDesktopHeight, 500);
    placement.initializeSize(character("ant"));
    EXPECT_EQ(character("ant").visibleHeight(), 240);
    desk.preferences.load("{}");
    placement.initializeSize(character("ant"));
    EXPECT_EQ(number(Keys::desktopHeight("ant")), std::nullopt) << "without either, nothing is written";
}

TEST_F(PlacementTest, TheFootStandsStillOverAnyRowOfResizes) {
    open({{.id = "ant", .grid = {37, 41}, .clearLeft = 5}});
    DesktopCharacter& ant = character("ant");
    ant.place({811, 402});
    const Rect frame = ant.geometry().frame;
    const Point foot = ant.anchor();
    const double height = ant.visibleHeight();
    std::mt19937 random(7);
    std::uniform_real_distribution<double> heights(1, 600);
    for (int i = 0; i < 200; ++i) {
        ant.setVisibleHeight(heights(random), i % 3 == 0 ? Sizing::snapped : Sizing::continuous);
        ASSERT_NEAR(ant.anchor().x, foot.x, 0.75) << i; // windows stand on whole points and have whole sizes
        ASSERT_NEAR(ant.anchor().y, foot.y, 0.75) << i;
    }
    ant.setVisibleHeight(height, Sizing::snapped);
    EXPECT_EQ(ant.geometry().frame, frame);
}

TEST_F(PlacementTest, TheFootStandsStillWhereverTheWindowWasBeforeItsFirstResize) {
    // Where a window of no size stands is a place like any other.
    desk.preferences.setString(Keys::frame("ant"), "{{0, 1000}, {10, 10}}");
    const auto ant = desk.makePack({.id = "ant"});
    const Point foot = ant->anchor();
    ant->setVisibleHeight(200, Sizing::snapped);
    EXPECT_EQ(ant->anchor(), foot);
}

TEST_F(PlacementTest, StepsAreWholePixelsOfTheArtAndStopAtTheLimits) {
    open({{.id = "ant"}});
    DesktopCharacter& ant = character("ant");
    struct Row {
        double from;
        int steps;
        double to;
    };
    for (const Row& row :
         {Row{320, 1, 360}, Row{320, -1, 280}, Row{320, 3, 440}, Row{600, 1, 600}, Row{600, -1, 560},
          Row{140, -1, 140}, Row{140, 1, 160}, Row{160, -1, 140}, Row{320, -99, 140}}) {
        placement.setDesktopHeight(ant, row.from);
        placement.stepSize(ant, row.steps);
        EXPECT_EQ(ant.visibleHeight(), row.to) << row.from << " and " << row.steps;
    }
}

TEST_F(PlacementTest, ANewcomerStandsBesideTheOtherOnTheSameLine) {
    open({{.id = "ant"}});
    stage.host();
    DesktopCharacter& ant = character("ant");
    for (const auto& [foot, isLeft] : {std::pair{Point{900, 250}, true}, std::pair{Point{250, 250}, false},
                                       std::pair{Point{1500, 600}, true}}) {
        ant.place(foot);
        const auto bee = desk.makePack({.id = "bee", .grid = {30, 50}});
        placement.placeBeside(*bee, ant);
        const Rect first = ant.geometry().frame;
        const Rect second = bee->geometry().frame;
        EXPECT_EQ(isLeft ? first.minX() - second.maxX() : second.minX() - first.maxX(), 24) << foot.x;
        EXPECT_EQ(bee->anchor().y, ant.anchor().y) << foot.x;
        EXPECT_TRUE(Desk::screen.contains(bee->geometry().artwork)) << foot.x;
        EXPECT_EQ(number(Keys::desktopHeight("bee")), std::nullopt) << "it fits, so its size is not touched";
    }
}

TEST_F(PlacementTest, ANewcomerTooBigForTheScreenIsMadeToFit) {
    open({{.id = "ant"}});
    struct Row {
        FellowCore::CharacterManifest::Grid grid;
        bool fits; ///< whether any height from 140 would
    };
    for (const Row& row : {Row{{100, 20}, true}, Row{{110, 20}, true}, Row{{300, 20}, false}}) {
        const auto whale = desk.makePack({.id = "whale", .grid = row.grid});
        placement.placeBeside(*whale, character("ant"));
        const Rect frame = whale->geometry().frame;
        EXPECT_EQ(frame.width <= Desk::screen.width, row.fits) << frame.width;
        EXPECT_EQ(number(Keys::desktopHeight("whale")), whale->visibleHeight());
        EXPECT_TRUE(row.fits || (frame.x <= 0 && whale->visibleHeight() == 140)) << frame.x;
        desk.preferences.remove(Keys::desktopHeight("whale"));
    }
}

TEST_F(PlacementTest, TheAnchorIsRememberedOnceASecondUnlessForced) {
    open({{.id = "ant"}});
    DesktopCharacter& ant = character("ant");
    const auto at = [&](Point foot, FrameSave when) {
        ant.place(foot);
        placement.recordDesktopAnchor(ant, when);
        return placement.savedAnchor(ant);
    };
    EXPECT_EQ(at({500, 300}, FrameSave::throttled), (Point{500, 300}));
    EXPECT_EQ(at({510, 300}, FrameSave::throttled), (Point{500, 300}));
    EXPECT_EQ(at({520, 300}, FrameSave::forced), (Point{520, 300}));
    desk.system.time.advance(1.01);
    EXPECT_EQ(at({530, 300}, FrameSave::throttled), (Point{530, 300}));
    EXPECT_EQ(placement.legacyAnchor(), (Point{530, 300}));
    desk.preferences.setString(Keys::desktopAnchor("ant"), "{inf, 3}");
    EXPECT_EQ(placement.savedAnchor(ant), std::nullopt);
}

TEST_F(PlacementTest, TheSliderPreviewsFollowsAndCommitsACrispHeight) {
    open({{.id = "ant"}, {.id = "bee"}});
    DesktopCharacter& ant = character("ant");
    int finished = 0;
    slider.onFinished = [&finished] { ++finished; };
    desk.system.time.run();
    slider.request(500);
    slider.finishSizePreview();
    EXPECT_EQ(finished, 0) << "nothing was begun";

    slider.begin(ant);
    slider.request(250);
    slider.request(452);
    EXPECT_TRUE(waitUntil([&] { return ant.visibleHeight() > 330 && ant.visibleHeight() < 451; }, 500))
        << "on the way";
    EXPECT_TRUE(waitUntil([&] { return ant.visibleHeight() == 452; }));
    EXPECT_EQ(number(Keys::desktopHeight("ant")), std::nullopt) << "a preview is not remembered";
    slider.finishSizePreview();
    EXPECT_EQ(ant.visibleHeight(), 440);
    EXPECT_EQ(number(Keys::desktopHeight("ant")), 440);
    EXPECT_FALSE(slider.isEditing());

    slider.begin(ant);
    slider.request(200); // let go before the first step
    slider.finishSizePreview();
    EXPECT_EQ(ant.visibleHeight(), 200);

    slider.begin(ant);
    slider.request(1e9);
    slider.begin(character("bee")); // commits the other's
    EXPECT_EQ(number(Keys::desktopHeight("ant")), 600);
    EXPECT_EQ(ant.visibleHeight(), 600);
    EXPECT_EQ(finished, 3);
    slider.finishSizePreview();
    EXPECT_EQ(character("bee").visibleHeight(), 320) << "begun and let go without a wish";
    Testing::runFor(50);
    EXPECT_EQ(ant.visibleHeight(), 600);
}

TEST_F(PlacementTest, WithReducedMotionTheSliderAndTheArrangementJump) {
    desk.system.wish.reduced = true;
    open({{.id = "ant"}, {.id = "bee"}});
    slider.begin(character("ant"));
    slider.request(400);
    EXPECT_TRUE(waitUntil([&] { return character("ant").visibleHeight() != 320; }));
    EXPECT_EQ(character("ant").visibleHeight(), 400);
    slider.finishSizePreview();
    int completions = 0;
    arrangement.arrangementCompletion = [&completions] { ++completions; };
    arrangement.arrange(Edge::bottom, CompactChange::keep);
    EXPECT_FALSE(arrangement.isUnderWay());
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(character("bee").geometry().frame.maxX(), Desk::screen.maxX() - 12);
}

TEST_F(PlacementTest, AnArrangementMovesEveryoneFitsThemAndEndsOnce) {
    open({{.id = "ant"}, {.id = "bee"}, {.id = "cat"}});
    for (const char* id : {"ant", "bee", "cat"}) {
        placement.setDesktopHeight(character(id), 600);
    }
    desk.system.time.run();
    Log done;
    arrangement.arrangementCompletion = [&done] { done.emplace_back("done"); };
    EXPECT_EQ(arrangement.edge(), Edge::right);
    arrangement.finishArrangement();
    EXPECT_THAT(done, IsEmpty());
    arrangement.arrange(Edge::bottom, CompactChange::turnOn);
    EXPECT_TRUE(placement.isCompact());
    EXPECT_TRUE(arrangement.isUnderWay());
    arrangement.arrange(Edge::right, CompactChange::turnOff);
    EXPECT_THAT(done, ElementsAre("done")) << "the first one is finished before the second begins";
    EXPECT_FALSE(placement.isCompact());
    EXPECT_TRUE(waitUntil([&] { return !arrangement.isUnderWay(); }));
    EXPECT_THAT(done, ElementsAre("done", "done"));
    EXPECT_EQ(arrangement.edge(), Edge::right);
    double below = Desk::screen.minY();
    for (const char* id : {"cat", "bee", "ant"}) {
        const Rect frame = character(id).geometry().frame;
        EXPECT_EQ(frame.maxX(), Desk::screen.maxX() - 12) << id;
        EXPECT_EQ(frame.minY(), below + 12) << id;
        EXPECT_EQ(placement.savedAnchor(character(id)), character(id).anchor());
        below = frame.maxY();
    }
    EXPECT_LE(below, Desk::screen.maxY() - 12);
}

} // namespace
} // namespace AppHarness
