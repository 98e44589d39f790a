#include "core/ledger/MunshiIdVariant.h"

namespace FellowCore {

namespace {

/// The finalizer of SplitMix64 (Steele, Lea and Flood, "Fast splittable pseudorandom number generators").
std::uint64_t mixed(std::uint64_t value) {
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
}

} // namespace

Uuid idVariant(const Uuid& id, std::uint64_t number) {
    Uuid variant = id;
    for (std::size_t index = 0; index < variant.bytes.size(); ++index) {
        const std::uint64_t word = mixed(2 * number + index / 8);
        variant.bytes[index] ^= static_cast<std::uint8_t>(word >> (8 * (index % 8)));
    }
    return variant;
}

} // namespace FellowCore
