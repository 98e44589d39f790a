#pragma once

#include "core/base/Calendar.h"
#include "core/ledger/MunshiLedger.h"

#include <string>
#include <vector>

namespace FellowCore {

/// Something that two programs changed differently, so that one had to be preferred; worth telling the user.
struct MunshiMergeChoice {
    enum class Kind {
        keptBothTexts, ///< one line was written anew in both: there are two lines now
        keptChanged,   ///< deleted in one and changed in the other: it stays
        keptNote,      ///< made a note in one and checked off in the other: it is a note
        keptOrder,     ///< both moved lines about: mine stand as they did
        keptSettings,  ///< both changed the same setting: mine holds
    };

    Kind kind = Kind::keptBothTexts;
    std::string text = {}; ///< the line it is about; empty for order and settings

    /// One short sentence for the user.
    std::string sentence() const;

    friend bool operator==(const MunshiMergeChoice&, const MunshiMergeChoice&) = default;
};

struct MunshiMerge {
    MunshiLedger ledger;
    std::vector<MunshiMergeChoice> choices; ///< empty when nothing contradicted
};

/// Brings together what two programs made of one ledger. Every line that either added stays; what only one of
/// them changed, moved or deleted is so in the result; where both changed one thing, no text is lost and the
/// choice is told. `base` is the ledger from which both began (an empty one when there was none). All three
/// are first turned over to the day of `now`, so that it does not matter which program saw midnight.
MunshiMerge mergeLedgers(MunshiLedger base, MunshiLedger mine, MunshiLedger theirs, Instant now,
                         const Calendar& calendar);

} // namespace FellowCore
