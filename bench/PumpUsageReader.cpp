// What reading the agents' logs costs: a first scan of a large history, a refresh that finds nothing new, one
// that finds a little, and the memory that one enormous line takes.

#include "bench/support/Figures.h"
#include "bench/support/Options.h"
#include "bench/support/TranscriptCorpus.h"

#include "core/pump/PumpUsageReader.h"

#include <sys/resource.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;
using FellowCore::Calendar;
using FellowCore::Instant;
using FellowCore::PumpUsageReader;
using FellowCore::PumpUsageSnapshot;
namespace fs = std::filesystem;

constexpr int fileCount = 300;
constexpr std::size_t appendedBytes = 100'000;
const Instant now = Instant::fromUnix(1'772'710'000); // 2026-03-05T11:26:40Z

void require(bool holds, const char* otherwise) {
    if (!holds) {
        throw std::runtime_error(otherwise);
    }
}

/// A home folder with a history of usage, removed at the end.
class UsageHistory {
public:
    explicit UsageHistory(std::size_t bytes) {
        std::string name = (fs::temp_directory_path() / "deskfellow-bench-XXXXXX").string();
        require(::mkdtemp(name.data()) != nullptr, "no temporary folder");
        home_ = name;
        for (int number = 0; number < fileCount; ++number) {
            const fs::path path = log(number);
            fs::create_directories(path.parent_path());
            std::ofstream file(path, std::ios::binary);
            for (std::size_t size = 0; size < bytes / fileCount;) {
                const std::string line = corpus_.line();
                file << line << '\n';
                size += line.size() + 1;
            }
            written_ += fs::file_size(path);
        }
    }
    ~UsageHistory() {
        std::error_code ignored; // a leftover in the temporary folder spoils no figure
        fs::remove_all(home_, ignored);
    }
    UsageHistory(const UsageHistory&) = delete;
    UsageHistory& operator=(const UsageHistory&) = delete;

    const fs::path& home() const { return home_; }
    std::uintmax_t written() const { return written_; }
    fs::path log(int number) const {
        return home_ / ".claude/projects" / ("-home-user-project-" + std::to_string(number % 30)) /
               ("0c9a7f1e-5f0b-4d3e-9c58-" + std::to_string(100'000'000'000 + number) + ".jsonl");
    }
    void append(int number) {
        std::ofstream file(log(number), std::ios::binary | std::ios::app);
        for (std::size_t size = 0; size < appendedBytes;) {
            const std::string line = corpus_.assistantLine(3 * 86400);
            file << line << '\n';
            size += line.size() + 1;
        }
    }

private:
    Bench::TranscriptCorpus corpus_;
    fs::path home_;
    std::uintmax_t written_ = 0;
};

PumpUsageReader readerOf(FellowCore::FileOperations& files, const fs::path& home) {
    return {files, {.home = home, .cacheURL = home / "cache/usage-cache.json"}, Calendar::utc()};
}

template <class Once>
double milliseconds(Once once) {
    const auto start = Clock::now();
    once();
    return Milliseconds(Clock::now() - start).count();
}

/// Refreshes until everything is read.
int readAll(PumpUsageReader& reader) {
    int passes = 1;
    while (reader.refresh(now, FellowCore::PumpPreferences()).isLoading) {
        ++passes;
    }
    return passes;
}

double peakMegabytes() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

/// How much more memory was needed at most while one line of 300 MB was read.
double memoryForOneLine(const fs::path& home) {
    constexpr int megabytes = 300;
    const fs::path path = home / ".claude/projects/p/one.jsonl";
    fs::create_directories(path.parent_path());
    {
        std::ofstream file(path, std::ios::binary);
        file << R"({"type":"assistant","content":")";
        const std::string megabyte(1'000'000, 'x');
        for (int count = 0; count < megabytes; ++count) {
            file << megabyte;
        }
        file << "\"}\n";
    }
    FellowCore::PosixFileOperations files;
    PumpUsageReader reader = readerOf(files, home);
    const double before = peakMegabytes();
    readAll(reader);
    return peakMegabytes() - before;
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const int times = options.quick ? 10 : 100;
    Bench::Figures figures;
    {
        // First of all, while the process has never needed much.
        const UsageHistory none(0);
        figures.add(
            {"usage logs: memory for a line of 300 MB", {memoryForOneLine(none.home())}, "MB", 4.0, 1});
    }
    UsageHistory history(options.quick ? 60'000'000 : 600'000'000);
    FellowCore::PosixFileOperations files;
    PumpUsageReader reader = readerOf(files, history.home());
    int passes = 0;
    const double first = milliseconds([&] { passes = readAll(reader); });
    figures.add(
        {"usage logs: first scan", {static_cast<double>(history.written()) / 1e6 / first}, "GB/s", {}, 2});
    figures.note(std::to_string(history.written() / 1'000'000) + " MB in " + std::to_string(fileCount) +
                 " files by " + std::to_string(passes) + " refreshes, each with its cache written");

    const auto refresh = [&] {
        require(!reader.refresh(now, FellowCore::PumpPreferences()).isLoading, "something was left over");
    };
    std::vector<double> still;
    std::vector<double> little;
    for (int round = 0; round < times; ++round) {
        still.push_back(milliseconds(refresh));
    }
    for (int round = 0; round < times / 5; ++round) {
        history.append(round * 7 % fileCount);
        little.push_back(milliseconds(refresh));
    }
    figures.add({"usage logs: refresh of 300 files, nothing new", still, "ms", 2.0, 2});
    figures.add({"usage logs: refresh with 100 KB appended", little, "ms", std::nullopt, 2});
    figures.note("the cache of " +
                 std::to_string(fs::file_size(history.home() / "cache/usage-cache.json") / 1000) +
                 " KB, flushed to the disk, is most of that");
    std::vector<double> starts;
    for (int round = 0; round < 5; ++round) {
        starts.push_back(milliseconds([&] {
            PumpUsageReader again = readerOf(files, history.home());
            again.refresh(now, FellowCore::PumpPreferences());
        }));
    }
    figures.add({"usage logs: start from the cache, and a refresh", starts, "ms", std::nullopt, 1});
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
