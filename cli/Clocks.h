#pragma once

#include "cli/Command.h"

namespace Fellow {

/// `fellow clocks`: what Ghanta Ghar's clocks show.
extern const Command clocks;

} // namespace Fellow
