#include "core/base/Json.h"
#include "core/containers/DevWatchDockerClient.h"
#include "core/containers/DevWatchDockerFailure.h"
#include "core/containers/DevWatchDockerID.h"

#include <nlohmann/json.hpp>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <set>

namespace FellowCore {

namespace {

constexpr int textScalarLimit = 4096;
constexpr std::size_t shortIdLength = 12; // as the engine's own tools shorten it

constexpr std::string_view idKey = "Id";
constexpr std::string_view namesKey = "Names";
constexpr std::string_view imageKey = "Image";
constexpr std::string_view stateKey = "State";
constexpr std::string_view portsKey = "Ports";
constexpr std::string_view labelsKey = "Labels";
constexpr std::string_view publicPortKey = "PublicPort";
constexpr std::string_view portTypeKey = "Type";
constexpr std::string_view projectDirectoryLabel = "com.docker.compose.project.working_dir";

[[noreturn]] void refuse(const std::string& reason) {
    throw DevWatchDockerFailure(DevWatchDockerFailure::Kind::invalidResponse, reason);
}

/// What would break a line, hide, or make its neighbours show in another order.
bool misleads(UChar32 scalar) {
    const auto category = u_charType(scalar);
    return category == U_CONTROL_CHAR || category == U_LINE_SEPARATOR || category == U_PARAGRAPH_SEPARATOR ||
           u_hasBinaryProperty(scalar, UCHAR_BIDI_CONTROL);
}

/// The text, which is UTF-8 because it came out of JSON, as it may be shown.
std::string cleaned(std::string_view text) {
    const auto source =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
    icu::UnicodeString clean;
    int scalars = 0;
    for (std::int32_t at = 0; at < source.length() && scalars < textScalarLimit;
         at = source.moveIndex32(at, 1)) {
        const UChar32 scalar = source.char32At(at);
        if (!misleads(scalar)) {
            clean.append(scalar);
            ++scalars;
        }
    }
    std::string bytes;
    return clean.toUTF8String(bytes);
}

/// A list or an object. The key must be there, but the engine is written in a language that writes an empty
/// one as null.
const Json* optionalPart(const Json& entry, std::string_view key, Json::value_t type) {
    const auto found = entry.find(key);
    if (found == entry.end() || (!found->is_null() && found->type() != type)) {
        refuse("a container has no " + std::string(key));
    }
    return found->is_null() ? nullptr : &*found;
}

const std::string& textOf(const Json& value) {
    const auto* const text = value.get_ptr<const std::string*>();
    if (text == nullptr) {
        refuse("a container has something else where a text belongs");
    }
    return *text;
}

std::string nameOf(const Json& entry, const std::string& id) {
    std::string name;
    if (const Json* const names = optionalPart(entry, namesKey, Json::value_t::array)) {
        std::ranges::for_each(*names, textOf);
        name = names->empty() ? "" : textOf(names->front());
    }
    name = cleaned(std::string_view(name).substr(name.starts_with('/') ? 1 : 0));
    return name.empty() ? id.substr(0, shortIdLength) : name;
}

/// The host's port behind one published by a container; 0 when it is not published.
std::uint16_t publicPortOf(const JsonFields& port) {
    const auto number = port.has(publicPortKey) ? port.integer(publicPortKey) : 0;
    if (number < 0 || number > UINT16_MAX) {
        refuse("a container has a port beyond the ports");
    }
    return static_cast<std::uint16_t>(number);
}

std::vector<std::uint16_t> portsOf(const Json& entry) {
    std::set<std::uint16_t> ports;
    if (const Json* const list = optionalPart(entry, portsKey, Json::value_t::array)) {
        for (const Json& value : *list) {
            const JsonFields port(value);
            const auto number = publicPortOf(port);
            if (port.string(portTypeKey) == "tcp" && number != 0) {
                ports.insert(number);
            }
        }
    }
    return {ports.begin(), ports.end()};
}

std::optional<std::string> projectDirectoryOf(const Json& entry) {
    const Json* const labels = optionalPart(entry, labelsKey, Json::value_t::object);
    if (labels == nullptr) {
        return std::nullopt;
    }
    std::ranges::for_each(*labels, textOf);
    const auto found = labels->find(projectDirectoryLabel);
    const bool absolute = found != labels->end() && textOf(*found).starts_with('/');
    return absolute ? std::optional(cleaned(textOf(*found))) : std::nullopt;
}

/// Nothing for an entry that is well built but does not count.
std::optional<DevWatchDockerContainer> containerOf(const Json& entry) {
    const JsonFields fields(entry);
    DevWatchDockerContainer container{.id = fields.string(idKey),
                                      .name = {},
                                      .image = cleaned(fields.string(imageKey)),
                                      .ports = portsOf(entry),
                                      .projectDirectory = projectDirectoryOf(entry)};
    container.name = nameOf(entry, container.id);
    const bool counts = fields.string(stateKey) == "running" && isDockerID(container.id);
    return counts ? std::optional(std::move(container)) : std::nullopt;
}

std::vector<DevWatchDockerContainer> containersOf(const Json& list) {
    if (!list.is_array() || list.size() > DevWatchDockerClient::listLimit) {
        refuse("not a list of containers, or too long a one");
    }
    std::vector<DevWatchDockerContainer> containers;
    std::set<std::string, std::less<>> ids;
    for (const Json& entry : list) {
        auto container = containerOf(entry);
        if (container && ids.insert(container->id).second) {
            containers.push_back(std::move(*container));
        }
    }
    std::ranges::sort(containers, {}, &DevWatchDockerContainer::order);
    return containers;
}

} // namespace

std::vector<DevWatchDockerContainer> DevWatchDockerClient::decodeContainers(std::string_view body) {
    if (body.size() > listByteLimit) {
        refuse("too large a list of containers");
    }
    try {
        return containersOf(parseJson(body));
    } catch (const JsonError& error) {
        refuse(error.what());
    }
}

} // namespace FellowCore
