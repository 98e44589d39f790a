#include "core/devwatch/DevWatchSampler.h"
#include "core/devwatch/DevWatchAppIdentityProbe.h"
#include "core/devwatch/DevWatchProcessReading.h"
#include "tests/core/devwatch/FakeSystem.h"

#include <gmock/gmock.h>

#include <functional>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace {

using namespace FellowCore;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using TestSupport::FakeSystem;
using TestSupport::me;

using PidAndPort = std::pair<std::int32_t, std::uint16_t>;

class Sampler : public ::testing::Test {
protected:
    DevWatchSnapshot sample(Seconds later = 5) {
        system.time = system.time + later;
        return sampler.sample();
    }
    std::vector<std::pair<std::int32_t, double>> usages(Seconds later = 5) {
        std::vector<std::pair<std::int32_t, double>> found;
        for (const auto& usage : sample(later).usages) {
            found.emplace_back(usage.process.identity.pid, usage.cpuPercent);
        }
        return found;
    }
    std::vector<PidAndPort> listeners() {
        std::vector<PidAndPort> found;
        for (const auto& listener : sample().listeners) {
            found.emplace_back(listener.process.identity.pid, listener.port);
        }
        return found;
    }
    /// Two processes, of which the first listens.
    void startTwo() {
        system.processes[200] = {.cpu = 10, .sockets = {{3, 70}}};
        system.processes[300] = {.cpu = 10};
        system.listening[70] = 8080;
    }
    void run(std::int32_t pid) { system.processes.at(pid).cpu += 1000; }

    FakeSystem system;
    DevWatchSampler sampler{system, TestSupport::plainPolicy()};
};

TEST_F(Sampler, MeasuresFromTheSecondLookOn) {
    constexpr std::uint64_t second = 1'000'000'000;
    system.processes[200] = {.name = "idle", .cpu = 7 * second};
    system.processes[300] = {.name = "two cores", .cpu = 1};
    system.ticks = {100, 100};
    const auto first = sample();
    EXPECT_TRUE(first.enumerationSucceeded);
    EXPECT_THAT(first.usages, IsEmpty());
    EXPECT_EQ(first.systemCPUPercent, std::nullopt);
    system.processes[300].cpu += 10 * second;
    system.processes[400] = {.cpu = 3 * second};
    system.ticks = {130, 110};
    EXPECT_THAT(usages(), ElementsAre(Pair(300, 200), Pair(200, 0)));
    system.processes[400] = {.started = 6'000'000, .cpu = 4 * second};
    system.processes.erase(200);
    EXPECT_THAT(usages(), ElementsAre(Pair(300, 0))) << "a number used again is another process";
    EXPECT_THAT(usages(0), IsEmpty()) << "no time passed";
    system.ticks = {160, 120};
    EXPECT_EQ(sample().systemCPUPercent, 75);
}

TEST_F(Sampler, ShowsOnlyWhatIsTheUsersAndReadable) {
    system.processes[99] = {};
    system.processes[TestSupport::self] = {};
    system.processes[200] = {.zombie = true};
    system.processes[201] = {.path = ""};
    system.processes[202] = {.folder = ""};
    system.processes[203] = {.uid = 0};
    system.processes[204] = {.path = "/usr/libexec/helper"};
    for (auto& [pid, process] : system.processes) {
        process.sockets = {{3, static_cast<std::uint64_t>(pid)}};
        system.listening[static_cast<std::uint64_t>(pid)] = static_cast<std::uint16_t>(pid);
    }
    EXPECT_THAT(listeners(), ElementsAre(PidAndPort(204, 204)))
        << "the protected are shown, only not touched";
    EXPECT_EQ(usages().size(), 1U);
    EXPECT_FALSE(sampler.process(99));
    EXPECT_FALSE(sampler.process(200));
    EXPECT_TRUE(sampler.process(204));
    system.processes[204].realUid = 0;
    EXPECT_FALSE(sampler.process(204)) << "a fresh read wants the real user too";
    system.canList = false;
    EXPECT_FALSE(sample().enumerationSucceeded);
    EXPECT_THAT(sample().listeners, IsEmpty());
}

