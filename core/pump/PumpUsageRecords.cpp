#include "core/pump/PumpUsageRecords.h"

#include <sodium.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

namespace FellowCore {

void PumpUsageRecord::merge(const PumpUsageRecord& other) {
    at = std::min(at, other.at);
    counts.input = std::max(counts.input, other.counts.input);
    counts.output = std::max(counts.output, other.counts.output);
    counts.cacheCreation = std::max(counts.cacheCreation, other.counts.cacheCreation);
    counts.cacheRead = std::max(counts.cacheRead, other.counts.cacheRead);
}

PumpRecordKey pumpRecordKey(std::string_view text) {
    static_assert(std::tuple_size_v<PumpRecordKey> == crypto_hash_sha256_BYTES);
    PumpRecordKey key;
    crypto_hash_sha256(key.data(), reinterpret_cast<const unsigned char*>(text.data()), text.size());
    return key;
}

std::string hexText(const PumpRecordKey& key) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * key.size());
    for (const std::uint8_t byte : key) {
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

std::optional<PumpRecordKey> pumpRecordKeyFromHex(std::string_view text) {
    PumpRecordKey key;
    std::size_t length = 0;
    if (text.size() != 2 * key.size() ||
        sodium_hex2bin(key.data(), key.size(), text.data(), text.size(), nullptr, &length, nullptr) != 0 ||
        length != key.size()) {
        return std::nullopt;
    }
    return key;
}

Instant startOfHour(const Calendar& calendar, Instant at) {
    constexpr Seconds hour = 3600;
    if (!calendar.day(at)) {
        return at;
    }
    const Seconds offset = calendar.utcOffset(at);
    return Instant::fromUnix(std::floor((at.toUnix() + offset) / hour) * hour - offset);
}

std::size_t PumpUsageRecords::KeyHash::operator()(const PumpRecordKey& key) const {
    std::size_t hash = 0;
    std::memcpy(&hash, key.data(), sizeof hash);
    return hash;
}

PumpUsageRecords::PathNumber PumpUsageRecords::numberOf(std::string_view path) {
    const auto known = numbers_.find(path);
    if (known != numbers_.end()) {
        return known->second;
    }
    const auto number = static_cast<PathNumber>(paths_.size());
    paths_.emplace_back(path);
    numbers_.emplace(path, number);
    return number;
}

void PumpUsageRecords::add(const PumpRecordKey& key, std::string_view path, const PumpUsageRecord& record) {
    const PathNumber number = numberOf(path);
    std::vector<Copy>& copies = messages_[key];
    const auto known =
        std::find_if(copies.begin(), copies.end(), [=](const Copy& copy) { return copy.path == number; });
    if (known != copies.end()) {
        known->record.merge(record);
    } else {
        copies.push_back({number, record});
    }
    earliest_ = std::min(record.at, earliest_.value_or(record.at));
    mergedIsCurrent_ = false;
}

void PumpUsageRecords::addHour(std::string_view path, std::int64_t unixSeconds) {
    hoursOfPath_[numberOf(path)].insert(unixSeconds);
    hoursAreCurrent_ = false;
}

/// Erases every copy that the predicate picks, and the messages that are left without one.
template <class Predicate>
void PumpUsageRecords::eraseCopies(Predicate isGone) {
    for (auto message = messages_.begin(); message != messages_.end();) {
        std::erase_if(message->second, isGone);
        message = message->second.empty() ? messages_.erase(message) : std::next(message);
    }
}

void PumpUsageRecords::forget(const std::set<std::string, std::less<>>& paths) {
    std::vector<bool> gone(paths_.size());
    for (const std::string& path : paths) {
        if (const auto known = numbers_.find(path); known != numbers_.end()) {
            gone[known->second] = true;
        }
    }
    std::erase_if(hoursOfPath_, [&](const auto& entry) { return gone[entry.first]; });
    eraseCopies([&](const Copy& copy) { return gone[copy.path]; });
    mergedIsCurrent_ = hoursAreCurrent_ = false;
}

bool PumpUsageRecords::prune(Instant before, const Calendar& calendar) {
    if (!earliest_ || !(*earliest_ < before)) {
        return false;
    }
    earliest_.reset();
    eraseCopies([&](const Copy& copy) {
        if (!(copy.record.at < before)) {
            earliest_ = std::min(copy.record.at, earliest_.value_or(copy.record.at));
            return false;
        }
        const Instant hour = startOfHour(calendar, copy.record.at);
        hoursOfPath_[copy.path].insert(static_cast<std::int64_t>(std::floor(hour.toUnix())));
        return true;
    });
    mergedIsCurrent_ = hoursAreCurrent_ = false;
    return true;
}

const std::vector<PumpUsageRecord>& PumpUsageRecords::merged() {
    if (!mergedIsCurrent_) {
        merged_.clear();
        merged_.reserve(messages_.size());
        for (const auto& [key, copies] : messages_) {
            PumpUsageRecord whole = copies.front().record;
            for (const Copy& copy : copies) {
                whole.merge(copy.record);
            }
            merged_.push_back(whole);
        }
        std::sort(
            merged_.begin(), merged_.end(),
            [](const PumpUsageRecord& left, const PumpUsageRecord& right) { return left.at < right.at; });
        mergedIsCurrent_ = true;
    }
    return merged_;
}

const std::vector<std::int64_t>& PumpUsageRecords::hours() {
    if (!hoursAreCurrent_) {
        hours_.clear();
        for (const auto& [path, hours] : hoursOfPath_) {
            hours_.insert(hours_.end(), hours.begin(), hours.end());
        }
        std::sort(hours_.begin(), hours_.end());
        hours_.erase(std::unique(hours_.begin(), hours_.end()), hours_.end());
        hoursAreCurrent_ = true;
    }
    return hours_;
}

void PumpUsageRecords::forEachMessage(
    const std::function<void(const PumpRecordKey&)>& onMessage,
    const std::function<void(std::string_view, const PumpUsageRecord&)>& onCopy) const {
    for (const auto& [key, copies] : messages_) {
        onMessage(key);
        for (const Copy& copy : copies) {
            onCopy(paths_[copy.path], copy.record);
        }
    }
}

void PumpUsageRecords::forEachFileWithHours(
    const std::function<void(std::string_view, const std::set<std::int64_t>&)>& onFile) const {
    for (const auto& [path, hours] : hoursOfPath_) {
        onFile(paths_[path], hours);
    }
}

} // namespace FellowCore
