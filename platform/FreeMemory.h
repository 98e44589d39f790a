#pragma once

#include <malloc.h>

namespace Platform {

/// Hands memory that the program has freed back to the system, after something large has gone. Takes a few
/// milliseconds.
inline void returnFreeMemory() {
    malloc_trim(0);
}

} // namespace Platform
