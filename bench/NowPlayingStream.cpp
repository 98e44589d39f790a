// What reading the media stream costs: lines without a picture, with a usual one, and with the largest.

#include "bench/support/Figures.h"
#include "bench/support/Options.h"
#include "core/nowplaying/NowPlayingLines.h"
#include "core/nowplaying/NowPlayingParser.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::size_t pieceSize = 65536; ///< bytes that a pipe holds
constexpr double smallBudgetMicroseconds = 20;
constexpr double usualBudgetMilliseconds = 10; ///< beside the thread that draws, but not for long
constexpr std::size_t usualPicture = 200'000;  ///< bytes
constexpr std::size_t largestPicture = 6'000'000;

std::string pauseLine(bool playing) {
    return std::string(R"({"diff":true,"payload":{"playing":)") + (playing ? "true" : "false") +
           "},\"type\":\"data\"}\n";
}

/// `picture` is the size of the cover in bytes, a multiple of three.
std::string songLine(std::size_t number, std::size_t picture) {
    std::string line = R"({"diff":true,"payload":{"title":"Song )" + std::to_string(number) +
                       R"(","artist":"Singer","playing":true,"artworkData":")";
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (std::size_t index = 0; index < picture / 3 * 4; ++index) {
        line.push_back(digits[(index * 31 + number) % digits.size()]);
    }
    return line + "\"},\"type\":\"data\"}\n";
}

class Reader {
public:
    /// Milliseconds from the first piece of the line to its track.
    double take(const std::string& line, std::size_t picture) {
        const auto start = Clock::now();
        std::optional<FellowCore::NowPlayingTrack> track;
        for (std::string_view rest = line; !rest.empty();
             rest.remove_prefix(std::min(pieceSize, rest.size()))) {
            for (const std::string& cut : lines_.append(rest.substr(0, pieceSize))) {
                track = parser_.consume(cut);
            }
        }
        const double time = Milliseconds(Clock::now() - start).count();
        if (!track || !track->artworkData || track->artworkData->size() != picture) {
            throw std::runtime_error("the line was not understood");
        }
        return time;
    }

private:
    FellowCore::NowPlayingLines lines_;
    FellowCore::NowPlayingParser parser_;
};

std::vector<double> songs(Reader& reader, std::size_t picture, std::size_t times) {
    std::vector<double> each;
    for (std::size_t round = 0; round < times; ++round) {
        each.push_back(reader.take(songLine(round, picture), picture));
    }
    return each;
}

/// Microseconds for a line that only pauses or goes on, with a usual picture known already.
std::vector<double> pauses(Reader& reader, int times) {
    constexpr int burst = 100;
    std::vector<double> each;
    for (int round = 0; round < times; ++round) {
        double sum = 0;
        for (int line = 0; line < burst; ++line) {
            sum += reader.take(pauseLine(line % 2 == 0), usualPicture / 3 * 3);
        }
        each.push_back(sum * 1000 / burst);
    }
    return each;
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const std::size_t times = options.quick ? 20 : 200;
    Bench::Figures figures;
    Reader reader;
    const auto usual = songs(reader, usualPicture / 3 * 3, times);
    figures.add({"media stream, a song with a picture of 200 KB", usual, "ms", usualBudgetMilliseconds, 2});
    figures.add(
        {"media stream, a pause", pauses(reader, static_cast<int>(times)), "us", smallBudgetMicroseconds});
    const auto largest = songs(reader, largestPicture, times / 10);
    figures.add({"media stream, a song with a picture of 6 MB", largest, "ms", std::nullopt});
    const double megabytes = static_cast<double>(largestPicture) / 3 * 4 / 1e6;
    figures.note(std::to_string(static_cast<int>(megabytes / Bench::median(largest) * 1000)) + " MB/s");
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
