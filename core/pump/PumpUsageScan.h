#pragma once

#include <cstddef>
#include <cstdint>

namespace FellowCore::PumpUsageJSON {

/// Where the reading of a line stands between two blocks, as far as finding its structure needs to know. At
/// the start no number and no literal is open.
struct ScanState {
    bool inString = false;
    bool escaped = false;   ///< the byte before was a backslash that escapes
    bool inScalar = false;  ///< the byte before belonged to a number, a literal or garbage
    unsigned hexDigits = 0; ///< 0...4, owed after \u
};

inline constexpr std::size_t scanBlockSize = 64;

/// Finds the structure of `size` bytes of JSON, 64 at a time, after the method of Langdale and Lemire,
/// "Parsing Gigabytes of JSON per Second", The VLDB Journal 28 (2019).
///
/// For every block one bit a byte, lowest first, goes to `events`: brackets, braces, colons and commas
/// outside strings, both quotes of every string, and the first byte of everything else outside strings that
/// is not blank. The inside of strings is judged: control bytes, escapes and the digits after \u.
///
/// Returns how many bytes were found free of fault: all of them, or a multiple of 64 that ends where the
/// block with the fault begins (a backslash outside a string is one too). `state` is then that of the end of
/// those bytes.
using ScanFunction = std::size_t (*)(const char* bytes, std::size_t size, ScanState& state,
                                     std::uint64_t* events);

/// The implementations that this machine can run, the fastest first; the same answers from each. Never empty.
struct ScanImplementation {
    const char* name;
    ScanFunction scan;
};
struct ScanImplementations {
    const ScanImplementation* first;
    std::size_t count;
};
ScanImplementations scanImplementations();

/// The fastest of them, chosen once.
ScanFunction fastestScan();

} // namespace FellowCore::PumpUsageJSON
