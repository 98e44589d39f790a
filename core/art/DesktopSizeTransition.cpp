#include "core/art/DesktopSizeTransition.h"

#include "core/art/ArrangeLayout.h"

namespace FellowCore {

double DesktopSizeTransition::height(Seconds elapsed) const {
    return from + (to - from) * ArrangeLayout::progress(elapsed, duration);
}

} // namespace FellowCore
