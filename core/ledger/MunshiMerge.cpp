#include "core/ledger/MunshiMerge.h"

#include "core/ledger/MunshiIdVariant.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

namespace FellowCore {

namespace {

using Kind = MunshiMergeChoice::Kind;
using Ids = std::vector<Uuid>;

enum class List { today, history };

/// An item and the list it stands in.
struct Placed {
    MunshiItem item;
    List list = List::today;

    friend bool operator==(const Placed&, const Placed&) = default;
};

using Index = std::map<Uuid, Placed>;

Index indexOf(const MunshiLedger& ledger) {
    Index index;
    for (const MunshiItem& item : ledger.history) {
        index.insert_or_assign(item.id, Placed{item, List::history});
    }
    for (const MunshiItem& item : ledger.today) {
        index.insert_or_assign(item.id, Placed{item, List::today});
    }
    return index;
}

const Placed* find(const Index& index, const Uuid& id) {
    const auto found = index.find(id);
    return found == index.end() ? nullptr : &found->second;
}

// What changes as one: text and kind, the check mark with its time, the day with the list.
auto line(Placed& placed) {
    return std::tie(placed.item.text, placed.item.kind);
}
auto mark(Placed& placed) {
    return std::tie(placed.item.done, placed.item.doneAt);
}
auto place(Placed& placed) {
    return std::tie(placed.list, placed.item.day, placed.item.carriedFrom);
}

/// Takes theirs where only they changed a value; true when both changed it, and differently.
template <typename Value>
bool adopt(Value mine, const Value& base, const Value& theirs) {
    if (mine == theirs || base == theirs) {
        return false;
    }
    if (mine == base) {
        mine = theirs;
        return false;
    }
    return true;
}

/// The same for a plain value, for which a tuple of references serves.
template <typename Value>
bool adoptValue(Value& mine, Value base, Value theirs) {
    return adopt(std::tie(mine), std::tie(base), std::tie(theirs));
}

/// Ids in an order that keeps `primary`'s and puts what only `secondary` has behind its neighbour there.
Ids mergedOrder(const Ids& primary, const Ids& secondary) {
    const std::set<Uuid> known(primary.begin(), primary.end());
    std::map<Uuid, Ids> followers;
    Ids order;
    Ids* behind = &order;
    for (const Uuid& id : secondary) {
        if (known.contains(id)) {
            behind = &followers[id];
        } else {
            behind->push_back(id);
        }
    }
    for (const Uuid& id : primary) {
        order.push_back(id);
        if (const auto found = followers.find(id); found != followers.end()) {
            order.insert(order.end(), found->second.begin(), found->second.end());
        }
    }
    return order;
}

Ids idsIn(const std::vector<MunshiItem>& items, const std::set<Uuid>& wanted) {
    Ids ids;
    for (const MunshiItem& item : items) {
        if (wanted.contains(item.id)) {
            ids.push_back(item.id);
        }
    }
    return ids;
}

class Merger {
public:
    Merger(const MunshiLedger& base, const MunshiLedger& mine, const MunshiLedger& theirs)
        : base_(base), mine_(mine), theirs_(theirs), baseIndex_(indexOf(base)), mineIndex_(indexOf(mine)),
          theirIndex_(indexOf(theirs)) {}

    MunshiMerge merged() {
        mergeItems();
        merge_.ledger.today = listed(List::today, &MunshiLedger::today);
        merge_.ledger.history = listed(List::history, &MunshiLedger::history);
        mergeSettings();
        return std::move(merge_);
    }

private:
    void tell(Kind kind, std::string text = {}) { merge_.choices.push_back({kind, std::move(text)}); }

    void mergeItems() {
        for (const auto& [id, mine] : mineIndex_) {
            const Placed* const base = find(baseIndex_, id);
            if (const Placed* const theirs = find(theirIndex_, id)) {
                result_.emplace(id, mergedItem(base, mine, *theirs));
            } else {
                keepUnlessDeleted(base, mine);
            }
        }
        for (const auto& [id, theirs] : theirIndex_) {
            if (!mineIndex_.contains(id)) {
                keepUnlessDeleted(find(baseIndex_, id), theirs);
            }
        }
        for (auto& [original, copy] : secondTexts_) {
            std::uint64_t number = 1;
            while (result_.contains(copy.item.id = idVariant(original, number))) {
                ++number;
            }
            secondIds_.emplace(original, copy.item.id);
            result_.emplace(copy.item.id, std::move(copy));
        }
    }

    /// An item that only one of the two has: new, or deleted by the other.
    void keepUnlessDeleted(const Placed* base, const Placed& kept) {
        if (base != nullptr && *base == kept) {
            return;
        }
        if (base != nullptr) {
            tell(Kind::keptChanged, kept.item.text);
        }
        result_.emplace(kept.item.id, kept);
    }