TEST_F(Sampler, ListsEachPortOnce) {
    system.processes[200] = {.sockets = {{3, 70}, {4, 71}, {5, 72}, {6, 73}, {7, 99}}};
    system.processes[100] = {.sockets = {{9, 70}}};
    system.listening = {{70, 8080}, {71, 8080}, {72, 80}, {73, 0}};
    EXPECT_THAT(listeners(), ElementsAre(PidAndPort(200, 80), PidAndPort(100, 8080), PidAndPort(200, 8080)));
    EXPECT_THAT(sampler.listeningPorts(200), ElementsAre(80, 8080));
}

TEST_F(Sampler, LooksIntoDescriptorsOnlyWhenSomethingChanged) {
    startTwo();
    EXPECT_THAT(listeners(), ElementsAre(PidAndPort(200, 8080)));
    EXPECT_EQ(std::exchange(system.looks, 0), 2);
    run(200);
    EXPECT_THAT(listeners(), ElementsAre(PidAndPort(200, 8080)));
    EXPECT_EQ(system.looks, 0) << "the descriptor is still that socket";

    system.processes[300].sockets = {{5, 80}};
    system.listening[80] = 9090;
    run(300);
    EXPECT_THAT(listeners(), ElementsAre(PidAndPort(200, 8080), PidAndPort(300, 9090)))
        << "opened later by a process that was known";
    system.looks = 0;
    system.listening[90] = 5000;
    run(200);
    listeners();
    EXPECT_EQ(std::exchange(system.looks, 0), 1) << "a stranger's: only who has run may hold it";
    run(300);
    listeners();
    EXPECT_EQ(system.looks, 0) << "a stranger's is looked for once";

    system.processes[200].sockets = {{3, 80}, {4, 70}};
    run(200);
    EXPECT_THAT(listeners(), ElementsAre(PidAndPort(200, 8080), PidAndPort(200, 9090), PidAndPort(300, 9090)))
        << "descriptors that moved";
    system.listening.erase(70);
    EXPECT_THAT(listeners(), ElementsAre(PidAndPort(200, 9090), PidAndPort(300, 9090)));
    system.canListSockets = false;
    system.processes[200].sockets.clear();
    run(200);
    EXPECT_THAT(listeners(), IsEmpty());
    system.canListSockets = true;
    EXPECT_THAT(listeners(), ElementsAre(PidAndPort(300, 9090))) << "closed while nobody could look";

    system.processes[200].sockets = {{3, 100}};
    run(200);
    system.processes[400] = {.sockets = {{3, 100}}};
    system.listening[100] = 7000;
    EXPECT_THAT(listeners(), ElementsAre(PidAndPort(200, 7000), PidAndPort(400, 7000), PidAndPort(300, 9090)))
        << "opened and handed on to a child between two looks";
}

/// What the table of listeners answers is what a look at every descriptor would, once a process that was
/// handed a socket has had its turn.
TEST_F(Sampler, AgreesWithLookingAtEverything) {
    std::mt19937 random(7);
    const auto pick = [&random](unsigned below) { return static_cast<unsigned>(random() % below); };
    for (int round = 0; round < 3000; ++round) {
        const auto pid = static_cast<std::int32_t>(200 + pick(12));
        const std::uint64_t socket = 1 + pick(9);
        switch (pick(5)) {
        case 0:
            system.processes[pid] = {.started = 1 + random(), .cpu = 1 + random()};
            break;
        case 1:
            system.processes.erase(pid);
            break;
        case 2:
            system.listening[socket] = static_cast<std::uint16_t>(8000 + socket);
            break;
        case 3:
            system.listening.erase(socket);
            break;
        default:
            if (system.processes.contains(pid)) {
                auto& sockets = system.processes[pid].sockets;
                sockets.push_back({static_cast<std::int32_t>(sockets.size()), socket});
                run(pid);
            }
        }
        if (round % 10 != 0) {
            continue;
        }
        std::vector<PidAndPort> found;
        for (int turn = 0; turn < 33; ++turn) {
            found = listeners();
        }
        std::vector<PidAndPort> expected;
        for (const auto& [number, process] : system.processes) {
            for (const std::uint16_t port : DevWatchProcessReading::listeningPorts(system, number)) {
                expected.emplace_back(number, port);
            }
        }
        ASSERT_THAT(found, ::testing::UnorderedElementsAreArray(expected)) << "round " << round;
    }
}

