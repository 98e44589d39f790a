#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace FellowCore {

/// A running container as it is shown and confirmed. Texts are UTF-8, free of control and directional
/// characters, and of at most 4096 Unicode scalars.
struct DevWatchDockerContainer {
    std::string id;                   ///< 64 hexadecimal digits
    std::string name;                 ///< the beginning of the id for one that has none
    std::string image;                ///< as the engine names it; may be empty
    std::vector<std::uint16_t> ports; ///< published TCP ports of the host, ascending, each once, never 0
    std::optional<std::string> projectDirectory; ///< absolute; of the compose project that it belongs to

    /// What a list of containers is sorted by.
    auto order() const { return std::tie(name, id); }

    friend bool operator==(const DevWatchDockerContainer&, const DevWatchDockerContainer&) = default;
};

} // namespace FellowCore
