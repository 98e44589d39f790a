#include "cli/MomentOptions.h"

#include "core/base/Json.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>

namespace Fellow {

namespace {

using FellowCore::FolderEnvironment;
using FellowCore::SupportFolders;

std::optional<std::filesystem::path> folderFrom(const char* variable) {
    const char* const value = std::getenv(variable);
    return value == nullptr || *value == '\0' ? std::nullopt : std::optional<std::filesystem::path>(value);
}

FellowCore::Instant clockTime() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return FellowCore::Instant::fromUnix(std::chrono::duration<double>(now).count());
}

/// The user's own folders; nothing when the environment names no home.
std::optional<SupportFolders> ownFolders() {
    const auto home = folderFrom("HOME");
    if (!home || !home->is_absolute()) {
        return std::nullopt;
    }
    return SupportFolders(FolderEnvironment{.home = *home,
                                            .dataHome = folderFrom("XDG_DATA_HOME"),
                                            .cacheHome = folderFrom("XDG_CACHE_HOME"),
                                            .configHome = folderFrom("XDG_CONFIG_HOME"),
                                            .runtimeDir = {}});
}

/// The value of the option at the front of `rest`, which it takes off; nothing when there is none.
std::optional<std::string> takeValue(Arguments& rest) {
    const std::string_view word = rest.front();
    rest = rest.subspan(1);
    if (const auto equals = word.find('='); equals != std::string_view::npos) {
        return std::string(word.substr(equals + 1));
    }
    if (rest.empty()) {
        return std::nullopt;
    }
    const std::string value(rest.front());
    rest = rest.subspan(1);
    return value;
}

void readOption(MomentOptions& options, Arguments& rest) {
    const std::string name(rest.front().substr(0, rest.front().find('=')));
    if (rest.front() == "--json") {
        options.json = true;
        rest = rest.subspan(1);
    } else if (name == "--home") {
        const auto home = takeValue(rest);
        if (home && !home->empty()) {
            // Nothing of the environment counts then, so that the answer can be reproduced.
            options.folders = SupportFolders({.home = std::filesystem::absolute(*home)});
        } else {
            options.complaint = "--home wants a folder.";
        }
    } else if (name == "--at") {
        const auto value = takeValue(rest);
        const auto at = value ? FellowCore::instantFromIso8601(*value) : std::nullopt;
        options.at = at.value_or(options.at);
        options.isOtherMoment = true;
        if (!at) {
            options.complaint = "--at wants a time such as 2026-03-01T09:00:00Z.";
        }
    } else {
        options.complaint = name + " is not understood here.";
    }
}

} // namespace

MomentOptions readMomentOptions(Arguments arguments) {
    MomentOptions options;
    options.folders = ownFolders();
    options.at = clockTime();
    while (!arguments.empty() && !options.complaint) {
        readOption(options, arguments);
    }
    if (!options.folders && !options.complaint) {
        options.complaint = "HOME is not set; say --home.";
    }
    return options;
}

} // namespace Fellow
