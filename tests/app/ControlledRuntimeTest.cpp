#include "tests/app/AppHarness.h"

#include <sstream>

namespace AppHarness {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The smallest character: it says what it is told.
class Told final : public DesktopCharacter {
public:
    Log log;

    Told(Desk& desk, const PackForm& form)
        : DesktopCharacter(desk.pack(form), desk.services), view_(companion().pack) {
        attachView(view_);
        restoreSizeAndFrame();
    }
    void prepareForActivation() override { log.emplace_back("prepare"); }
    void activate() override {
        log.emplace_back("activate");
        showWindow();
    }
    void deactivate() override {
        log.emplace_back("deactivate");
        hideWindow();
    }
    CharacterPresentation presentation() override { return {}; }

private:
    ManifestSpriteView view_;
};

struct ControlledCase {
    const char* script; ///< what happens, "in" and "out" being the host's calls
    std::vector<std::string> calls;
    const char* visible; ///< which window stands in the end
};

const ControlledCase transitions[] = {
    {"in", {"prepare", "activate"}, "character"},
    {"in out", {"prepare", "activate", "deactivate"}, "none"},
    {"rest", {}, "none"},
    {"rest wake", {}, "none"},
    {"rest in", {}, "panel"},
    {"rest in out", {}, "none"},
    {"rest in wake", {"prepare", "activate"}, "character"},
    {"rest in out wake", {}, "none"},
    {"rest in out wake in", {"prepare", "activate"}, "character"},
    {"in rest", {"prepare", "activate", "deactivate"}, "panel"},
    {"in rest rest", {"prepare", "activate", "deactivate"}, "panel"},
    {"in wake", {"prepare", "activate"}, "character"},
    {"in rest wake", {"prepare", "activate", "deactivate", "prepare", "activate"}, "character"},
    {"in rest out", {"prepare", "activate", "deactivate"}, "none"},
    {"in rest out in", {"prepare", "activate", "deactivate"}, "panel"},
    {"in out rest", {"prepare", "activate", "deactivate"}, "none"},
};

TEST(ControlledRuntimeTest, GoesBetweenItsStatesWithExactlyTheCallsEachTakes) {
    for (const ControlledCase& row : transitions) {
        SCOPED_TRACE(row.script);
        Desk desk;
        Told moth(desk, {});
        ControlledRuntime controlled(moth, desk.services);
        const std::map<std::string, std::function<void()>> verbs{
            {"in",
             [&] {
                 controlled.prepareForActivation();
                 controlled.activate();
             }},
            {"out", [&] { controlled.deactivate(); }},
            {"rest", [&] { controlled.setPaused(true); }},
            {"wake", [&] { controlled.setPaused(false); }}};
        std::istringstream words(row.script);
        for (std::string word; words >> word;) {
            verbs.at(word)();
        }
        EXPECT_EQ(moth.log, row.calls);
        const auto& surfaces = desk.system.surfaces;
        const bool panel = surfaces.size() > 1 && surfaces[1]->isVisible();
        EXPECT_STREQ(panel ? "panel" : surfaces[0]->isVisible() ? "character" : "none", row.visible);
        EXPECT_FALSE(panel && surfaces[0]->isVisible()) << "the two must never stand over each other";
    }
}

TEST(ControlledRuntimeTest, ThePanelStandsWhereTheCharacterStandsAndOnlyTakesClicks) {
    Desk desk;
    Told moth(desk, {.clearLeft = 12});
    ControlledRuntime controlled(moth, desk.services);
    int clicks = 0;
    controlled.onClick = [&clicks] { ++clicks; };
    moth.place({700, 300});
    controlled.setPaused(true);
    controlled.activate();
    const FellowCore::Rect frame = moth.geometry().frame;
    EXPECT_EQ(desk.system.surfaces[1]->frame(), frame);

    desk.drag(1, 0, 0);
    EXPECT_EQ(clicks, 1);
    desk.drag(1, 300, 100, 3);
    EXPECT_EQ(desk.system.surfaces[1]->frame(), frame) << "the character would not follow its picture";

    moth.place({400, 600});
    controlled.syncArt();
    EXPECT_EQ(desk.system.surfaces[1]->frame(), moth.geometry().frame);
    controlled.setPaused(false);
    EXPECT_EQ(moth.anchor(), (FellowCore::Point{400, 600}));
}

TEST(StageTest, KnowsEveryoneAndWhoStandsInTheOrderOfArrival) {
    Desk desk;
    CharacterStage stage(desk.services);
    for (const char* id : {"ant", "bee", "cat"}) {
        stage.add(std::make_unique<Told>(desk, PackForm{.id = id}));
    }
    stage.open();
    const auto names = [](const std::vector<DesktopCharacter*>& of) {
        Log ids;
        for (const DesktopCharacter* one : of) {
            ids.push_back(one->identifier());
        }
        return ids;
    };
    EXPECT_EQ(stage.active(), nullptr);
    EXPECT_EQ(stage.find("dog"), nullptr);
    EXPECT_EQ(stage.controlled("dog"), nullptr);
    for (const char* id : {"cat", "ant"}) {
        EXPECT_TRUE(stage.host().add(id));
    }
    EXPECT_FALSE(stage.host().add("dog"));
    EXPECT_THAT(names(stage.onScreen()), ElementsAre("cat", "ant"));
    EXPECT_EQ(stage.active(), stage.find("ant"));
    EXPECT_THAT(stage.attachmentObstacles(*stage.find("cat")), IsEmpty()) << "nobody is visible yet";

    stage.host().setVisible(true);
    DesktopCharacter& cat = *stage.find("cat");
    EXPECT_THAT(stage.attachmentObstacles(cat), ElementsAre(stage.find("ant")->geometry().artwork));
    EXPECT_EQ(stage.attachmentObstacles(*stage.find("bee")).size(), 2U);
    EXPECT_THAT(static_cast<Told&>(cat).log, ElementsAre("prepare", "activate"));
    stage.host().shutdown();
    EXPECT_THAT(static_cast<Told&>(cat).log, ElementsAre("prepare", "activate", "deactivate"));
}

} // namespace
} // namespace AppHarness
