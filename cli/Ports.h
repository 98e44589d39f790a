#pragma once

#include "cli/Command.h"

namespace Fellow {

/// `fellow ports`: who listens on which TCP port, as Dhiru sees it.
extern const Command ports;

} // namespace Fellow
