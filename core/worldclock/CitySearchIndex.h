#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace FellowCore {

/// Finds, among many short folded texts, those that hold every word of a query, and ranks them by how their
/// names answer the whole of it. For every sequence of one, two or three bytes it knows the texts that hold
/// it, so that a query looks only at texts that hold its rarest part.
class CitySearchIndex {
public:
    struct Item {
        std::string_view key;                    ///< all that may be found
        std::span<const std::string_view> names; ///< what is ranked; each occurs in `key`
    };

    /// The texts must outlive the index. Items of one rank are answered in the order given here.
    explicit CitySearchIndex(std::vector<Item> items);

    /// The positions of the items that hold every word of the folded query: first those that have it as a
    /// name, then those with a name that begins with it, then the rest. Every item when it has no words.
    std::vector<std::uint32_t> search(std::string_view folded) const;

private:
    using Positions = std::vector<std::uint32_t>;
    struct Posting {
        std::uint32_t first = 0; ///< where its bytes begin in `steps_`
        std::uint32_t count = 0; ///< how many items it names
    };

    void addPostings();
    const Posting* rarest(std::string_view word) const;
    Positions decoded(const Posting& posting) const;
    Positions holding(std::string_view word) const;
    void keepHolding(Positions& matches, std::string_view word) const;
    Positions holdingAll(std::span<const std::string_view> words) const;
    Positions ranked(const Positions& matches, std::string_view query) const;

    std::vector<Item> items_;
    std::vector<std::pair<std::string_view, std::uint32_t>> names_; ///< sorted
    std::unordered_map<std::uint32_t, Posting> postings_;
    std::string steps_; ///< from position to position, seven bits to the byte
};

} // namespace FellowCore
