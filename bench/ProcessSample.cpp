// What one look at all processes costs, beside the command line tools that tell the same: four hundred
// processes with a dozen descriptors each, forty of them listening and forty at work.

#include "bench/support/Figures.h"
#include "bench/support/Options.h"
#include "core/devwatch/DevWatchSampler.h"
#include "platform/Processes.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using FellowCore::DevWatchSampler;

constexpr int processCount = 400;
constexpr int listenerCount = 40;
constexpr int workerStep = 10;
constexpr auto workPause = std::chrono::milliseconds(10);
constexpr double budgetMilliseconds = 8;

/// A socket that listens on some free port; `flags` as for `socket`.
int listening(int flags) {
    const int socket = ::socket(AF_INET, SOCK_STREAM | flags, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(socket, 1) != 0) {
        throw std::runtime_error("nothing can listen here");
    }
    return socket;
}

/// Lives as a small server does: with some descriptors, and mostly asleep.
[[noreturn]] void liveWithDescriptors(bool listens, bool works) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (listens) {
        listening(0);
    }
    for (int file = 0; file < 6; ++file) {
        ::open("/dev/null", O_RDONLY);
    }
    int pair[2];
    ::socketpair(AF_UNIX, SOCK_STREAM, 0, pair);
    ::pipe(pair);
    while (works) {
        std::this_thread::sleep_for(workPause);
    }
    for (;;) {
        ::pause();
    }
}

/// The processes to look at, ended with this object.
class Crowd {
public:
    Crowd() {
        for (int index = 0; index < processCount; ++index) {
            const pid_t pid = ::fork();
            if (pid == 0) {
                liveWithDescriptors(index < listenerCount, index % workerStep == 0);
            }
            pids_.push_back(pid);
        }
        std::this_thread::sleep_for(std::chrono::seconds(1)); // until all are what they are to be
    }
    ~Crowd() {
        for (const pid_t pid : pids_) {
            ::kill(pid, SIGKILL);
        }
        for (const pid_t pid : pids_) {
            ::waitpid(pid, nullptr, 0);
        }
    }
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

private:
    std::vector<pid_t> pids_;
};

std::vector<double> measured(
    int rounds, const std::function<void()>& work, const std::function<void()>& prepare = [] {}) {
    std::vector<double> milliseconds;
    for (int round = 0; round < rounds; ++round) {
        std::this_thread::sleep_for(2 * workPause); // the busy ones have run, as they have between two looks
        prepare();
        const auto begin = Clock::now();
        work();
        milliseconds.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }
    return milliseconds;
}

void shell(const char* command) {
    if (std::system(command) != 0) {
        throw std::runtime_error(std::string("cannot run ") + command);
    }
}

double threadMilliseconds() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

void requireWhole(const FellowCore::DevWatchSnapshot& snapshot) {
    if (!snapshot.enumerationSucceeded || snapshot.usages.size() < processCount ||
        snapshot.listeners.size() < listenerCount) {
        throw std::runtime_error("the sample does not have all processes and listeners");
    }
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const int rounds = options.quick ? 15 : 101;
    const Crowd crowd;
    const auto system = Platform::processOperations();
    auto policy = Platform::ownSafetyPolicy(*system);
    policy.appExecutablePath.reset(); // the others are of the same program here

    const auto sockets = measured(rounds / 5, [] { shell("ss -Hltnp >/dev/null"); });
    const auto table = measured(rounds / 5, [] { shell("ps -eo pid,uid,lstart,pcpu,comm,args >/dev/null"); });

    auto sampler = std::make_unique<DevWatchSampler>(*system, policy);
    const auto first = measured(
        rounds / 5, [&] { sampler->sample(); },
        [&] { sampler = std::make_unique<DevWatchSampler>(*system, policy); });
    const double before = threadMilliseconds();
    const auto steady = measured(rounds, [&] { sampler->sample(); });
    const double spent = (threadMilliseconds() - before) / rounds;
    requireWhole(sampler->sample());
    int added = -1;
    const auto changed = measured(
        rounds / 5, [&] { sampler->sample(); },
        [&] {
            ::close(added);
            added = listening(SOCK_CLOEXEC);
        });
    ::close(added);

    Bench::Figures figures;
    figures.add({"processes: one sample, as every 5 s", steady, "ms", budgetMilliseconds, 2});
    const double tools = Bench::median(sockets) + Bench::median(table);
    figures.add({"processes: that sample, of ss and ps", {Bench::median(steady) / tools}, "", 0.25, 3});
    figures.add({"processes: processor share at 5 s", {spent / 5000 * 100}, "%", 0.3, 3});
    figures.add({"processes: the first sample of all", first, "ms", std::nullopt, 2});
    figures.add({"processes: a sample after a new listener", changed, "ms", std::nullopt, 2});
    figures.add({"processes: ss -Hltnp", sockets, "ms", std::nullopt, 2});
    figures.add({"processes: ps -eo pid,uid,lstart,...", table, "ms", std::nullopt, 2});
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
