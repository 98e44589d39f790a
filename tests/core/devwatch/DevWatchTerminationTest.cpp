#include "core/devwatch/DevWatchPresentation.h"
#include "core/devwatch/DevWatchTerminator.h"
#include "tests/core/devwatch/FakeSystem.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>
#include <set>

namespace {

using namespace FellowCore;
using Case = DevWatchTerminationRefusal::Case;
using Refusal = std::optional<DevWatchTerminationRefusal>;
using Ports = std::set<std::uint16_t>;
using TestSupport::FakeSystem;
using TestSupport::plainPolicy;
using TestSupport::server;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr std::uint16_t port = 5173;

Refusal refused(Case reason, std::optional<DevWatchSafetyRefusal> safety = std::nullopt) {
    return DevWatchTerminationRefusal{reason, safety};
}

DevWatchTerminationGate gateFor(const DevWatchProcess& process, Seconds grace = 5) {
    return DevWatchTerminationGate(DevWatchProcessConfirmation({process, port}), grace);
}

/// A gate whose polite stop was delivered at a time.
DevWatchTerminationGate stoppedGate(double at, Seconds grace = 5) {
    auto gate = gateFor(server(), grace);
    EXPECT_EQ(gate.authorizeStop(server(), {port}, plainPolicy()), std::nullopt);
    gate.recordStopResult(true, {at});
    return gate;
}

TEST(DevWatchTerminationGate, HoldsWhatIsThereAgainstWhatWasConfirmed) {
    const struct {
        const char* fault;
        std::function<void(std::optional<DevWatchProcess>&, Ports&)> change;
        Refusal expected;
    } cases[] = {
        {"nothing changed", [](auto&, Ports&) {}, std::nullopt},
        {"more ports than confirmed", [](auto&, Ports& ports) { ports.insert(80); }, std::nullopt},
        {"gone", [](auto& fresh, Ports&) { fresh.reset(); }, refused(Case::processGone)},
        {"the number was used again", [](auto& fresh, Ports&) { ++fresh->identity.startedAtMicroseconds; },
         refused(Case::processChanged)},
        {"another owner now", [](auto& fresh, Ports&) { fresh->identity.uid = 0; },
         refused(Case::unsafe, DevWatchSafetyRefusal::anotherUser)},
        {"another name", [](auto& fresh, Ports&) { fresh->name = "bun"; }, refused(Case::processChanged)},
        {"another program", [](auto& fresh, Ports&) { fresh->executablePath = "/usr/bin/bun"; },
         refused(Case::processChanged)},
        {"another folder", [](auto& fresh, Ports&) { fresh->workingDirectory = "/"; },
         refused(Case::processChanged)},
        {"behind a protected path since",
         [](auto& fresh, Ports&) { fresh->executablePath = "/usr/libexec/x"; },
         refused(Case::unsafe, DevWatchSafetyRefusal::protectedPath)},
        {"listens elsewhere", [](auto&, Ports& ports) { ports = {80}; }, refused(Case::listenerChanged)},
        {"safety is asked before sameness", [](auto& fresh, Ports&) { fresh->name = "Xorg"; },
         refused(Case::unsafe, DevWatchSafetyRefusal::protectedProcess)},
    };
    for (const auto& row : cases) {
        std::optional<DevWatchProcess> fresh = server();
        Ports ports{port};
        row.change(fresh, ports);
        auto gate = gateFor(server());
        EXPECT_EQ(gate.authorizeStop(fresh, ports, plainPolicy()), row.expected) << row.fault;
        EXPECT_EQ(gate.stopPrepared(), !row.expected) << row.fault;
        EXPECT_EQ(stoppedGate(0).forceRefusal(fresh, ports, plainPolicy(), {5}), row.expected) << row.fault;
        EXPECT_EQ(gate.confirmation().matchesFresh(fresh, ports), !row.expected) << row.fault;
    }
}

TEST(DevWatchTerminationGate, ForcesOnlyAfterItsGrace) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* fault;
        Seconds grace;
        double at;
        Refusal expected;
    } moments[] = {
        {"a hundredth too early", 5, 104.99, refused(Case::gracePeriod)},
        {"exactly then", 5, 105, std::nullopt},
        {"less grace than five seconds", 1, 104.99, refused(Case::gracePeriod)},
        {"negative grace", -infinity, 104.99, refused(Case::gracePeriod)},
        {"endless grace counts as five", infinity, 105, std::nullopt},
        {"grace that is no number", none, 105, std::nullopt},
        {"more grace was wanted", 9, 108.9, refused(Case::gracePeriod)},
        {"before the stop", 5, 50, refused(Case::gracePeriod)},
        {"no time", 5, none, refused(Case::invalidTime)},
        {"the end of time", 5, infinity, refused(Case::invalidTime)},
    };
    for (const auto& row : moments) {
        EXPECT_EQ(stoppedGate(100, row.grace).forceRefusal(server(), {port}, plainPolicy(), {row.at}),
                  row.expected)
            << row.fault;
    }
}

