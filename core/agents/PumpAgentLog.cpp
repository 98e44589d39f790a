#include "core/agents/PumpAgentLog.h"

#include "core/agents/PumpAgentFields.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <deque>

namespace FellowCore {

namespace {

using Value = nlohmann::ordered_json;

/// How many UTF-16 code units UTF-8 text has, or nothing when it is not UTF-8 (Unicode 15, table 3-7).
std::optional<std::size_t> utf16Length(std::string_view text) {
    std::size_t length = 0;
    for (std::size_t index = 0; index < text.size();) {
        const auto byte = [&](std::size_t at) {
            return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
        };
        const unsigned lead = byte(index);
        const std::size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        const unsigned second = byte(index + 1);
        const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
        const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
        if (size > 1 && (lead < 0xC2 || lead > 0xF4 || second < lowest || second > highest)) {
            return std::nullopt;
        }
        for (std::size_t further = 2; further < size; ++further) {
            if ((byte(index + further) & 0xC0U) != 0x80) {
                return std::nullopt;
            }
        }
        length += size == 4 ? 2 : 1;
        index += size;
    }
    return length;
}

} // namespace

std::optional<std::string> PumpAgentLog::line(const Record& record) {
    constexpr double perSecond = 1000;
    Value object;
    object[PumpAgentFields::agentKey] = record.agent;
    object[PumpAgentFields::eventKey] = rawValue(record.event);
    object[PumpAgentFields::sessionKey] = record.session;
    object[PumpAgentFields::timestampKey] = std::floor(record.timestamp * perSecond) / perSecond;
    const auto add = [&object](std::string_view key, const std::optional<std::string>& value) {
        if (value) {
            object[key] = *value;
        }
    };
    add(PumpAgentFields::applicationKey, record.application);
    add(PumpAgentFields::cwdKey, record.cwd);
    add(PumpAgentFields::ttyKey, record.tty);
    std::string text = object.dump(-1, ' ', false, Value::error_handler_t::replace);
    return text.size() <= PumpAgentFields::maximumLineBytes ? std::optional(std::move(text)) : std::nullopt;
}

std::string PumpAgentLog::appended(std::string_view existing, std::string_view line) {
    std::deque<std::string_view> kept;
    bool isUtf8 = existing.size() <= PumpAgentFields::maximumFileBytes;
    if (isUtf8) {
        forEachLine(existing, [&](std::string_view old) {
            const auto length = utf16Length(old);
            isUtf8 = isUtf8 && length;
            if (!isUtf8 || *length == 0 || *length > PumpAgentFields::maximumLineBytes) {
                return;
            }
            kept.push_back(old);
            if (kept.size() == PumpAgentFields::maximumLines) {
                kept.pop_front();
            }
        });
    }
    if (!isUtf8) {
        kept.clear();
    }
    kept.push_back(line);
    std::string text;
    text.reserve(existing.size() + line.size() + 2);
    for (const std::string_view each : kept) {
        text.append(each).push_back('\n');
    }
    return text;
}

} // namespace FellowCore
