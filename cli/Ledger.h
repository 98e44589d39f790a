#pragma once

#include "cli/Command.h"

namespace Fellow {

/// `fellow ledger ...`: Munshi's day book from the command line, beside the running program: what both write
/// at the same time is brought together, never overwritten.
extern const Command ledgerList;
extern const Command ledgerAdd;
extern const Command ledgerDone;
extern const Command ledgerUndone;
extern const Command ledgerExport;

} // namespace Fellow
