#pragma once

#include "core/base/Calendar.h"
#include "core/base/Instant.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace FellowCore {

/// The tokens of one message of the assistant. Never negative.
struct PumpTokenCounts {
    std::int64_t input = 0;
    std::int64_t output = 0;
    std::int64_t cacheCreation = 0;
    std::int64_t cacheRead = 0;

    friend bool operator==(const PumpTokenCounts&, const PumpTokenCounts&) = default;
};

/// One message of the assistant.
struct PumpUsageRecord {
    Instant at;
    PumpTokenCounts counts;

    /// Takes in another report of the same message, which the agent repeats while it grows: the earlier time,
    /// and of each counter the larger value.
    void merge(const PumpUsageRecord& other);

    friend bool operator==(const PumpUsageRecord&, const PumpUsageRecord&) = default;
};

/// Names a message without telling its identifier: the SHA-256 of a text about it.
using PumpRecordKey = std::array<std::uint8_t, 32>;

PumpRecordKey pumpRecordKey(std::string_view text);
/// 64 lower-case hexadecimal digits.
std::string hexText(const PumpRecordKey& key);
/// Nothing unless the text is that.
std::optional<PumpRecordKey> pumpRecordKeyFromHex(std::string_view text);

/// When the hour begins that holds an instant, by the calendar's clocks; the instant itself where the
/// calendar has no answer.
Instant startOfHour(const Calendar& calendar, Instant at);

/// Every message that the logs hold, with the files it was found in: a resumed session copies its history
/// into a new file, so that one message may stand in several. Forgetting one file leaves the evidence of the
/// others. Of messages that became too old only the hours remain in which there were any.
class PumpUsageRecords {
public:
    /// Adds what a file says of a message to what it said before.
    void add(const PumpRecordKey& key, std::string_view path, const PumpUsageRecord& record);
    void addHour(std::string_view path, std::int64_t unixSeconds);
    void forget(const std::set<std::string, std::less<>>& paths);
    /// Turns every file's reports from before a moment into hours. Whether there were any.
    bool prune(Instant before, const Calendar& calendar);

    /// Each message once, merged over its files, the earliest first. Valid until the next change.
    const std::vector<PumpUsageRecord>& merged();
    /// The hours of all files, each once, ascending, in seconds since 1970. Valid until the next change.
    const std::vector<std::int64_t>& hours();

    void
    forEachMessage(const std::function<void(const PumpRecordKey&)>& onMessage,
                   const std::function<void(std::string_view path, const PumpUsageRecord&)>& onCopy) const;
    void forEachFileWithHours(
        const std::function<void(std::string_view path, const std::set<std::int64_t>& hours)>& onFile) const;

private:
    using PathNumber = std::uint32_t;

    struct Copy {
        PathNumber path;
        PumpUsageRecord record;
    };
    struct KeyHash {
        /// Any bytes of a hash are a good hash.
        std::size_t operator()(const PumpRecordKey& key) const;
    };

    PathNumber numberOf(std::string_view path);
    template <class Predicate>
    void eraseCopies(Predicate isGone);

    std::unordered_map<PumpRecordKey, std::vector<Copy>, KeyHash> messages_;
    std::map<PathNumber, std::set<std::int64_t>> hoursOfPath_;
    std::vector<std::string> paths_;
    std::map<std::string, PathNumber, std::less<>> numbers_;
    std::optional<Instant> earliest_; ///< no report is older

    bool mergedIsCurrent_ = true;
    bool hoursAreCurrent_ = true;
    std::vector<PumpUsageRecord> merged_;
    std::vector<std::int64_t> hours_;
};

} // namespace FellowCore