TEST(DevWatchTerminationGate, ArmsForceOnlyByADeliveredStop) {
    auto gate = gateFor(server());
    const auto force = [&] { return gate.forceRefusal(server(), {port}, plainPolicy(), {1000}); };
    const auto authorize = [&] { return gate.authorizeStop(server(), {port}, plainPolicy()); };
    gate.recordStopResult(true, {1});
    EXPECT_EQ(force(), refused(Case::stopNotDelivered)) << "never prepared";
    EXPECT_EQ(authorize(), std::nullopt);
    gate.recordStopResult(false, {1});
    EXPECT_EQ(force(), refused(Case::stopNotDelivered)) << "not delivered";
    EXPECT_EQ(authorize(), std::nullopt);
    gate.recordStopResult(true, {infinity});
    EXPECT_FALSE(gate.stopPrepared());
    EXPECT_EQ(force(), refused(Case::stopNotDelivered)) << "at no time";
    gate.recordStopResult(true, {1});
    EXPECT_EQ(force(), refused(Case::stopNotDelivered)) << "prepared once, recorded twice";
    EXPECT_EQ(authorize(), std::nullopt);
    EXPECT_EQ(gate.authorizeStop(std::nullopt, {}, plainPolicy()), refused(Case::processGone));
    gate.recordStopResult(true, {1});
    EXPECT_EQ(force(), refused(Case::stopNotDelivered)) << "a refusal withdraws what was prepared";
    EXPECT_EQ(authorize(), std::nullopt);
    gate.recordStopResult(true, {1});
    EXPECT_EQ(authorize(), refused(Case::alreadyStopping));
    EXPECT_EQ(force(), std::nullopt);
    EXPECT_THAT(gate.confirmation().displayDetails(), "PID 4242 · port 5173 · /home/asha/site");
}

/// The terminator over a scripted system; the script may change it between two of its steps.
class Terminator : public ::testing::Test {
protected:
    struct Handle final : DevWatchProcessHandle {
        explicit Handle(Terminator& test) : test_(test) {}
        bool send(DevWatchSignal signal) override {
            test_.sent.push_back(signal);
            return test_.delivers;
        }
        Terminator& test_;
    };

    Terminator() {
        system.processes[4242] = {.sockets = {{3, 77}}};
        system.listening[77] = port;
    }

    DevWatchTerminator terminator() {
        return DevWatchTerminator(
            system, plainPolicy(),
            [this](std::int32_t pid) -> std::unique_ptr<DevWatchProcessHandle> {
                const bool exists = system.processes.contains(pid);
                afterOpening();
                return exists ? std::make_unique<Handle>(*this) : nullptr;
            },
            [this] { return time; });
    }

    FakeSystem system;
    MonotonicInstant time{100};
    bool delivers = true;
    std::vector<DevWatchSignal> sent;
    std::function<void()> afterOpening = [] {};
};

TEST_F(Terminator, StopsPolitelyThenByForce) {
    auto gate = gateFor(server());
    EXPECT_TRUE(terminator().stop(gate).delivered);
    EXPECT_EQ(terminator().force(gate).refusal, refused(Case::gracePeriod));
    time = {105};
    EXPECT_TRUE(terminator().force(gate).delivered);
    EXPECT_THAT(sent, ::testing::ElementsAre(DevWatchSignal::stop, DevWatchSignal::force));
}

TEST_F(Terminator, SendsNothingWhenAnythingChangedWhileItWasOpened) {
    const struct {
        const char* fault;
        std::function<void()> change;
        Case expected;
    } cases[] = {
        {"it ended", [this] { system.processes.clear(); }, Case::processGone},
        {"another took its number", [this] { system.processes[4242].started += 10'000; },
         Case::processChanged},
        {"it became a zombie", [this] { system.processes[4242].zombie = true; }, Case::processGone},
        {"it runs as root now", [this] { system.processes[4242].uid = 0; }, Case::processGone},
        {"only its real user changed", [this] { system.processes[4242].realUid = 0; }, Case::processGone},
        {"it runs another program", [this] { system.processes[4242].path = "/bin/sh"; },
         Case::processChanged},
        {"it stopped listening", [this] { system.listening.clear(); }, Case::listenerChanged},
        {"it handed its socket on", [this] { system.processes[4242].sockets.clear(); },
         Case::listenerChanged},
        {"the sockets cannot be listed", [this] { system.canListSockets = false; }, Case::listenerChanged},
    };
    const FakeSystem before = system;
    for (const auto& row : cases) {
        system.processes = before.processes;
        system.listening = before.listening;
        system.canListSockets = true;
        auto gate = gateFor(server());
        afterOpening = row.change;
        const auto outcome = terminator().stop(gate);
        ASSERT_TRUE(outcome.refusal) << row.fault;
        EXPECT_EQ(outcome.refusal->refusal, row.expected) << row.fault;
    }
    EXPECT_TRUE(sent.empty());
}

TEST_F(Terminator, LeavesTheGateAloneWhenTheSignalFails) {
    auto gate = gateFor(server());
    delivers = false;
    const auto outcome = terminator().stop(gate);
    EXPECT_FALSE(outcome.delivered);
    EXPECT_EQ(DevWatchPresentation::sentence(outcome), "Could not stop this process");
    time = {1000};
    EXPECT_EQ(terminator().force(gate).refusal, refused(Case::stopNotDelivered));
    delivers = true;
    EXPECT_EQ(DevWatchPresentation::sentence(terminator().stop(gate)), "Stop sent. Waiting for exit…");
}

TEST_F(Terminator, ForcesAnApplicationOnlyWhenItIsStillTheOne) {
    const DevWatchApp app{server().identity, "Editor", "org.example.Editor", "/usr/bin/editor", true, false};
    const DevWatchAppQuitAttempt attempt{app, {97}};
    const auto fresh = [&app]() -> std::optional<DevWatchApp> { return app; };
    EXPECT_TRUE(terminator().forceQuit(attempt, fresh));
    EXPECT_FALSE(terminator().forceQuit({app, {97.1}}, fresh)) << "too early";
    EXPECT_FALSE(terminator().forceQuit(attempt, [] { return std::nullopt; }));
    system.processes[4242].name = "gnome-shell";
    EXPECT_FALSE(terminator().forceQuit(attempt, fresh)) << "the session needs it";
    system.processes[4242] = {.started = 6'000'000};
    EXPECT_FALSE(terminator().forceQuit(attempt, fresh)) << "another one";
    EXPECT_EQ(sent.size(), 1U);
}

} // namespace
