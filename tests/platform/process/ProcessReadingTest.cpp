#include "core/devwatch/DevWatchAppIdentityProbe.h"
#include "core/devwatch/DevWatchSampler.h"
#include "platform/Processes.h"
#include "tests/platform/process/Child.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace FellowCore;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using TestSupport::becomesTrue;
using TestSupport::Child;
using TestSupport::listenOn;

/// The real system. The children are of the same program as the test, which is not to hide them.
class ProcessReading : public ::testing::Test {
protected:
    ProcessReading() { policy.appExecutablePath.reset(); }

    std::vector<std::uint16_t> sampledPorts(pid_t pid) {
        std::vector<std::uint16_t> ports;
        for (const DevWatchListener& listener : sampler().sample().listeners) {
            if (listener.process.identity.pid == pid) {
                ports.push_back(listener.port);
            }
        }
        return ports;
    }
    DevWatchSampler& sampler() {
        if (!sampler_) {
            sampler_.emplace(*system, policy);
        }
        return *sampler_;
    }

    std::unique_ptr<DevWatchOperations> system = Platform::processOperations();
    DevWatchSafetyPolicy policy = Platform::ownSafetyPolicy(*system);

private:
    std::optional<DevWatchSampler> sampler_;
};

TEST_F(ProcessReading, SeesListenersOfBothFamiliesAndNothingElse) {
    const Child child([] {
        ::socket(AF_INET, SOCK_DGRAM, 0);
        const int bound = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        ::bind(bound, reinterpret_cast<sockaddr*>(&address), sizeof address);
        const std::uint16_t port = listenOn(0);
        return listenOn(port, AF_INET6) == port ? int{port} : -1;
    });
    ASSERT_GT(child.said(), 0);
    EXPECT_THAT(sampler().listeningPorts(child.pid()), ElementsAre(child.port()));
    EXPECT_THAT(sampledPorts(child.pid()), ElementsAre(child.port()));
    EXPECT_THAT(sampler().listeningPorts(1), IsEmpty());
}

TEST_F(ProcessReading, SeesASocketThatAKnownProcessOpensLater) {
    const Child child([] {
        // The handler stays with the child, which goes on listening when it is woken.
        std::signal(SIGUSR1, [](int) { listenOn(0); });
        return 0;
    });
    EXPECT_THAT(sampledPorts(child.pid()), IsEmpty());
    ::kill(child.pid(), SIGUSR1);
    ASSERT_TRUE(becomesTrue([&] { return !sampler().listeningPorts(child.pid()).empty(); }));
    EXPECT_EQ(sampledPorts(child.pid()).size(), 1U);
}

TEST_F(ProcessReading, TakesNamesAsTheyAre) {
    const Child odd([] { return ::prctl(PR_SET_NAME, "a) R (b\nc [d]"); });
    const auto read = sampler().process(odd.pid());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->name, "a) R (b\nc [d]");
    EXPECT_EQ(read->workingDirectory, std::filesystem::current_path().string());
    EXPECT_EQ(read->executablePath, std::filesystem::canonical("/proc/self/exe").string());
    EXPECT_EQ(read, sampler().process(odd.pid())) << "the identity stays the same";
    const double now =
        std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    EXPECT_NEAR(read->uptime(Instant::fromUnix(now)), 0, 2);

    const Child thread([] { return ::prctl(PR_SET_NAME, "MainThread"); });
    EXPECT_EQ(sampler().process(thread.pid())->name, "test_platform_process");
    const Child cut([] { return ::prctl(PR_SET_NAME, "test_platform_p"); });
    EXPECT_EQ(sampler().process(cut.pid())->name, "test_platform_process") << "the kernel keeps 15 bytes";
}

TEST_F(ProcessReading, KnowsARemovedProgramFromOneThatIsCalledSo) {
    const TestSupport::TemporaryFolder folder;
    for (const bool removed : {true, false}) {
        const std::string path = folder / (removed ? "program" : "program (deleted)");
        std::filesystem::copy_file("/usr/bin/sleep", path);
        const pid_t pid = ::fork();
        if (pid == 0) {
            ::execl(path.c_str(), "sleep", "60", nullptr);
            ::_exit(1);
        }
        EXPECT_TRUE(becomesTrue([&] { return system->executablePath(pid) == path; }));
        if (removed) {
            std::filesystem::remove(path);
        }
        EXPECT_EQ(system->executablePath(pid), path);
        ::kill(pid, SIGKILL);
        ::waitpid(pid, nullptr, 0);
    }
}

