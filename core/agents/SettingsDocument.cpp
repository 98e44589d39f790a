#include "core/agents/SettingsDocument.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <set>
#include <vector>

namespace FellowCore::SettingsDocument {

namespace {

/// A decimal number as its digits without zeros at either end, and the power of ten of the last digit.
struct Decimal {
    std::string digits;
    std::int64_t exponent = 0;

    friend bool operator==(const Decimal&, const Decimal&) = default;
};

/// Nothing when the exponent is beyond reckoning.
std::optional<Decimal> decimal(std::string_view token) {
    Decimal number;
    const auto power = token.find_first_of("eE");
    bool isFraction = false;
    for (const char byte : token.substr(0, power)) {
        if (byte == '.') {
            isFraction = true;
        } else if (byte != '-') {
            number.digits.push_back(byte);
            number.exponent -= isFraction ? 1 : 0;
        }
    }
    if (power != std::string_view::npos) {
        std::string_view text = token.substr(power + 1);
        text.remove_prefix(text.starts_with('+') ? 1 : 0);
        std::int32_t given = 0;
        if (std::from_chars(text.data(), text.data() + text.size(), given).ec != std::errc()) {
            return std::nullopt;
        }
        number.exponent += given;
    }
    number.digits.erase(0, number.digits.find_first_not_of('0'));
    while (number.digits.ends_with('0')) {
        number.digits.pop_back();
        ++number.exponent;
    }
    return number.digits.empty() ? Decimal() : number;
}

/// Finds what a parser would drop or round without a word.
class LossFinder {
public:
    bool isLossy = false;

    bool null() { return true; }
    bool boolean(bool) { return true; }
    bool number_integer(Json::number_integer_t) { return true; }
    bool number_unsigned(Json::number_unsigned_t) { return true; }
    bool number_float(Json::number_float_t value, const std::string& token) {
        const auto given = decimal(token);
        return keepsAll(given && given == decimal(Json(value).dump()));
    }
    bool string(std::string&) { return true; }
    bool binary(Json::binary_t&) { return true; }
    bool start_object(std::size_t) {
        keys_.emplace_back();
        return true;
    }
    bool key(std::string& name) { return keepsAll(keys_.back().insert(name).second); }
    bool end_object() {
        keys_.pop_back();
        return true;
    }
    bool start_array(std::size_t) { return true; }
    bool end_array() { return true; }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) { return false; }

private:
    bool keepsAll(bool kept) {
        isLossy = isLossy || !kept;
        return kept;
    }

    std::vector<std::set<std::string>> keys_; ///< of the objects that are open
};

} // namespace

Json parsed(std::string_view bytes) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (bytes.empty()) {
        return Json::object();
    }
    if (bytes.starts_with(byteOrderMark)) {
        throw JsonError(JsonError::Kind::notJson, {}, "begins with a byte order mark");
    }
    Json document = parseJson(bytes);
    if (!document.is_object()) {
        throw JsonError(JsonError::Kind::wrongType, {}, "is no object");
    }
    LossFinder finder;
    Json::sax_parse(bytes, &finder);
    if (finder.isLossy) {
        throw JsonError(JsonError::Kind::outOfRange, {}, "holds what would be lost in writing it again");
    }
    return document;
}

std::string text(const Json& object) {
    return jsonText(object, JsonStyle::pretty);
}

} // namespace FellowCore::SettingsDocument
