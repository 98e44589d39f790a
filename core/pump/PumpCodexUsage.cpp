#include "core/pump/PumpCodexUsage.h"

#include <algorithm>

namespace FellowCore {

double PumpCodexUsage::leftPercent() const {
    return std::clamp(100 - usedPercent, 0.0, 100.0);
}

bool PumpCodexUsage::isStale(Instant at) const {
    return resetsAt && at >= *resetsAt;
}

} // namespace FellowCore
