#pragma once

#include "core/base/Json.h"
#include "core/pump/PumpProvider.h"

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace FellowCore {

/// Pump's entries among the hooks in an agent's settings: put in without touching what is there, and taken
/// out again. Pure: bytes in, bytes out.
struct PumpHookSettings {
    /// Why settings were left alone, with the sentence for the user in `what()`.
    class Failure : public std::runtime_error {
    public:
        enum class Case { invalid, missingBackup, changed, editedHelper };

        explicit Failure(Case failure);
        Case failure() const { return failure_; }

    private:
        Case failure_;
    };

    /// The events that an agent gets a hook for, in the order in which they are put in.
    static std::span<const std::string_view> events(PumpProvider agent);

    /// The settings as an object; no bytes are an empty one. Throws `invalid` for anything that is not an
    /// object with well-formed hooks, or that could not be written again without loss.
    static Json object(std::string_view data);
    /// Pretty printed, keys sorted, slashes not escaped.
    static std::string encode(const Json& object);
    /// The settings with a hook that runs `command` at the end of each of the agent's events. Throws
    /// `invalid`.
    static std::string merge(std::string_view data, PumpProvider agent, std::string_view command);
    /// Whether any hook in the settings runs `command`. Throws `invalid`.
    static bool holdsCommand(std::string_view data, std::string_view command);
    /// The settings without the hooks that run `command`: `original` itself when nothing else was changed
    /// since, byte for byte, and `current` itself when none is in it. A group, an event or the hooks as a
    /// whole that this empties goes too, unless the original had it. Throws `invalid`.
    static std::string restore(std::string_view current, std::string_view original,
                               std::string_view installed, std::string_view command);
};

} // namespace FellowCore
