#pragma once

#include <filesystem>

namespace Bench {

/// What every benchmark takes on its command line.
struct Options {
    bool quick = false;            ///< --quick: fewer or shorter rounds, for a first look
    std::filesystem::path program; ///< --program PATH: the `deskfellow` to measure; the one of the same build
    std::filesystem::path resources; ///< the data beside that program

    /// Throws `std::runtime_error` for an unknown option or a program that is not there.
    Options(int count, char** values);
};

} // namespace Bench
