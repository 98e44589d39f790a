#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace Bench {

/// Makes lines such as coding agents write into their session logs: a third from the assistant, with usage
/// figures; the others prompts and tool results of a few hundred bytes to two megabytes, with code, terminal
/// colours, diffs and text in several scripts. The same seed gives the same lines.
class TranscriptCorpus {
public:
    explicit TranscriptCorpus(std::uint64_t seed = 1);

    /// One line without its line feed.
    std::string line();
    /// Lines of at least so many bytes together.
    std::vector<std::string> lines(std::size_t bytes);
    /// A line of the assistant, stamped so many seconds after 2026-03-01T00:00:00Z.
    std::string assistantLine(long second);

private:
    std::string head(const char* type, long second);
    std::string userLine();
    std::string toolResultLine();
    std::string prose(std::size_t bytes);
    std::string code(std::size_t bytes);
    std::string structuredPatch();
    std::string identity();
    std::size_t below(std::size_t limit);
    std::size_t resultSize();

    std::mt19937_64 random_;
    long second_ = 0;
};

} // namespace Bench
