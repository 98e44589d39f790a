#include "core/devwatch/DevWatchSafetyPolicy.h"

#include "core/base/Text.h"
#include "core/devwatch/DevWatchProtectedNames.h"
#include "core/devwatch/DevWatchSystemFolders.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace FellowCore {

namespace {

bool isPlainAbsolute(std::string_view path) {
    return path.starts_with('/') && path.find('\0') == std::string_view::npos;
}

} // namespace

std::string_view rawValue(DevWatchSafetyRefusal refusal) {
    switch (refusal) {
    case DevWatchSafetyRefusal::protectedPID:
        return "protectedPID";
    case DevWatchSafetyRefusal::anotherUser:
        return "anotherUser";
    case DevWatchSafetyRefusal::incompleteIdentity:
        return "incompleteIdentity";
    case DevWatchSafetyRefusal::protectedPath:
        return "protectedPath";
    case DevWatchSafetyRefusal::protectedProcess:
        return "protectedProcess";
    case DevWatchSafetyRefusal::selfProcess:
        break;
    }
    return "selfProcess";
}

std::optional<std::string> devWatchResolvedLinks(const std::string& path) {
    std::error_code error;
    // What exists is answered faster.
    std::filesystem::path resolved = std::filesystem::canonical(path, error);
    if (error == std::errc::no_such_file_or_directory) {
        resolved = std::filesystem::weakly_canonical(path, error);
    }
    return error ? std::nullopt : std::optional(resolved.string());
}

std::optional<DevWatchSafetyRefusal>
DevWatchSafetyPolicy::pathRefusal(const std::string& executablePath) const {
    const std::string plain = std::filesystem::path(executablePath).lexically_normal().string();
    const std::optional<std::string> resolved = resolveLinks(executablePath);
    if (!resolved) {
        return DevWatchSafetyRefusal::incompleteIdentity;
    }
    if (DevWatchSystemFolders::isProtected(plain) || DevWatchSystemFolders::isProtected(*resolved)) {
        return DevWatchSafetyRefusal::protectedPath;
    }
    if (appExecutablePath && *appExecutablePath == *resolved) {
        return DevWatchSafetyRefusal::selfProcess;
    }
    return std::nullopt;
}

std::optional<DevWatchSafetyRefusal> DevWatchSafetyPolicy::refusal(const DevWatchProcess& process) const {
    const DevWatchProcessIdentity& identity = process.identity;
    if (identity.pid < devWatchLowestPid) {
        return DevWatchSafetyRefusal::protectedPID;
    }
    if (identity.uid != currentUserID) {
        return DevWatchSafetyRefusal::anotherUser;
    }
    if (identity.pid == selfPID) {
        return DevWatchSafetyRefusal::selfProcess;
    }
    if (identity.startedAtMicroseconds == 0 || trimmed(process.name).empty() ||
        !isPlainAbsolute(process.executablePath) || !isPlainAbsolute(process.workingDirectory)) {
        return DevWatchSafetyRefusal::incompleteIdentity;
    }
    if (const auto refused = pathRefusal(process.executablePath)) {
        return refused;
    }
    if (DevWatchProtectedNames::contain(process.name) ||
        DevWatchProtectedNames::contain(devWatchLastComponent(process.executablePath)) ||
        std::ranges::find(ancestors, identity) != ancestors.end()) {
        return DevWatchSafetyRefusal::protectedProcess;
    }
    return std::nullopt;
}

} // namespace FellowCore
