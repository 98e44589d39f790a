// Compiled for newer processors than the rest of the program; see PumpUsageScanKernel.h for what that
// forbids here.

#include "core/pump/PumpUsageScanAvx2.h"

#if defined(__AVX2__)

#include "core/pump/PumpUsageScanKernel.h"

#include <immintrin.h>

namespace FellowCore::PumpUsageJSON {

namespace {

struct Avx2Vector {
    static constexpr std::size_t size = 32;

    __m256i bytes{};

    static Avx2Vector load(const char* from) {
        return {_mm256_loadu_si256(reinterpret_cast<const __m256i*>(from))};
    }
    Avx2Vector folded() const { return {_mm256_or_si256(bytes, _mm256_set1_epi8(0x20))}; }
    Avx2Vector equal(char byte) const { return {_mm256_cmpeq_epi8(bytes, _mm256_set1_epi8(byte))}; }
    Avx2Vector atMost(unsigned char limit) const {
        return {_mm256_cmpeq_epi8(_mm256_min_epu8(bytes, _mm256_set1_epi8(static_cast<char>(limit))), bytes)};
    }
    Avx2Vector without(Avx2Vector flags) const { return {_mm256_andnot_si256(flags.bytes, bytes)}; }
    friend Avx2Vector operator|(Avx2Vector left, Avx2Vector right) {
        return {_mm256_or_si256(left.bytes, right.bytes)};
    }
    /// Each kind's bytes differ in their lower half, but for some of the escapes: looking up the one byte
    /// that is wanted for each lower half and comparing finds them all at once. Above 0x7F the look-up gives
    /// 0.
    static __m256i table(char b0, char b2, char b4, char b5, char b6, char b9, char bA, char bB, char bC,
                         char bD, char bE, char bF) {
        return _mm256_setr_epi8(b0, 0, b2, 0, b4, b5, b6, 0, 0, b9, bA, bB, bC, bD, bE, bF, b0, 0, b2, 0, b4,
                                b5, b6, 0, 0, b9, bA, bB, bC, bD, bE, bF);
    }
    Avx2Vector isAt(__m256i wanted) const {
        return {_mm256_cmpeq_epi8(_mm256_shuffle_epi8(wanted, bytes), bytes)};
    }
    Avx2Vector blanks() const { return isAt(table(' ', 0, 0, 0, 0, '\t', 0, 0, 0, '\r', 0, 0)); }
    Avx2Vector structure() const { return folded().isAt(table(1, 0, 0, 0, 0, 0, ':', '{', ',', '}', 0, 0)); }
    Avx2Vector escapes() const {
        return isAt(table(1, 'b', 't', 'u', 'f', 0, 0, 0, '\\', 0, 'n', '/')) | equal('"') | equal('r');
    }

    Mask mask() const { return static_cast<unsigned>(_mm256_movemask_epi8(bytes)); }

    /// The carry-less product with a word of ones.
    static Mask parities(Mask bits) {
        const __m128i factor = _mm_set_epi64x(0, static_cast<long long>(bits));
        return static_cast<Mask>(_mm_cvtsi128_si64(_mm_clmulepi64_si128(factor, _mm_set1_epi8(-1), 0)));
    }
};

} // namespace

std::size_t scanByAvx2(const char* bytes, std::size_t size, ScanState& state, std::uint64_t* events) {
    return scanWith<Avx2Vector>(bytes, size, state, events);
}

} // namespace FellowCore::PumpUsageJSON

#endif
