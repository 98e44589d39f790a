#include "core/ledger/MunshiItem.h"

namespace FellowCore {

std::string_view rawValue(MunshiItem::Kind kind) {
    return kind == MunshiItem::Kind::task ? "task" : "note";
}

std::optional<MunshiItem::Kind> munshiKindFromRawValue(std::string_view text) {
    for (const auto kind : {MunshiItem::Kind::task, MunshiItem::Kind::note}) {
        if (rawValue(kind) == text) {
            return kind;
        }
    }
    return std::nullopt;
}

} // namespace FellowCore
