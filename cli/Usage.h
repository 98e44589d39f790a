#pragma once

#include "cli/Command.h"

namespace Fellow {

/// `fellow usage`: what the coding agents have left, as Pump shows it.
extern const Command usage;

} // namespace Fellow
