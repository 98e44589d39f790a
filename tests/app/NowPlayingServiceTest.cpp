#include "tests/app/ThumkaHarness.h"

namespace ThumkaHarness {
namespace {

using testing::SizeIs;

class NowPlayingServiceTest : public testing::Test {
protected:
    void follow() { service->setFollowing(true); }
    bool hasTitle(const std::string& title) {
        return waitUntil([&] { return service->news().track && service->news().track->title == title; },
                         6000);
    }
    bool isGone() {
        return waitUntil([&] { return !helper.started().empty() && !helper.isAlive(); });
    }

    TestSupport::TemporaryFolder folder;
    Helper helper{folder.path()};
    std::unique_ptr<NowPlayingService> service = std::make_unique<NowPlayingService>(helper.program(), quick);
};

TEST_F(NowPlayingServiceTest, FollowsChangesAndPassesCommandsOn) {
    EXPECT_THAT(helper.started(), SizeIs(0)) << "before anyone wants to know";
    follow();
    helper.write(line());
    ASSERT_TRUE(hasTitle("Rain"));
    EXPECT_TRUE(service->isAvailable());
    EXPECT_TRUE(service->news().controls.canPlayPause);
    helper.write(change(R"("title":"Sun","canGoNext":true)"));
    ASSERT_TRUE(hasTitle("Sun"));
    EXPECT_EQ(service->news().track->artist, "Leela");
    service->send(NowPlayingCommand::next);
    service->send(NowPlayingCommand::playPause);
    EXPECT_TRUE(waitUntil([&] { return helper.read("commands") == "next\nplay-pause\n"; }));
    service->setFollowing(false);
    EXPECT_FALSE(service->news().track) << "what played is forgotten at once";
    EXPECT_TRUE(isGone());
}

TEST_F(NowPlayingServiceTest, WhatIsNoLineOfTheStreamIsSkipped) {
    const std::string good = line();
    const std::string late = change(R"("title":"After")");
    struct Case {
        const char* fault;
        std::string body;
    };
    const Case cases[] = {
        {"bytes that are no text", "head -c 5000 /dev/urandom"},
        {"a truncated line", "echo '{\"type\":\"data\",\"diff\":'"},
        {"another kind of line", "echo '{\"type\":\"log\",\"diff\":true,\"payload\":{}}'; echo 7; echo"},
        {"a line longer than any cover", "head -c 12000001 /dev/zero | tr '\\0' x"},
        {"a title that is no text", "echo '{\"type\":\"data\",\"diff\":true,\"payload\":{\"title\":[1]}}'"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.fault);
        std::ofstream(folder / "good") << good;
        std::ofstream(folder / "late") << late;
        helper.behaves("cat good; " + each.body + "; sleep 0.1; echo; cat late; cat > /dev/null");
        follow();
        EXPECT_TRUE(hasTitle("After"));
        EXPECT_EQ(service->news().track->artist, "Leela") << "what was known before is kept";
        service->setFollowing(false);
        ASSERT_TRUE(isGone());
    }
}

TEST_F(NowPlayingServiceTest, AHelperThatDiesIsStartedAgainAfterGrowingPauses) {
    std::ofstream(folder / "line") << line();
    helper.behaves("date +%s%N >> times; cat line; exit 3");
    bool hasFailed = false;
    QObject::connect(service.get(), &NowPlayingService::changed, [&] {
        hasFailed = hasFailed || (service->news().following == Following::failed && !service->news().track);
    });
    follow();
    ASSERT_TRUE(waitUntil([&] { return helper.started().size() >= 6; }, 6000));
    std::ifstream stream(folder / "times");
    const std::vector<std::int64_t> times{std::istream_iterator<std::int64_t>(stream), {}};
    const double pauses[] = {40, 80, 160, 160}; // ms, but for how long a process takes to start
    for (std::size_t index = 0; index < std::size(pauses); ++index) {
        const double gap = static_cast<double>(times.at(index + 1) - times.at(index)) / 1e6;
        EXPECT_GE(gap, 0.9 * pauses[index]) << "before start " << index + 2;
    }
    EXPECT_TRUE(hasFailed) << "a dead helper leaves no track behind";
    // One that lives for a while and dies then begins with the shortest pause again.
    helper.behaves("sleep 0.7; date +%s%N > died; exit 0");
    const std::size_t count = helper.started().size();
    ASSERT_TRUE(waitUntil([&] { return helper.started().size() > count + 1; }, 6000));
    service->setFollowing(false);
    EXPECT_TRUE(isGone());
}

TEST_F(NowPlayingServiceTest, OneThatIsNotInstalledIsSaidToFailAndDoesNoHarm) {
    std::filesystem::remove(helper.program().toStdString());
    follow();
    EXPECT_TRUE(waitUntil([&] { return service->news().following == Following::failed; }));
    service->send(NowPlayingCommand::next);
    helper.behaves("cat lines & reader=$!; cat >> commands; kill $reader");
    helper.write(line());
    EXPECT_TRUE(hasTitle("Rain")) << "it is installed later";
}

TEST_F(NowPlayingServiceTest, AStubbornHelperIsKilledAndNobodyWaitsForIt) {
    std::ofstream(folder / "line") << line();
    helper.behaves("trap '' TERM; cat line; while :; do sleep 0.02; done");
    follow();
    ASSERT_TRUE(hasTitle("Rain"));
    QElapsedTimer waited;
    waited.start();
    service->setFollowing(false);
    EXPECT_LT(waited.elapsed(), 50);
    follow(); // wanted again before it has gone
    EXPECT_TRUE(waitUntil([&] { return helper.started().size() == 2; }));
    EXPECT_NE(::kill(helper.started().front(), 0), 0) << "never two at once";
    ASSERT_TRUE(hasTitle("Rain"));
    waited.start();
    service.reset();
    EXPECT_LT(waited.elapsed(), 500);
    EXPECT_FALSE(helper.isAlive()) << "none outlives the program";
}

TEST_F(NowPlayingServiceTest, AFloodReachesTheDrawingThreadAsATrickle) {
    std::ofstream(folder / "block") << [] {
        std::string block;
        for (int index = 0; index < 500; ++index) {
            block += line(R"("playing":true)", "Song " + std::to_string(index));
        }
        return block;
    }();
    std::ofstream(folder / "last") << line(R"("playing":true)", "Last");
    helper.behaves("for n in $(seq 40); do cat block; done; cat last; cat > /dev/null");
    qint64 changes = 0;
    QObject::connect(service.get(), &NowPlayingService::changed, [&] { ++changes; });
    QElapsedTimer lasted;
    lasted.start();
    follow();
    ASSERT_TRUE(hasTitle("Last"));
    EXPECT_LE(changes, lasted.elapsed() / quick.betweenNews.count() + 3);
}

TEST_F(NowPlayingServiceTest, ArtworkOfAnyKindBecomesASmallSquareOrNothing) {
    QImage wide(600, 400, QImage::Format_RGB32);
    wide.fill(Qt::red);
    QImage broad(8200, 2, QImage::Format_Mono);
    broad.fill(0);
    QImage vast(4200, 4200, QImage::Format_Mono);
    vast.fill(0);
    const std::string jpeg = base64Of(wide, "jpeg");
    const auto svg = QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>").toBase64();
    struct Case {
        const char* fault;
        std::string artwork;
        int side; ///< 0 for none
    };
    const Case cases[] = {
        {"a good one is cut and made small", jpeg, 288},
        {"a tiny one is not blown up", base64Of(wide.copy(0, 0, 3, 2), "png"), 2},
        {"too long a side", base64Of(broad, "png"), 0},
        {"too many pixels", base64Of(vast, "png"), 0},
        {"many pixels that can be read small",
         base64Of(vast.convertToFormat(QImage::Format_Grayscale8), "jpeg"), 288},
        {"a beginning of a file", base64Of(wide, "png").substr(0, 200), 0},
        {"a drawing that could refer to files", svg.toStdString(), 0},
        {"no picture", "aGVsbG8=", 0},
        {"no base64", "%%%", 0},
        {"nothing", "", 0},
    };
    follow();
    for (const Case& each : cases) {
        SCOPED_TRACE(each.fault);
        helper.write(line(R"("artworkData":")" + each.artwork + '"', each.fault));
        ASSERT_TRUE(hasTitle(each.fault));
        EXPECT_EQ(service->news().cover.size(), QSize(each.side, each.side));
    }
    helper.write(line(R"("artworkData":")" + jpeg + '"', "with"));
    ASSERT_TRUE(hasTitle("with"));
    const qint64 cover = service->news().cover.cacheKey();
    helper.write(change(R"("title":"same cover")"));
    ASSERT_TRUE(hasTitle("same cover"));
    EXPECT_EQ(service->news().cover.cacheKey(), cover) << "it is not decoded again";
    EXPECT_FALSE(service->news().track->artworkData) << "its bytes stay behind";
    helper.write(line(R"("playing":true)", "without"));
    ASSERT_TRUE(hasTitle("without"));
    EXPECT_TRUE(service->news().cover.isNull());
}

} // namespace
} // namespace ThumkaHarness
