#include "core/nowplaying/NowPlayingState.h"
#include "core/nowplaying/NowPlayingApp.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace FellowCore {
namespace {

using Mode = NowPlayingState::Mode;
using Track = NowPlayingTrack;

constexpr bool moving = false;
constexpr bool still = true;

Track track(const char* title, const char* artist, const char* source,
            std::optional<std::string> identifier) {
    Track made;
    made.title = title;
    made.artist = artist;
    made.bundleIdentifier = source;
    made.identifier = std::move(identifier);
    return made;
}

const Track paused = track("Song", "Singer", "org.a", "1");
const Track song = [] {
    Track playing = paused;
    playing.playing = true;
    return playing;
}();

MonotonicInstant at(double seconds) {
    return {seconds};
}

TEST(NowPlayingTrack, OnlyAnotherPieceIsDifferent) {
    struct Case {
        const char* fault;
        Track other;
        bool different;
    };
    const Case cases[] = {
        {"a pause begins a song", paused, false},
        {"another title does not", track("Other", "Singer", "", {}), true},
        {"another artist does not", track("Song", "Other", "", {}), true},
        {"an unknown source is another", track("Song", "Singer", "", "1"), false},
        {"the same song elsewhere is the same", track("Song", "Singer", "org.b", {}), true},
        {"an unknown item is another", track("Song", "Singer", "org.a", {}), false},
        {"an item of the same name is the same", track("Song", "Singer", "", "2"), true},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(song.isDifferent(test.other), test.different) << test.fault;
        EXPECT_EQ(test.other.isDifferent(song), test.different) << test.fault;
    }
    Track withCover = song;
    withCover.artworkData = {1};
    EXPECT_FALSE(withCover.isDifferent(song)) << "a late cover begins a song";
    EXPECT_TRUE(song.isDifferent(std::nullopt));
}

TEST(NowPlayingState, AnnouncesEachPieceOnceForThreeSeconds) {
    NowPlayingState state;
    state.update(song, true, at(10));
    EXPECT_EQ(state.bubble(at(12.99)), "Song");
    EXPECT_EQ(state.bubble(at(13)), std::nullopt);
    state.update(paused, true, at(20));
    state.update(song, true, at(21));
    EXPECT_EQ(state.bubble(at(21)), std::nullopt) << "going on is no new song";
    state.update(track("Next", "", "", {}), true, at(30));
    EXPECT_EQ(state.bubble(at(31)), "Next");
    state.update(std::nullopt, true, at(31));
    EXPECT_EQ(state.bubble(at(31)), std::nullopt) << "the title of what is gone";
    state.update(song, true, at(32));
    EXPECT_EQ(state.bubble(at(32)), "Song") << "what comes back is new";
    state.update(song, false, at(33));
    EXPECT_EQ(state.bubble(at(33)), std::nullopt) << "a title with nobody to tell it";
}

TEST(NowPlayingState, DancesDozesAndIdles) {
    NowPlayingState state;
    state.quietSince = at(1000);
    EXPECT_EQ(state.mode(at(2000)), Mode::idle) << "not available";
    state.update(std::nullopt, true, at(1000));
    EXPECT_EQ(state.mode(at(1299)), Mode::idle);
    EXPECT_EQ(state.mode(at(1300)), Mode::dozing);
    state.update(song, true, at(2000));
    EXPECT_EQ(state.mode(at(9000)), Mode::dancing) << "a long piece puts her to sleep";
    state.update(paused, true, at(9000));
    EXPECT_EQ(state.mode(at(9299)), Mode::idle)
        << "quiet is counted from the end of the music, not its start";
    state.update(paused, true, at(9200));
    EXPECT_EQ(state.mode(at(9300)), Mode::dozing) << "news of a paused player wake her";
    state.update(song, false, at(9300));
    EXPECT_EQ(state.mode(at(9300)), Mode::idle) << "dances to what nobody tells any more";
    EXPECT_EQ(state.pose(at(9300), moving), "idle");
}

TEST(NowPlayingState, PosesFollowTheClock) {
    NowPlayingState playing;
    playing.update(song, true, at(100));
    NowPlayingState quiet;
    quiet.available = true;
    quiet.quietSince = at(101);
    constexpr double never = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        const char* fault;
        const NowPlayingState& state;
        double at;
        bool motion;
        const char* pose;
    };
    const Case cases[] = {
        {"the dance starts with the song", playing, 100, moving, "dance-1"},
        {"a frame a second", playing, 100.5, moving, "dance-2"},
        {"three frames a second", playing, 100.49, moving, "dance-1"},
        {"the seventh is missing", playing, 103, moving, "dance-7"},
        {"there is an eighth picture", playing, 103.5, moving, "dance-2"},
        {"eight is not the end", playing, 104, moving, "dance-1"},
        {"before the clock began", playing, -3, moving, "dance-1"},
        {"no time at all", playing, never, moving, "dance-1"},
        {"a clock beyond whole numbers", playing, 1e300, moving, "dance-1"},
        {"dances though motion is reduced", playing, 100.5, still, "idle"},
        {"does not breathe while music plays", playing, 102, still, "idle-breathe"},
        {"breathes with the clock, not the quiet", quiet, 102.9, moving, "idle"},
        {"holds her breath", quiet, 103, moving, "idle-breathe"},
        {"a clock that stepped back", quiet, 50, moving, "idle"},
        {"stays awake", quiet, 401, moving, "doze"},
        {"does not doze when motion is reduced", quiet, 401, still, "doze"},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(test.state.pose(at(test.at), test.motion), test.pose) << test.fault;
    }
}

TEST(NowPlayingApp, KnowsShortNames) {
    struct Case {
        const char* bundleID;
        std::optional<std::string> fallback;
        const char* name;
    };
    const Case cases[] = {
        {"com.google.Chrome.beta", "Google Chrome Beta", "Chrome"},
        {"com.apple.iTunes", std::nullopt, "Music"},
        {"com.google.chrome", "Google Chrome", "Google Chrome"},
        {"org.example.player", std::nullopt, "player"},
        {"mpv", std::nullopt, "mpv"},
        {"", std::nullopt, ""},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(NowPlayingApp::name(test.bundleID, test.fallback), test.name);
    }
}

} // namespace
} // namespace FellowCore
