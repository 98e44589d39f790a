#include "core/base/Json.h"
#include "core/ledger/MunshiIdVariant.h"
#include "core/ledger/MunshiLine.h"
#include "core/ledger/MunshiStore.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <set>

namespace FellowCore {

namespace {

namespace Key {
constexpr const char* today = "today";
constexpr const char* history = "history";
constexpr const char* currentDay = "currentDay";
constexpr const char* lastGapDays = "lastGapDays";
constexpr const char* carryOver = "carryOver";
constexpr const char* keepDays = "keepDays";
constexpr const char* id = "id";
constexpr const char* text = "text";
constexpr const char* kind = "kind";
constexpr const char* done = "done";
constexpr const char* createdAt = "createdAt";
constexpr const char* doneAt = "doneAt";
constexpr const char* day = "day";
constexpr const char* carriedFrom = "carriedFrom";
} // namespace Key

constexpr Instant firstDate = Instant::fromUnix(-62167219200);  ///< 0000-01-01T00:00:00Z
constexpr Instant lastDate = Instant::fromUnix(253402300799.0); ///< 9999-12-31T23:59:59Z

/// The instant that the file can hold nearest to one.
Instant storedInstant(Instant at) {
    if (std::isnan(at.sinceReference)) {
        return Instant{};
    }
    const Instant bounded = std::clamp(at, firstDate, lastDate);
    return {std::floor(bounded.sinceReference)};
}

Json jsonOf(const MunshiItem& item) {
    Json json = {{Key::id, item.id.text()},
                 {Key::text, item.text},
                 {Key::kind, std::string(rawValue(item.kind))},
                 {Key::done, item.done},
                 {Key::createdAt, jsonDate(storedInstant(item.createdAt), JsonDateForm::iso8601)},
                 {Key::day, item.day}};
    if (item.doneAt) {
        json[Key::doneAt] = jsonDate(storedInstant(*item.doneAt), JsonDateForm::iso8601);
    }
    if (item.carriedFrom) {
        json[Key::carriedFrom] = *item.carriedFrom;
    }
    return json;
}

Json jsonOf(const std::vector<MunshiItem>& items) {
    Json list = Json::array();
    for (const MunshiItem& item : items) {
        list.push_back(jsonOf(item));
    }
    return list;
}

[[noreturn]] void throwUnknown(const JsonFields& fields, const char* key) {
    throw JsonError(JsonError::Kind::outOfRange, fields.pathOf(key), "is not what it should be");
}

Instant dateFrom(const JsonFields& fields, const char* key) {
    return storedInstant(instantFromJson(fields.value(key), fields.pathOf(key), JsonDateForm::iso8601));
}

/// A number of days of any size, drawn into 64 bits: whoever wrote 10^30 meant "a lot".
std::int64_t daysFrom(const JsonFields& fields, const char* key) {
    try {
        return fields.integer(key);
    } catch (const JsonError& error) {
        if (error.kind() != JsonError::Kind::outOfRange) {
            throw;
        }
        using Limits = std::numeric_limits<std::int64_t>;
        return fields.number(key) < 0 ? Limits::min() : Limits::max();
    }
}

/// `doneAt` is present exactly while `done` is true, which no note ever is.
void putMarkRight(MunshiItem& item) {
    item.done = item.done && item.kind == MunshiItem::Kind::task;
    if (!item.done) {
        item.doneAt.reset();
    } else if (!item.doneAt) {
        item.doneAt = item.createdAt;
    }
}

MunshiItem itemFrom(const JsonFields& fields) {
    const auto id = Uuid::fromText(fields.string(Key::id));
    if (!id) {
        throwUnknown(fields, Key::id);
    }
    const auto kind = munshiKindFromRawValue(fields.string(Key::kind));
    if (!kind) {
        throwUnknown(fields, Key::kind);
    }
    MunshiItem item{.id = *id,
                    .text = MunshiLine::bounded(fields.string(Key::text)),
                    .kind = *kind,
                    .done = fields.boolean(Key::done),
                    .createdAt = dateFrom(fields, Key::createdAt),
                    .day = fields.string(Key::day)};
    if (fields.has(Key::doneAt)) {
        item.doneAt = dateFrom(fields, Key::doneAt);
    }
    if (fields.has(Key::carriedFrom)) {
        item.carriedFrom = fields.string(Key::carriedFrom);
    }
    putMarkRight(item);
    return item;
}

std::vector<MunshiItem> itemsFrom(const JsonFields& fields, const char* key) {
    const Json& list = fields.value(key);
    if (!list.is_array()) {
        throw JsonError(JsonError::Kind::wrongType, fields.pathOf(key), "should be a list");
    }
    std::vector<MunshiItem> items;
    items.reserve(list.size());
    for (const Json& value : list) {
        items.push_back(
            itemFrom(JsonFields(value, fields.pathOf(key) + "[" + std::to_string(items.size()) + "]")));
    }
    return items;
}

/// Gives every item after the first of an identity one of its own.
void separateIds(MunshiLedger& ledger) {
    std::set<Uuid> original;
    std::vector<MunshiItem*> doubles;
    for (auto* const list : {&ledger.today, &ledger.history}) {
        for (MunshiItem& item : *list) {
            if (!original.insert(item.id).second) {
                doubles.push_back(&item);
            }
        }
    }
    std::map<Uuid, std::uint64_t> variants;
    for (MunshiItem* const item : doubles) {
        std::uint64_t& number = variants[item->id];
        Uuid id;
        do {
            id = idVariant(item->id, ++number);
        } while (!original.insert(id).second);
        item->id = id;
    }
}

} // namespace

std::string MunshiStore::encoded(const MunshiLedger& ledger) {
    Json json = {{Key::today, jsonOf(ledger.today)},
                 {Key::history, jsonOf(ledger.history)},
                 {Key::currentDay, ledger.currentDay},
                 {Key::lastGapDays, ledger.lastGapDays},
                 {Key::carryOver, ledger.carryOver}};
    if (ledger.keepDays) {
        json[Key::keepDays] = *ledger.keepDays;
    }
    return jsonText(json, JsonStyle::pretty);
}

MunshiLedger MunshiStore::decoded(std::string_view text) {
    const Json json = parseJson(text);
    const JsonFields fields(json);
    MunshiLedger ledger;
    ledger.today = itemsFrom(fields, Key::today);
    ledger.history = itemsFrom(fields, Key::history);
    ledger.currentDay = fields.string(Key::currentDay);
    ledger.lastGapDays = daysFrom(fields, Key::lastGapDays);
    ledger.carryOver = fields.boolean(Key::carryOver);
    ledger.keepDays =
        fields.has(Key::keepDays) ? std::optional(daysFrom(fields, Key::keepDays)) : std::nullopt;
    separateIds(ledger);
    return ledger;
}

MunshiLedger MunshiStore::asStored(MunshiLedger ledger) {
    for (auto* const list : {&ledger.today, &ledger.history}) {
        for (MunshiItem& item : *list) {
            item.createdAt = storedInstant(item.createdAt);
            if (item.doneAt) {
                item.doneAt = storedInstant(*item.doneAt);
            }
        }
    }
    return ledger;
}

} // namespace FellowCore
