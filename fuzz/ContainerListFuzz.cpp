#include "core/base/Text.h"
#include "core/containers/DevWatchDockerClient.h"
#include "core/containers/DevWatchDockerFailure.h"
#include "fuzz/Require.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

using namespace FellowCore;

namespace {

// No text from outside may break its line or turn it around.
void requireShowable(const std::string& text) {
    require(singleLine(text) == text && text.size() <= std::size_t{4096} * 4);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view body(reinterpret_cast<const char*>(data), size);
    DevWatchDockerClient::supportsTermStop(body);
    try {
        const auto containers = DevWatchDockerClient::decodeContainers(body);
        std::set<std::string> ids;
        for (const auto& container : containers) {
            require(ids.insert(container.id).second && container.id.size() == 64);
            require(container.id.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos);
            require(!container.name.empty());
            requireShowable(container.name);
            requireShowable(container.image);
            requireShowable(container.projectDirectory.value_or("/"));
            require(container.projectDirectory.value_or("/").starts_with('/'));
            require(std::ranges::is_sorted(container.ports, std::less_equal()));
            require(container.ports.empty() || container.ports.front() != 0);
        }
        require(std::ranges::is_sorted(containers, {}, &DevWatchDockerContainer::order));
    } catch (const DevWatchDockerFailure& failure) {
        require(failure.kind() == DevWatchDockerFailure::Kind::invalidResponse);
    }
    return 0;
}
