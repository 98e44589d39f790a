#include "core/devwatch/DevWatchApp.h"
#include "core/devwatch/DevWatchAppQuitAttempt.h"
#include "core/devwatch/DevWatchAuthorization.h"
#include "core/devwatch/DevWatchPresentation.h"
#include "core/devwatch/DevWatchRelaunch.h"
#include "tests/core/devwatch/FakeSystem.h"

#include <gmock/gmock.h>

#include <functional>
#include <limits>

namespace {

using namespace FellowCore;
using TestSupport::me;
using TestSupport::server;

DevWatchApp editor(std::int32_t pid = 500) {
    return {{pid, me, 9}, "Editor", "org.example.Editor", "/usr/share/applications/editor.desktop",
            true,         false};
}

TEST(DevWatchApp, ListsWhatTheUserMayQuit) {
    const struct {
        const char* fault;
        std::function<void(DevWatchApp&)> change;
        bool listed;
    } cases[] = {
        {"an ordinary one", [](DevWatchApp&) {}, true},
        {"without a desktop entry", [](DevWatchApp& app) { app.bundleIdentifier.reset(); }, true},
        {"in the background", [](DevWatchApp& app) { app.regular = false; }, false},
        {"ended", [](DevWatchApp& app) { app.terminated = true; }, false},
        {"the system's number", [](DevWatchApp& app) { app.identity.pid = 99; }, false},
        {"ourselves", [](DevWatchApp& app) { app.identity.pid = TestSupport::self; }, false},
        {"another user's", [](DevWatchApp& app) { app.identity.uid = 0; }, false},
        {"nameless", [](DevWatchApp& app) { app.name.clear(); }, false},
        {"the desktop", [](DevWatchApp& app) { app.bundleIdentifier = "com.apple.finder"; }, false},
        {"the desktop here", [](DevWatchApp& app) { app.bundleIdentifier = "org.gnome.Shell.desktop"; },
         false},
        {"this program", [](DevWatchApp& app) { app.bundleIdentifier = "com.deskfellow.app"; }, false},
        {"this program's own entry", [](DevWatchApp& app) { app.bundleIdentifier = "fellow.dev"; }, false},
    };
    for (const auto& row : cases) {
        DevWatchApp app = editor();
        row.change(app);
        EXPECT_EQ(DevWatchApp::filtered({app}, me, TestSupport::self, "fellow.dev").size(),
                  row.listed ? 1U : 0U)
            << row.fault;
    }
    DevWatchApp late = editor(501);
    late.name = "écran";
    const auto list = DevWatchApp::filtered({late, editor(502), editor(), editor()}, me, 1, std::nullopt);
    EXPECT_THAT(list, ::testing::ElementsAre(late, editor(), editor(502))) << "each once, by name";
}

TEST(DevWatchAppQuitAttempt, ForcesOnlyTheSameApplicationLater) {
    const DevWatchAppQuitAttempt attempt{editor(), {10}};
    EXPECT_FALSE(attempt.canForce(editor(), {12.9}));
    EXPECT_TRUE(attempt.canForce(editor(), {13}));
    EXPECT_FALSE(attempt.canForce(std::nullopt, {13}));
    EXPECT_FALSE(attempt.canForce(editor(), {std::numeric_limits<double>::infinity()}));
    EXPECT_FALSE((DevWatchAppQuitAttempt{editor(), {-std::numeric_limits<double>::infinity()}})
                     .canForce(editor(), {13}));
    const std::function<void(DevWatchApp&)> changes[] = {
        [](DevWatchApp& app) { ++app.identity.startedAtMicroseconds; },
        [](DevWatchApp& app) { app.name = "Editor 2"; },
        [](DevWatchApp& app) { app.bundleIdentifier.reset(); },
        [](DevWatchApp& app) { app.bundlePath = "/opt/editor"; },
        [](DevWatchApp& app) { app.terminated = true; },
    };
    for (const auto& change : changes) {
        DevWatchApp fresh = editor();
        change(fresh);
        EXPECT_FALSE(attempt.canForce(fresh, {13}));
    }
}

TEST(DevWatchRelaunch, TellsOnceOfAServerThatCameBack) {
    DevWatchRelaunch relaunch;
    const DevWatchListener back{server(5000), 5173};
    relaunch.recordStop({server(), 5173}, {100});
    EXPECT_FALSE(relaunch.relaunched({{server(), 5173}}, {101})) << "it has not ended yet";
    EXPECT_FALSE(relaunch.relaunched({{server(5000), 5174}}, {101})) << "another port";
    DevWatchListener other = back;
    other.process.executablePath = "/usr/bin/bun";
    EXPECT_FALSE(relaunch.relaunched({other}, {101})) << "another program";
    const auto told = relaunch.relaunched({other, back}, {120});
    ASSERT_TRUE(told) << "twenty seconds are still remembered";
    EXPECT_EQ(DevWatchPresentation::sentence(*told), "node came back. Something restarts it automatically.");
    EXPECT_FALSE(relaunch.relaunched({back}, {120})) << "once";
    relaunch.recordStop({server(), 5173}, {100});
    EXPECT_FALSE(relaunch.relaunched({back}, {120.1})) << "too long ago";
}

TEST(DevWatchAuthorization, EndsWithTheNextGeneration) {
    DevWatchAuthorization authorization;
    const auto before = authorization.current();
    EXPECT_TRUE(authorization.matches(before));
    EXPECT_EQ(authorization.advance(), before + 1);
    EXPECT_FALSE(authorization.matches(before));
}

} // namespace
