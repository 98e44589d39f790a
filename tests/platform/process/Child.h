#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <functional>
#include <optional>
#include <thread>

namespace TestSupport {

/// Opens a TCP socket that listens on a port, or a free one, of the loopback; answers the port, 0 on failure.
inline std::uint16_t listenOn(std::uint16_t port, int family = AF_INET) {
    const int socket = ::socket(family, SOCK_STREAM, 0);
    const int on = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in6 sixth{};
    sockaddr_in fourth{};
    sixth.sin6_family = AF_INET6;
    sixth.sin6_addr = in6addr_loopback;
    sixth.sin6_port = fourth.sin_port = htons(port);
    fourth.sin_family = AF_INET;
    fourth.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* const address =
        family == AF_INET ? reinterpret_cast<sockaddr*>(&fourth) : reinterpret_cast<sockaddr*>(&sixth);
    socklen_t length = family == AF_INET ? sizeof fourth : sizeof sixth;
    if (::bind(socket, address, length) != 0 || ::listen(socket, 1) != 0 ||
        ::getsockname(socket, address, &length) != 0) {
        return 0;
    }
    return ntohs(family == AF_INET ? fourth.sin_port : sixth.sin6_port);
}

/// Looks every millisecond whether something has become true; false when it has not within ten seconds.
inline bool becomesTrue(const std::function<bool()>& condition) {
    constexpr int attempts = 10'000;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}

/// A real process that lives as it is told and then waits for its end, which comes with this object at the
/// latest.
class Child {
public:
    /// `life` runs in the child; what it returns is the child's `said`.
    explicit Child(const std::function<int()>& life) {
        int ends[2];
        if (::pipe(ends) != 0) {
            return;
        }
        pid_ = ::fork();
        if (pid_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            const int word = life();
            if (::write(ends[1], &word, sizeof word) == sizeof word) {
                ::close(ends[0]);
                ::close(ends[1]);
            }
            for (;;) {
                ::pause();
            }
        }
        ::close(ends[1]);
        if (::read(ends[0], &said_, sizeof said_) != sizeof said_) {
            said_ = -1;
        }
        ::close(ends[0]);
    }
    ~Child() { end(); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    pid_t pid() const { return pid_; }
    int said() const { return said_; }
    std::uint16_t port() const { return static_cast<std::uint16_t>(said_); }

    void end() {
        if (!ended()) {
            ::kill(pid_, SIGKILL);
            wait();
        }
    }
    /// Waits for its end and tells the signal that brought it, 0 for none.
    int wait() {
        while (!status_) {
            int status = 0;
            if (::waitpid(pid_, &status, 0) == pid_ || errno == ECHILD) {
                status_ = status;
            }
        }
        return WIFSIGNALED(*status_) ? WTERMSIG(*status_) : 0;
    }
    bool ended() {
        int status = 0;
        if (!status_ && ::waitpid(pid_, &status, WNOHANG) == pid_) {
            status_ = status;
        }
        return status_.has_value();
    }

private:
    pid_t pid_ = -1;
    int said_ = -1;
    std::optional<int> status_;
};

} // namespace TestSupport
