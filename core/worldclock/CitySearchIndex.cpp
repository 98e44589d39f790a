#include "core/worldclock/CitySearchIndex.h"

#include "core/worldclock/WorldClockFolding.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <numeric>

namespace FellowCore {

namespace {

constexpr std::size_t longestPart = 3;

/// Up to three bytes and their number as one value.
std::uint32_t partOf(std::string_view bytes) {
    auto part = static_cast<std::uint32_t>(bytes.size());
    for (const char byte : bytes) {
        part = part << 8U | static_cast<unsigned char>(byte);
    }
    return part;
}

void appendStep(std::string& steps, std::uint32_t step) {
    constexpr std::uint32_t more = 0x80;
    for (; step >= more; step >>= 7U) {
        steps += static_cast<char>(step | more);
    }
    steps += static_cast<char>(step);
}

struct Growing {
    std::string steps;
    std::uint32_t next = 0; ///< one past the last position
    std::uint32_t count = 0;
};

} // namespace

CitySearchIndex::CitySearchIndex(std::vector<Item> items) : items_(std::move(items)) {
    for (std::uint32_t position = 0; position < items_.size(); ++position) {
        for (const std::string_view name : items_[position].names) {
            names_.emplace_back(name, position);
        }
    }
    std::ranges::sort(names_);
    addPostings();
}

void CitySearchIndex::addPostings() {
    std::unordered_map<std::uint32_t, Growing> growing;
    for (std::uint32_t position = 0; position < items_.size(); ++position) {
        const std::string_view key = items_[position].key;
        for (std::size_t at = 0; at < key.size(); ++at) {
            for (std::size_t length = 1; length <= longestPart && at + length <= key.size(); ++length) {
                Growing& part = growing[partOf(key.substr(at, length))];
                if (part.next <= position) {
                    appendStep(part.steps, position - part.next);
                    part.next = position + 1;
                    ++part.count;
                }
            }
        }
    }
    postings_.reserve(growing.size());
    for (const auto& [part, held] : growing) {
        postings_[part] = {static_cast<std::uint32_t>(steps_.size()), held.count};
        steps_ += held.steps;
    }
    steps_.shrink_to_fit();
}

/// The posting of the word's part that the fewest items hold; null when one is held by none.
const CitySearchIndex::Posting* CitySearchIndex::rarest(std::string_view word) const {
    const Posting* found = nullptr;
    const std::size_t length = std::min(word.size(), longestPart);
    for (std::size_t at = 0; at + length <= word.size(); ++at) {
        const auto posting = postings_.find(partOf(word.substr(at, length)));
        if (posting == postings_.end()) {
            return nullptr;
        }
        if (found == nullptr || posting->second.count < found->count) {
            found = &posting->second;
        }
    }
    return found;
}

CitySearchIndex::Positions CitySearchIndex::decoded(const Posting& posting) const {
    Positions positions(posting.count);
    std::size_t at = posting.first;
    std::uint32_t next = 0;
    for (std::uint32_t& position : positions) {
        std::uint32_t step = 0;
        for (unsigned shift = 0;; shift += 7U) {
            const auto byte = static_cast<unsigned char>(steps_[at++]);
            step |= (byte & 0x7FU) << shift;
            if (byte < 0x80) {
                break;
            }
        }
        position = next + step;
        next = position + 1;
    }
    return positions;
}

CitySearchIndex::Positions CitySearchIndex::holding(std::string_view word) const {
    const Posting* const posting = rarest(word);
    if (posting == nullptr) {
        return {};
    }
    Positions positions = decoded(*posting);
    if (word.size() > longestPart) {
        std::erase_if(positions, [&](std::uint32_t position) {
            return items_[position].key.find(word) == std::string_view::npos;
        });
    }
    return positions;
}

void CitySearchIndex::keepHolding(Positions& matches, std::string_view word) const {
    constexpr std::size_t looksPerStep = 4; // looking into a text costs as much as some steps of a posting
    const Posting* const posting = word.size() <= longestPart ? rarest(word) : nullptr;
    if (posting != nullptr && posting->count < matches.size() * looksPerStep) {
        Positions kept;
        std::ranges::set_intersection(matches, decoded(*posting), std::back_inserter(kept));
        matches = std::move(kept);
        return;
    }
    std::erase_if(matches, [&](std::uint32_t position) {
        return items_[position].key.find(word) == std::string_view::npos;
    });
}

CitySearchIndex::Positions CitySearchIndex::holdingAll(std::span<const std::string_view> words) const {
    std::vector<std::pair<std::uint32_t, std::string_view>> byRarity;
    for (const std::string_view word : words) {
        const Posting* const posting = rarest(word);
        if (posting == nullptr) {
            return {};
        }
        byRarity.emplace_back(posting->count, word);
    }
    std::ranges::sort(byRarity);
    const auto repeated = std::ranges::unique(byRarity);
    byRarity.erase(repeated.begin(), repeated.end());
    Positions matches = holding(byRarity.front().second);
    for (std::size_t index = 1; index < byRarity.size() && !matches.empty(); ++index) {
        keepHolding(matches, byRarity[index].second);
    }
    return matches;
}

CitySearchIndex::Positions CitySearchIndex::ranked(const Positions& matches, std::string_view query) const {
    enum : unsigned char { exact, beginning, within, ranks };
    std::vector<unsigned char> rankOf(items_.size(), within);
    const auto nameOf = [](const auto& entry) { return entry.first; };
    const auto first = std::ranges::lower_bound(names_, query, {}, nameOf);
    const auto last = std::partition_point(first, names_.end(),
                                           [&](const auto& entry) { return entry.first.starts_with(query); });
    const auto longer = std::partition_point(
        first, last, [&](const auto& entry) { return entry.first.size() == query.size(); });
    std::for_each(longer, last, [&](const auto& entry) { rankOf[entry.second] = beginning; });
    std::for_each(first, longer, [&](const auto& entry) { rankOf[entry.second] = exact; });
    std::array<std::size_t, ranks + 1> start{};
    for (const std::uint32_t position : matches) {
        ++start[rankOf[position] + 1U];
    }
    std::partial_sum(start.begin(), start.end(), start.begin());
    Positions sorted(matches.size());
    for (const std::uint32_t position : matches) {
        sorted[start[rankOf[position]]++] = position;
    }
    return sorted;
}

std::vector<std::uint32_t> CitySearchIndex::search(std::string_view folded) const {
    const std::vector<std::string_view> words = worldClockWords(folded);
    if (words.empty()) {
        Positions all(items_.size());
        std::iota(all.begin(), all.end(), 0U);
        return all;
    }
    return ranked(holdingAll(words), folded);
}

} // namespace FellowCore
