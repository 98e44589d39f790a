#pragma once

#include "core/base/Instant.h"
#include "core/base/JsonDepth.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

using Json = nlohmann::json;

/// A document or a field that is not what it should be; `field` names where ("poses.idle"), empty for the
/// document.
class JsonError : public std::runtime_error {
public:
    enum class Kind { notJson, missing, wrongType, outOfRange };

    JsonError(Kind kind, std::string field, const std::string& reason);

    Kind kind() const { return kind_; }
    const std::string& field() const { return field_; }

private:
    Kind kind_;
    std::string field_;
};

/// Parses one JSON document: UTF-8, nothing after it, nested at most `maximumJsonDepth` deep, no number too
/// large for a double. Throws `JsonError::notJson` for anything else, with a sentence that quotes nothing of
/// the text.
Json parseJson(std::string_view text);

/// Reads typed fields of one object and names the field in every error. Does not own the object.
class JsonFields {
public:
    /// Throws wrongType unless `value` is an object. `path` is put before field names in errors.
    explicit JsonFields(const Json& value, std::string path = {});

    bool has(std::string_view key) const; ///< present and not null
    /// Throws missing when absent or null; so do all that follow.
    const Json& value(std::string_view key) const;
    std::string string(std::string_view key) const;
    bool boolean(std::string_view key) const;
    /// A whole number; 3.0 counts, 3.5 is wrongType, beyond 64 bits outOfRange.
    std::int64_t integer(std::string_view key) const;
    /// Always finite; throws outOfRange otherwise.
    double number(std::string_view key) const;
    JsonFields object(std::string_view key) const;
    std::vector<std::string> strings(std::string_view key) const;
    const std::string& path() const { return path_; }
    std::string pathOf(std::string_view key) const;

private:
    const Json* value_;
    std::string path_;
};

/// How a file writes its dates.
enum class JsonDateForm {
    secondsSinceReference, ///< a number, seconds since 2001-01-01 UTC; the default
    iso8601,               ///< "2026-11-21T07:00:00Z", whole seconds, UTC
};

/// In ISO 8601, null for an instant that `iso8601Text` cannot write.
Json jsonDate(Instant at, JsonDateForm form = JsonDateForm::secondsSinceReference);
/// Throws wrongType when it is not of that form. A number may be non-finite only if the document could carry
/// it.
Instant instantFromJson(const Json& value, std::string_view field,
                        JsonDateForm form = JsonDateForm::secondsSinceReference);

/// ISO 8601 in UTC, "2026-11-21T07:00:00Z", with the second rounded down; empty when the instant is not
/// finite or outside the years 0 to 9999. Reading also takes fractions of a second and offsets such as
/// +05:30.
std::string iso8601Text(Instant at);
std::optional<Instant> instantFromIso8601(std::string_view text);

enum class JsonStyle { plain, pretty };
/// Keys sorted; pretty means two spaces of indentation and a newline at the end. Bytes that are not UTF-8 are
/// replaced, never thrown on.
std::string jsonText(const Json& value, JsonStyle style);

} // namespace FellowCore
