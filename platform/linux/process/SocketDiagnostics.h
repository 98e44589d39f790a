#pragma once

#include "core/devwatch/DevWatchOperations.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

/// The kernel's own list of sockets, over netlink; see sock_diag(7).
namespace Platform::SocketDiagnostics {

/// An answer as far as it has come in.
struct Dump {
    std::vector<FellowCore::DevWatchListeningSocket> sockets;
    bool complete = false;
    bool interrupted = false; ///< the table changed meanwhile, so that entries may be missing
    int error = 0;            ///< what the kernel said instead, as errno has it
};

/// Takes in one datagram of an answer. False for bytes that are no such answer, which are never read beyond
/// their end, and when the kernel tells of an error.
bool read(std::span<const std::byte> datagram, Dump& into);

/// Every TCP socket of this network namespace that listens, of both address families; nothing when the kernel
/// gives no list. Blocks for some tens of microseconds.
std::optional<std::vector<FellowCore::DevWatchListeningSocket>> listeningSockets();

} // namespace Platform::SocketDiagnostics
