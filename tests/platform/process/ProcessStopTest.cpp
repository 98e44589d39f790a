#include "core/devwatch/DevWatchProcessReading.h"
#include "core/devwatch/DevWatchRelaunch.h"
#include "core/devwatch/DevWatchSampler.h"
#include "core/devwatch/DevWatchTerminator.h"
#include "platform/Processes.h"
#include "tests/platform/process/Child.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <thread>

namespace {

using namespace FellowCore;
using Case = DevWatchTerminationRefusal::Case;
using TestSupport::becomesTrue;
using TestSupport::Child;
using TestSupport::listenOn;

/// The real system and a clock that the test sets.
struct Watch {
    std::unique_ptr<DevWatchOperations> system = Platform::processOperations();
    DevWatchSafetyPolicy policy = Platform::ownSafetyPolicy(*system);
    MonotonicInstant time{100};
    DevWatchProcessOpener open = Platform::openProcess;

    // The children are of the same program as the test, which is not to protect them.
    Watch() { policy.appExecutablePath.reset(); }

    DevWatchTerminator terminator() const {
        return DevWatchTerminator(*system, policy, open, [this] { return time; });
    }
    std::optional<DevWatchListener> listener(const Child& child) const {
        const auto process = DevWatchProcessReading::process(*system, child.pid(), policy.currentUserID);
        return process ? std::optional(DevWatchListener{*process, child.port()}) : std::nullopt;
    }
    DevWatchTerminationGate gate(const Child& child) const {
        return DevWatchTerminationGate(DevWatchProcessConfirmation(listener(child).value()));
    }
};

TEST(ProcessStop, EndsAServerPolitely) {
    const Watch watch;
    Child server([] { return listenOn(0); });
    Child bystander([] { return listenOn(0); });
    auto gate = watch.gate(server);
    EXPECT_TRUE(watch.terminator().stop(gate).delivered);
    EXPECT_EQ(server.wait(), SIGTERM);
    EXPECT_EQ(watch.terminator().force(gate).refusal->refusal, Case::gracePeriod);
    EXPECT_FALSE(bystander.ended());
}

TEST(ProcessStop, ForcesOneThatIgnoresThePoliteStop) {
    Watch watch;
    Child stubborn([] {
        std::signal(SIGTERM, SIG_IGN);
        return listenOn(0);
    });
    auto gate = watch.gate(stubborn);
    EXPECT_EQ(watch.terminator().force(gate).refusal->refusal, Case::stopNotDelivered);
    EXPECT_TRUE(watch.terminator().stop(gate).delivered);
    EXPECT_EQ(watch.terminator().stop(gate).refusal->refusal, Case::alreadyStopping);
    watch.time = {104.99};
    EXPECT_EQ(watch.terminator().force(gate).refusal->refusal, Case::gracePeriod);
    EXPECT_FALSE(stubborn.ended());
    watch.time = {105};
    EXPECT_TRUE(watch.terminator().force(gate).delivered);
    EXPECT_EQ(stubborn.wait(), SIGKILL);
}

TEST(ProcessStop, RefusesWhatChangedSinceTheClick) {
    const Watch watch;
    const struct {
        const char* fault;
        void (*change)(int);
        Case expected;
    } cases[] = {
        {"another folder", [](int) { static_cast<void>(::chdir("/")); }, Case::processChanged},
        {"another name", [](int) { ::prctl(PR_SET_NAME, "renamed"); }, Case::processChanged},
        {"no longer listening", [](int) { ::close_range(3, ~0U, 0); }, Case::listenerChanged},
        {"another program", [](int) { ::execlp("sleep", "sleep", "60", nullptr); }, Case::processChanged},
        {"ended", [](int) { ::_exit(0); }, Case::processGone},
    };
    for (const auto& row : cases) {
        Child server([&row] {
            std::signal(SIGUSR1, row.change);
            return listenOn(0);
        });
        const auto confirmed = watch.listener(server).value();
        auto gate = watch.gate(server);
        ::kill(server.pid(), SIGUSR1);
        ASSERT_TRUE(becomesTrue([&] {
            return watch.listener(server) != confirmed ||
                   !DevWatchProcessReading::listeningPorts(*watch.system, server.pid())
                        .contains(server.port());
        })) << row.fault;
        const auto outcome = watch.terminator().stop(gate);
        ASSERT_TRUE(outcome.refusal) << row.fault;
        EXPECT_EQ(outcome.refusal->refusal, row.expected) << row.fault;
        EXPECT_TRUE(row.expected == Case::processGone || !server.ended()) << row.fault;
    }
}

TEST(ProcessStop, LeavesAloneWhatBecameAnothers) {
    if (::getuid() != 0)
        GTEST_SKIP() << "only root may hand a process to another user";
    constexpr uid_t same = static_cast<uid_t>(-1);
    constexpr uid_t nobody = 65534;
    const Watch watch;
    const struct {
        const char* fault;
        void (*change)(int);
    } cases[] = {
        {"another user's", [](int) { static_cast<void>(::setresuid(nobody, nobody, nobody)); }},
        {"acts for another user", [](int) { static_cast<void>(::setresuid(same, nobody, same)); }},
        {"acts for us, but is another user's",
         [](int) { static_cast<void>(::setresuid(nobody, same, same)); }},
    };
    for (const auto& row : cases) {
        Child server([&row] {
            std::signal(SIGUSR1, row.change);
            return listenOn(0);
        });
        auto gate = watch.gate(server);
        ::kill(server.pid(), SIGUSR1);
        ASSERT_TRUE(becomesTrue([&] { return !watch.listener(server); })) << row.fault;
        const auto outcome = watch.terminator().stop(gate);
        ASSERT_TRUE(outcome.refusal) << row.fault;
        EXPECT_EQ(outcome.refusal->refusal, Case::processGone) << row.fault;
        EXPECT_FALSE(server.ended()) << row.fault;
    }
}

TEST(ProcessStop, NoticesWhatASupervisorStartsAgain) {
    const Watch watch;
    const Child supervisor([] {
        // The port is that of a server which has ended by now.
        Child scout([] { return listenOn(0); });
        scout.end();
        if (::fork() != 0) {
            return int{scout.port()};
        }
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (;;) {
            Child server([&scout] { return listenOn(scout.port()); });
            server.wait();
        }
    });
    DevWatchSampler sampler(*watch.system, watch.policy);
    std::optional<DevWatchListener> seen;
    const auto listens = [&] {
        const auto listeners = sampler.sample().listeners;
        const auto found = std::ranges::find(listeners, supervisor.port(), &DevWatchListener::port);
        seen = found == listeners.end() ? std::nullopt : std::optional(*found);
        return seen.has_value();
    };
    ASSERT_TRUE(becomesTrue(listens));
    DevWatchTerminationGate gate{DevWatchProcessConfirmation(*seen)};
    ASSERT_TRUE(watch.terminator().stop(gate).delivered);
    DevWatchRelaunch relaunch;
    relaunch.recordStop(*seen, {0});
    EXPECT_TRUE(
        becomesTrue([&] { return relaunch.relaunched(sampler.sample().listeners, {1}).has_value(); }));
    EXPECT_NE(watch.terminator().force(gate).refusal, std::nullopt);
    EXPECT_TRUE(becomesTrue(listens)) << "the new one was left alone";
}

/// Makes the kernel hand out a number next. Only in a process namespace of one's own.
bool nextPidWillBe(pid_t pid) {
    const int file = ::open("/proc/sys/kernel/ns_last_pid", O_WRONLY | O_CLOEXEC);
    const std::string text = std::to_string(pid - 1);
    const bool written = ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ::close(file);
    return written;
}

/// What is wrong when a number is used again by the same program on the same port; empty when nothing is.
std::string reuseFault() {
    constexpr pid_t pid = 500;
    Watch watch;
    if (!nextPidWillBe(pid)) {
        return "the number cannot be set";
    }
    auto old = std::make_unique<Child>([] { return listenOn(0); });
    if (old->pid() != pid) {
        return "the first process has another number";
    }
    const std::uint16_t port = old->port();
    auto gate = watch.gate(*old);
    const auto held = Platform::openProcess(pid);
    std::unique_ptr<Child> young;
    const auto replace = [&] {
        old.reset();
        std::this_thread::sleep_for(std::chrono::milliseconds(30)); // starts are told in steps of ten
        nextPidWillBe(pid);
        young = std::make_unique<Child>([port] { return listenOn(port); });
    };
    // The number changes hands in the one moment in which nothing can be known yet.
    watch.open = [&](std::int32_t wanted) {
        auto handle = Platform::openProcess(wanted);
        replace();
        return handle;
    };
    const auto outcome = watch.terminator().stop(gate);
    if (young->pid() != pid || young->port() != port) {
        return "the second process has another number or port";
    }
    if (!outcome.refusal || outcome.refusal->refusal != Case::processChanged) {
        return "the second process passed for the first";
    }
    if (held->send(DevWatchSignal::force)) {
        return "a signal to the first process was delivered";
    }
    watch.open = Platform::openProcess;
    auto another = watch.gate(*young);
    if (young->ended() || !watch.terminator().stop(another).delivered || young->wait() != SIGTERM) {
        return "the second process was hit, or cannot be stopped under its own name";
    }
    return {};
}

TEST(ProcessStop, NeverHitsALaterProcessWithTheSameNumber) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    constexpr int notAllowed = 3;
    const pid_t outer = ::fork();
    if (outer == 0) {
        const bool isAlone = ::unshare(CLONE_NEWPID | CLONE_NEWNS) == 0 ||
                             ::unshare(CLONE_NEWUSER | CLONE_NEWPID | CLONE_NEWNS) == 0;
        const pid_t first = isAlone ? ::fork() : -1;
        if (first == 0) {
            const bool hasProc = ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                                 ::mount("proc", "/proc", "proc", 0, nullptr) == 0;
            const std::string fault = hasProc ? reuseFault() : "no /proc of its own";
            const auto written = ::write(ends[1], fault.data(), fault.size());
            ::_exit(written == static_cast<ssize_t>(fault.size()) ? 0 : 1);
        }
        int status = 0;
        ::waitpid(first, &status, 0);
        ::_exit(first < 0 ? notAllowed : WIFEXITED(status) ? WEXITSTATUS(status) : 1);
    }
    ::close(ends[1]);
    std::string fault(200, '\0');
    fault.resize(static_cast<std::size_t>(std::max<ssize_t>(0, ::read(ends[0], fault.data(), fault.size()))));
    ::close(ends[0]);
    int status = 0;
    ::waitpid(outer, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == notAllowed) {
        GTEST_SKIP() << "this machine gives no process namespace";
    }
    EXPECT_EQ(fault, "");
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

} // namespace
