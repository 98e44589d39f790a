// How fast usage log lines are validated and their figures taken out, beside a general parser on the same
// lines in the same run.

#include "bench/support/Figures.h"
#include "bench/support/Options.h"
#include "bench/support/TranscriptCorpus.h"

#include "core/pump/PumpUsageScan.h"
#include "core/pump/PumpUsageStream.h"

#include <simdjson.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using FellowCore::PumpUsageJSON::Field;
using FellowCore::PumpUsageJSON::Stream;
using FellowCore::PumpUsageJSON::Values;

/// The lines as they lie in a file.
struct Corpus {
    std::string text;
    std::vector<std::string_view> lines; ///< into the text
    std::size_t assistantLines = 0;

    explicit Corpus(std::size_t bytes) {
        Bench::TranscriptCorpus source;
        std::vector<std::size_t> ends;
        while (text.size() < bytes) {
            text += source.line();
            ends.push_back(text.size());
            text += '\n';
        }
        text.append(simdjson::SIMDJSON_PADDING, ' '); // which the other parser reads beyond its input
        std::size_t begin = 0;
        for (const std::size_t end : ends) {
            lines.push_back(std::string_view(text).substr(begin, end - begin));
            begin = end + 1;
            assistantLines += lines.back().find(R"("type":"assistant")") != std::string_view::npos ? 1U : 0U;
        }
    }

    double gigabytes() const { return static_cast<double>(text.size()) / 1e9; }
};

void require(bool holds, const char* otherwise) {
    if (!holds) {
        throw std::runtime_error(otherwise);
    }
}

/// Counts the assistant's lines, so that nothing can be left out as unused.
std::size_t streamed(const Corpus& corpus) {
    std::size_t found = 0;
    Stream stream;
    for (const std::string_view line : corpus.lines) {
        stream.accept(line);
        stream.finishNumber();
        require(stream.isComplete(), "a good line was refused");
        found += stream.values().has(Field::outputTokens) ? 1U : 0U;
        stream.reset();
    }
    return found;
}

std::size_t streamedByteWise(const Corpus& corpus) {
    std::size_t found = 0;
    Stream stream;
    for (const std::string_view line : corpus.lines) {
        for (const char byte : line) {
            stream.accept(static_cast<std::uint8_t>(byte));
        }
        stream.finishNumber();
        found += stream.values().has(Field::outputTokens) ? 1U : 0U;
        stream.reset();
    }
    return found;
}

std::size_t parsed(const Corpus& corpus, simdjson::dom::parser& parser) {
    std::size_t found = 0;
    for (const std::string_view line : corpus.lines) {
        simdjson::dom::element document;
        const auto error = parser.parse(line.data(), line.size(), /*realloc_if_needed=*/false).get(document);
        require(error == simdjson::SUCCESS, "the other parser refused a good line");
        std::int64_t tokens = 0;
        found += document["message"]["usage"]["output_tokens"].get(tokens) == simdjson::SUCCESS ? 1U : 0U;
    }
    return found;
}

template <class Once>
std::vector<double> speeds(int times, const Corpus& corpus, Once once) {
    std::vector<double> each;
    for (int round = 0; round < times; ++round) {
        const auto start = Clock::now();
        require(once() == corpus.assistantLines, "another number of assistant lines");
        each.push_back(corpus.gigabytes() / std::chrono::duration<double>(Clock::now() - start).count());
    }
    return each;
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const int times = options.quick ? 5 : 21;
    const Corpus corpus(options.quick ? 32'000'000 : 128'000'000);
    simdjson::dom::parser parser;
    Bench::Figures figures;
    const auto ours = speeds(times, corpus, [&] { return streamed(corpus); });
    const auto theirs = speeds(times, corpus, [&] { return parsed(corpus, parser); });
    const auto byteWise = speeds(3, corpus, [&] { return streamedByteWise(corpus); });
    figures.add({"usage lines: validated, and figures taken out", ours, "GB/s", std::nullopt, 2});
    figures.note(std::to_string(corpus.lines.size()) + " lines, " + std::to_string(corpus.assistantLines) +
                 " of the assistant, by " + FellowCore::PumpUsageJSON::scanImplementations().first->name);
    figures.add({"usage lines: the same, byte by byte", byteWise, "GB/s", std::nullopt, 2});
    figures.add({"usage lines: parsed whole by simdjson", theirs, "GB/s", std::nullopt, 2});
    const double seconds = 1 / Bench::median(ours);
    figures.add({"usage lines: time for a gigabyte", {seconds}, "s", 0.5, 3});
    figures.add({"usage lines: that time over simdjson's", {seconds * Bench::median(theirs)}, "", 1.0, 2});
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
