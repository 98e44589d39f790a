#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Bench {

/// One thing that was measured several times, and what it may come to.
struct Figure {
    std::string what;
    std::vector<double> samples; ///< not empty
    std::string unit;
    std::optional<double> budget; ///< the median may reach it; absent when the figure is only for the reader
    int decimals = 1;             ///< of what is printed, and of the median that the budget is held against
};

double median(std::vector<double> samples);
/// The middle of a figure as it is judged: rounded to its decimals.
double judged(const Figure& figure);
bool isOver(const Figure& figure);

/// Prints figures line by line as they come in, each beside its budget, and remembers whether one was missed.
class Figures {
public:
    void add(const Figure& figure);
    /// A line of explanation under the figure above.
    void note(const std::string& text) const;
    /// The program's exit status: 1 when a budget was missed.
    int status() const { return missed_ ? 1 : 0; }

private:
    bool missed_ = false;
};

/// Runs a benchmark and turns an exception into a line on standard error and exit status 2.
int reporting(int (*body)(int count, char** values), int count, char** values);

} // namespace Bench
