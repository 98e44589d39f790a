#pragma once

#include "core/base/Uuid.h"

#include <cstdint>

namespace FellowCore {

/// The identity for the `number`th further line (from 1) that would otherwise share `id`. It is worked out
/// and not random, so that two programs which meet the same ledger agree.
Uuid idVariant(const Uuid& id, std::uint64_t number);

} // namespace FellowCore
