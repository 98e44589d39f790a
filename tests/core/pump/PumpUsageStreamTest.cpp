#include "core/pump/PumpUsageStream.h"

#include "core/base/Json.h"
#include "core/pump/PumpUsageScan.h"
#include "tests/core/pump/UsageLines.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <map>
#include <vector>

namespace FellowCore {
namespace {

using PumpUsageJSON::Field;
using PumpUsageJSON::Stream;
using PumpUsageJSON::Value;
using PumpUsageJSON::Values;

Stream byteWise(std::string_view line) {
    Stream stream;
    for (const char byte : line) {
        stream.accept(static_cast<std::uint8_t>(byte));
    }
    return stream;
}

Stream inBulk(std::string_view line) {
    Stream stream;
    stream.accept(line);
    return stream;
}

bool isWhole(Stream stream) {
    stream.finishNumber();
    return stream.isComplete();
}

/// "path=text" for a string, "path:text" for a number, in the order of the fields.
std::vector<std::string> harvest(std::string_view line) {
    const Stream stream = inBulk(line);
    EXPECT_TRUE(isWhole(stream)) << line;
    std::vector<std::string> found;
    for (std::size_t index = 0; index < PumpUsageJSON::fieldCount; ++index) {
        const auto field = static_cast<Field>(index);
        if (const Value* const value = stream.values().find(field)) {
            const char* const mark = value->kind == Value::Kind::string ? "=" : ":";
            found.push_back(std::string(PumpUsageJSON::path(field)) + mark + value->text);
        }
    }
    return found;
}

/// What an independent parser makes of a line: the last scalar at each kept path.
class Reference : public nlohmann::json_sax<Json> {
public:
    explicit Reference(const std::string& line) {
        const bool blanksOnly = std::none_of(line.begin(), line.end(), [](char byte) {
            return static_cast<unsigned char>(byte) < 0x20 && byte != '\t' && byte != '\r';
        });
        valid = Json::sax_parse(line, this) && blanksOnly && !overflowed;
    }

    bool valid = false;
    bool overflowed = false; ///< a number too large for this parser, which judges such a line differently
    std::map<std::string, std::string> strings;
    std::map<std::string, double> numbers;

