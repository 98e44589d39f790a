#pragma once

#include "core/pump/PumpUsageScan.h"

namespace FellowCore::PumpUsageJSON {

#if defined(__x86_64__)

/// The scan for processors with AVX2, BMI and carry-less multiplication; on others it must not be called.
std::size_t scanByAvx2(const char* bytes, std::size_t size, ScanState& state, std::uint64_t* events);

#endif

} // namespace FellowCore::PumpUsageJSON
