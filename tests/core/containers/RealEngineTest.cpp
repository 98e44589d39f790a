// Against the machine's own container engine, started for the test below a temporary home.

#include "core/containers/DevWatchDockerClient.h"
#include "core/containers/DevWatchDockerFailure.h"
#include "tests/core/containers/ScriptedServer.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/wait.h>

namespace {

using namespace FellowCore;
using namespace TestSupport;
using namespace std::chrono_literals;

/// What a shell's command writes, without the last line feed.
std::string outputOf(const std::string& command) {
    FILE* const pipe = ::popen(command.c_str(), "r");
    std::string text;
    for (int byte; (byte = std::fgetc(pipe)) != EOF;) {
        text += static_cast<char>(byte);
    }
    ::pclose(pipe);
    return text.substr(0, text.find_last_not_of('\n') + 1);
}

class RealEngine {
public:
    RealEngine() : client_(home_.path()) {
        std::filesystem::create_directories(home_ / ".docker/run");
        const std::string at = home_.path();
        const std::string command = "exec dockerd --iptables=false --ip6tables=false --bridge=none "
                                    "--storage-driver=vfs --data-root " +
                                    at + "/data --exec-root " + at + "/exec -p " + at + "/pid -H " +
                                    address() + " --exec-opt native.cgroupdriver=cgroupfs >" + at +
                                    "/log 2>&1";
        if ((daemon_ = ::fork()) == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGTERM); // a test that crashes leaves no engine behind
            ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
            ::_exit(127);
        }
    }
    ~RealEngine() {
        ask("rm -f shop");
        ::kill(daemon_, SIGTERM);
        ::waitpid(daemon_, nullptr, 0);
    }
    RealEngine(const RealEngine&) = delete;
    RealEngine& operator=(const RealEngine&) = delete;

    const DevWatchDockerClient& client() const { return client_; }
    std::string log() const { return bytesOf(home_ / "log"); }

    /// Whether it answers, once it has had time to start.
    bool answers() const {
        for (int tries = 0; tries < 300; ++tries) {
            try {
                client_.containers();
                return true;
            } catch (const DevWatchDockerFailure&) {
                std::this_thread::sleep_for(100ms); // not yet
            }
        }
        return false;
    }

    /// Has the engine's own tool do something.
    std::string ask(const std::string& words) const {
        return outputOf("HOME=" + home_.path().string() + " docker -H " + address() + " " + words + " 2>&1");
    }

    /// Starts a container that ends when it is politely asked to, and gives its id.
    std::string runShop() const {
        const std::string root = home_ / "root";
        outputOf("mkdir -p " + root + "/bin && cp $(command -v busybox) " + root + "/bin/ && tar -C " + root +
                 " -cf " + root + ".tar .");
        ask("import " + root + ".tar box");
        return ask(
            "run -d --network none --name shop --label com.docker.compose.project.working_dir=/srv/shop "
            "box /bin/busybox sh -c 'trap \"exit 0\" TERM; /bin/busybox sleep 600 & wait'");
    }

private:
    std::string address() const { return "unix://" + client_.socketPath; }

    TemporaryFolder home_;
    DevWatchDockerClient client_;
    pid_t daemon_ = -1;
};

TEST(RealEngineTest, listsWhatRunsAndIsStoppedOnlyIfItCanBePolite) {
    if (::getuid() != 0 ||
        outputOf("command -v dockerd && command -v docker && command -v busybox").empty()) {
        GTEST_SKIP() << "needs root, docker.io and busybox-static";
    }
    const RealEngine engine;
    if (!engine.answers()) {
        GTEST_SKIP() << "no engine can run here: " << engine.log();
    }
    EXPECT_THAT(engine.client().containers(), testing::IsEmpty());

    const DevWatchDockerContainer shop = {engine.runShop(), "shop", "box", {}, "/srv/shop"};
    ASSERT_THAT(engine.client().containers(), testing::ElementsAre(shop));
    const auto version = engine.ask("version --format '{{.Server.APIVersion}}'");
    bool asked = false;
    const auto stop = [&] { engine.client().stop(shop, [&] { return asked = true; }); };
    if (DevWatchDockerClient::supportsTermStop(version)) {
        stop();
        EXPECT_THAT(engine.client().containers(), testing::IsEmpty());
    } else {
        expectFailure<DevWatchDockerFailure>(DevWatchDockerFailure::Kind::unsupportedAPI, stop);
        EXPECT_FALSE(asked);
        EXPECT_THAT(engine.client().containers(), testing::ElementsAre(shop)) << "API " << version;
    }
}

} // namespace
