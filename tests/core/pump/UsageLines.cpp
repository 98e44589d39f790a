#include "tests/core/pump/UsageLines.h"

namespace FellowCore {

std::size_t UsageLines::below(std::size_t limit) {
    return random_() % limit;
}

std::string UsageLines::blank() {
    static constexpr const char* choices[] = {"", "", "", "", "", " ", "\t", " \r"};
    return oneOf(choices);
}

std::string UsageLines::key() {
    static constexpr const char* choices[] = {"timestamp",
                                              "type",
                                              "message",
                                              "message",
                                              "id",
                                              "role",
                                              "usage",
                                              "usage",
                                              "input_tokens",
                                              "output_tokens",
                                              "cache_creation_input_tokens",
                                              "cache_read_input_tokens",
                                              "payload",
                                              "payload",
                                              "plan_type",
                                              "rate_limits",
                                              "primary",
                                              "used_percent",
                                              "window_minutes",
                                              "resets_at",
                                              "message.id",
                                              "payload.rate_limits",
                                              "rate_limits.primary.resets_at",
                                              "t\\u0079pe",
                                              "\\u006Dessage",
                                              "content",
                                              "",
                                              "\\\\",
                                              "a\\\"b"};
    if (below(40) == 0) {
        return "\"" + std::string(130 + below(200), 'k') + "\"";
    }
    return "\"" + oneOf(choices) + "\"";
}

std::string UsageLines::string() {
    static constexpr const char* pieces[] = {
        "a",    "assistant", "\\n", "\\\"", "\\\\",    "\\/",    "{",          "}",    "[",
        ":",    ",",         " ",   "'",    "\\u00e9", "\u00e9", "\U0001F600", "\x7f", "\\ud83d\\ude00",
        "tool", "0123456789"};
    std::string text;
    // Long ones are far above every limit, so that no change of a few bytes decides whether they are kept.
    const std::size_t count = below(25) == 0 ? 300 + below(2000) : below(12);
    for (std::size_t piece = 0; piece < count; ++piece) {
        text += oneOf(pieces);
    }
    return "\"" + text + "\"";
}

std::string UsageLines::number() {
    static constexpr const char* choices[] = {"0",       "-0",  "7",    "12.0",  "1e3",   "1.5E+2", "-5",
                                              "2.25e-3", "100", "0.07", "12345", "1e-10", "-1.0e1"};
    return below(3) == 0 ? std::to_string(random_()) : oneOf(choices);
}

std::string UsageLines::value(int depth) {
    static constexpr const char* literals[] = {"true", "false", "null"};
    switch (below(depth < 7 ? 8 : 5)) {
    case 0:
        return oneOf(literals);
    case 1:
    case 2:
        return number();
    case 3:
    case 4:
        return string();
    case 5:
        return array(depth + 1);
    default:
        return object(depth + 1);
    }
}

std::string UsageLines::array(int depth) {
    std::string text = "[" + blank();
    for (std::size_t count = below(4); count > 0; --count) {
        text += value(depth) + blank() + (count > 1 ? "," : "") + blank();
    }
    return text + "]";
}

std::string UsageLines::object(int depth) {
    std::string text = "{" + blank();
    for (std::size_t count = below(6); count > 0; --count) {
        text += key() + blank() + ":" + blank() + value(depth) + blank() + (count > 1 ? "," : "") + blank();
    }
    return text + "}" + (depth == 0 ? blank() : "");
}

std::string UsageLines::mutated(std::string line) {
    static constexpr char likely[] = "{}[]:,\"\\\"\\u0123456789abcdefn .-+eE\t\r\0\n\x1f\x80\xff";
    const auto anyOfThem = [this] { return likely[below(sizeof likely - 1)]; };
    for (std::size_t changes = 1 + below(3); changes > 0; --changes) {
        const std::size_t at = below(line.size() + 1);
        switch (below(5)) {
        case 0:
            line.insert(at, 1, anyOfThem());
            break;
        case 1:
            line.erase(at, 1 + below(3));
            break;
        case 2:
            line.insert(at, line.substr(below(line.size() + 1), below(20)));
            break;
        case 3:
            line.resize(at);
            break;
        default:
            if (at < line.size()) {
                line[at] = anyOfThem();
            }
        }
    }
    return line;
}

} // namespace FellowCore
