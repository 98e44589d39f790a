#include "core/containers/DevWatchDockerSocketPolicy.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace FellowCore;
using DevWatchDockerSocketPolicy::Candidate;

TEST(DevWatchDockerSocketPolicyTest, allowsTheUsersOwnSocketsOnly) {
    const TestSupport::TemporaryFolder folder;
    const std::string home = folder / "home";
    const std::string session = folder / "session";
    std::filesystem::create_directories(home + "/real");
    std::filesystem::create_directory_symlink(home + "/real", home + "/.docker");
    const Candidate usual = {.path = home + "/.docker/run/docker.sock",
                             .ownerUserID = 1000,
                             .isSocket = true,
                             .isSymbolicLink = false,
                             .currentUserID = 1000,
                             .homeDirectory = home,
                             .runtimeDirectory = session};
    struct Case {
        const char* fault;
        std::function<void(Candidate&)> change;
        bool allowed = false;
    };
    const Case cases[] = {
        {"the usual place is refused", [](Candidate&) {}, true},
        {"a link in the way to the home's socket is refused",
         [&](Candidate& each) { each.path = home + "/real/run/docker.sock"; }, true},
        {"the way there must be spelt in one way",
         [&](Candidate& each) { each.path = home + "/.docker/../real//run/docker.sock"; }, true},
        {"a slash behind the home matters", [&](Candidate& each) { each.homeDirectory += "/"; }, true},
        {"the desktop edition's place is refused",
         [&](Candidate& each) { each.path = home + "/.docker/desktop/docker.sock"; }, true},
        {"the session's place is refused", [&](Candidate& each) { each.path = session + "/docker.sock"; },
         true},
        {"a session's place without a session",
         [&](Candidate& each) {
             each.path = session + "/docker.sock";
             each.runtimeDirectory.reset();
         }},
        {"a relative session folder",
         [](Candidate& each) {
             each.runtimeDirectory = "";
             each.path = "/docker.sock";
         }},
        {"the whole machine's socket", [](Candidate& each) { each.path = "/var/run/docker.sock"; }},
        {"the whole machine's socket by way of the session",
         [](Candidate& each) {
             each.runtimeDirectory = "/var/run";
             each.path = "/run/docker.sock";
         }},
        {"any other socket", [&](Candidate& each) { each.path = home + "/.docker/run/other.sock"; }},
        {"a relative path", [](Candidate& each) { each.path = "home/.docker/run/docker.sock"; }},
        {"a file", [](Candidate& each) { each.isSocket = false; }},
        {"a link", [](Candidate& each) { each.isSymbolicLink = true; }},
        {"another's socket", [](Candidate& each) { each.ownerUserID = 0; }},
        {"everyone's socket for root", [](Candidate& each) { each.currentUserID = 0; }},
        {"no home", [](Candidate& each) { each.homeDirectory = ""; }},
        {"a relative home", [](Candidate& each) { each.homeDirectory = "home"; }},
        {"a home cut at a NUL", [](Candidate& each) { each.homeDirectory += std::string("\0x", 2); }},
        {"a path cut at a NUL", [](Candidate& each) { each.path += std::string("\0x", 2); }},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        Candidate candidate = usual;
        testCase.change(candidate);
        EXPECT_EQ(DevWatchDockerSocketPolicy::allows(candidate), testCase.allowed);
    }
}

} // namespace
