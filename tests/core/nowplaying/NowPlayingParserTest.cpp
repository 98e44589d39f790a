#include "core/nowplaying/NowPlayingParser.h"
#include "core/nowplaying/NowPlayingCommand.h"
#include "core/nowplaying/NowPlayingControls.h"
#include "core/nowplaying/NowPlayingLines.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

#include <string>

namespace FellowCore {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Track = NowPlayingTrack;

std::string line(const std::string& payload, bool diff = true) {
    return R"({"type":"data","diff":)" + std::string(diff ? "true" : "false") + R"(,"payload":)" + payload +
           "}";
}

const std::string song = line(
    R"({"title":" Kajra Re \n","artist":" Alisha ","playing":true,"bundleIdentifier":"org.example.player",
             "artworkData":"SGk=","contentItemIdentifier":"7"})",
    false);
const Track songTrack{.title = "Kajra Re",
                      .artist = "Alisha",
                      .bundleIdentifier = "org.example.player",
                      .playing = true,
                      .artworkData = std::vector<std::uint8_t>{'H', 'i'},
                      .identifier = "7"};

Track titled(const char* title) {
    Track track;
    track.title = title;
    return track;
}

/// The song's track after a change to it.
template <typename Change>
Track changed(Change change) {
    Track track = songTrack;
    change(track);
    return track;
}

TEST(NowPlayingParser, MergesWhatChangesIntoWhatWasKnown) {
    struct Case {
        const char* fault;
        std::string line;
        std::optional<Track> track;
    };
    const Case cases[] = {
        {"a pause forgets the song", line(R"({"playing":false})"),
         changed([](Track& t) { t.playing = false; })},
        {"null keeps what went away",
         line(R"({"artist":null,"artworkData":null,"contentItemIdentifier":null})"), changed([](Track& t) {
             t.artist.clear();
             t.artworkData.reset();
             t.identifier.reset();
         })},
        {"a whole state leaves the old one standing", line(R"({"title":"B"})", false), titled("B")},
        {"an empty state is still a song", line("{}", false), std::nullopt},
        {"a title of spaces is a song", line(R"({"title":" \t\u2003\r\n"})"), std::nullopt},
        {"a title of another type is a song", line(R"({"title":7})"), std::nullopt},
        {"fields of other types are taken", line(R"({"artist":[],"playing":1,"artworkData":{}})"),
         changed([](Track& t) {
             t.artist.clear();
             t.playing = false;
             t.artworkData.reset();
         })},
        {"half a cover is shown", line(R"({"artworkData":"SGk"})"),
         changed([](Track& t) { t.artworkData.reset(); })},
        {"rubbish is a cover", line(R"({"artworkData":"*!?="})"),
         changed([](Track& t) { t.artworkData.reset(); })},
        {"an unknown key is an error", line(R"({"mood":"good"})"), songTrack},
        {"the parser cleans what only a view may", line(R"({"title":"a\u0007\u202eb"})"),
         changed([](Track& t) { t.title = "a\a\u202eb"; })},
    };
    for (const Case& test : cases) {
        NowPlayingParser parser;
        EXPECT_EQ(parser.consume(song), songTrack);
        EXPECT_EQ(parser.consume(test.line), test.track) << test.fault;
    }
}