TEST_F(Sampler, NoticesAnotherProgramBehindTheSameNumber) {
    startTwo();
    system.processes[200].cpu = 0;
    sample();
    system.processes[200].path = "/usr/bin/deno";
    EXPECT_EQ(sample().listeners.at(0).process.executablePath, "/usr/bin/deno")
        << "no time at all proves nothing";
    system.processes[200].path = "/usr/bin/bun";
    run(200);
    EXPECT_EQ(sample().listeners.at(0).process.executablePath, "/usr/bin/bun")
        << "it ran, so it is read anew";
    system.processes[200].folder = "/home/asha/renamed";
    for (int turn = 0; turn < 32; ++turn) {
        sample();
    }
    EXPECT_EQ(sample().listeners.at(0).process.workingDirectory, "/home/asha/renamed")
        << "renamed by others while it slept";
}

TEST(DevWatchCPUCalculator, GivesNothingForWhatCannotBe) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const DevWatchProcessIdentity identity{200, me, 5};
    const auto percent = [&](DevWatchCPUSample before, DevWatchCPUSample after) {
        return DevWatchCPUCalculator::percent(before, after);
    };
    EXPECT_EQ(percent({identity, 0, {1}}, {identity, 3'000'000'000, {2}}), 300);
    EXPECT_FALSE(percent({identity, 0, {1}}, {{200, me, 6}, 1, {2}})) << "another process";
    EXPECT_FALSE(percent({identity, 2, {1}}, {identity, 1, {2}})) << "time given back";
    EXPECT_FALSE(percent({identity, 0, {2}}, {identity, 1, {2}})) << "at once";
    EXPECT_FALSE(percent({identity, 0, {-infinity}}, {identity, 1, {2}}));
    EXPECT_FALSE(percent({identity, 0, {0}}, {identity, ~0ULL, {5e-324}})) << "more than a number holds";

    using DevWatchCPUCalculator::systemPercent;
    EXPECT_EQ(systemPercent({10, 10}, {40, 20}), 75);
    EXPECT_EQ(systemPercent({0, 0}, {~0ULL, ~0ULL}), 50) << "a sum that overflows";
    EXPECT_FALSE(systemPercent({10, 10}, {10, 10}));
    EXPECT_FALSE(systemPercent({10, 10}, {9, 20}));
    EXPECT_FALSE(systemPercent({10, 10}, {20, 9}));
}

TEST(DevWatchAppIdentityProbe, TrustsOnlyALivingProcessOfTheCaller) {
    FakeSystem system;
    const std::pair<const char*, std::function<void(TestSupport::FakeProcess&)>> faults[] = {
        {"zombie", [](auto& process) { process.zombie = true; }},
        {"other user", [](auto& process) { process.uid = 0; }},
        {"other real user", [](auto& process) { process.realUid = 0; }},
    };
    system.processes[99] = {};
    EXPECT_FALSE(DevWatchAppIdentityProbe::identity(system, 99, me));
    EXPECT_FALSE(DevWatchAppIdentityProbe::identity(system, 200, me)) << "gone";
    system.processes[200] = {};
    EXPECT_EQ(DevWatchAppIdentityProbe::identity(system, 200, me),
              (DevWatchProcessIdentity{200, me, 5'000'000}));
    for (const auto& [fault, change] : faults) {
        system.processes[200] = {};
        change(system.processes[200]);
        EXPECT_FALSE(DevWatchAppIdentityProbe::identity(system, 200, me)) << fault;
    }
    system.processes = {{200, {.parent = 300}}, {300, {.parent = 200}}};
    EXPECT_FALSE(DevWatchProcessReading::ancestors(system, 200).empty()) << "a circle ends";
}

} // namespace
