#include "helpers/media/MediaChoice.h"
#include "helpers/media/MediaInput.h"
#include "helpers/media/MediaProperties.h"

#include <gmock/gmock.h>

#include <QDBusObjectPath>
#include <QStringList>

namespace FellowMedia {
namespace {

using enum FellowCore::NowPlayingCommand;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

MediaPlayer player(const char* name, Playback playback, const char* title, std::uint64_t lastPlayed = 0) {
    MediaPlayer made;
    made.names = {name};
    made.playback = playback;
    made.title = title;
    made.lastPlayed = lastPlayed;
    return made;
}

MediaPlayer addOn(Playback playback, const char* title, const char* browser, std::uint64_t lastPlayed = 0) {
    MediaPlayer made = player("plasma-browser-integration", playback, title, lastPlayed);
    made.desktopEntry = browser;
    return made;
}

TEST(MediaPlayer, IsKnownByItsEntryElseItsName) {
    struct Case {
        const char* fault;
        std::set<std::string> names;
        const char* entry;
        const char* identifier;
    };
    const Case cases[] = {
        {"the entry is passed over", {"vlc"}, "org.videolan.VLC", "org.videolan.VLC"},
        {"each start is another application", {"vlc.instance4711"}, "", "vlc"},
        {"only one kind of number is known", {"firefox.instance_1_84"}, "", "firefox"},
        {"a name of its own is cut", {"io.instances.player"}, "", "io.instances.player"},
        {"of two names the longer counts", {"mpv.instance9", "mpv"}, "", "mpv"},
        {"nothing is left", {".instance1"}, "", ".instance1"},
    };
    for (const Case& test : cases) {
        MediaPlayer known;
        known.names = test.names;
        known.desktopEntry = test.entry;
        EXPECT_EQ(known.bundleIdentifier(), test.identifier) << test.fault;
    }
}

TEST(MediaPlayer, IsToldOnlyWhatItCanDo) {
    using Method = std::optional<std::string>;
    struct Case {
        const char* fault;
        Playback playback;
        bool canControl, canPlay, canPause;
        Method method;
    };
    const Case cases[] = {
        {"a player is not toggled", Playback::playing, true, true, true, "PlayPause"},
        {"one that cannot pause is toggled", Playback::paused, true, true, false, "Play"},
        {"a stream that cannot pause is paused", Playback::playing, true, true, false, {}},
        {"one that cannot be controlled is", Playback::playing, false, true, true, {}},
    };
    for (const Case& test : cases) {
        MediaPlayer told = player("p", test.playback, "t");
        told.canControl = test.canControl;
        told.canPlay = test.canPlay;
        told.canPause = test.canPause;
        const auto method = methodFor(told, playPause);
        EXPECT_EQ(method ? Method(*method) : Method(), test.method) << test.fault;
        EXPECT_EQ(told.canPlayPause(), test.method.has_value()) << test.fault;
        EXPECT_FALSE(methodFor(told, next) || methodFor(told, previous) || methodFor(told, raise))
            << test.fault;
    }
    MediaPlayer able = player("p", Playback::playing, "t");
    able.canGoNext = able.canGoPrevious = able.canRaise = true;
    EXPECT_STREQ(methodFor(able, next).value(), "Next");
    EXPECT_STREQ(methodFor(able, previous).value(), "Previous");
    able.canControl = false;
    EXPECT_FALSE(methodFor(able, next) || methodFor(able, previous));
    EXPECT_STREQ(methodFor(able, raise).value(), "Raise") << "a window is no control of the music";
}

TEST(MediaChoice, ShowsWhoPlaysElseWhoPlayedLast) {
    using enum Playback;
    struct Case {
        const char* fault;
        std::vector<MediaPlayer> players;
        const char* title; ///< of the chosen one; empty for none
    };
    const Case cases[] = {
        {"there is always one", {}, ""},
        {"one whose metadata have not come is shown", {player("a", playing, " ", 1)}, ""},
        {"a late one hides who has something to show",
         {player("a", playing, "", 2), player("b", paused, "B")},
         "B"},
        {"a recent one beats one that plays",
         {player("a", playing, "A", 1), player("b", paused, "B", 2)},
         "A"},
        {"the first to play wins", {player("a", playing, "A", 1), player("b", playing, "B", 2)}, "B"},
        {"a pause beats what played", {player("a", paused, "A"), player("b", stopped, "B", 1)}, "B"},
        {"stopped and paused are the same", {player("a", stopped, "A"), player("b", paused, "B")}, "B"},
        {"the add-on counts beside its browser",
         {player("firefox", playing, "A", 1), addOn(playing, "A", "other", 2)},
         "A"},
        {"the add-on is ahead of its browser by a song",
         {[] {
              MediaPlayer browser = player("firefox", playing, "Old", 1);
              browser.desktopEntry = "firefox";
              return browser;
          }(),
          addOn(playing, "New", "firefox", 2)},
         "Old"},
        {"the add-on hides another player",
         {player("mpv", paused, "M", 3), addOn(playing, "A", "firefox", 2)},
         "A"},
        {"the add-on alone is none", {addOn(playing, "A", "firefox", 1)}, "A"},
        {"two add-ons cancel each other", {addOn(playing, "A", "x", 1), addOn(playing, "A", "x", 2)}, "A"},
        {"a silent browser hides its add-on",
         {player("firefox", paused, "A", 1), addOn(playing, "A", "firefox", 2)},
         "A"},
    };
    for (const Case& test : cases) {
        std::vector<const MediaPlayer*> all;
        for (const MediaPlayer& each : test.players) {
            all.push_back(&each);
        }
        const MediaPlayer* chosen = chosenPlayer(all);
        EXPECT_EQ(chosen ? chosen->title : "", test.title) << test.fault;
    }
    const MediaPlayer browser = player("firefox", playing, "A", 1);
    const MediaPlayer repeat = addOn(playing, "A", "other", 2);
    EXPECT_EQ(chosenPlayer({&repeat, &browser}), &browser) << "the add-on has no picture and another number";
    EXPECT_TRUE(isProxy("playerctld"));
}

QVariantMap metadata(const QVariantMap& fields) {
    return {{QStringLiteral("Metadata"), fields}};
}

TEST(MediaProperties, TakeWhatIsRightAndLeaveOutTheRest) {
    const QString title = QStringLiteral("xesam:title");
    const QString artist = QStringLiteral("xesam:artist");
    const QString track = QStringLiteral("mpris:trackid");
    const QString art = QStringLiteral("mpris:artUrl");
    MediaPlayer taken;
    takePlayerProperties(taken,
                         metadata({{title, QStringLiteral("Song")},
                                   {artist, QStringList{QStringLiteral("A"), QString(), QStringLiteral("B")}},
                                   {track, QVariant::fromValue(QDBusObjectPath(QStringLiteral("/7")))},
                                   {art, QStringLiteral("file:///a.png")}}));
    EXPECT_EQ(taken.title + "|" + taken.artist + "|" + taken.identifier + "|" + taken.artworkURL,
              "Song|A, B|/7|file:///a.png");
    takePlayerProperties(taken, {{QStringLiteral("PlaybackStatus"), QStringLiteral("Playing")},
                                 {QStringLiteral("CanGoNext"), true}});
    EXPECT_EQ(taken.title, "Song") << "what is not mentioned stays";
    EXPECT_TRUE(taken.isPlaying() && taken.canGoNext);

    takePlayerProperties(taken, {{QStringLiteral("PlaybackStatus"), 7}, {QStringLiteral("CanGoNext"), 1}});
    EXPECT_FALSE(taken.isPlaying() || taken.canGoNext) << "a number is not a state";
    takePlayerProperties(taken,
                         metadata({{title, 7},
                                   {artist, QStringLiteral("Only one")},
                                   {track, QStringLiteral("/org/mpris/MediaPlayer2/TrackList/NoTrack")},
                                   {art, QString(longestURL + 1, QLatin1Char('x'))}}));
    EXPECT_EQ(taken.title + "|" + taken.artist + "|" + taken.identifier + "|" + taken.artworkURL,
              "|Only one||");
    takePlayerProperties(
        taken, metadata({{title, QString(longestText - 1, QLatin1Char('x')) + QStringLiteral("😀")}}));
    EXPECT_EQ(taken.title, std::string(longestText - 1, 'x')) << "half a character is kept";
    takePlayerProperties(taken, {{QStringLiteral("Metadata"), QStringLiteral("none")}});
    EXPECT_EQ(taken.title, "");

    takeRootProperties(taken, {{QStringLiteral("DesktopEntry"), QStringLiteral("org.a.B.desktop")},
                               {QStringLiteral("CanRaise"), true}});
    EXPECT_EQ(taken.desktopEntry, "org.a.B");
    EXPECT_TRUE(taken.canRaise);
}

TEST(MediaCommandLines, TakeCommandsAndPassOverTheRest) {
    MediaCommandLines lines;
    EXPECT_THAT(lines.append("next\nplay-"), ElementsAre(next));
    EXPECT_THAT(lines.append("pause\n\nNEXT\nraise\n"), ElementsAre(playPause, raise));
    EXPECT_THAT(lines.append(std::string(1000000, 'x')), IsEmpty());
    EXPECT_THAT(lines.append("next\nprevious\n"), ElementsAre(previous))
        << "the end of a long line is no command";
}

} // namespace
} // namespace FellowMedia
