#include "core/base/Json.h"
#include "core/ledger/MunshiLine.h"
#include "core/ledger/MunshiStore.h"
#include "fuzz/Require.h"

#include <cstdint>
#include <set>
#include <string_view>

using namespace FellowCore;

namespace {

// What must hold of every ledger that came from a file, whatever the file held, and of what is made of it.
void requireSane(const MunshiLedger& ledger) {
    std::set<Uuid> ids;
    for (const auto* const list : {&ledger.today, &ledger.history}) {
        for (const MunshiItem& item : *list) {
            require(ids.insert(item.id).second);
            require(item.text.size() <= MunshiLine::maximumBytes &&
                    MunshiLine::bounded(item.text) == item.text);
            require(item.text.find('\n') == std::string::npos);
            require(item.doneAt.has_value() == item.done);
            require(!item.done || item.kind == MunshiItem::Kind::task);
        }
    }
    require(!ledger.markdown().empty() && !ledger.tooltip().empty() && !ledger.countLabel().empty());
    require(MunshiStore::decoded(MunshiStore::encoded(ledger)) == MunshiStore::asStored(ledger));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Calendar calendar = Calendar::utc();
    static const UuidSource sameId = [] { return Uuid{}; };
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const Instant now{794048400}; // 2026-03-01T09:00:00Z
    for (const std::string& line : munshiLines(text, 20)) {
        MunshiLedger ledger(now, calendar);
        ledger.add(line, now, calendar, sameId);
        requireSane(ledger);
    }
    try {
        const MunshiLedger base = MunshiStore::decoded(text);
        requireSane(base);
        MunshiLedger mine = base;
        mine.rollIfNeeded(now, calendar);
        requireSane(mine);
        mine.search(text.substr(0, 20));
        MunshiLedger theirs = base;
        if (!theirs.today.empty()) {
            theirs.setDone(theirs.today.back().id, true, now);
            theirs.edit(theirs.today.front().id, "theirs");
            mine.edit(theirs.today.front().id, "- mine");
        }
        requireSane(mergeLedgers(base, mine, theirs, now + 86400, calendar).ledger);
    } catch (const JsonError&) {
        // A refusal is an answer.
    }
    return 0;
}
