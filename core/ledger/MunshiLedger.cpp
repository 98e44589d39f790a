#include "core/ledger/MunshiLedger.h"

#include "core/base/Text.h"
#include "core/ledger/DayKey.h"
#include "core/ledger/MunshiLine.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace FellowCore {

namespace {

using Items = std::vector<MunshiItem>;

template <typename Wanted>
Items filtered(const Items& items, Wanted wanted) {
    Items found;
    std::ranges::copy_if(items, std::back_inserter(found), wanted);
    return found;
}

bool holds(const Items& items, const Uuid& id) {
    return std::ranges::find(items, id, &MunshiItem::id) != items.end();
}

/// The day a number of days before another; nothing where no key could name it.
std::string keyOfEarlierDay(CalendarDay day, std::int64_t days) {
    constexpr std::int64_t farthest = std::int64_t{10'000} * 366; // more days than have keys
    if (days > farthest) {
        return {};
    }
    return dayKey(CalendarDay(std::chrono::sys_days(day) - std::chrono::days(days)));
}

std::string markdownLine(const MunshiItem& item) {
    if (item.kind == MunshiItem::Kind::note) {
        return "\n- " + item.text;
    }
    return (item.done ? "\n- [x] " : "\n- [ ] ") + item.text;
}

} // namespace

MunshiLedger::MunshiLedger(Instant now, const Calendar& calendar) : currentDay(dayKey(now, calendar)) {}

std::vector<MunshiItem> MunshiLedger::openTasks() const {
    return filtered(today, &MunshiItem::isOpenTask);
}

std::vector<MunshiItem> MunshiLedger::notes() const {
    return filtered(today, [](const MunshiItem& item) { return item.kind == MunshiItem::Kind::note; });
}

std::vector<MunshiItem> MunshiLedger::doneToday() const {
    return filtered(today, &MunshiItem::isDoneTask);
}

std::string MunshiLedger::countLabel() const {
    const auto open = std::ranges::count_if(today, &MunshiItem::isOpenTask);
    return open > 9 ? "9+" : std::to_string(open);
}

bool MunshiLedger::allDone() const {
    return std::ranges::none_of(today, &MunshiItem::isOpenTask) &&
           std::ranges::any_of(today, &MunshiItem::isDoneTask);
}

std::string MunshiLedger::tooltip() const {
    const auto next = std::ranges::find_if(today, &MunshiItem::isOpenTask);
    if (next != today.end()) {
        const auto open = std::ranges::count_if(today, &MunshiItem::isOpenTask);
        return std::to_string(open) + " open \u00B7 next: " + next->text;
    }
    return allDone() ? "All done for today" : "Nothing for today";
}

std::optional<MunshiItem> MunshiLedger::add(std::string_view text, Instant at, const Calendar& calendar,
                                            const UuidSource& newId) {
    rollIfNeeded(at, calendar);
    const auto line = MunshiLine::parse(text);
    if (!line) {
        return std::nullopt;
    }
    const MunshiItem item{
        .id = newId(), .text = line->text, .kind = line->kind, .createdAt = at, .day = currentDay};
    auto place = today.end();
    if (item.kind == MunshiItem::Kind::task) {
        const auto lastOpen = std::find_if(today.rbegin(), today.rend(),
                                           [](const MunshiItem& other) { return other.isOpenTask(); });
        place = lastOpen.base();
    }
    today.insert(place, item);
    return item;
}

bool MunshiLedger::rollIfNeeded(Instant now, const Calendar& calendar) {
    const std::string newDay = dayKey(now, calendar);
    if (newDay.empty() || newDay == currentDay) {
        return false;
    }
    const auto days = daysBetween(currentDay, newDay);
    lastGapDays = days ? *days - 1 : 0;
    Items carried;
    Items archived;
    for (MunshiItem& item : today) {
        if (carryOver && item.isOpenTask()) {
            item.carriedFrom = item.carriedFrom.value_or(item.day);
            item.day = newDay;
            carried.push_back(std::move(item));
        } else {
            archived.push_back(std::move(item));
        }
    }
    history.insert(history.begin(), std::move_iterator(archived.rbegin()),
                   std::move_iterator(archived.rend()));
    today = std::move(carried);
    currentDay = newDay;
    prune(now, calendar);
    return true;
}

void MunshiLedger::setDone(const Uuid& id, bool done, Instant at) {
    const auto item = findToday(id);
    if (item == today.end() || item->kind == MunshiItem::Kind::note || item->done == done) {
        return;
    }
    item->done = done;
    item->doneAt = done ? std::optional(at) : std::nullopt;
}

bool MunshiLedger::edit(const Uuid& id, std::string_view text) {
    const auto item = findToday(id);
    const auto line = MunshiLine::parse(text);
    if (item == today.end() || !line) {
        return false;
    }
    item->text = line->text;
    item->kind = line->kind;
    if (item->kind == MunshiItem::Kind::note) {
        item->done = false;
        item->doneAt.reset();
    }
    return true;
}

std::optional<DeletedMunshiItem> MunshiLedger::deleteItem(const Uuid& id) {
    const auto item = findToday(id);
    if (item == today.end()) {
        return std::nullopt;
    }
    DeletedMunshiItem deleted{std::move(*item), static_cast<std::size_t>(item - today.begin())};
    today.erase(item);
    return deleted;
}

bool MunshiLedger::move(const Uuid& id, std::int64_t by) {
    const auto item = findToday(id);
    if (item == today.end()) {
        return false;
    }
    const std::int64_t toTop = today.begin() - item;
    const std::int64_t toBottom = today.end() - item - 1;
    const auto target = item + std::clamp(by, toTop, toBottom);
    if (target > item) {
        std::rotate(item, item + 1, target + 1);
    } else {
        std::rotate(target, item, item + 1);
    }
    return target != item;
}

void MunshiLedger::restore(const MunshiItem& item, std::int64_t index) {
    if (holds(today, item.id) || holds(history, item.id)) {
        return;
    }
    Items& list = item.day == currentDay ? today : history;
    const auto place = std::clamp<std::int64_t>(index, 0, std::ssize(list));
    list.insert(list.begin() + place, item);
}

void MunshiLedger::prune(Instant now, const Calendar& calendar) {
    const auto day = calendar.day(now);
    if (!keepDays || !day) {
        return;
    }
    const std::string cutoff = keyOfEarlierDay(*day, std::max<std::int64_t>(*keepDays, 0));
    if (!cutoff.empty()) {
        std::erase_if(history, [&](const MunshiItem& item) { return item.day < cutoff; });
    }
}

void MunshiLedger::eraseEverything() {
    today.clear();
    history.clear();
}

std::vector<MunshiItem> MunshiLedger::items(std::string_view day) const {
    if (day == currentDay) {
        return today;
    }
    Items found = filtered(history, [&](const MunshiItem& item) { return item.day == day; });
    std::ranges::reverse(found);
    return found;
}

std::string MunshiLedger::markdown(std::optional<std::string_view> day) const {
    const std::string_view wanted = day.value_or(currentDay);
    std::string text = "## " + std::string(wanted);
    for (const MunshiItem& item : items(wanted)) {
        text += markdownLine(item);
    }
    return text;
}

std::vector<std::string> MunshiLedger::historyDays() const {
    std::vector<std::string> days;
    std::set<std::string_view> seen;
    for (const MunshiItem& item : history) {
        if (seen.insert(item.day).second) {
            days.push_back(item.day);
        }
    }
    return days;
}

std::vector<MunshiItem> MunshiLedger::search(std::string_view query) const {
    const std::string wanted = lowercased(trimmed(query));
    if (wanted.empty()) {
        return {};
    }
    const auto matches = [&](const MunshiItem& item) {
        return lowercased(item.text).find(wanted) != std::string::npos;
    };
    Items found = filtered(today, matches);
    std::ranges::copy_if(history, std::back_inserter(found), matches);
    return found;
}

std::vector<MunshiItem>::iterator MunshiLedger::findToday(const Uuid& id) {
    return std::ranges::find(today, id, &MunshiItem::id);
}

} // namespace FellowCore
