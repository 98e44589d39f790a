#pragma once

#include "cli/Command.h"

namespace Fellow {

/// `fellow sessions`: the coding agents' live sessions, as Pump shows them.
extern const Command sessions;

} // namespace Fellow
