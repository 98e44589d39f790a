#pragma once

#include "cli/Command.h"

namespace Fellow {

/// `fellow pack check DIR`: says everything that is wrong with a character pack, by the rules of the program
/// itself.
extern const Command packCheck;

} // namespace Fellow
