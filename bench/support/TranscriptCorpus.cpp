#include "bench/support/TranscriptCorpus.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>

namespace Bench {

TranscriptCorpus::TranscriptCorpus(std::uint64_t seed) : random_(seed) {}

std::size_t TranscriptCorpus::below(std::size_t limit) {
    return static_cast<std::size_t>(random_() % limit);
}

/// Most results are short, a few are whole files: half below 1 KB, one in fifty 100 KB to 2 MB.
std::size_t TranscriptCorpus::resultSize() {
    const double chance = static_cast<double>(below(1'000'000)) / 1'000'000;
    const bool isFile = below(50) == 0;
    const double size = isFile ? 100'000 * std::pow(20, chance) : 200 * std::pow(100, std::pow(chance, 1.5));
    return static_cast<std::size_t>(size);
}

std::string TranscriptCorpus::identity() {
    std::array<char, 40> text{};
    const std::uint64_t left = random_();
    const std::uint64_t right = random_();
    std::snprintf(text.data(), text.size(), "%08x-%04x-4%03x-%04x-%012llx", static_cast<unsigned>(left),
                  static_cast<unsigned>(left >> 32 & 0xFFFF), static_cast<unsigned>(left >> 48 & 0xFFF),
                  static_cast<unsigned>(0x8000 | (right & 0x3FFF)),
                  static_cast<unsigned long long>(right >> 16));
    return text.data();
}

std::string TranscriptCorpus::prose(std::size_t bytes) {
    static constexpr std::array<std::string_view, 22> words{
        "the ",    "reader ",     "now ",
        "skips ",  "what ",       "it ",
        "has ",    "seen, ",      "and ",
        "tests ",  "pass. ",      "I'll ",
        "look ",   "at ",         "`main.cpp` ",
        "first. ", "\\n\\n",      "caf\u00e9 ",
        "\u2014 ", "\\\"so\\\" ", "\u0928\u092e\u0938\u094d\u0924\u0947 ",
        "\u2705 "};
    std::string text;
    while (text.size() < bytes) {
        text += words[below(words.size())];
    }
    return text;
}

std::string TranscriptCorpus::code(std::size_t bytes) {
    static constexpr std::array<std::string_view, 16> lines{
        "    12\u2192    const auto found = index.find(key);\\n",
        "    13\u2192    if (found == index.end()) {\\n",
        "    14\u2192        return std::nullopt;\\n",
        "    15\u2192    }\\n",
        "\\n",
        "#include \\\"core/base/Text.h\\\"\\n",
        "\\u001b[32m+    std::string line;\\u001b[0m\\n",
        "src/reader.cpp:118:9: warning: unused variable \u2018size\u2019 [-Wunused-variable]\\n",
        "-rw-r--r-- 1 user user 18273 Mar  1 09:12 data/cities/index.json\\n",
        "\\t\\treturn fmt.Errorf(\\\"open %s: %w\\\", path, err)\\n",
        "drwxr-xr-x 4 user user 4096 Mar  1 09:12 build/release/CMakeFiles/reader.dir/src\\n",
        "  \\\"dependencies\\\": {\\\"left\\\": \\\"^1.2.3\\\", \\\"right\\\": \\\"~4.5\\\"},\\n",
        "    // Where the last whole line ended; what follows is read again after a restart.\\n",
        "PASS tests/reader/test_append.py::test_a_line_arrives_in_two_halves [ 41%]\\n",
        "                                              \\n",
        "C:\\\\Users\\\\user\\\\project\\\\main.c\\r\\n"};
    std::string text;
    while (text.size() < bytes) {
        text += lines[below(lines.size())];
    }
    return text;
}

std::string TranscriptCorpus::head(const char* type, long second) {
    std::array<char, 40> stamp{};
    std::snprintf(stamp.data(), stamp.size(), "2026-03-%02ldT%02ld:%02ld:%02ld.%03zuZ",
                  1 + second / 86400 % 28, second / 3600 % 24, second / 60 % 60, second % 60, below(1000));
    return R"({"parentUuid":")" + identity() +
           R"(","isSidechain":false,"userType":"external","cwd":"/home/user/project","sessionId":")" +
           identity() + R"(","version":"1.0.98","gitBranch":"main","type":")" + type + R"(","uuid":")" +
           identity() + R"(","timestamp":")" + stamp.data() + "\"";
}

std::string TranscriptCorpus::assistantLine(long second) {
    std::string content = R"({"type":"text","text":")" + prose(60 + below(700)) + "\"}";
    if (below(3) != 0) {
        content = R"({"type":"tool_use","id":"toolu_01)" + identity() +
                  R"(","name":"Bash","input":{"command":"cmake --build build && ctest","description":")" +
                  prose(40) + "\"}}";
    }
    const auto tokens = [this](std::size_t limit) { return std::to_string(below(limit)); };
    return head("assistant", second) + R"(,"message":{"id":"msg_01)" + identity() +
           R"(","type":"message","role":"assistant","model":"claude-sonnet-4","content":[)" + content +
           R"(],"stop_reason":null,"stop_sequence":null,"usage":{"input_tokens":)" + tokens(50) +
           R"(,"cache_creation_input_tokens":)" + tokens(9000) + R"(,"cache_read_input_tokens":)" +
           tokens(180'000) + R"(,"cache_creation":{"ephemeral_5m_input_tokens":)" + tokens(9000) +
           R"(,"ephemeral_1h_input_tokens":0},"output_tokens":)" + tokens(1200) +
           R"(,"service_tier":"standard"}},"requestId":"req_01)" + identity() + "\"}";
}

std::string TranscriptCorpus::userLine() {
    return head("user", second_) + R"(,"message":{"role":"user","content":")" + prose(30 + below(1500)) +
           "\"}}";
}

std::string TranscriptCorpus::structuredPatch() {
    std::string text = R"([{"oldStart":12,"oldLines":7,"newStart":12,"newLines":9,"lines":[)";
    for (std::size_t count = 4 + below(20); count > 0; --count) {
        std::string line = code(1);
        text += R"("+)" + line.substr(0, line.size() - 2) + (count > 1 ? "\"," : "\"");
    }
    return text + "]}]";
}

std::string TranscriptCorpus::toolResultLine() {
    const std::string output = code(resultSize());
    // The agent writes what a tool gave back twice, for the model and for its own display.
    const std::string details =
        below(4) == 0 ? R"({"filePath":"/home/user/project/src/reader.cpp","structuredPatch":)" +
                            structuredPatch() + R"(,"userModified":false})"
                      : R"({"stdout":")" + output + R"(","stderr":"","interrupted":false,"isImage":false})";
    return head("user", second_) + R"(,"message":{"role":"user","content":[{"tool_use_id":"toolu_01)" +
           identity() + R"(","type":"tool_result","content":")" + output + R"("}]},"toolUseResult":)" +
           details + "}";
}

std::string TranscriptCorpus::line() {
    second_ += static_cast<long>(1 + below(20));
    switch (below(6)) {
    case 0:
    case 1:
        return assistantLine(second_);
    case 2:
        return userLine();
    default:
        return toolResultLine();
    }
}

std::vector<std::string> TranscriptCorpus::lines(std::size_t bytes) {
    std::vector<std::string> made;
    for (std::size_t size = 0; size < bytes; size += made.back().size()) {
        made.push_back(line());
    }
    return made;
}

} // namespace Bench
