#pragma once

// The scan itself, over vectors that compare many bytes at once. Included by one source file for each kind
// of processor, some of which are compiled for newer ones than the rest of the program; therefore everything
// here has internal linkage and no library function is used, lest the linker give the others a copy that they
// cannot run.

#include "core/pump/PumpUsageScan.h"

namespace FellowCore::PumpUsageJSON {

namespace {

using Mask = std::uint64_t; ///< one bit for each byte of a block, the first one lowest

constexpr Mask allBits = ~Mask{0};

constexpr Mask firstBits(std::size_t count) {
    return count >= scanBlockSize ? allBits : (Mask{1} << count) - 1;
}

/// 64 bytes as a few of a processor's vectors. `Vector` offers `load`, comparisons whose answers are vectors
/// of flags, and `mask`, which gathers the flags into bits.
template <class Vector>
class Block {
public:
    explicit Block(const char* bytes) {
        for (std::size_t part = 0; part < parts; ++part) {
            vectors_[part] = Vector::load(bytes + part * Vector::size);
        }
    }

    Mask equal(char byte) const {
        return gathered([byte](Vector vector) { return vector.equal(byte); });
    }
    Mask controls() const {
        return gathered([](Vector vector) { return vector.atMost(0x1F); });
    }
    /// Space, tab and carriage return.
    Mask blanks() const {
        return gathered([](Vector vector) { return vector.blanks(); });
    }
    /// Brackets, braces, colons and commas; the control bytes 0x0C and 0x1A may be among them.
    Mask structure() const {
        return gathered([](Vector vector) { return vector.structure(); });
    }
    /// What may follow a backslash.
    Mask escapes() const {
        return gathered([](Vector vector) { return vector.escapes(); });
    }
    Mask hexDigits() const {
        return gathered([](Vector vector) {
            const Vector folded = vector.folded();
            return vector.atMost('9').without(vector.atMost('0' - 1)) |
                   folded.atMost('f').without(folded.atMost('a' - 1));
        });
    }

private:
    static constexpr std::size_t parts = scanBlockSize / Vector::size;

    template <class Flags>
    [[gnu::always_inline]] Mask gathered(Flags flags) const {
        Mask mask = 0;
        for (std::size_t part = 0; part < parts; ++part) {
            mask |= flags(vectors_[part]).mask() << (part * Vector::size);
        }
        return mask;
    }

