#include "tests/app/MiraHarness.h"

#include <cstdlib>

namespace AppHarness {
namespace {

using FellowCore::BreathingMode;
using FellowCore::BreathingTimeline;
using FellowCore::Seconds;

/// Goes through a whole session from one frame to the next, as the frame timer does.
class Walk {
public:
    int frames = 0;
    int fastest = 0;    ///< frames in one second, at most
    int widestPose = 0; ///< the largest step from one frame to the next
    int poses = 0;      ///< how many different ones were seen
    int ringJump = 0;   ///< the largest step of the ring within a phase
    double latest = 0;  ///< how late a phase was seen at most
    std::string phases; ///< in the first round

    Walk(const BreathingTimeline& timeline, MiraMotion motion) {
        std::vector<Seconds> times;
        std::array<bool, MiraFrame::poses> seen{};
        std::optional<MiraFrame> before;
        for (Seconds at = 0; at < timeline.totalDuration();) {
            const MiraFrame frame = MiraFrame::at(timeline, at, motion);
            if (before && before->phase == frame.phase) {
                ringJump = std::max(ringJump, frame.ring - before->ring);
            } else {
                latest = std::max(latest, timeline.phaseElapsed(at));
                phases += frame.round == 1 ? std::string(FellowCore::rawValue(frame.phase)) + " " : "";
            }
            widestPose = std::max(widestPose, before ? std::abs(frame.pose - before->pose) : 0);
            seen.at(static_cast<std::size_t>(frame.pose)) = true;
            times.push_back(at);
            std::erase_if(times, [at](Seconds time) { return time <= at - 1; });
            fastest = std::max(fastest, static_cast<int>(times.size()));
            before = frame;
            at += frame.wait;
            ++frames;
        }
        poses = static_cast<int>(std::ranges::count(seen, true));
    }
};

TEST(MiraFrameTest, EveryRhythmIsSeenWholeAndWithoutAJump) {
    for (const BreathingMode mode : FellowCore::allBreathingModes) {
        SCOPED_TRACE(std::string(FellowCore::title(mode)));
        const BreathingTimeline timeline{FellowCore::settings(mode), 3};
        const Walk walk(timeline, MiraMotion::full);
        // One more frame where a phase ends between two.
        EXPECT_LE(walk.fastest, 31);
        EXPECT_EQ(walk.poses, MiraFrame::poses);
        EXPECT_LE(walk.widestPose, 1);
        EXPECT_LE(walk.ringJump, 3);
        EXPECT_LT(walk.latest, 0.002);
    }
    EXPECT_EQ(Walk({FellowCore::settings(BreathingMode::box), 3}, MiraMotion::full).phases,
              "settle inhale hold exhale rest ");
}

TEST(MiraFrameTest, StillnessCostsFewFrames) {
    const BreathingTimeline holding{{2, 8, 2, 1, 8}, 0};
    EXPECT_LT(Walk(holding, MiraMotion::full).frames, 4 * 30 + 2 * MiraFrame::ringSteps + 4);
    const Walk reduced(holding, MiraMotion::reduced);
    EXPECT_EQ(reduced.poses, 1) << "under reduced motion the body keeps still";
    EXPECT_LT(reduced.frames, 100);
}

TEST(MiraFrameTest, WordsComeUpSlowlyOnlyUnderReducedMotion) {
    const BreathingTimeline calm{FellowCore::settings(BreathingMode::calm), 3};
    EXPECT_EQ(MiraFrame::at(calm, 3, MiraMotion::full).words, MiraFrame::wordLevels);
    EXPECT_EQ(MiraFrame::at(calm, 3, MiraMotion::reduced).words, 0);
    EXPECT_EQ(MiraFrame::at(calm, 4, MiraMotion::reduced).words, MiraFrame::wordLevels);
    EXPECT_EQ(MiraFrame::at(calm, 5.7, MiraMotion::reduced).ring, 19) << "two whole seconds of five";
}

/// Mira's view that counts how often and how much of it is painted.
class WatchedView final : public MiraSpriteView {
public:
    using MiraSpriteView::MiraSpriteView;
    int paints = 0;
    double highest = 0;

    void paint(QPainter& painter, QSizeF size) override {
        ++paints;
        highest = std::max(highest, painter.clipBoundingRect().height());
        MiraSpriteView::paint(painter, size);
    }
};

TEST(MiraSpriteTest, PaintsOnlyWhatLooksDifferent) {
    Desk desk;
    const auto& manifest = FellowCore::BuiltinCharacters::mira();
    const std::filesystem::path folder = std::filesystem::path(DESKFELLOW_DATA) / "builtin";
    const FellowCore::ManifestCharacter character(manifest, folder, Platform::decodePng);
    WatchedView view([&] { return MiraPoses(folder, character); }, {});
    view.prepare();
    const auto surface = desk.system.makeSurface(view);
    view.attach(*surface);
    view.setLayout(character.layout(320, 1, FellowCore::Sizing::snapped));
    const FellowCore::Size size = view.layout().size;
    surface->setFrame({600, 300, size.width, size.height});
    surface->show();
    ASSERT_TRUE(waitUntil([&] { return view.paints > 0; }));
    Testing::runFor(200);

    const auto painted = [&](MiraFrame frame, MiraMotion motion) {
        view.paints = 0;
        view.highest = 0;
        view.showBreath(frame, motion);
        Testing::runFor(80);
        return view.paints == 0 ? "nothing" : view.highest < size.height / 2 ? "the light" : "all";
    };
    MiraFrame frame;
    EXPECT_STREQ(painted(frame, MiraMotion::full), "all") << "she closes her eyes";
    frame.ring = 5;
    EXPECT_STREQ(painted(frame, MiraMotion::full), "nothing") << "the ring is the cue's";
    frame.glow = 7;
    EXPECT_STREQ(painted(frame, MiraMotion::full), "the light");
    frame.pose = 1;
    EXPECT_STREQ(painted(frame, MiraMotion::full), "all");
    EXPECT_STREQ(painted(frame, MiraMotion::full), "nothing");
}

TEST(MiraSpriteTest, MissingPicturesLeaveHerStill) {
    const auto& manifest = FellowCore::BuiltinCharacters::mira();
    const std::filesystem::path folder = std::filesystem::path(DESKFELLOW_DATA) / "builtin";
    const FellowCore::ManifestCharacter character(manifest, folder, Platform::decodePng);
    testing::internal::CaptureStderr();
    const MiraPoses poses("/nowhere", character);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(poses.breath.front(), poses.eyesOpen);
    EXPECT_FALSE(poses.opaqueRuns.empty());
}

} // namespace
} // namespace AppHarness