TEST(NowPlayingParser, BadLineIsAnErrorAndChangesNothing) {
    enum class Wrong { json, line };
    struct Case {
        const char* fault;
        std::string line;
        Wrong wrong;
    };
    const Case cases[] = {
        {"an empty line", "", Wrong::json},
        {"a truncated line", song.substr(0, song.size() - 1), Wrong::json},
        {"a line and more", song + "x", Wrong::json},
        {"half a character", line("{\"title\":\"\xe0\xa4\"}"), Wrong::json},
        {"a hundred levels", line(R"({"title":)" + std::string(100, '[') + std::string(100, ']') + "}"),
         Wrong::json},
        {"a bare string", R"("data")", Wrong::line},
        {"a list", "[1]", Wrong::line},
        {"no type", R"({"diff":false,"payload":{}})", Wrong::line},
        {"another type", R"({"type":"log","diff":false,"payload":{}})", Wrong::line},
        {"a number for a type", R"({"type":1,"diff":false,"payload":{}})", Wrong::line},
        {"no payload", R"({"type":"data","diff":false})", Wrong::line},
        {"a list for a payload", line("[]", false), Wrong::line},
        {"no diff, which would empty everything", R"({"type":"data","payload":{}})", Wrong::line},
        {"a number for a diff", R"({"type":"data","diff":0,"payload":{}})", Wrong::line},
    };
    NowPlayingParser parser;
    parser.consume(song);
    const Json before = parser.fields();
    for (const Case& test : cases) {
        if (test.wrong == Wrong::json) {
            EXPECT_THROW(parser.consume(test.line), JsonError) << test.fault;
        } else {
            EXPECT_THROW(parser.consume(test.line), NowPlayingParser::ParseError) << test.fault;
        }
        EXPECT_EQ(parser.fields(), before) << test.fault;
    }
    EXPECT_EQ(parser.consume("null"), std::nullopt);
    EXPECT_EQ(parser.consume(line("{}")), songTrack) << "the bad lines, or null, took something away";
}

TEST(NowPlayingControls, ReadWhatThePlayerCanDo) {
    NowPlayingParser parser;
    parser.consume(
        line(R"({"displayName":" Player ","canGoNext":true,"canPlayPause":1,"canRaise":true})", false));
    EXPECT_EQ(NowPlayingControls::from(parser.fields()),
              (NowPlayingControls{.displayName = "Player", .canGoNext = true, .canRaise = true}));
    parser.consume(line(R"({"displayName":"  ","canRaise":null,"canGoPrevious":true,"canPlayPause":true})"));
    EXPECT_EQ(
        NowPlayingControls::from(parser.fields()),
        (NowPlayingControls{
            .displayName = std::nullopt, .canPlayPause = true, .canGoNext = true, .canGoPrevious = true}));
}

TEST(NowPlayingCommand, WordsAndCommandsAreTheSame) {
    using enum NowPlayingCommand;
    for (const NowPlayingCommand command : {playPause, next, previous, raise}) {
        EXPECT_EQ(nowPlayingCommand(rawValue(command)), command);
    }
    for (const char* word : {"", "Next", "next ", "stop"}) {
        EXPECT_EQ(nowPlayingCommand(word), std::nullopt) << word;
    }
}

TEST(NowPlayingLines, CutsAtLineFeedsWhereverTheBytesWereCut) {
    NowPlayingLines lines;
    EXPECT_THAT(lines.append("a\nb\n\nrest"), ElementsAre("a", "b", ""));
    EXPECT_EQ(lines.pending(), "rest");
    EXPECT_THAT(lines.append(" of it"), IsEmpty());
    EXPECT_THAT(lines.append("\r\n"), ElementsAre("rest of it\r"));
    EXPECT_THAT(lines.append(""), IsEmpty());
    EXPECT_EQ(lines.pending(), "");
}

TEST(NowPlayingLines, DropsWhatGrowsBeyondTheLimit) {
    const std::string most(NowPlayingLines::limit - 1, 'x');
    NowPlayingLines lines;
    EXPECT_THAT(lines.append(most + "\n"), ElementsAre(most))
        << "12,000,000 bytes may be one line and its end";
    EXPECT_THAT(lines.append(most), IsEmpty());
    EXPECT_THAT(lines.append("y\n"), IsEmpty()) << "the last byte is one too many, whatever it is";
    EXPECT_EQ(lines.pending(), "");
    EXPECT_THAT(lines.append("next\n"), ElementsAre("next"));
    EXPECT_THAT(lines.append("a\n" + most), IsEmpty()) << "one chunk beyond the limit";
    EXPECT_THAT(lines.append("next\n"), ElementsAre("next"));
}

} // namespace
} // namespace FellowCore
