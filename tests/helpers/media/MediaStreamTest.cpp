#include "helpers/media/MediaStream.h"
#include "core/nowplaying/NowPlayingControls.h"
#include "core/nowplaying/NowPlayingLines.h"
#include "core/nowplaying/NowPlayingParser.h"
#include "helpers/media/MediaArtwork.h"

#include <gtest/gtest.h>

#include <QByteArray>

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace FellowMedia {
namespace {

namespace fs = std::filesystem;
using FellowCore::Json;

MediaPlayer song() {
    MediaPlayer player;
    player.names = {"mpv"};
    player.identity = "mpv";
    player.playback = Playback::playing;
    player.canPlay = player.canPause = player.canRaise = true;
    player.title = "Song\a\u202e";
    player.identifier = "/1";
    return player;
}

TEST(MediaStream, TellsAllAtFirstAndThenWhatChanged) {
    MediaStream stream;
    EXPECT_EQ(stream.line(nullptr, ""), "{\"diff\":false,\"payload\":{},\"type\":\"data\"}\n");
    EXPECT_EQ(stream.line(nullptr, ""), std::nullopt) << "nothing changed";
    MediaPlayer player = song();
    const Json first = Json::parse(stream.line(&player, "").value());
    EXPECT_EQ(first, Json::parse(R"({"type":"data","diff":true,"payload":{
        "title":"Song\u0007\u202e","bundleIdentifier":"mpv","displayName":"mpv","playing":true,
        "contentItemIdentifier":"/1","canPlayPause":true,"canGoNext":false,"canGoPrevious":false,"canRaise":true}})"));
    EXPECT_EQ(stream.line(&player, ""), std::nullopt);
    player.playback = Playback::paused;
    player.identifier.clear();
    EXPECT_EQ(Json::parse(stream.line(&player, "SGk=").value())["payload"],
              Json::parse(R"({"playing":false,"contentItemIdentifier":null,"artworkData":"SGk="})"));
    player.names = {"plasma-browser-integration"};
    player.identifier = "/9";
    EXPECT_EQ(Json::parse(stream.line(&player, "SGk=").value())["payload"],
              Json::parse(R"({"bundleIdentifier":"plasma-browser-integration"})"))
        << "an add-on's numbers would announce the same piece again";
    const Json gone = Json::parse(stream.line(nullptr, "").value())["payload"];
    EXPECT_EQ(gone.size(), 9U);
    for (const auto& [key, value] : gone.items()) {
        EXPECT_TRUE(value.is_null()) << key;
    }
}

TEST(MediaStream, LargestPictureAndTextPassTheReader) {
    MediaPlayer player = song();
    player.title = player.artist = player.identity = std::string(4096, '\x01');
    const QByteArray picture(largestArtwork, 'p');
    MediaStream stream;
    const auto line = stream.line(&player, picture.toBase64().toStdString());
    FellowCore::NowPlayingLines lines;
    const auto cut = lines.append(line.value());
    ASSERT_EQ(cut.size(), 1U);
    FellowCore::NowPlayingParser parser;
    EXPECT_EQ(parser.consume(cut.front())->artworkData->size(), largestArtwork);
    EXPECT_TRUE(FellowCore::NowPlayingControls::from(parser.fields()).canPlayPause);
}

/// A folder with all that the URL of a picture may lead to.
class MediaArtworkFiles : public ::testing::Test {
protected:
    MediaArtworkFiles() {
        std::string name = (fs::temp_directory_path() / "fellow-artwork-XXXXXX").string();
        folder_ = ::mkdtemp(name.data());
        write("cover %.png", "cover");
        write("empty", "");
        write("largest", std::string(largestArtwork, 'x'));
        write("too large", std::string(largestArtwork + 1, 'x'));
        fs::create_symlink("cover %.png", folder_ / "link");
        fs::create_symlink("/dev/zero", folder_ / "zero");
        fs::create_symlink("loop", folder_ / "loop");
        ::mkfifo((folder_ / "pipe").c_str(), 0600);
    }
    ~MediaArtworkFiles() override { fs::remove_all(folder_); }

    void write(const char* name, const std::string& bytes) const {
        std::ofstream(folder_ / name, std::ios::binary) << bytes;
    }
    std::string artwork(const std::string& name, const std::string& scheme = "file://") const {
        return artworkBase64(scheme + folder_.string() + "/" + name);
    }

    fs::path folder_;
};

TEST_F(MediaArtworkFiles, OnlyRegularFilesOfThisMachine) {
    const std::string cover = "Y292ZXI=";
    EXPECT_EQ(artwork("cover%20%25.png"), cover);
    EXPECT_EQ(artwork("link"), cover);
    EXPECT_EQ(artwork("link", "file://localhost"), cover);
    EXPECT_EQ(artwork("largest").size(), largestArtwork / 3 * 4);
    for (const char* name : {"empty", "too%20large", "zero", "loop", "pipe", "", "absent"}) {
        EXPECT_EQ(artwork(name), "") << name;
    }
    for (const char* scheme : {"", "file://elsewhere", "http://localhost", "smb://", "qrc:"}) {
        EXPECT_EQ(artwork("link", scheme), "") << scheme;
    }
    EXPECT_EQ(artworkBase64("file:///proc/self/environ"), "") << "what has no size may have no end";
    EXPECT_EQ(artworkBase64("file:link"), "");
}

TEST(MediaArtwork, TakesPicturesFromTheirURL) {
    struct Case {
        const char* fault;
        std::string url;
        const char* base64;
    };
    const Case cases[] = {
        {"base64 is encoded twice", "data:image/png;base64,SGk=", "SGk="},
        {"percents are taken as they are", "data:;base64,SGk%3D", "SGk="},
        {"only base64 is known", "data:,H%69", "SGk="},
        {"rubbish is a picture", "data:;base64,S*k=", ""},
        {"a URL without content has some", "data:image/png;base64", ""},
        {"an empty picture is one", "data:,", ""},
        {"there is no limit", "data:," + std::string(largestArtwork + 1, 'x'), ""},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(artworkBase64(test.url), test.base64) << test.fault;
    }
}

} // namespace
} // namespace FellowMedia