TEST_F(ProcessReading, KnowsNothingOfTheEndedAndOfOthers) {
    const Child zombie([] { return 0; });
    EXPECT_TRUE(DevWatchAppIdentityProbe::identity(*system, zombie.pid(), ::getuid()));
    ::kill(zombie.pid(), SIGKILL);
    siginfo_t info{};
    ::waitid(P_PID, static_cast<id_t>(zombie.pid()), &info, WEXITED | WNOWAIT);
    EXPECT_FALSE(sampler().process(zombie.pid()));
    EXPECT_FALSE(DevWatchAppIdentityProbe::identity(*system, zombie.pid(), ::getuid()));
    EXPECT_FALSE(sampler().process(0));
    EXPECT_FALSE(system->record(-1));
    EXPECT_FALSE(system->cpuTimeNanoseconds(0x1fffff));
    if (::getuid() == 0) {
        constexpr uid_t nobody = 65534;
        const Child other([] { return ::setuid(nobody); });
        const Child halfway([] { return ::setreuid(nobody, 0); });
        EXPECT_FALSE(sampler().process(other.pid()));
        EXPECT_THAT(system->pids(::getuid()).value(), ::testing::Not(::testing::Contains(other.pid())));
        EXPECT_FALSE(sampler().process(halfway.pid())) << "its real user is another one";
    }
}

TEST_F(ProcessReading, CountsTheTimeOfAllThreads) {
    Child child([] {
        for (int thread = 0; thread < 2; ++thread) {
            std::thread([] {
                for (;;) {
                }
            }).detach();
        }
        return 0;
    });
    sampler().sample();
    std::this_thread::sleep_for(std::chrono::milliseconds(400));
    const auto usages = sampler().sample().usages;
    const auto found =
        std::ranges::find(usages, child.pid(), [](const auto& usage) { return usage.process.identity.pid; });
    ASSERT_NE(found, usages.end());
    EXPECT_GT(found->cpuPercent, 20) << "the first thread sleeps, the others work";

    ::kill(child.pid(), SIGSTOP);
    ::waitpid(child.pid(), nullptr, WUNTRACED);
    const double spent = static_cast<double>(system->cpuTimeNanoseconds(child.pid()).value()) * 1e-9;
    ::kill(child.pid(), SIGKILL);
    rusage usage{};
    ::wait4(child.pid(), nullptr, 0, &usage);
    const double counted = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1e-6;
    EXPECT_NEAR(spent, counted, 0.02) << "what the kernel bills at the end";
}

TEST_F(ProcessReading, BearsProcessesThatComeAndGo) {
    const Child busy([] {
        if (::fork() == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            std::signal(SIGCHLD, SIG_IGN);
            for (;;) {
                if (::fork() == 0) {
                    listenOn(0);
                    ::_exit(0);
                }
            }
        }
        return 0;
    });
    for (int round = 0; round < 60; ++round) {
        const auto snapshot = sampler().sample();
        ASSERT_TRUE(snapshot.enumerationSucceeded);
        for (const auto& usage : snapshot.usages) {
            ASSERT_GE(usage.cpuPercent, 0);
        }
    }
    EXPECT_TRUE(becomesTrue([&] { return sampler().sample().systemCPUPercent.has_value(); }));
}

TEST_F(ProcessReading, ProtectsItselfAndWhereItCameFrom) {
    const auto parent = sampler().process(::getppid());
    ASSERT_TRUE(parent);
    EXPECT_EQ(policy.refusal(*parent), DevWatchSafetyRefusal::protectedProcess);
    const auto own = sampler().process(::getpid());
    ASSERT_TRUE(own);
    EXPECT_EQ(policy.refusal(*own), DevWatchSafetyRefusal::selfProcess);
    const Child same([] { return 0; });
    EXPECT_EQ(Platform::ownSafetyPolicy(*system).refusal(*sampler().process(same.pid())),
              DevWatchSafetyRefusal::selfProcess)
        << "another run of this program";
}

} // namespace
