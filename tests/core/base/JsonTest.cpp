#include "core/base/Json.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace FellowCore {
namespace {

using Kind = JsonError::Kind;

std::string nested(int depth) {
    const auto levels = static_cast<std::size_t>(depth);
    return std::string(levels, '[') + std::string(levels, ']');
}

TEST(JsonParsing, RefusesWhatIsNotOneDocument) {
    const struct {
        const char* fault;
        std::string text;
    } cases[] = {
        {"nothing", ""},
        {"something after the end", "{} {}"},
        {"something after a zero byte", std::string("{}\0{}", 5)},
        {"text that is not UTF-8", "{\"a\": \"\xFF\"}"},
        {"half a surrogate pair", R"({"a": "\ud800"})"},
        {"a number that would become infinite", R"({"a": 1e999})"},
        {"a comma too many", R"({"a": 1,})"},
        {"one level too deep", nested(maximumJsonDepth + 1)},
        {"deep enough to exhaust a stack", std::string(1'000'000, '[')},
        {"deep objects",
         [] {
             std::string text;
             for (int level = 0; level < 100'000; ++level) {
                 text += R"({"a":)";
             }
             return text;
         }()},
    };
    for (const auto& row : cases) {
        try {
            parseJson(row.text);
            ADD_FAILURE() << row.fault;
        } catch (const JsonError& error) {
            EXPECT_EQ(error.kind(), Kind::notJson) << row.fault;
            EXPECT_LT(std::string_view(error.what()).size(), 200U) << row.fault;
        }
    }
    EXPECT_NO_THROW(parseJson(nested(maximumJsonDepth)));
    EXPECT_NO_THROW(parseJson(R"("\")" + std::string(1000, '[') + "\"")) << "brackets in a string";
}

TEST(JsonFields, NamesTheFieldAndTheFault) {
    const Json document = parseJson(R"({
        "text": "x", "null": null, "half": 3.5, "whole": 3.0, "most": 9223372036854775807,
        "over": 9223372036854775808, "float": 9223372036854775808.0, "huge": 123456789012345678901234567890, "minus": -1e300,
        "poses": {"idle": 7}, "mixed": ["a", 1]
    })");
    const JsonFields fields(document);
    const struct {
        const char* fault;
        std::function<void()> read;
        Kind kind;
        const char* field;
    } cases[] = {
        {"absent", [&] { fields.string("none"); }, Kind::missing, "none"},
        {"null is as good as absent", [&] { fields.string("null"); }, Kind::missing, "null"},
        {"text for a number", [&] { fields.number("text"); }, Kind::wrongType, "text"},
        {"a number for a boolean", [&] { fields.boolean("whole"); }, Kind::wrongType, "whole"},
        {"a fraction for a whole number", [&] { fields.integer("half"); }, Kind::wrongType, "half"},
        {"one beyond 64 bits", [&] { fields.integer("over"); }, Kind::outOfRange, "over"},
        {"one beyond, as a double", [&] { fields.integer("float"); }, Kind::outOfRange, "float"},
        {"far beyond 64 bits", [&] { fields.integer("huge"); }, Kind::outOfRange, "huge"},
        {"far below", [&] { fields.integer("minus"); }, Kind::outOfRange, "minus"},
        {"nested fields by their path", [&] { fields.object("poses").string("idle"); }, Kind::wrongType,
         "poses.idle"},
        {"items by their place", [&] { fields.strings("mixed"); }, Kind::wrongType, "mixed[1]"},
        {"no object", [&] { fields.object("text"); }, Kind::wrongType, "text"},
    };
    for (const auto& row : cases) {
        try {
            row.read();
            ADD_FAILURE() << row.fault;
        } catch (const JsonError& error) {
            EXPECT_EQ(error.kind(), row.kind) << row.fault;
            EXPECT_EQ(error.field(), row.field) << row.fault;
        }
    }
    EXPECT_EQ(fields.integer("whole"), 3);
    EXPECT_EQ(fields.integer("most"), std::numeric_limits<std::int64_t>::max()) << "not by way of a double";
    EXPECT_FALSE(fields.has("null"));
    const Json infinite = {{"a", std::numeric_limits<double>::infinity()}};
    EXPECT_THROW(JsonFields(infinite).number("a"), JsonError);
}

