#include "core/devwatch/DevWatchTerminator.h"
#include "tests/core/devwatch/FakeSystem.h"

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <vector>

namespace {

using namespace FellowCore;
using TestSupport::FakeProcess;
using TestSupport::FakeSystem;
using TestSupport::me;
using TestSupport::plainPolicy;

constexpr std::int32_t pid = 4242;
constexpr std::uint16_t port = 5173;
constexpr std::uint64_t socketNumber = 77;

/// One life of the confirmed server, and of whatever takes its number, with the signals that were delivered.
class Race {
public:
    explicit Race(unsigned seed) : random_(seed) {
        system.processes[pid] = {.sockets = {{3, socketNumber}}};
        system.listening[socketNumber] = port;
        system.beforeEachLook = [this] {
            if (!isCalm && one(8))
                change();
        };
    }
    bool one(int in) { return std::uniform_int_distribution(1, in)(random_) == 1; }

    void change() {
        auto& processes = system.processes;
        if (!processes.contains(pid)) {
            processes[pid] = another();
            return;
        }
        FakeProcess& process = processes[pid];
        switch (std::uniform_int_distribution(0, 6)(random_)) {
        case 0:
            processes.erase(pid);
            break;
        case 1: // all the same but for its start
            process = another();
            break;
        case 2:
            process.uid = process.uid == me ? 0 : me;
            break;
        case 3:
            process.name = process.name == "node" ? "Xorg" : "node";
            break;
        case 4:
            process.path = process.path == "/bin/sh" ? "/usr/bin/node" : "/bin/sh";
            break;
        case 5:
            process.sockets.resize(process.sockets.empty() ? 1 : 0, {3, socketNumber});
            break;
        default:
            process.zombie = !process.zombie;
            break;
        }
    }
    /// Whether the process is in every respect what was confirmed.
    bool isAsConfirmed() const {
        const auto found = system.processes.find(pid);
        return found != system.processes.end() &&
               found->second.started == confirmed.identity.startedAtMicroseconds && found->second.uid == me &&
               found->second.name == confirmed.name && found->second.path == confirmed.executablePath &&
               !found->second.sockets.empty() && !found->second.zombie;
    }

    enum class Way { stop, force, forceQuit };
    struct Sent {
        Way way;
        DevWatchSignal signal;
        std::uint64_t started;
        MonotonicInstant at;
    };
    /// Holds the very process that it opened, as the kernel does.
    struct Handle final : DevWatchProcessHandle {
        Handle(Race& race, std::uint64_t started) : race_(race), started_(started) {}
        bool send(DevWatchSignal signal) override {
            race_.system.beforeEachLook();
            const auto found = race_.system.processes.find(pid);
            const bool lives = found != race_.system.processes.end() && found->second.started == started_;
            if (lives)
                race_.sent.push_back({race_.way, signal, started_, race_.time});
            return lives;
        }
        Race& race_;
        std::uint64_t started_;
    };
    DevWatchTerminator terminator() {
        return DevWatchTerminator(
            system, plainPolicy(),
            [this](std::int32_t wanted) -> std::unique_ptr<DevWatchProcessHandle> {
                system.beforeEachLook();
                const auto found = system.processes.find(wanted);
                return found == system.processes.end()
                           ? nullptr
                           : std::make_unique<Handle>(*this, found->second.started);
            },
            [this] { return time; });
    }

    const DevWatchProcess confirmed = TestSupport::server();
    FakeSystem system;
    MonotonicInstant time{100};
    std::vector<Sent> sent;
    Way way = Way::stop;
    bool isCalm = false;

private:
    FakeProcess another() { return {.started = nextStart_ += 10'000, .sockets = {{3, socketNumber}}}; }

    std::mt19937 random_;
    std::uint64_t nextStart_ = 6'000'000;
};

/// Goes on asking in every way while the process changes between any two looks at it. Returns how often
/// nothing was sent to what was plainly not the confirmed server any more.
int refusalsOf(Race& race) {
    const auto terminator = race.terminator();
    DevWatchTerminationGate gate{DevWatchProcessConfirmation(DevWatchListener{race.confirmed, port})};
    const DevWatchAppQuitAttempt quit{{race.confirmed.identity, "Node", {}, "", true, false}, race.time};
    const auto listed = [&] { return std::optional(quit.app); };
    int refusals = 0;
    for (const auto way : {Race::Way::stop, Race::Way::force, Race::Way::forceQuit, Race::Way::stop,
                           Race::Way::force, Race::Way::forceQuit}) {
        race.way = way;
        race.isCalm = race.one(2);
        const bool mustRefuse = race.isCalm && !race.isAsConfirmed() && way != Race::Way::forceQuit;
        const auto before = race.sent.size();
        if (way == Race::Way::stop)
            terminator.stop(gate);
        else if (way == Race::Way::force)
            terminator.force(gate);
        else
            terminator.forceQuit(quit, listed);
        EXPECT_TRUE(!mustRefuse || race.sent.size() == before);
        refusals += mustRefuse ? 1 : 0;
        race.time = race.time + (race.one(2) ? 1 : 5);
    }
    return refusals;
}

TEST(DevWatchTerminationRace, NothingButTheConfirmedProcessIsEverHit) {
    int refusals = 0;
    std::map<Race::Way, int> hits;
    for (unsigned seed = 0; seed < 20'000; ++seed) {
        SCOPED_TRACE(seed);
        Race race(seed);
        refusals += refusalsOf(race);
        std::optional<MonotonicInstant> stopped;
        for (const auto& each : race.sent) {
            ++hits[each.way];
            ASSERT_EQ(each.started, race.confirmed.identity.startedAtMicroseconds) << "hit a stranger";
            ASSERT_EQ(each.signal == DevWatchSignal::stop, each.way == Race::Way::stop);
            if (each.way == Race::Way::stop) {
                ASSERT_FALSE(stopped) << "stopped twice";
                stopped = each.at;
            } else if (each.way == Race::Way::force) {
                ASSERT_TRUE(stopped && each.at - *stopped >= 5) << "forced before its time";
            } else {
                ASSERT_GE(each.at, MonotonicInstant{103}) << "an application, forced before its time";
            }
        }
    }
    // Otherwise nothing was tried.
    EXPECT_GT(hits[Race::Way::stop], 1000);
    EXPECT_GT(hits[Race::Way::force], 1000);
    EXPECT_GT(hits[Race::Way::forceQuit], 1000);
    EXPECT_GT(refusals, 1000);
}

} // namespace
