#pragma once

#include "core/base/Calendar.h"
#include "core/base/Uuid.h"
#include "core/ledger/MunshiItem.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// An item that was deleted and where it stood, which is what undo needs.
struct DeletedMunshiItem {
    MunshiItem item;
    std::size_t index = 0;
};

/// Munshi's day book: one list for today, the earlier days behind it, and the rules by which a day turns over
/// into the next.
///
/// Days are the calendar's. An instant to which the calendar gives no day key (not finite, or outside the
/// years 0 to 9999) turns no day over and removes nothing.
struct MunshiLedger {
    static constexpr std::int64_t usualKeepDays = 30;

    std::vector<MunshiItem> today;   ///< in display order
    std::vector<MunshiItem> history; ///< newest archived first; within a day in reverse of its order
    std::string currentDay;          ///< key of the day that `today` is
    std::int64_t lastGapDays = 0;    ///< whole days skipped at the last rollover; negative when the clock
                                     ///< went back
    bool carryOver = true;           ///< unfinished tasks move on to the next day
    std::optional<std::int64_t> keepDays = usualKeepDays; ///< absent: history is kept for ever

    /// An empty ledger of no day, to be filled from elsewhere.
    MunshiLedger() = default;
    /// An empty ledger of the day of `now`.
    MunshiLedger(Instant now, const Calendar& calendar);

    std::vector<MunshiItem> openTasks() const;
    std::vector<MunshiItem> notes() const;
    std::vector<MunshiItem> doneToday() const;
    /// For the badge: the number of open tasks, "9+" for more than nine.
    std::string countLabel() const;
    /// No open task, and at least one that was done today.
    bool allDone() const;
    /// "2 open · next: buy milk", "All done for today" or "Nothing for today".
    std::string tooltip() const;

    /// Turns the day over when it is due, then adds what was written: a note at the end, a task behind the
    /// last open one, so that tasks collect above notes and done items. Nothing when no text was written.
    std::optional<MunshiItem> add(std::string_view text, Instant at, const Calendar& calendar,
                                  const UuidSource& newId);
    /// Turns the day over; false when it is still the same.
    bool rollIfNeeded(Instant now, const Calendar& calendar);
    /// The next five look only in `today`. Notes are left alone, and so is what is already as wanted.
    void setDone(const Uuid& id, bool done, Instant at);
    /// True when the text was not empty and the item exists, even if nothing changed. What is written decides
    /// the kind anew; a task that becomes a note is no longer done.
    bool edit(const Uuid& id, std::string_view text);
    std::optional<DeletedMunshiItem> deleteItem(const Uuid& id);
    /// Moves an item down (positive) or up, as far as the list goes; true when it moved.
    bool move(const Uuid& id, std::int64_t by);
    /// Puts a deleted item back, into `history` when its day is over. An item that stands in the ledger is
    /// not put there twice. `index` is drawn into the list.
    void restore(const MunshiItem& item, std::int64_t index);
    /// Removes history older than `keepDays` calendar days; the day that many days ago stays. Fewer than 0
    /// days count as 0.
    void prune(Instant now, const Calendar& calendar);
    /// Empties both lists; day and settings stay.
    void eraseEverything();

    /// One day as Markdown, without a final line feed; today's when no day is given.
    std::string markdown(std::optional<std::string_view> day = std::nullopt) const;
    /// The items of a day in the order they had on it.
    std::vector<MunshiItem> items(std::string_view day) const;
    /// Every day that `history` holds, newest archived first.
    std::vector<std::string> historyDays() const;
    /// Everything whose text contains the query, whatever the case: today's first, then history's. An empty
    /// query finds nothing.
    std::vector<MunshiItem> search(std::string_view query) const;

    friend bool operator==(const MunshiLedger&, const MunshiLedger&) = default;

private:
    std::vector<MunshiItem>::iterator findToday(const Uuid& id);
};

} // namespace FellowCore
