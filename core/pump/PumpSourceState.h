#pragma once

#include <string_view>

namespace FellowCore {

/// How well one agent's logs could be read.
enum class PumpSourceState {
    ready,
    missing,    ///< there are none
    unreadable, ///< some of them could not be read
    loading,    ///< there is more to read, which the next refresh goes on with
    partial,    ///< some line was no whole line of JSON, or the last one is still being written
};

/// The case's name, such as "unreadable".
std::string_view rawValue(PumpSourceState state);

} // namespace FellowCore
