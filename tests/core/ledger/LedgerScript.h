#pragma once

#include "core/base/Json.h"
#include "core/ledger/MunshiLedger.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace FellowCore {

inline Instant at(std::string_view text) {
    return instantFromIso8601(text).value();
}

/// "[ ] milk", "[x] milk", "- milk", with "<2026-03-01" behind it when it was carried from there.
inline std::string shown(const MunshiItem& item) {
    const std::string mark = item.kind == MunshiItem::Kind::note ? "- " : item.done ? "[x] " : "[ ] ";
    return mark + item.text + (item.carriedFrom ? " <" + *item.carriedFrom : "");
}

inline std::string shown(const std::vector<MunshiItem>& items) {
    std::string text;
    for (const MunshiItem& item : items) {
        text += (text.empty() ? "" : "; ") + shown(item);
    }
    return text;
}

/// Today's items, then " | " and the history's with their days.
inline std::string shown(const MunshiLedger& ledger) {
    std::string text = shown(ledger.today) + " |";
    for (const MunshiItem& item : ledger.history) {
        text += " " + item.day + " " + shown(item) + ";";
    }
    return text;
}

/// Drives a ledger whose items are called by their text, with identities that count up.
struct LedgerScript {
    Calendar calendar = Calendar::utc();
    Instant now = at("2026-03-01T09:00:00Z");
    MunshiLedger ledger{now, calendar};
    std::uint32_t lastId = 0;

    UuidSource ids() {
        return [this] {
            Uuid id;
            ++lastId;
            id.bytes[14] = static_cast<std::uint8_t>(lastId >> 8U);
            id.bytes[15] = static_cast<std::uint8_t>(lastId);
            return id;
        };
    }

    /// Goes to nine in the morning of a day and opens the ledger there.
    LedgerScript& on(const std::string& day) {
        now = at(day + "T09:00:00Z");
        ledger.rollIfNeeded(now, calendar);
        return *this;
    }
    LedgerScript& add(std::string_view text) {
        ledger.add(text, now, calendar, ids());
        return *this;
    }
    LedgerScript& done(std::string_view text, bool isDone = true) {
        ledger.setDone(id(text), isDone, now);
        return *this;
    }
    LedgerScript& edit(std::string_view text, std::string_view to) {
        ledger.edit(id(text), to);
        return *this;
    }
    LedgerScript& erase(std::string_view text) {
        ledger.deleteItem(id(text));
        return *this;
    }
    LedgerScript& move(std::string_view text, std::int64_t by) {
        ledger.move(id(text), by);
        return *this;
    }
    Uuid id(std::string_view text) const {
        for (const auto* list : {&ledger.today, &ledger.history}) {
            for (const MunshiItem& item : *list) {
                if (item.text == text) {
                    return item.id;
                }
            }
        }
        throw std::logic_error("the script names no item: " + std::string(text));
    }
};

} // namespace FellowCore
