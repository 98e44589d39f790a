#include "helpers/hook/EventLock.h"

#include "core/agents/PumpAgentLog.h"
#include "helpers/hook/Files.h"
#include "helpers/hook/ProcessTree.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <csignal>
#include <ctime>
#include <optional>

namespace FellowHook {

namespace {

constexpr int attempts = 20;
constexpr long pauseNanoseconds = 25'000'000;
constexpr double ownerlessSeconds = 10;
constexpr double clockToleranceSeconds = 2;
constexpr std::array endingSignals{SIGHUP, SIGINT, SIGTERM, SIGALRM};

/// What a signal handler has to give back. Only `EventLock` sets it, with those signals blocked.
struct ToGiveBack {
    const char* temporaryFile = nullptr;
    const char* pidFile = nullptr;
    const char* lock = nullptr;
};
ToGiveBack toGiveBack;
std::string temporaryFileName; // outlives the lock, since a handler may still read it

void giveBack() {
    if (toGiveBack.lock != nullptr) {
        ::unlink(toGiveBack.temporaryFile);
        ::unlink(toGiveBack.pidFile);
        ::rmdir(toGiveBack.lock);
    }
}

extern "C" void endQuietly(int /*signal*/) {
    giveBack();
    ::_exit(0);
}

/// Keeps the ending signals off for a few system calls.
class BlockedSignals {
public:
    BlockedSignals() {
        sigset_t set;
        ::sigemptyset(&set);
        for (const int signal : endingSignals) {
            ::sigaddset(&set, signal);
        }
        ::sigprocmask(SIG_BLOCK, &set, &before_);
    }
    ~BlockedSignals() { ::sigprocmask(SIG_SETMASK, &before_, nullptr); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

private:
    sigset_t before_{};
};

std::string pidText() {
    return std::to_string(::getpid()) + "\n";
}

/// How long ago, in seconds; negative for what a clock that was set back has left in the future.
std::optional<double> ageOf(const std::string& path) {
    struct stat status {};
    timespec now{};
    if (::stat(path.c_str(), &status) != 0 || ::clock_gettime(CLOCK_REALTIME, &now) != 0) {
        return std::nullopt;
    }
    return static_cast<double>(now.tv_sec - status.st_mtim.tv_sec) +
           static_cast<double>(now.tv_nsec - status.st_mtim.tv_nsec) / 1e9;
}

/// A lock from the future is as stale as an old one.
bool isOverdue(const std::string& lock) {
    return std::abs(ageOf(lock).value_or(0)) > ownerlessSeconds;
}

void pause() {
    const timespec length{0, pauseNanoseconds};
    ::nanosleep(&length, nullptr);
}

} // namespace

EventLock::EventLock(std::string folder)
    : folder_(std::move(folder)), lock_(folder_ + "/" + std::string(FellowCore::PumpAgentLog::lockName)),
      pidFile_(lock_ + "/" + std::string(FellowCore::PumpAgentLog::lockOwnerName)) {}

EventLock::~EventLock() {
    if (held_) {
        const BlockedSignals blocked;
        if (isStillHeld()) {
            giveBack();
        }
        toGiveBack = {};
    }
}

bool EventLock::acquire() {
    for (int attempt = 1;; ++attempt) {
        const Taking taking = tryToTake();
        if (taking != Taking::busy || attempt == attempts) {
            return taking == Taking::taken;
        }
        if (!clearIfStale()) {
            pause();
        }
    }
}

/// The folder may be taken for ownerless and cleared away before the process id stands in it, if this process
/// sleeps long enough in between. So it is the making of that file, which only one can do, that decides.
EventLock::Taking EventLock::tryToTake() {
    const BlockedSignals blocked;
    if (::mkdir(lock_.c_str(), 0700) != 0) {
        return errno == EEXIST ? Taking::busy : Taking::impossible;
    }
    const OpenFile file(::open(pidFile_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file.isOpen()) {
        ::rmdir(lock_.c_str()); // fails, as it should, when another one is in it by now
        return Taking::busy;
    }
    temporaryFileName = temporaryFile();
    toGiveBack = {temporaryFileName.c_str(), pidFile_.c_str(), lock_.c_str()};
    if (!writeAll(file.get(), pidText())) {
        giveBack();
        toGiveBack = {};
        return Taking::impossible;
    }
    held_ = true;
    return Taking::taken;
}

bool EventLock::isStillHeld() const {
    return readFile(pidFile_, pidText().size()) == pidText();
}

EventLock::Owner EventLock::owner(pid_t& pid) const {
    constexpr std::size_t maximumText = 64;
    const std::string text = readFile(pidFile_, maximumText).value_or("");
    if (text.empty()) {
        return Owner::none;
    }
    pid = 0;
    std::from_chars(text.data(), text.data() + text.size(), pid);
    if (pid <= 0 || (::kill(pid, 0) != 0 && errno != EPERM)) {
        return Owner::dead;
    }
    const auto process = processWith(pid);
    if (process && (process->state == 'Z' || process->state == 'X')) {
        return Owner::dead;
    }
    // A process that is younger than the lock has only been given the dead owner's number.
    const auto lockAge = ageOf(pidFile_);
    const bool isAnother = process && lockAge && process->age + clockToleranceSeconds < *lockAge;
    return isAnother ? Owner::dead : Owner::alive;
}

/// Whether there is reason to try again at once. Two helpers may find the same lock stale, and the slower one
/// must not clear away what the faster has taken by then; so only one may look and clear at a time.
bool EventLock::clearIfStale() const {
    pid_t pid = 0;
    const Owner seen = owner(pid);
    if (seen == Owner::alive || (seen == Owner::none && !isOverdue(lock_))) {
        return false;
    }
    const OpenFile folder(::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen() || (::flock(folder.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)) {
        return false;
    }
    pid_t again = 0;
    const Owner now = owner(again);
    if (now == Owner::dead) {
        ::unlink(temporaryFileOf(again).c_str());
        ::unlink(pidFile_.c_str());
    } else if (now != Owner::none || !isOverdue(lock_)) {
        return false;
    } else {
        ::unlink(pidFile_.c_str()); // empty, if its maker died before it could say who it was
    }
    return ::rmdir(lock_.c_str()) == 0;
}

std::string EventLock::temporaryFile() const {
    return temporaryFileOf(::getpid());
}

std::string EventLock::temporaryFileOf(pid_t pid) const {
    return folder_ + "/.agent-events-" + std::to_string(pid);
}

void EventLock::endQuietlyAfter(double seconds) {
    struct sigaction action {};
    action.sa_handler = endQuietly;
    for (const int signal : endingSignals) {
        ::sigaction(signal, &action, nullptr);
    }
    itimerval timer{};
    timer.it_value.tv_sec = static_cast<time_t>(seconds);
    timer.it_value.tv_usec =
        static_cast<suseconds_t>((seconds - static_cast<double>(timer.it_value.tv_sec)) * 1e6);
    ::setitimer(ITIMER_REAL, &timer, nullptr);
}

} // namespace FellowHook
