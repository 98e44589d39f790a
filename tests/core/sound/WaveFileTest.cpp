#include "core/sound/WaveFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace FellowCore;
using Kind = WaveFileError::Kind;
using namespace std::string_literals;

std::string littleEndian(std::uint32_t value, int width) {
    std::string out;
    for (int index = 0; index < width; ++index)
        out += static_cast<char>(value >> (8 * index) & 0xFF);
    return out;
}

std::string chunk(const std::string& identifier, const std::string& contents) {
    const auto padding = contents.size() % 2 == 1 ? "\0"s : ""s;
    return identifier + littleEndian(static_cast<std::uint32_t>(contents.size()), 4) + contents + padding;
}

struct Format {
    std::uint32_t coding = 1, channels = 1, rate = 48'000, bytesPerSecond = 96'000, bytesPerFrame = 2,
                  bits = 16;
};

std::string format(Format of = {}) {
    return chunk("fmt ", littleEndian(of.coding, 2) + littleEndian(of.channels, 2) +
                             littleEndian(of.rate, 4) + littleEndian(of.bytesPerSecond, 4) +
                             littleEndian(of.bytesPerFrame, 2) + littleEndian(of.bits, 2));
}

std::string wave(const std::string& chunks) {
    return chunk("RIFF", "WAVE" + chunks);
}

const std::string threeSamples = chunk("data", "\x01\x00\xFF\xFF\x00\x80"s);

TEST(WaveFileTest, readsSamplesAndSkipsWhatItDoesNotKnow) {
    const std::string files[] = {
        wave(format() + threeSamples),
        wave(chunk("LIST", "odd") + format() + chunk("fact", "abcd") + threeSamples + chunk("id3 ", "")),
    };
    for (const auto& file : files)
        EXPECT_THAT(WaveFile::parse(file).samples, testing::ElementsAre(1, -1, -32768));
    EXPECT_TRUE(WaveFile::parse(wave(format() + chunk("data", ""))).samples.empty());
}

TEST(WaveFileTest, refusesWhatIsNotOurs) {
    const auto good = wave(format() + threeSamples);
    struct Case {
        const char* fault;
        std::string bytes;
        Kind kind;
    };
    const Case cases[] = {
        {"nothing is read past its end", "", Kind::notWave},
        {"a bare header is a sound", good.substr(0, 11), Kind::notWave},
        {"a big-endian file is read", "RIFX" + good.substr(4), Kind::notWave},
        {"a picture in a RIFF file is read", good.substr(0, 8) + "WEBP" + good.substr(12), Kind::notWave},
        {"a file cut short is read", good.substr(0, good.size() - 1), Kind::malformed},
        {"what follows the file is read", good + "junk", Kind::malformed},
        {"a chunk reaches out of its file", wave(format() + "data"s + littleEndian(0xFFFFFFFF, 4)),
         Kind::malformed},
        {"a chunk without a length is read", wave(format() + "da"), Kind::malformed},
        {"samples come before their format", wave(threeSamples + format()), Kind::malformed},
        {"samples come twice", wave(format() + threeSamples + threeSamples), Kind::malformed},
        {"formats come twice", wave(format() + format() + threeSamples), Kind::malformed},
        {"samples are missing", wave(format()), Kind::malformed},
        {"half a sample is read", wave(format() + chunk("data", "abc")), Kind::malformed},
        {"a short format is read", wave(chunk("fmt ", "abcdef") + threeSamples), Kind::malformed},
        {"stereo plays at half speed", wave(format({.channels = 2}) + threeSamples), Kind::unsupported},
        {"another rate plays at the wrong pitch", wave(format({.rate = 44'100}) + threeSamples),
         Kind::unsupported},
        {"eight bits are noise", wave(format({.bits = 8}) + threeSamples), Kind::unsupported},
        {"floats are noise", wave(format({.coding = 3}) + threeSamples), Kind::unsupported},
        {"frames disagree with samples", wave(format({.bytesPerFrame = 4}) + threeSamples), Kind::malformed},
        {"the rate disagrees with itself", wave(format({.bytesPerSecond = 1}) + threeSamples),
         Kind::malformed},
        {"a huge file is read", wave(format() + chunk("data", std::string(WaveFile::byteLimit, '\0'))),
         Kind::tooLarge},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        try {
            WaveFile::parse(testCase.bytes);
            ADD_FAILURE() << "was read";
        } catch (const WaveFileError& error) {
            EXPECT_EQ(error.kind(), testCase.kind) << error.what();
        }
    }
}

} // namespace
