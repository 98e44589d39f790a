#include "core/containers/DevWatchDockerClient.h"

#include "core/base/Json.h"
#include "core/containers/DevWatchDockerFailure.h"
#include "core/containers/DevWatchDockerID.h"
#include "core/containers/DevWatchDockerSocketPolicy.h"
#include "core/containers/DevWatchHTTPFailure.h"
#include "core/containers/UnixHTTPRequest.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <sys/stat.h>
#include <unistd.h>

namespace FellowCore {

namespace {

using Kind = DevWatchDockerFailure::Kind;

constexpr Seconds requestTimeout = 2;
/// What the head and the framing of chunks may add to a document.
constexpr std::size_t framingRoom = 65536;
/// The other answers are small.
constexpr std::size_t answerByteLimit = 65536;
constexpr std::string_view versionKey = "ApiVersion";

void requireAvailable(const DevWatchDockerClient& client) {
    if (!client.available()) {
        throw DevWatchDockerFailure(Kind::unavailable, "The user has no container engine.");
    }
}

/// The body of an answer with status 200.
std::string bodyOf(const DevWatchDockerClient& client, std::string_view target, std::size_t maxBytes) {
    DevWatchHTTPResponse response;
    try {
        response = unixHTTPRequest(client.socketPath, "GET", target, requestTimeout, maxBytes);
    } catch (const DevWatchHTTPFailure& failure) {
        throw DevWatchDockerFailure(Kind::unavailable, failure.what());
    }
    if (response.status != 200) {
        throw DevWatchDockerFailure::ofStatus(response.status);
    }
    return response.body;
}

std::string apiVersionOf(const DevWatchDockerClient& client) {
    const std::string body = bodyOf(client, "/version", answerByteLimit);
    try {
        return JsonFields(parseJson(body)).string(versionKey);
    } catch (const JsonError& error) {
        throw DevWatchDockerFailure(Kind::invalidResponse, error.what());
    }
}

std::optional<std::int64_t> versionNumber(std::string_view digits) {
    std::int64_t number = 0;
    const auto* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    const bool whole = error == std::errc() && stop == end && digits.front() != '-';
    return whole ? std::optional(number) : std::nullopt;
}

} // namespace

DevWatchDockerClient::DevWatchDockerClient(const std::string& home)
    : DevWatchDockerClient(home + std::string(DevWatchDockerSocketPolicy::homeSocket), home) {}

DevWatchDockerClient::DevWatchDockerClient(std::string socket, std::string home,
                                           std::optional<std::string> runtime)
    : socketPath(std::move(socket)), homeDirectory(std::move(home)), runtimeDirectory(std::move(runtime)) {}

bool DevWatchDockerClient::available() const {
    struct stat status = {};
    return ::lstat(socketPath.c_str(), &status) == 0 &&
           DevWatchDockerSocketPolicy::allows({.path = socketPath,
                                               .ownerUserID = status.st_uid,
                                               .isSocket = S_ISSOCK(status.st_mode),
                                               .isSymbolicLink = S_ISLNK(status.st_mode),
                                               .currentUserID = ::getuid(),
                                               .homeDirectory = homeDirectory,
                                               .runtimeDirectory = runtimeDirectory});
}

std::vector<DevWatchDockerContainer> DevWatchDockerClient::containers() const {
    requireAvailable(*this);
    return decodeContainers(bodyOf(*this, "/containers/json?all=false", listByteLimit + framingRoom));
}

void DevWatchDockerClient::stop(const DevWatchDockerContainer& confirmed,
                                const std::function<bool()>& stillAuthorized) const {
    if (!isDockerID(confirmed.id)) {
        throw DevWatchDockerFailure(Kind::changedContainer, "The container has no valid id.");
    }
    requireAvailable(*this);
    if (!supportsTermStop(apiVersionOf(*this))) {
        throw DevWatchDockerFailure(Kind::unsupportedAPI, "The engine is too old for a polite stop.");
    }
    const auto fresh = containers();
    if (std::ranges::find(fresh, confirmed) == fresh.end()) {
        throw DevWatchDockerFailure(Kind::changedContainer, "The container is not as it was confirmed.");
    }
    if (!stillAuthorized || !stillAuthorized()) {
        throw DevWatchDockerFailure(Kind::changedContainer, "The confirmation was withdrawn.");
    }
    const auto response =
        unixHTTPRequest(socketPath, "POST", "/containers/" + confirmed.id + "/stop?t=-1&signal=SIGTERM",
                        requestTimeout, answerByteLimit);
    if (response.status != 204 && response.status != 304) {
        throw DevWatchDockerFailure::ofStatus(response.status);
    }
}

bool DevWatchDockerClient::supportsTermStop(std::string_view version) {
    const auto point = version.find('.');
    if (point == std::string_view::npos) {
        return false;
    }
    const auto major = versionNumber(version.substr(0, point));
    const auto minor = versionNumber(version.substr(point + 1));
    return major && minor && (*major > 1 || (*major == 1 && *minor >= 42));
}

} // namespace FellowCore
