#pragma once

#include <cstdlib>

/// Ends the run with a finding unless `holds`.
inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}
