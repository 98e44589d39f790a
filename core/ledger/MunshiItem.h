#pragma once

#include "core/base/Instant.h"
#include "core/base/Uuid.h"

#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// One line of the day book. `id` and `createdAt` never change after the item was made.
struct MunshiItem {
    enum class Kind { task, note };

    Uuid id;          ///< identity across days and undo
    std::string text; ///< one line, as `MunshiLine` bounds it
    Kind kind = Kind::task;
    bool done = false; ///< never on a note
    Instant createdAt;
    std::optional<Instant> doneAt = std::nullopt;          ///< present exactly while `done`
    std::string day = {};                                  ///< key of the day the item belongs to
    std::optional<std::string> carriedFrom = std::nullopt; ///< key of the day it was first written

    bool isOpenTask() const { return kind == Kind::task && !done; }
    bool isDoneTask() const { return kind == Kind::task && done; }

    friend bool operator==(const MunshiItem&, const MunshiItem&) = default;
};

/// The word files keep: "task", "note".
std::string_view rawValue(MunshiItem::Kind kind);
std::optional<MunshiItem::Kind> munshiKindFromRawValue(std::string_view text);

} // namespace FellowCore