TEST(JsonText, IsSortedAndNeverFailsOnBytes) {
    EXPECT_EQ(jsonText(parseJson(R"({"b":1,"a":[]})"), JsonStyle::pretty),
              "{\n  \"a\": [],\n  \"b\": 1\n}\n");
    EXPECT_EQ(jsonText(Json("\xFF\u00E9"), JsonStyle::plain), "\"\uFFFD\u00E9\"");
}

TEST(JsonDate, ReadsIso8601Strictly) {
    const struct {
        const char* fault;
        const char* text;
        std::optional<Seconds> unixSeconds;
    } cases[] = {
        {"plain", "2026-11-21T07:00:00Z", 1795244400.0},
        {"before 1970", "1969-12-31T23:59:59Z", -1.0},
        {"leap day", "2024-02-29T00:00:00Z", 1709164800.0},
        {"ahead of UTC", "2026-11-21T12:30:00+05:30", 1795244400.0},
        {"behind UTC, into the next day", "2026-11-20T23:30:00-07:30", 1795244400.0},
        {"fractions", "2026-11-21T07:00:00.25Z", 1795244400.25},
        {"no leap day", "2023-02-29T00:00:00Z", {}},
        {"month zero", "2023-00-01T00:00:00Z", {}},
        {"hour 24", "2023-01-01T24:00:00Z", {}},
        {"no zone", "2023-01-01T00:00:00", {}},
        {"offset without colon", "2023-01-01T00:00:00+0530", {}},
        {"a fraction without digits", "2023-01-01T00:00:00.Z", {}},
        {"a sign in a field", "2023-01-01T-1:00:00Z", {}},
        {"one digit", "2023-1-01T00:00:00Z", {}},
        {"something after the end", "2023-01-01T00:00:00Zz", {}},
        {"the day alone", "2023-01-01", {}},
    };
    for (const auto& row : cases) {
        const auto at = instantFromIso8601(row.text);
        EXPECT_EQ(at ? std::optional(at->toUnix()) : std::nullopt, row.unixSeconds) << row.fault;
    }
}

TEST(JsonDate, WritesWholeSecondsAndOnlyWhatItCanRead) {
    EXPECT_EQ(iso8601Text(Instant::fromUnix(1795244400.9)), "2026-11-21T07:00:00Z");
    EXPECT_EQ(iso8601Text(Instant::fromUnix(-0.5)), "1969-12-31T23:59:59Z") << "down, not towards zero";
    EXPECT_EQ(iso8601Text({0}), "2001-01-01T00:00:00Z");
    for (const char* edge : {"0000-01-01T00:00:00Z", "9999-12-31T23:59:59Z"}) {
        EXPECT_EQ(iso8601Text(instantFromIso8601(edge).value()), edge);
    }
    for (const double beyond : {1e12, -1e12, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(iso8601Text({beyond}), "") << beyond;
        EXPECT_TRUE(jsonDate({beyond}, JsonDateForm::iso8601).is_null()) << beyond;
    }
}

TEST(JsonDate, TakesOnlyTheFormThatTheFileUses) {
    const Instant at = Instant::fromUnix(1795244400);
    for (const auto form : {JsonDateForm::secondsSinceReference, JsonDateForm::iso8601}) {
        EXPECT_EQ(instantFromJson(jsonDate(at, form), "at", form), at);
    }
    EXPECT_EQ(jsonDate(at), Json(816937200.0)) << "seconds from 2001, not from 1970";
    EXPECT_THROW(instantFromJson(jsonDate(at), "at", JsonDateForm::iso8601), JsonError);
    EXPECT_THROW(instantFromJson(jsonDate(at, JsonDateForm::iso8601), "at"), JsonError);
}

} // namespace
} // namespace FellowCore
