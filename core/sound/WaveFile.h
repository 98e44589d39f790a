#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// Why a sound file was refused.
class WaveFileError : public std::runtime_error {
public:
    enum class Kind {
        tooLarge,    ///< more than `WaveFile::byteLimit`
        notWave,     ///< no RIFF file of type WAVE
        malformed,   ///< lengths that contradict each other, or a chunk missing, doubled or out of order
        unsupported, ///< a sound, but not 48 kHz, 16-bit, mono PCM
    };

    WaveFileError(Kind kind, const std::string& sentence) : std::runtime_error(sentence), kind_(kind) {}
    Kind kind() const { return kind_; }

private:
    Kind kind_;
};

/// A short sound as our own files carry it.
///
/// Format: RIFF/WAVE, little-endian, as in "Multimedia Programming Interface and Data Specifications 1.0"
/// (IBM and Microsoft, 1991). Chunks other than "fmt " and "data" are skipped.
struct WaveFile {
    static constexpr std::size_t byteLimit = std::size_t{2} << 20U;
    static constexpr std::uint32_t rate = 48'000; ///< samples a second

    std::vector<std::int16_t> samples;

    /// Throws `WaveFileError`.
    static WaveFile parse(std::string_view bytes);
};

} // namespace FellowCore
