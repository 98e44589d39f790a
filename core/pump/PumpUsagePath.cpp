#include "core/pump/PumpUsagePath.h"

#include <algorithm>
#include <array>
#include <vector>

namespace FellowCore::PumpUsageJSON {

namespace {

constexpr std::size_t containerCount = 6;
constexpr std::array<std::string_view, containerCount> containerTexts{
    "", "message", "message.usage", "payload", "payload.rate_limits", "payload.rate_limits.primary"};

struct Key {
    std::string_view text;
    Path path;
};

/// The keys of one container that lead somewhere.
struct Keys {
    std::uint64_t lengths = 0; ///< bit n for a key of n bytes, to tell most others at a glance
    std::vector<Key> keys;

    void add(std::string_view container, std::string_view text, Path path) {
        const std::size_t skipped = container.empty() ? 0 : container.size() + 1;
        if (text.size() <= skipped || !text.starts_with(container) ||
            (!container.empty() && text[container.size()] != '.')) {
            return;
        }
        keys.push_back({text.substr(skipped), path});
        lengths |= std::uint64_t{1} << keys.back().text.size(); // the longest has 42 bytes
    }
};

std::size_t indexOf(Path container) {
    return static_cast<std::size_t>(container) - static_cast<std::size_t>(Path::root);
}

std::array<Keys, containerCount> allKeys() {
    std::array<Keys, containerCount> all;
    for (std::size_t container = 0; container < containerCount; ++container) {
        for (std::size_t inner = 1; inner < containerCount; ++inner) {
            const auto path = static_cast<Path>(static_cast<std::size_t>(Path::root) + inner);
            all[container].add(containerTexts[container], containerTexts[inner], path);
        }
        for (std::size_t field = 0; field < fieldCount; ++field) {
            const auto path = static_cast<Path>(static_cast<std::size_t>(Path::firstField) + field);
            all[container].add(containerTexts[container], PumpUsageJSON::path(static_cast<Field>(field)),
                               path);
        }
    }
    return all;
}

} // namespace

Path pathBelow(Path container, std::string_view key) {
    static const std::array<Keys, containerCount> all = allKeys();
    constexpr std::size_t bits = 64;
    const Keys& known = all[indexOf(container)];
    if (key.size() >= bits || (known.lengths >> key.size() & 1) == 0) {
        return Path::none;
    }
    const auto found =
        std::find_if(known.keys.begin(), known.keys.end(), [&](const Key& one) { return one.text == key; });
    return found != known.keys.end() ? found->path : Path::none;
}

} // namespace FellowCore::PumpUsageJSON