    Vector vectors_[parts];
};

/// The kinds of bytes for a `Vector` that has nothing better than comparing.
template <class Vector>
struct ComparedKinds {
    Vector blanks() const { return self().equal(' ') | self().equal('\t') | self().equal('\r'); }
    Vector structure() const {
        const Vector folded = self().folded(); // brackets differ from braces in this bit
        return folded.equal('{') | folded.equal('}') | self().equal(':') | self().equal(',');
    }
    Vector escapes() const {
        return self().equal('"') | self().equal('\\') | self().equal('/') | self().equal('b') |
               self().equal('f') | self().equal('n') | self().equal('r') | self().equal('t') |
               self().equal('u');
    }

private:
    const Vector& self() const { return static_cast<const Vector&>(*this); }
};

/// For each bit, whether the bits up to and including it are odd in number.
template <class Vector>
inline Mask parities(Mask bits) {
    if constexpr (requires { Vector::parities(bits); }) {
        return Vector::parities(bits);
    }
    for (int shift = 1; shift < 64; shift *= 2) {
        bits ^= bits << shift;
    }
    return bits;
}

/// The bytes that a backslash before them escapes. `carried` says so of the first byte, and then of the byte
/// after the block.
inline Mask escapedBytes(Mask backslashes, bool& carried) {
    constexpr Mask odd = 0xAAAAAAAAAAAAAAAA;
    const Mask first = carried ? 1 : 0;
    // A backslash that is itself escaped begins nothing.
    const Mask starts = backslashes & ~first;
    const Mask after = starts << 1 | first;
    // Adding a run's first bit to the run moves that bit past its end. Where runs that begin on an odd place
    // do so, every other place of theirs has the wrong parity, which the exclusive or puts right.
    const Mask oddStarts = starts & odd & ~after;
    const Mask past = oddStarts + starts;
    carried = past < oddStarts; // such a run reached the end of the block
    return (~odd ^ past << 1) & after;
}

/// Which of the first `size` bytes must be hexadecimal digits. `owed` is how many at the start of the block,
/// then how many after those bytes.
inline Mask hexPlaces(Mask escapedUs, std::size_t size, unsigned& owed) {
    const Mask places = firstBits(owed) | escapedUs << 1 | escapedUs << 2 | escapedUs << 3 | escapedUs << 4;
    const unsigned lastDigit =
        escapedUs != 0 ? 63 - static_cast<unsigned>(__builtin_clzll(escapedUs)) + 5 : owed;
    owed = lastDigit > size ? lastDigit - static_cast<unsigned>(size) : 0;
    return places;
}

/// Judges what follows the backslashes of a block and says which bytes they escape.
template <class Vector>
[[gnu::always_inline]] inline Mask judgeEscapes(const Block<Vector>& block, Mask backslashes,
                                                std::size_t size, ScanState& state, Mask& faults) {
    const Mask escaped = escapedBytes(backslashes, state.escaped);
    if (size < scanBlockSize) {
        state.escaped = (escaped >> size & 1) != 0;
    }
    faults = escaped & ~block.escapes();
    const Mask escapedUs = escaped & block.equal('u');
    if (escapedUs != 0 || state.hexDigits != 0) {
        faults |= hexPlaces(escapedUs, size, state.hexDigits) & ~block.hexDigits();
    }
    return escaped;
}

/// Scans one block whose first `size` bytes count and whose other bytes are blank. False for a fault, with
/// the state spoilt.
template <class Vector>
[[gnu::always_inline]] inline bool scanBlock(const Block<Vector>& block, std::size_t size, ScanState& state,
                                             Mask& events) {
    const Mask quoteBytes = block.equal('"');
    const Mask backslashes = block.equal('\\');
    const Mask controls = block.controls();
    const Mask counted = firstBits(size);
    const Mask within = state.inString ? allBits : 0;
    Mask quotes = quoteBytes;
    Mask faults = 0;
    if (backslashes != 0 || state.escaped || state.hexDigits != 0) {
        quotes &= ~judgeEscapes(block, backslashes, size, state, faults);
    }
    if (state.inString && quotes == 0) {
        events = 0;
        return ((faults | controls) & counted) == 0;
    }
    const Mask inside = parities<Vector>(quotes) ^ within; // with the first quote, without the last
    faults |= (inside & controls) | (backslashes & ~inside);
    if ((faults & counted) != 0) {
        return false;
    }
    const Mask outside = ~inside & ~quotes;
    const Mask structure = block.structure() & outside;
    const Mask scalars = outside & ~structure & ~block.blanks();
    events = quotes | structure | (scalars & ~(scalars << 1 | (state.inScalar ? 1 : 0)));
    state.inString = (inside >> (size - 1) & 1) != 0;
    state.inScalar = (scalars >> (size - 1) & 1) != 0;
    return true;
}

template <class Vector>
inline std::size_t scanWith(const char* bytes, std::size_t size, ScanState& state, Mask* events) {
    ScanState now = state;
    std::size_t at = 0;
    for (; size - at >= scanBlockSize; at += scanBlockSize) {
        if (!scanBlock(Block<Vector>(bytes + at), scanBlockSize, now, *events++)) {
            return at;
        }
        state = now;
    }
    if (at < size) {
        char padded[scanBlockSize];
        __builtin_memset(padded, ' ', scanBlockSize);
        __builtin_memcpy(padded, bytes + at, size - at);
        if (!scanBlock(Block<Vector>(padded), size - at, now, *events)) {
            return at;
        }
        state = now;
    }
    return size;
}

} // namespace

} // namespace FellowCore::PumpUsageJSON
