#pragma once

#include "cli/Command.h"

namespace Fellow {

/// `fellow cities QUERY`: what Ghanta Ghar's search finds.
extern const Command cities;

} // namespace Fellow
