#include "core/pump/PumpUsageCache.h"

#include "core/base/Json.h"
#include "core/base/Text.h"
#include "core/pump/PumpUsageLogs.h"

#include <nlohmann/json.hpp>

#include <array>
#include <charconv>
#include <functional>

namespace FellowCore {

namespace {

namespace Key {
constexpr const char* version = "version";
constexpr const char* cursors = "cursors";
constexpr const char* identity = "identity";
constexpr const char* offset = "offset";
constexpr const char* partial = "partial";
constexpr const char* records = "records";
constexpr const char* at = "at";
constexpr const char* counts = "counts";
constexpr const char* input = "input";
constexpr const char* output = "output";
constexpr const char* cacheCreation = "cacheCreation";
constexpr const char* cacheRead = "cacheRead";
constexpr const char* historicalHours = "historicalHours";
constexpr const char* codex = "codex";
constexpr const char* usedPercent = "usedPercent";
constexpr const char* windowMinutes = "windowMinutes";
constexpr const char* resetsAt = "resetsAt";
constexpr const char* planType = "planType";
constexpr const char* observedAt = "observedAt";
constexpr const char* codexPath = "codexPath";
} // namespace Key

bool isUtf8(std::string_view text) {
    return wellFormed(text) == text;
}

/// Writes JSON straight into text: with tens of thousands of records, building a document first would cost
/// more than reading the logs.
class CacheWriter {
public:
    /// Opens or goes on with an object: puts the comma where one is due, then the key.
    CacheWriter& key(std::string_view name) {
        comma();
        text_ += jsonText(std::string(name), JsonStyle::plain);
        text_ += ':';
        return *this;
    }
    /// A key that needs no escapes.
    CacheWriter& plainKey(std::string_view name) {
        comma();
        text_ += '"';
        text_ += name;
        text_ += "\":";
        return *this;
    }
    void open(char bracket) { text_ += bracket; }
    void close(char bracket) { text_ += bracket; }
    void comma() {
        if (text_.back() != '{' && text_.back() != '[') {
            text_ += ',';
        }
    }
    template <class Number>
    void number(Number value) {
        std::array<char, 32> digits;
        const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
        text_.append(digits.data(), end);
    }
    void raw(std::string_view json) { text_ += json; }
    std::string take() { return std::move(text_); }

private:
    std::string text_;
};

void write(CacheWriter& out, const PumpUsageRecord& record) {
    out.open('{');
    out.plainKey(Key::at).number(record.at.sinceReference);
    out.plainKey(Key::counts).open('{');
    out.plainKey(Key::input).number(record.counts.input);
    out.plainKey(Key::output).number(record.counts.output);
    out.plainKey(Key::cacheCreation).number(record.counts.cacheCreation);
    out.plainKey(Key::cacheRead).number(record.counts.cacheRead);
    out.close('}');
    out.close('}');
}

/// A path's key as JSON text, made once for the many records of a file; empty for one that JSON cannot hold.
class PathKeys {
public:
    const std::string& of(std::string_view path) {
        const auto known = keys_.find(path);
        if (known != keys_.end()) {
            return known->second;
        }
        const std::string text(path);
        return keys_.emplace(text, isUtf8(path) ? jsonText(text, JsonStyle::plain) + ":" : "").first->second;
    }

private:
    std::map<std::string, std::string, std::less<>> keys_;
};

void writeRecords(CacheWriter& out, const PumpUsageRecords& records, PathKeys& keys) {
    out.plainKey(Key::records).open('{');
    bool isOpen = false;
    records.forEachMessage(
        [&](const PumpRecordKey& key) {
            if (isOpen) {
                out.close('}');
            }
            out.plainKey(hexText(key)).open('{');
            isOpen = true;
        },
        [&](std::string_view path, const PumpUsageRecord& record) {
            if (const std::string& key = keys.of(path); !key.empty()) {
                out.comma();
                out.raw(key);
                write(out, record);
            }
        });
    if (isOpen) {
        out.close('}');
    }
    out.close('}');
}

void writeHours(CacheWriter& out, const PumpUsageRecords& records, PathKeys& keys) {
    out.plainKey(Key::historicalHours).open('{');
    records.forEachFileWithHours([&](std::string_view path, const std::set<std::int64_t>& hours) {
        const std::string& key = keys.of(path);
        if (key.empty()) {
            return;
        }
        out.comma();
        out.raw(key);
        out.open('[');
        for (const std::int64_t hour : hours) {
            out.comma();
            out.number(hour);
        }
        out.close(']');
    });
    out.close('}');
}

Json jsonOf(const PumpCodexUsage& codex) {
    Json json = {{Key::usedPercent, codex.usedPercent},
                 {Key::windowMinutes, codex.windowMinutes},
                 {Key::observedAt, jsonDate(codex.observedAt)}};
    if (codex.resetsAt) {
        json[Key::resetsAt] = jsonDate(*codex.resetsAt);
    }
    if (codex.planType) {
        json[Key::planType] = *codex.planType;
    }
    return json;
}

[[noreturn]] void throwOutOfRange(const JsonFields& fields, const char* key) {
    throw JsonError(JsonError::Kind::outOfRange, fields.pathOf(key), "is out of range");
}

Instant dateFrom(const JsonFields& fields, const char* key) {
    constexpr Seconds lastSecond = 253402300799; // of the year 9999
    const Instant at{fields.number(key)};
    if (!(at.toUnix() >= 0 && at.toUnix() <= lastSecond)) {
        throwOutOfRange(fields, key);
    }
    return at;
}

std::int64_t counterFrom(const JsonFields& fields, const char* key) {
    const std::int64_t count = fields.integer(key);
    if (count < 0) {
        throwOutOfRange(fields, key);
    }
    return count;
}

PumpUsageRecord recordFrom(const JsonFields& fields) {
    const JsonFields counts = fields.object(Key::counts);
    return {dateFrom(fields, Key::at),
            {counterFrom(counts, Key::input), counterFrom(counts, Key::output),
             counterFrom(counts, Key::cacheCreation), counterFrom(counts, Key::cacheRead)}};
}

PumpCachedCursor cursorFrom(const JsonFields& fields) {
    const auto identity = pumpIdentityFromText(fields.string(Key::identity));
    if (!identity) {
        throwOutOfRange(fields, Key::identity);
    }
    return {*identity, static_cast<std::uint64_t>(counterFrom(fields, Key::offset)),
            fields.boolean(Key::partial)};
}

PumpCodexUsage codexFrom(const JsonFields& fields) {
    PumpCodexUsage codex{.usedPercent = fields.number(Key::usedPercent),
                         .windowMinutes = fields.number(Key::windowMinutes),
                         .observedAt = dateFrom(fields, Key::observedAt)};
    if (codex.usedPercent < 0 || codex.usedPercent > 100) {
        throwOutOfRange(fields, Key::usedPercent);
    }
    if (codex.windowMinutes <= 0) {
        throwOutOfRange(fields, Key::windowMinutes);
    }
    if (fields.has(Key::resetsAt)) {
        codex.resetsAt = dateFrom(fields, Key::resetsAt);
    }
    if (fields.has(Key::planType)) {
        codex.planType = fields.string(Key::planType);
    }
    return codex;
}

void takeRecords(const JsonFields& all, PumpUsageCache& cache) {
    const JsonFields messages = all.object(Key::records);
    for (const auto& [hex, copies] : all.value(Key::records).items()) {
        const auto key = pumpRecordKeyFromHex(hex);
        if (!key) {
            throwOutOfRange(messages, hex.c_str());
        }
        const JsonFields checked(copies, messages.pathOf(hex));
        for (const auto& [path, record] : copies.items()) {
            cache.records.add(*key, path, recordFrom(JsonFields(record, checked.pathOf(path))));
        }
    }
}

void takeHours(const JsonFields& all, PumpUsageCache& cache) {
    const JsonFields files = all.object(Key::historicalHours);
    for (const auto& [path, hours] : all.value(Key::historicalHours).items()) {
        if (!hours.is_array()) {
            throwOutOfRange(files, path.c_str());
        }
        for (const Json& hour : hours) {
            if (!hour.is_number_integer()) {
                throwOutOfRange(files, path.c_str());
            }
            cache.records.addHour(path, hour.get<std::int64_t>());
        }
    }
}

} // namespace

std::string PumpUsageCache::encoded(const std::map<std::string, PumpCachedCursor>& cursors,
                                    const PumpUsageRecords& records,
                                    const std::optional<PumpCodexUsage>& codex,
                                    const std::optional<std::string>& codexPath) {
    CacheWriter out;
    PathKeys keys;
    out.open('{');
    out.plainKey(Key::version).number(version);
    out.plainKey(Key::cursors).open('{');
    for (const auto& [path, cursor] : cursors) {
        const std::string& key = keys.of(path);
        if (key.empty()) {
            continue;
        }
        out.comma();
        out.raw(key);
        out.raw(jsonText({{Key::identity, pumpIdentityText(cursor.identity)},
                          {Key::offset, cursor.offset},
                          {Key::partial, cursor.partial}},
                         JsonStyle::plain));
    }
    out.close('}');
    writeRecords(out, records, keys);
    writeHours(out, records, keys);
    if (codex && codexPath && isUtf8(*codexPath)) {
        out.plainKey(Key::codex).raw(jsonText(jsonOf(*codex), JsonStyle::plain));
        out.plainKey(Key::codexPath).raw(jsonText(*codexPath, JsonStyle::plain));
    }
    out.close('}');
    return out.take();
}

PumpUsageCache PumpUsageCache::decoded(std::string_view text) {
    const Json json = parseJson(text);
    const JsonFields fields(json);
    if (fields.integer(Key::version) != version) {
        throwOutOfRange(fields, Key::version);
    }
    PumpUsageCache cache;
    const JsonFields cursors = fields.object(Key::cursors);
    for (const auto& [path, cursor] : fields.value(Key::cursors).items()) {
        cache.cursors.emplace(path, cursorFrom(JsonFields(cursor, cursors.pathOf(path))));
    }
    takeRecords(fields, cache);
    takeHours(fields, cache);
    if (fields.has(Key::codex)) {
        cache.codex = codexFrom(fields.object(Key::codex));
    }
    if (fields.has(Key::codexPath)) {
        cache.codexPath = fields.string(Key::codexPath);
    }
    return cache;
}

} // namespace FellowCore