    bool null() override { return scalar(); }
    bool boolean(bool) override { return scalar(); }
    bool number_integer(std::int64_t number) override { return take(static_cast<double>(number)); }
    bool number_unsigned(std::uint64_t number) override { return take(static_cast<double>(number)); }
    bool number_float(double number, const std::string&) override { return take(number); }
    bool string(std::string& text) override {
        constexpr std::size_t kept = 254;
        if (const auto path = scalarPath(); path && text.size() <= kept) {
            numbers.erase(*path);
            strings[*path] = text;
        }
        return !paths_.empty();
    }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override {
        if (paths_.empty()) {
            return open("");
        }
        const auto path = scalarPath();
        return open(path == "" ? std::nullopt : path); // only the root's path is empty
    }
    bool start_array(std::size_t) override { return !paths_.empty() && open(std::nullopt); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(std::string& text) override {
        constexpr std::size_t kept = 126;
        keys_.back() = text.size() <= kept ? std::optional(text) : std::nullopt;
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override {
        constexpr int numberTooLarge = 406;
        overflowed = error.id == numberTooLarge;
        return false;
    }

private:
    std::optional<std::string> scalarPath() const {
        if (paths_.empty() || !paths_.back() || !keys_.back()) {
            return std::nullopt;
        }
        return paths_.back()->empty() ? *keys_.back() : *paths_.back() + "." + *keys_.back();
    }
    bool scalar() const { return !paths_.empty(); }
    bool take(double number) {
        if (const auto path = scalarPath()) {
            strings.erase(*path);
            numbers[*path] = number;
        }
        return scalar();
    }
    bool open(std::optional<std::string> path) {
        paths_.push_back(std::move(path));
        keys_.emplace_back();
        return paths_.size() <= 64;
    }
    bool close() {
        paths_.pop_back();
        keys_.pop_back();
        return true;
    }

    std::vector<std::optional<std::string>> paths_;
    std::vector<std::optional<std::string>> keys_;
};

/// The line without what the other parser minds and this one lets pass: bytes that are not UTF-8 and halves
/// of surrogate pairs.
std::string plain(std::string line) {
    for (char& byte : line) {
        byte = static_cast<unsigned char>(byte) >= 0x80 ? 'x' : byte;
    }
    for (std::size_t at = line.find("\\u"); at != std::string::npos; at = line.find("\\u", at + 1)) {
        if (at + 2 < line.size() && (line[at + 2] == 'd' || line[at + 2] == 'D')) {
            line[at + 2] = '1';
        }
    }
    return line;
}

void expectSameValues(const Reference& reference, const Values& values, const std::string& line) {
    for (std::size_t index = 0; index < PumpUsageJSON::fieldCount; ++index) {
        const auto field = static_cast<Field>(index);
        const std::string path(PumpUsageJSON::path(field));
        const auto string = reference.strings.find(path);
        const auto number = reference.numbers.find(path);
        const std::string* const text = values.string(field);
        ASSERT_EQ(text != nullptr, string != reference.strings.end()) << path << "\n" << line;
        if (text != nullptr) {
            ASSERT_EQ(*text, string->second) << path << "\n" << line;
        }
        const auto expected =
            number != reference.numbers.end() ? std::optional(number->second) : std::nullopt;
        ASSERT_EQ(PumpUsageJSON::number(field, values), expected) << path << "\n" << line;
    }
}

TEST(PumpUsageStream, JudgesAndReadsAnyLineAsAnIndependentParserDoes) {
    UsageLines lines(20260301);
    int good = 0;
    int bad = 0;
    int passedOver = 0;
    for (int round = 0; round < 24'000; ++round) {
        const std::string whole = lines.line();
        const std::string line = round % 3 == 0 ? whole : lines.mutated(whole);
        const Reference strict(plain(line));
        if (strict.overflowed) {
            ++passedOver;
            continue;
        }
        ASSERT_EQ(isWhole(inBulk(line)), strict.valid) << line;
        ++(strict.valid ? good : bad);
        const Stream stream = inBulk(plain(line));
        ASSERT_EQ(isWhole(stream), strict.valid) << line;
        if (strict.valid) {
            ASSERT_NO_FATAL_FAILURE(expectSameValues(strict, stream.values(), plain(line)));
        }
        if (const Reference reference(line); reference.valid && strict.valid) {
            ASSERT_NO_FATAL_FAILURE(expectSameValues(reference, inBulk(line).values(), line));
        }
    }
    EXPECT_GT(good, 8'000);
    EXPECT_GT(bad, 4'000);
    EXPECT_LT(passedOver, 240);
}

TEST(PumpUsageStream, HowALineIsCutMakesNoDifference) {
    UsageLines lines(7);
    for (int round = 0; round < 1'000; ++round) {
        const std::string whole = lines.line();
        const std::string line = round % 2 == 0 ? whole : lines.mutated(whole);
        const Stream expected = byteWise(line);
        ASSERT_EQ(inBulk(line), expected) << line;
        const std::size_t step = line.size() > 400 ? 1 + line.size() / 50 : 1;
        for (std::size_t cut = 0; cut <= line.size(); cut += step) {
            Stream stream;
            stream.accept(std::string_view(line).substr(0, cut));
            ASSERT_EQ(stream, byteWise(line.substr(0, cut))) << cut << " of " << line;
            stream.accept(std::string_view(line).substr(cut));
            ASSERT_EQ(stream, expected) << cut << " of " << line;
        }
        Stream pieces;
        for (std::size_t at = 0; at < line.size();) {
            const std::size_t size = 1 + lines.below(90);
            pieces.accept(std::string_view(line).substr(at, size));
            at += size;
        }
        ASSERT_EQ(pieces, expected) << line;
    }
}

// Where a token begins relative to the blocks and pieces that are looked at together must not matter.
TEST(PumpUsageStream, ATokenMayStraddleAnyBoundary) {
    const std::string tail =
        R"(","type":"a\\\"\u00e9\ud83d\ude00b","message":{"usage":{"input_tokens":12345.5e1,)"
        R"("x":[true,false,null,-0.5,{}]}},"t\u0069mestamp":"2026"} )";
    for (std::size_t length = 3'900; length < 4'170; ++length) {
        const std::string line = R"({"content":")" + std::string(length, '.') + tail;
        const Stream stream = inBulk(line);
        ASSERT_EQ(stream, byteWise(line)) << length;
        ASSERT_TRUE(isWhole(stream)) << length;
        ASSERT_EQ(stream.values().size(), 3U);
        const std::string broken = R"({"content":")" + std::string(length, '.') + R"(\u12G4"} )";
        ASSERT_TRUE(inBulk(broken).invalid()) << length;
    }
}

TEST(PumpUsageScan, EveryProcessorsScanFindsTheSame) {
    using namespace PumpUsageJSON;
    const ScanImplementations all = scanImplementations();
    ASSERT_GE(all.count, 1U);
    UsageLines lines(11);
    for (int round = 0; round < 8'000; ++round) {
        const std::string line = lines.mutated(lines.line());
        const std::size_t size = 1 + lines.below(std::min<std::size_t>(line.size() + 1, 4096));
        const std::string bytes = (line + std::string(size, ' ')).substr(0, size);
        const ScanState start{.inString = lines.below(2) == 0,
                              .escaped = false,
                              .inScalar = lines.below(2) == 0,
                              .hexDigits = 0};
        std::optional<std::vector<std::uint64_t>> expected;
        for (std::size_t index = 0; index < all.count; ++index) {
            std::vector<std::uint64_t> events(64);
            ScanState state = start;
            const std::size_t clean = all.first[index].scan(bytes.data(), size, state, events.data());
            events.resize((clean + scanBlockSize - 1) / scanBlockSize);
            events.insert(events.end(),
                          {clean, state.inString, state.escaped, state.inScalar, state.hexDigits});
            ASSERT_EQ(events, expected.value_or(events)) << all.first[index].name << ": " << bytes;
            expected = events;
        }
    }
}

TEST(PumpUsageStream, RefusesWhatIsNoObjectOfJson) {
    struct Case {
        const char* fault;
        std::string line;
    };
    const Case cases[] = {
        {"a list at the root", "[1]"},
        {"a scalar at the root", "1"},
        {"an empty line", ""},
        {"blanks alone", " \t\r"},
        {"a byte order mark", "\xEF\xBB\xBF{}"},
        {"a second document", "{} {}"},
        {"a line feed between tokens", "{\n}"},
        {"a zero byte after the end", std::string("{}\0", 3)},
        {"a trailing comma in an object", R"({"a":1,})"},
        {"a trailing comma in a list", R"({"a":[1,]})"},
        {"a leading zero", R"({"a":01})"},
        {"a point without digits", R"({"a":1.})"},
        {"a lone minus", R"({"a":-})"},
        {"a power without digits", R"({"a":1e})"},
        {"a number at the root's end", R"({"a":1)"},
        {"two numbers in a row", R"({"a":1 2})"},
        {"a number that runs into a word", R"({"a":1x})"},
        {"a literal that runs on", R"({"a":truee})"},
        {"a literal cut short", R"({"a":tru})"},
        {"an unknown escape", R"({"a":"\q"})"},
        {"a digit that is none", R"({"a":"\u12G4"})"},
        {"too few digits before the quote", R"({"a":"\u12"})"},
        {"a raw tab in a string", "{\"a\":\"\t\"}"},
        {"a string without an end", R"({"a":"b)"},
        {"an escaped closing quote", R"({"a":"b\"})"},
        {"brackets that cross", R"({"a":[{]}})"},
        {"a value without a key", R"({1})"},
        {"a backslash between tokens", R"({"a":\1})"},
    };
    for (const Case& one : cases) {
        EXPECT_FALSE(isWhole(inBulk(one.line))) << one.fault;
        EXPECT_FALSE(isWhole(byteWise(one.line))) << one.fault;
    }
}

std::string nested(std::size_t depth) {
    std::string text = R"({"a":)";
    text += std::string(depth - 1, '[') + std::string(depth - 1, ']');
    return text + "}";
}

TEST(PumpUsageStream, NestsSixtyFourDeepAndNoDeeper) {
    EXPECT_TRUE(isWhole(inBulk(nested(64))));
    EXPECT_TRUE(inBulk(nested(65)).invalid());
    EXPECT_TRUE(byteWise(nested(65)).invalid());
}

TEST(PumpUsageStream, KeepsWhatStandsAtTheKeptPaths) {
    struct Case {
        const char* fault;
        std::string line;
        std::vector<std::string> kept;
    };
    const std::string longest(254, 'x');
    const std::string digits(64, '9');
    const Case cases[] = {
        {"the first of two values wins", R"({"type":"x","type":"y"})", {"type=y"}},
        {"elements of lists have a path", R"({"a":[{"type":"x"}],"message":[{"id":"m"}]})", {}},
        {"an object elsewhere keeps its path", R"({"other":{"type":"x"}})", {}},
        {"a nested number is lost",
         R"({"message":{"usage":{"input_tokens":5}}})",
         {"message.usage.input_tokens:5"}},
        {"a number becomes text", R"({"timestamp":123})", {"timestamp:123"}},
        {"a literal is kept", R"({"type":true,"plan_type":null})", {}},
        {"a literal takes away what was kept", R"({"type":"x","type":null})", {"type=x"}},
        {"the joined key is not the path it spells", R"({"message.id":"m"})", {"message.id=m"}},
        {"an escaped key is not decoded", R"({"t\u0079pe":"x"})", {"type=x"}},
        {"an escaped value is not decoded",
         R"({"type":"\ud83d\ude00\n\u00e9"})",
         {"type=\U0001F600\n\u00e9"}},
        {"half a surrogate pair spoils the line or is kept",
         R"({"type":"\ud83d","plan_type":"p"})",
         {"plan_type=p"}},
        {"bytes that are not UTF-8 spoil the line or are kept",
         "{\"type\":\"\xff\",\"plan_type\":\"p\"}",
         {"plan_type=p"}},
        {"a key that is not UTF-8 leaves the one before in force",
         "{\"type\":\"x\",\"\\ud800\":\"y\"}",
         {"type=x"}},
        {"254 bytes are too many", R"({"type":")" + longest + R"("})", {"type=" + longest}},
        {"255 bytes are cut short", R"({"type":"x)" + longest + R"("})", {}},
        {"64 digits are too many", R"({"timestamp":)" + digits + "}", {"timestamp:" + digits}},
        {"65 digits are cut short", R"({"timestamp":9)" + digits + "}", {}},
        {"126 bytes of a key are too many",
         R"({"\u0074\u0079\u0070\u0065":"x","\u0070\u006c\u0061\u006e\u005f\u0074\u0079\u0070\u0065":"p"})",
         {"type=x", "plan_type=p"}},
        {"a key beyond 126 bytes still counts",
         R"({"\u006d\u0065\u0073\u0073\u0061\u0067\u0065\u002e\u0075\u0073\u0061\u0067\u0065\u002e)"
         R"(\u0069\u006e\u0070\u0075\u0074\u005f\u0074\u006f\u006b\u0065\u006e\u0073":5})",
         {}},
        {"a line that ends with a carriage return", "{\"type\":\"x\"}\r", {"type=x"}},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(harvest(one.line), one.kept) << one.fault;
        EXPECT_EQ(byteWise(one.line), inBulk(one.line)) << one.fault;
    }
}

TEST(PumpUsageStream, AResetStreamIsAFreshOne) {
    for (const char* const before : {R"({"type":"x","a":[{"b":"\u12)", R"({"a":-1.5e)", R"({"a":tr)", "]"}) {
        Stream stream = inBulk(before);
        stream.isEmpty = false;
        stream.reset();
        EXPECT_EQ(stream, Stream()) << before;
        stream.accept(R"({"type":"y"})");
        EXPECT_EQ(stream, inBulk(R"({"type":"y"})")) << before;
    }
}

TEST(PumpUsageJSON, ConvertsNumbersWhereTheyAreUsed) {
    struct Case {
        const char* text;
        std::optional<double> number;
        std::optional<std::int64_t> count;
    };
    const Case cases[] = {
        {"0", 0.0, 0},
        {"-0", -0.0, 0},
        {"-0.0", -0.0, 0},
        {"1e3", 1000.0, 1000},
        {"12.0", 12.0, 12},
        {"-5", -5.0, std::nullopt},
        {"1.5", 1.5, std::nullopt},
        {"9223372036854775807", 9223372036854775807.0, INT64_MAX},
        {"9223372036854775808", 9223372036854775808.0, std::nullopt},
        {"9.007199254740993e15", 9007199254740992.0, 9007199254740992},
        {"1e400", std::nullopt, std::nullopt},
        {"1e-400", 0.0, 0},
        {"+7", std::nullopt, 7}, // never in a line, but a value may come from elsewhere
        {"", std::nullopt, std::nullopt},
        {"7 ", std::nullopt, std::nullopt},
    };
    for (const Case& one : cases) {
        Values values;
        values.set(Field::inputTokens, Value::Kind::number, one.text);
        EXPECT_EQ(PumpUsageJSON::number(Field::inputTokens, values), one.number) << one.text;
        EXPECT_EQ(PumpUsageJSON::count(Field::inputTokens, values), one.count) << one.text;
        values.set(Field::inputTokens, Value::Kind::string, one.text);
        EXPECT_EQ(PumpUsageJSON::number(Field::inputTokens, values), std::nullopt) << one.text;
        EXPECT_EQ(PumpUsageJSON::count(Field::inputTokens, values), std::nullopt) << one.text;
    }
}

} // namespace
} // namespace FellowCore
