#include "platform/linux/process/SocketDiagnostics.h"

#include <arpa/inet.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace Platform::SocketDiagnostics {

namespace {

/// A kernel structure at the front of some bytes; nothing when there are too few.
template <typename Structure>
std::optional<Structure> front(std::span<const std::byte> bytes) {
    Structure structure;
    if (bytes.size() < sizeof structure) {
        return std::nullopt;
    }
    std::memcpy(&structure, bytes.data(), sizeof structure);
    return structure;
}

constexpr std::size_t padded(std::size_t length) {
    return (length + NLMSG_ALIGNTO - 1) & ~std::size_t{NLMSG_ALIGNTO - 1};
}

class Connection {
public:
    Connection() : socket_(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_SOCK_DIAG)) {
        // The kernel answers a dump at once; this is only so that nothing can wait for ever.
        const timeval patience{.tv_sec = 1, .tv_usec = 0};
        ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    }
    ~Connection() {
        if (socket_ >= 0) {
            ::close(socket_);
        }
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Asks for the listening sockets of one family and reads the whole answer.
    Dump dump(unsigned char family) const {
        Dump dump;
        if (!ask(family)) {
            return dump;
        }
        while (!dump.complete) {
            alignas(nlmsghdr) std::array<std::byte, 32768> buffer;
            sockaddr_nl sender{};
            socklen_t length = sizeof sender;
            const ssize_t count = ::recvfrom(socket_, buffer.data(), buffer.size(), MSG_TRUNC,
                                             reinterpret_cast<sockaddr*>(&sender), &length);
            if (count < 0 && errno == EINTR) {
                continue;
            }
            if (count <= 0 || static_cast<std::size_t>(count) > buffer.size()) {
                break;
            }
            // Only the kernel has the number 0.
            if (sender.nl_pid == 0 && !read(std::span(buffer).first(static_cast<std::size_t>(count)), dump)) {
                break;
            }
        }
        return dump;
    }

private:
    bool ask(unsigned char family) const {
        struct {
            nlmsghdr header;
            inet_diag_req_v2 request;
        } message{};
        message.header.nlmsg_len = sizeof message;
        message.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
        message.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
        message.request.sdiag_family = family;
        message.request.sdiag_protocol = IPPROTO_TCP;
        message.request.idiag_states = 1U << TCP_LISTEN;
        sockaddr_nl kernel{};
        kernel.nl_family = AF_NETLINK;
        const auto* const address = reinterpret_cast<const sockaddr*>(&kernel);
        ssize_t sent = 0;
        do {
            sent = ::sendto(socket_, &message, sizeof message, 0, address, sizeof kernel);
        } while (sent < 0 && errno == EINTR);
        return sent == ssize_t{sizeof message};
    }

    int socket_;
};

/// A kernel without IPv6 knows no such family: there are no such sockets then.
bool isWhole(const Dump& dump) {
    return dump.complete || dump.error == ENOENT;
}

bool takeEntry(std::span<const std::byte> body, Dump& into) {
    const auto entry = front<inet_diag_msg>(body);
    if (!entry) {
        return false;
    }
    const std::uint16_t port = ntohs(entry->id.idiag_sport);
    if (entry->idiag_state == TCP_LISTEN && port != 0 && entry->idiag_inode != 0) {
        into.sockets.push_back({entry->idiag_inode, port});
    }
    return true;
}

} // namespace

bool read(std::span<const std::byte> datagram, Dump& into) {
    while (!datagram.empty() && !into.complete) {
        const auto header = front<nlmsghdr>(datagram);
        if (!header || header->nlmsg_len < sizeof(nlmsghdr) || header->nlmsg_len > datagram.size()) {
            return false;
        }
        const auto body = datagram.first(header->nlmsg_len).subspan(sizeof(nlmsghdr));
        into.interrupted = into.interrupted || (header->nlmsg_flags & NLM_F_DUMP_INTR) != 0;
        into.complete = header->nlmsg_type == NLMSG_DONE;
        if (header->nlmsg_type == NLMSG_ERROR) {
            const auto error = front<nlmsgerr>(body);
            into.error = error && error->error < 0 && error->error > -4096 ? -error->error : EPROTO;
            return false;
        }
        if (header->nlmsg_type == SOCK_DIAG_BY_FAMILY && !takeEntry(body, into)) {
            return false;
        }
        datagram = datagram.subspan(std::min(padded(header->nlmsg_len), datagram.size()));
    }
    return true;
}

std::optional<std::vector<FellowCore::DevWatchListeningSocket>> listeningSockets() {
    constexpr int attempts = 4;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const Connection connection;
        Dump fourth = connection.dump(AF_INET);
        if (!fourth.complete) {
            return std::nullopt;
        }
        const Dump sixth = connection.dump(AF_INET6);
        if (isWhole(sixth) && !fourth.interrupted && !sixth.interrupted) {
            fourth.sockets.insert(fourth.sockets.end(), sixth.sockets.begin(), sixth.sockets.end());
            return std::move(fourth.sockets);
        }
    }
    return std::nullopt;
}

} // namespace Platform::SocketDiagnostics
