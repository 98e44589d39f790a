#include "core/containers/UnixHTTPRequest.h"

#include "core/containers/DevWatchHTTP.h"
#include "core/containers/DevWatchHTTPFailure.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cmath>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace FellowCore {

namespace {

using Kind = DevWatchHTTPFailure::Kind;
using Clock = std::chrono::steady_clock;

/// Room for a path with its terminator on every system; Linux itself would take four bytes more.
constexpr std::size_t pathRoom = 104;
constexpr std::size_t receiveBuffer = 8192;

/// Refuses a call that failed. To be used on the line of the call, while `errno` is its own.
void requireDone(bool done, const char* call) {
    if (!done) {
        throw DevWatchHTTPFailure::syscall(call, errno);
    }
}

class Deadline {
public:
    explicit Deadline(Seconds timeout)
        : at_(Clock::now() + std::chrono::round<Clock::duration>(std::chrono::duration<Seconds>(timeout))) {}

    /// At least 1; throws timeout when nothing is left.
    int millisecondsLeft() const {
        const auto left = at_ - Clock::now();
        if (left <= Clock::duration::zero()) {
            throw DevWatchHTTPFailure(Kind::timeout, "The server took too long.");
        }
        const auto whole = std::chrono::duration_cast<std::chrono::milliseconds>(left).count();
        return static_cast<int>(std::clamp<decltype(whole)>(whole, 1, INT_MAX));
    }

private:
    Clock::time_point at_;
};

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) { requireDone(number >= 0, "socket"); }
    ~Descriptor() { ::close(number_); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    operator int() const { return number_; }

private:
    int number_;
};

void requireSendable(const std::string& socketPath, std::string_view method, std::string_view target,
                     Seconds timeout, std::size_t maxBytes) {
    const bool sendable =
        (method == "GET" || method == "POST") && target.starts_with('/') &&
        std::ranges::all_of(target, [](char byte) { return byte > ' ' && byte < '\x7F'; }) &&
        std::isfinite(timeout) && timeout > 0 && timeout <= longestUnixHTTPTimeout &&
        maxBytes >= leastUnixHTTPBytes && socketPath.find('\0') == std::string::npos;
    if (!sendable) {
        throw DevWatchHTTPFailure(Kind::invalidRequest, "The request is not one that is sent.");
    }
}

void requireOwnSocket(const std::string& path) {
    struct stat status = {};
    requireDone(::lstat(path.c_str(), &status) == 0, "lstat");
    if (status.st_uid != ::getuid() || !S_ISSOCK(status.st_mode)) {
        throw DevWatchHTTPFailure(Kind::unsafeSocket, "What stands there is no socket of the user's own.");
    }
}

sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address = {};
    static_assert(pathRoom <= sizeof address.sun_path);
    if (path.size() + 1 >= pathRoom) {
        throw DevWatchHTTPFailure(Kind::invalidRequest, "The socket's path is too long.");
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.data(), path.size());
    return address;
}

/// A server with a full queue refuses a non-blocking connection at once and nothing ever becomes ready, so
/// this one call blocks, and the system ends it (EAGAIN) when the time is over.
void connectTo(int socket, const sockaddr_un& address, const Deadline& deadline) {
    for (;;) {
        const long left = deadline.millisecondsLeft();
        const timeval wait = {.tv_sec = left / 1000, .tv_usec = left % 1000 * 1000};
        requireDone(::setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &wait, sizeof wait) == 0, "setsockopt");
        if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
            break;
        }
        requireDone(errno == EINTR || errno == EAGAIN, "connect");
    }
    requireDone(::fcntl(socket, F_SETFL, O_NONBLOCK) == 0, "fcntl");
}

/// The file may have been swapped since it was looked at; who listens at the far end cannot have been.
void requireOwnPeer(int socket) {
    ucred peer = {};
    socklen_t size = sizeof peer;
    requireDone(::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0, "getsockopt");
    if (peer.uid != ::getuid()) {
        throw DevWatchHTTPFailure(Kind::unsafeSocket, "Another user's process answers there.");
    }
}

void waitFor(int socket, short events, const Deadline& deadline) {
    for (;;) {
        pollfd wanted = {.fd = socket, .events = events, .revents = 0};
        const int ready = ::poll(&wanted, 1, deadline.millisecondsLeft());
        if (ready > 0) {
            return;
        }
        if (ready == 0) {
            throw DevWatchHTTPFailure(Kind::timeout, "The server took too long.");
        }
        requireDone(errno == EINTR, "poll");
    }
}

/// After a call that moved no bytes: waits if that may change, and throws if not.
void waitToRepeat(const char* call, int socket, short events, const Deadline& deadline) {
    if (errno == EINTR) {
        return;
    }
    requireDone(errno == EAGAIN || errno == EWOULDBLOCK, call);
    waitFor(socket, events, deadline);
}

void sendAll(int socket, std::string_view bytes, const Deadline& deadline) {
    while (!bytes.empty()) {
        const auto sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0) {
            waitToRepeat("send", socket, POLLOUT, deadline);
        } else {
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
    }
}

std::string receiveAll(int socket, std::size_t maxBytes, const Deadline& deadline) {
    std::string received;
    std::array<char, receiveBuffer> buffer;
    for (;;) {
        deadline.millisecondsLeft(); // a server that always has one byte more ready never makes us wait
        const auto count = ::recv(socket, buffer.data(), buffer.size(), 0);
        if (count == 0) {
            return received;
        }
        if (count < 0) {
            waitToRepeat("recv", socket, POLLIN, deadline);
            continue;
        }
        if (static_cast<std::size_t>(count) > maxBytes - received.size()) {
            throw DevWatchHTTPFailure(Kind::tooLarge, "The answer is too large.");
        }
        received.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

} // namespace

DevWatchHTTPResponse unixHTTPRequest(const std::string& socketPath, std::string_view method,
                                     std::string_view target, Seconds timeout, std::size_t maxBytes) {
    requireSendable(socketPath, method, target, timeout, maxBytes);
    requireOwnSocket(socketPath);
    const sockaddr_un address = addressOf(socketPath);
    std::string received;
    {
        const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        const Deadline deadline(timeout);
        connectTo(socket, address, deadline);
        requireOwnPeer(socket);
        sendAll(socket,
                std::string(method).append(" ").append(target) +
                    " HTTP/1.1\r\nHost: localhost\r\nAccept: application/json\r\nConnection: close\r\n"
                    "Content-Length: 0\r\n\r\n",
                deadline);
        received = receiveAll(socket, maxBytes, deadline);
    }
    return DevWatchHTTP::parse(received, maxBytes);
}

} // namespace FellowCore
