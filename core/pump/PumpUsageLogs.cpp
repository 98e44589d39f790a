#include "core/pump/PumpUsageLogs.h"

#include "core/base/WholeFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>
#include <tuple>
#include <utility>

namespace FellowCore {

namespace {

constexpr std::string_view extension = ".jsonl";
constexpr std::string_view rolloutPrefix = "rollout-";

/// A name that is nothing but the extension has none.
bool isLogName(std::string_view name) {
    return name.size() > extension.size() && name.ends_with(extension);
}

bool isRolloutName(std::string_view name) {
    return isLogName(name) && name.starts_with(rolloutPrefix);
}

bool isHidden(std::string_view name) {
    return name.starts_with('.');
}

} // namespace

std::string pumpIdentityText(const FileIdentity& identity) {
    return std::to_string(identity.device) + ":" + std::to_string(identity.number) + ":" +
           std::to_string(identity.bornSeconds) + ":" + std::to_string(identity.bornNanoseconds);
}

std::optional<FileIdentity> pumpIdentityFromText(std::string_view text) {
    FileIdentity identity;
    const char* at = text.data();
    const char* const end = at + text.size();
    const auto take = [&](auto& number) {
        const auto [next, error] = std::from_chars(at, end, number);
        at = next;
        return error == std::errc{};
    };
    const auto takeColon = [&] { return at != end && *at++ == ':'; };
    const bool isWhole = take(identity.device) && takeColon() && take(identity.number) && takeColon() &&
                         take(identity.bornSeconds) && takeColon() && take(identity.bornNanoseconds) &&
                         at == end;
    return isWhole ? std::optional(identity) : std::nullopt;
}

PumpUsageLogs::PumpUsageLogs(FileOperations& files, std::filesystem::path root)
    : files_(files), root_(std::move(root)) {}

bool PumpUsageLogs::begin() {
    count_ = 0;
    resolvedRoot_ = standardized(root_);
    try {
        const auto status = files_.status(resolvedRoot_);
        const bool isFolder = status && status->kind == FileStatus::Kind::folder;
        state_ = isFolder ? PumpSourceState::ready : PumpSourceState::missing;
        return isFolder;
    } catch (const std::system_error&) {
        state_ = PumpSourceState::unreadable; // it may well be there, behind a folder that is closed to us
        return false;
    }
}

void PumpUsageLogs::finish() {
    const auto end = found_.begin() + static_cast<std::ptrdiff_t>(count_);
    std::sort(found_.begin(), end, [](const PumpLogFile& left, const PumpLogFile& right) {
        return left.modified != right.modified ? left.modified > right.modified : left.path < right.path;
    });
    // A link may lead to what is listed by itself too.
    const auto last = std::unique(found_.begin(), end, [](const PumpLogFile& left, const PumpLogFile& right) {
        return left.path == right.path;
    });
    count_ = static_cast<std::size_t>(last - found_.begin());
    if (count_ == 0 && state_ == PumpSourceState::ready) {
        state_ = PumpSourceState::missing;
    }
}

void PumpUsageLogs::list(const std::filesystem::path& folder,
                         const std::function<void(std::string_view, const FileStatus&)>& onEntry) {
    try {
        files_.list(folder, onEntry);
    } catch (const std::system_error&) {
        state_ = PumpSourceState::unreadable; // what the others give is kept
    }
}

void PumpUsageLogs::findByProject() {
    if (!begin()) {
        return;
    }
    list(resolvedRoot_, [this](std::string_view name, const FileStatus& status) {
        if (status.kind == FileStatus::Kind::folder) {
            listProject(resolvedRoot_ / name);
        } else if (status.kind == FileStatus::Kind::link) {
            if (const auto target = targetOf(resolvedRoot_ / name, FileStatus::Kind::folder)) {
                listProject(target->path);
            }
        }
    });
    finish();
}

void PumpUsageLogs::listProject(const std::filesystem::path& folder) {
    list(folder, [&](std::string_view name, const FileStatus& status) {
        if (isLogName(name)) {
            take(folder, name, status);
        }
    });
}

void PumpUsageLogs::findRollouts() {
    if (!begin()) {
        return;
    }
    std::vector<std::filesystem::path> folders{resolvedRoot_};
    while (!folders.empty()) {
        const std::filesystem::path folder = std::move(folders.back());
        folders.pop_back();
        listRollouts(folder, folders);
    }
    finish();
}

void PumpUsageLogs::listRollouts(const std::filesystem::path& folder,
                                 std::vector<std::filesystem::path>& folders) {
    list(folder, [&](std::string_view name, const FileStatus& status) {
        if (isHidden(name)) {
            return;
        }
        if (status.kind == FileStatus::Kind::folder) {
            folders.push_back(folder / name);
        } else if (isRolloutName(name)) {
            take(folder, name, status);
        }
    });
}

void PumpUsageLogs::take(const std::filesystem::path& folder, std::string_view name,
                         const FileStatus& status) {
    if (status.kind == FileStatus::Kind::file) {
        add(folder.native(), name, status);
    } else if (status.kind == FileStatus::Kind::link) {
        if (const auto target = targetOf(folder / name, FileStatus::Kind::file)) {
            add(target->path.parent_path().native(), target->path.filename().native(), target->status);
        }
    }
}

std::optional<PumpUsageLogs::Target> PumpUsageLogs::targetOf(const std::filesystem::path& link,
                                                             FileStatus::Kind kind) {
    std::filesystem::path path = standardized(link);
    if (!liesBelow(path, resolvedRoot_)) {
        return std::nullopt;
    }
    try {
        const auto status = files_.status(path);
        return status && status->kind == kind ? std::optional(Target{std::move(path), *status})
                                              : std::nullopt;
    } catch (const std::system_error&) {
        return std::nullopt; // a link that leads in a circle, for one, is no log
    }
}

void PumpUsageLogs::add(std::string_view folder, std::string_view name, const FileStatus& status) {
    if (count_ == found_.size()) {
        found_.emplace_back();
    }
    PumpLogFile& file = found_[count_++];
    file.path.assign(folder).append("/").append(name);
    file.identity = status.identity;
    file.size = status.size;
    file.modified = status.modified;
}

} // namespace FellowCore
