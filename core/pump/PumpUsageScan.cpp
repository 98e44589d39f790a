#include "core/pump/PumpUsageScan.h"

#include "core/pump/PumpUsageScanAvx2.h"
#include "core/pump/PumpUsageScanKernel.h"

#include <array>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace FellowCore::PumpUsageJSON {

namespace {

/// Eight bytes in a word, the first one lowest; a flag is the highest bit of its byte.
struct WordVector : ComparedKinds<WordVector> {
    static constexpr std::size_t size = 8;
    static constexpr std::uint64_t ones = 0x0101010101010101;
    static constexpr std::uint64_t flagBits = 0x80 * ones;
    static constexpr std::uint64_t lowBits = 0x7F * ones;

    std::uint64_t word = 0;

    WordVector() = default;
    explicit WordVector(std::uint64_t bytes) : word(bytes) {}

    static WordVector load(const char* bytes) {
        std::uint64_t word = 0;
        for (std::size_t index = 0; index < size; ++index) {
            word |= std::uint64_t{static_cast<unsigned char>(bytes[index])} << (8 * index);
        }
        return WordVector(word);
    }
    WordVector folded() const { return WordVector(word | 0x20 * ones); }
    WordVector equal(char byte) const {
        const std::uint64_t differences = word ^ ones * static_cast<unsigned char>(byte);
        return WordVector(~(((differences & lowBits) + lowBits) | differences) & flagBits);
    }
    /// `limit` is below 0x80.
    WordVector atMost(unsigned char limit) const {
        return WordVector(~(((word & lowBits) + ones * (0x7FU - limit)) | word) & flagBits);
    }
    WordVector without(WordVector flags) const { return WordVector(word & ~flags.word); }
    friend WordVector operator|(WordVector left, WordVector right) {
        return WordVector(left.word | right.word);
    }
    Mask mask() const {
        // Each product of a flag with one bit of the factor lands on a place of its own in the highest byte.
        return (word >> 7) * 0x0102040810204080 >> 56;
    }
};

std::size_t scanByWords(const char* bytes, std::size_t size, ScanState& state, Mask* events) {
    return scanWith<WordVector>(bytes, size, state, events);
}

#if defined(__SSE2__)

struct Sse2Vector : ComparedKinds<Sse2Vector> {
    static constexpr std::size_t size = 16;

    __m128i bytes{};

    Sse2Vector() = default;
    explicit Sse2Vector(__m128i from) : bytes(from) {}

    static Sse2Vector load(const char* from) {
        return Sse2Vector(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)));
    }
    Sse2Vector folded() const { return Sse2Vector(_mm_or_si128(bytes, _mm_set1_epi8(0x20))); }
    Sse2Vector equal(char byte) const { return Sse2Vector(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(byte))); }
    Sse2Vector atMost(unsigned char limit) const {
        return Sse2Vector(
            _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(static_cast<char>(limit))), bytes));
    }
    Sse2Vector without(Sse2Vector flags) const { return Sse2Vector(_mm_andnot_si128(flags.bytes, bytes)); }
    friend Sse2Vector operator|(Sse2Vector left, Sse2Vector right) {
        return Sse2Vector(_mm_or_si128(left.bytes, right.bytes));
    }
    Mask mask() const { return static_cast<unsigned>(_mm_movemask_epi8(bytes)); }
};

std::size_t scanBySse2(const char* bytes, std::size_t size, ScanState& state, Mask* events) {
    return scanWith<Sse2Vector>(bytes, size, state, events);
}

#endif

/// What this machine can run, found out once.
struct Table {
    std::array<ScanImplementation, 3> all{};
    std::size_t count = 0;

    Table() {
#if defined(__x86_64__)
        if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("pclmul") &&
            __builtin_cpu_supports("bmi")) {
            all[count++] = {"AVX2", scanByAvx2};
        }
#endif
#if defined(__SSE2__)
        all[count++] = {"SSE2", scanBySse2};
#endif
        all[count++] = {"words", scanByWords};
    }
};

const Table& table() {
    static const Table found;
    return found;
}

} // namespace

ScanImplementations scanImplementations() {
    return {table().all.data(), table().count};
}

ScanFunction fastestScan() {
    static const ScanFunction fastest = table().all.front().scan;
    return fastest;
}

} // namespace FellowCore::PumpUsageJSON
