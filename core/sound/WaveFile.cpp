#include "core/sound/WaveFile.h"

#include <optional>

namespace FellowCore {

namespace {

using Kind = WaveFileError::Kind;

/// Unsigned little-endian numbers and chunks, taken from the front of a text.
class Reader {
public:
    explicit Reader(std::string_view bytes) : rest_(bytes) {}

    bool atEnd() const { return rest_.empty(); }

    std::string_view take(std::size_t count) {
        if (count > rest_.size())
            throw WaveFileError(Kind::malformed, "The sound file ends inside a chunk.");
        const auto taken = rest_.substr(0, count);
        rest_.remove_prefix(count);
        return taken;
    }

    std::uint32_t number(std::size_t width) {
        std::uint32_t value = 0;
        const auto bytes = take(width);
        for (std::size_t index = width; index > 0; --index)
            value = value << 8 | static_cast<unsigned char>(bytes[index - 1]);
        return value;
    }

    /// A chunk's contents. Chunks begin on even bytes: an odd one is followed by one byte that means nothing.
    std::string_view chunk() {
        const std::size_t length = number(4);
        const auto contents = take(length);
        if (length % 2 == 1 && !atEnd())
            take(1);
        return contents;
    }

private:
    std::string_view rest_;
};

std::string_view riffContents(std::string_view bytes) {
    if (bytes.size() < 12 || bytes.substr(0, 4) != "RIFF" || bytes.substr(8, 4) != "WAVE")
        throw WaveFileError(Kind::notWave, "The file is not a RIFF file of type WAVE.");
    Reader reader(bytes.substr(4));
    const std::size_t length = reader.number(4);
    if (length != bytes.size() - 8)
        throw WaveFileError(Kind::malformed, "The sound file is not as long as it says.");
    return bytes.substr(12);
}

void requireOurFormat(std::string_view format) {
    Reader reader(format);
    const auto coding = reader.number(2);
    const auto channels = reader.number(2);
    const auto rate = reader.number(4);
    const auto bytesPerSecond = reader.number(4);
    const auto bytesPerFrame = reader.number(2);
    const auto bits = reader.number(2);
    constexpr std::uint32_t pcm = 1;
    if (coding != pcm || channels != 1 || rate != WaveFile::rate || bits != 16)
        throw WaveFileError(Kind::unsupported, "The sound is not 48 kHz, 16-bit, mono PCM.");
    if (bytesPerFrame != 2 || bytesPerSecond != 2 * WaveFile::rate)
        throw WaveFileError(Kind::malformed, "The sound file's format contradicts itself.");
}

std::vector<std::int16_t> samplesOf(std::string_view data) {
    if (data.size() % 2 == 1)
        throw WaveFileError(Kind::malformed, "The sound file ends inside a sample.");
    std::vector<std::int16_t> samples(data.size() / 2);
    Reader reader(data);
    for (auto& sample : samples)
        sample = static_cast<std::int16_t>(static_cast<std::uint16_t>(reader.number(2)));
    return samples;
}

} // namespace

WaveFile WaveFile::parse(std::string_view bytes) {
    if (bytes.size() > byteLimit)
        throw WaveFileError(Kind::tooLarge, "The sound file is too large.");
    Reader reader(riffContents(bytes));
    bool formatSeen = false;
    std::optional<std::string_view> data;
    while (!reader.atEnd()) {
        const auto identifier = reader.take(4);
        const auto contents = reader.chunk();
        if (identifier == "fmt ") {
            if (formatSeen)
                throw WaveFileError(Kind::malformed, "The sound file states its format twice.");
            requireOurFormat(contents);
            formatSeen = true;
        } else if (identifier == "data") {
            if (!formatSeen || data)
                throw WaveFileError(Kind::malformed,
                                    "The sound file's samples are doubled or precede their format.");
            data = contents;
        }
    }
    if (!data)
        throw WaveFileError(Kind::malformed, "The sound file holds no samples.");
    return {samplesOf(*data)};
}

} // namespace FellowCore