    Placed mergedItem(const Placed* base, const Placed& mine, const Placed& theirs) {
        Placed from = base != nullptr ? *base : mine;
        Placed theirCopy = theirs;
        Placed item = mine;
        if (base == nullptr) {
            // Nobody knows how it began: a text of either counts as written, and done as checked off.
            from.item.text.clear();
            from.item.done = false;
            from.item.doneAt.reset();
        }
        const bool twoTexts = adopt(line(item), line(from), line(theirCopy));
        if (twoTexts) {
            tell(Kind::keptBothTexts, item.item.text);
        }
        adopt(mark(item), mark(from), mark(theirCopy));
        adopt(place(item), place(from), place(theirCopy));
        if (twoTexts) {
            secondTexts_.emplace(item.item.id, theirCopy);
            secondTexts_.at(item.item.id).list = item.list;
            secondTexts_.at(item.item.id).item.day = item.item.day;
        }
        if (item.item.kind == MunshiItem::Kind::note && item.item.done) {
            item.item.done = false;
            item.item.doneAt.reset();
            tell(Kind::keptNote, item.item.text);
        }
        return item;
    }

    std::vector<MunshiItem> listed(List list, std::vector<MunshiItem> MunshiLedger::*items) {
        std::set<Uuid> wanted;
        for (const auto& [id, placed] : result_) {
            if (placed.list == list) {
                wanted.insert(id);
            }
        }
        std::vector<MunshiItem> merged;
        for (const Uuid& id : orderOf(base_.*items, mine_.*items, theirs_.*items, wanted)) {
            merged.push_back(result_.at(id).item);
            if (const auto second = secondIds_.find(id); second != secondIds_.end()) {
                merged.push_back(result_.at(second->second).item);
            }
        }
        return merged;
    }

    Ids orderOf(const std::vector<MunshiItem>& base, const std::vector<MunshiItem>& mine,
                const std::vector<MunshiItem>& theirs, const std::set<Uuid>& wanted) {
        const Ids mineWanted = idsIn(mine, wanted);
        const Ids theirWanted = idsIn(theirs, wanted);
        const std::set<Uuid> inMine(mineWanted.begin(), mineWanted.end());
        const Ids common = idsIn(theirs, inMine);
        std::set<Uuid> shared(common.begin(), common.end());
        const Ids baseOrder = idsIn(base, shared);
        shared = std::set<Uuid>(baseOrder.begin(), baseOrder.end());
        const Ids mineOrder = idsIn(mine, shared);
        const Ids theirOrder = idsIn(theirs, shared);
        if (mineOrder == baseOrder) {
            return mergedOrder(theirWanted, mineWanted);
        }
        const bool told = std::ranges::count(merge_.choices, Kind::keptOrder, &MunshiMergeChoice::kind) > 0;
        if (theirOrder != baseOrder && theirOrder != mineOrder && !told) {
            tell(Kind::keptOrder);
        }
        return mergedOrder(mineWanted, theirWanted);
    }

    void mergeSettings() {
        MunshiLedger& ledger = merge_.ledger;
        ledger.currentDay = mine_.currentDay;
        ledger.lastGapDays = mine_.lastGapDays;
        ledger.carryOver = mine_.carryOver;
        ledger.keepDays = mine_.keepDays;
        adoptValue(ledger.currentDay, base_.currentDay, theirs_.currentDay);
        adoptValue(ledger.lastGapDays, base_.lastGapDays, theirs_.lastGapDays);
        const bool carryDiffers = adoptValue(ledger.carryOver, base_.carryOver, theirs_.carryOver);
        const bool keepDiffers = adoptValue(ledger.keepDays, base_.keepDays, theirs_.keepDays);
        if (carryDiffers || keepDiffers) {
            tell(Kind::keptSettings);
        }
    }

    const MunshiLedger& base_;
    const MunshiLedger& mine_;
    const MunshiLedger& theirs_;
    Index baseIndex_;
    Index mineIndex_;
    Index theirIndex_;
    Index result_;
    Index secondTexts_;              ///< their text of a line, by the line's id
    std::map<Uuid, Uuid> secondIds_; ///< the id that their text got
    MunshiMerge merge_;
};

} // namespace

std::string MunshiMergeChoice::sentence() const {
    const std::string named = "\u201C" + text + "\u201D";
    switch (kind) {
    case Kind::keptBothTexts:
        return named + " was also rewritten elsewhere; both lines are kept.";
    case Kind::keptChanged:
        return named + " was changed in one place and deleted in another; it is kept.";
    case Kind::keptNote:
        return named + " became a note in one place and was done in another; it is a note.";
    case Kind::keptOrder:
        return "The lines were also moved elsewhere; they stand as they were moved here.";
    case Kind::keptSettings:
        break;
    }
    return "The ledger's settings were also changed elsewhere; those chosen here hold.";
}

MunshiMerge mergeLedgers(MunshiLedger base, MunshiLedger mine, MunshiLedger theirs, Instant now,
                         const Calendar& calendar) {
    for (MunshiLedger* const ledger : {&base, &mine, &theirs}) {
        ledger->rollIfNeeded(now, calendar);
    }
    return Merger(base, mine, theirs).merged();
}

} // namespace FellowCore
