#pragma once

#include <cstddef>
#include <random>
#include <string>

namespace FellowCore {

/// Makes JSON lines that wander along the kept paths, and lines that are nearly JSON.
class UsageLines {
public:
    explicit UsageLines(unsigned seed) : random_(seed) {}

    std::string line() { return object(0); }
    /// A line with a few bytes changed, so that the places where validity ends are met from both sides.
    std::string mutated(std::string line);
    std::size_t below(std::size_t limit);

private:
    std::string object(int depth);
    std::string array(int depth);
    std::string value(int depth);
    std::string key();
    std::string string();
    std::string number();
    std::string blank();
    template <std::size_t size>
    std::string oneOf(const char* const (&choices)[size]) {
        return choices[below(size)];
    }

    std::mt19937 random_;
};

} // namespace FellowCore
