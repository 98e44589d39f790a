#include "core/agents/SettingsBackup.h"

#include "core/base/Json.h"

#include <nlohmann/json.hpp>
#include <sodium/utils.h>

namespace FellowCore {

namespace {

constexpr std::string_view originalKey = "original";
constexpr std::string_view installedKey = "installed";
constexpr std::string_view existedKey = "existed";
constexpr std::string_view commandKey = "command";
constexpr std::string_view scriptKey = "script";
constexpr std::string_view includeProjectKey = "includeProject";

std::string base64(const std::string& bytes) {
    constexpr int variant = sodium_base64_VARIANT_ORIGINAL;
    std::string text(sodium_base64_encoded_len(bytes.size(), variant), '\0');
    sodium_bin2base64(text.data(), text.size(), reinterpret_cast<const unsigned char*>(bytes.data()),
                      bytes.size(), variant);
    text.pop_back(); // the terminating zero
    return text;
}

std::string bytesIn(const JsonFields& fields, std::string_view key) {
    const std::string text = fields.string(key);
    std::string bytes(text.size() / 4 * 3, '\0');
    std::size_t length = 0;
    if (sodium_base642bin(reinterpret_cast<unsigned char*>(bytes.data()), bytes.size(), text.data(),
                          text.size(), nullptr, &length, nullptr, sodium_base64_VARIANT_ORIGINAL) != 0) {
        throw JsonError(JsonError::Kind::wrongType, fields.pathOf(key), "is no base64");
    }
    bytes.resize(length);
    return bytes;
}

} // namespace

std::string SettingsBackup::encoded() const {
    const Json object = {{originalKey, base64(original)}, {installedKey, base64(installed)},
                         {existedKey, existed},           {commandKey, command},
                         {scriptKey, base64(script)},     {includeProjectKey, includeProject}};
    return jsonText(object, JsonStyle::plain);
}

SettingsBackup SettingsBackup::decoded(std::string_view text) {
    const Json document = parseJson(text);
    const JsonFields fields(document);
    return {.original = bytesIn(fields, originalKey),
            .installed = bytesIn(fields, installedKey),
            .existed = fields.boolean(existedKey),
            .command = fields.string(commandKey),
            .script = bytesIn(fields, scriptKey),
            .includeProject = fields.boolean(includeProjectKey)};
}

} // namespace FellowCore
