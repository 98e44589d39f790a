#include "core/devwatch/DevWatchSafetyPolicy.h"
#include "core/devwatch/DevWatchPresentation.h"
#include "tests/core/devwatch/FakeSystem.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>

namespace {

using namespace FellowCore;
using Refusal = DevWatchSafetyRefusal;
using TestSupport::plainPolicy;
using TestSupport::server;

struct Case {
    const char* fault;
    std::function<void(DevWatchProcess&)> change;
    std::optional<Refusal> expected;
};

TEST(DevWatchSafetyPolicy, RefusesInItsOrder) {
    using Process = DevWatchProcess;
    const Case cases[] = {
        {"an ordinary server is refused", [](Process&) {}, std::nullopt},
        {"99 is still the system's", [](Process& p) { p.identity.pid = 99; }, Refusal::protectedPID},
        {"100 is refused as well", [](Process& p) { p.identity.pid = 100; }, std::nullopt},
        {"the floor comes after the owner",
         [](Process& p) {
             p.identity = {99, 0, 1};
         },
         Refusal::protectedPID},
        {"root's is touched", [](Process& p) { p.identity.uid = 0; }, Refusal::anotherUser},
        {"ourselves with an unknown start",
         [](Process& p) {
             p.identity = {TestSupport::self, TestSupport::me, 0};
         },
         Refusal::selfProcess},
        {"a start that is not known", [](Process& p) { p.identity.startedAtMicroseconds = 0; },
         Refusal::incompleteIdentity},
        {"a name of white space", [](Process& p) { p.name = " \t\u2003\n"; }, Refusal::incompleteIdentity},
        {"a relative program", [](Process& p) { p.executablePath = "usr/bin/node"; },
         Refusal::incompleteIdentity},
        {"no folder", [](Process& p) { p.workingDirectory.clear(); }, Refusal::incompleteIdentity},
        {"a path cut by a NUL", [](Process& p) { p.executablePath = std::string("/usr/bin/no\0de", 14); },
         Refusal::incompleteIdentity},
        {"the folder itself", [](Process& p) { p.executablePath = "/System"; }, Refusal::protectedPath},
        {"below it", [](Process& p) { p.executablePath = "/System/x"; }, Refusal::protectedPath},
        {"a longer name is not below", [](Process& p) { p.executablePath = "/Systemic/x"; }, std::nullopt},
        {"a way around by dots", [](Process& p) { p.executablePath = "/opt/..//usr/./libexec/x"; },
         Refusal::protectedPath},
        {"the user's service manager", [](Process& p) { p.executablePath = "/usr/lib/systemd/systemd"; },
         Refusal::protectedPath},
        {"a program beside it is an ordinary one", [](Process& p) { p.executablePath = "/usr/lib/systemic"; },
         std::nullopt},
        {"a daemon that people develop with", [](Process& p) { p.executablePath = "/usr/sbin/nginx"; },
         std::nullopt},
        {"spaces and case hide a name", [](Process& p) { p.name = "Window Server"; },
         Refusal::protectedProcess},
        {"brackets hide a name", [](Process& p) { p.name = "(sd-pam)"; }, Refusal::protectedProcess},
        {"a changed name hides the program", [](Process& p) { p.executablePath = "/usr/bin/gnome-shell"; },
         Refusal::protectedProcess},
        {"a changed program hides the name", [](Process& p) { p.name = "Xorg"; }, Refusal::protectedProcess},
        {"the message bus", [](Process& p) { p.name = "dbus-daemon"; }, Refusal::protectedProcess},
        {"sound", [](Process& p) { p.name = "pipewire-pulse"; }, Refusal::protectedProcess},
        {"a name that only begins so", [](Process& p) { p.name = "docker"; }, std::nullopt},
        {"the shell we run in",
         [](Process& p) {
             p.identity = {3000, TestSupport::me, 77};
         },
         Refusal::protectedProcess},
        {"a later process with its number",
         [](Process& p) {
             p.identity = {3000, TestSupport::me, 78};
         },
         std::nullopt},
        {"this program", [](Process& p) { p.executablePath = "/home/asha/bin/fellows"; },
         Refusal::selfProcess},
    };
    DevWatchSafetyPolicy policy = plainPolicy();
    policy.appExecutablePath = "/home/asha/bin/fellows";
    policy.ancestors = {{3000, TestSupport::me, 77}};
    for (const Case& row : cases) {
        DevWatchProcess process = server();
        row.change(process);
        EXPECT_EQ(policy.refusal(process), row.expected) << row.fault;
    }
}

TEST(DevWatchSafetyPolicy, FollowsLinksOfTheFileSystem) {
    const TestSupport::TemporaryFolder folder;
    std::filesystem::create_symlink("/usr/libexec", folder / "tools");
    std::filesystem::create_symlink(folder / "loop", folder / "loop");
    DevWatchSafetyPolicy policy = plainPolicy();
    policy.resolveLinks = devWatchResolvedLinks;
    DevWatchProcess process = server();
    process.executablePath = folder / "tools/helper";
    EXPECT_EQ(policy.refusal(process), Refusal::protectedPath);
    process.executablePath = folder / "loop/helper";
    EXPECT_EQ(policy.refusal(process), Refusal::incompleteIdentity) << "nobody can tell where that leads";
    process.executablePath = folder / "gone/helper";
    EXPECT_EQ(policy.refusal(process), std::nullopt) << "a program that was removed still runs";
    EXPECT_FALSE(DevWatchPresentation::sentence(Refusal::protectedPath).empty());
}

} // namespace
