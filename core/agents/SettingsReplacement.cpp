#include "core/agents/SettingsReplacement.h"

#include "core/agents/PumpHookSettings.h"
#include "core/agents/SettingsDocument.h"
#include "core/base/WholeFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace FellowCore {

namespace {

using Path = std::filesystem::path;
using Failure = PumpHookSettings::Failure;

/// Who may not give the file to its owner must not replace it: it would change hands.
void giveOwnerOf(const Path& existing, const Path& file) {
    struct stat wanted {};
    struct stat given {};
    if (::stat(existing.c_str(), &wanted) != 0 || ::stat(file.c_str(), &given) != 0) {
        return; // a new file is its maker's
    }
    const bool isSame = wanted.st_uid == given.st_uid && wanted.st_gid == given.st_gid;
    if (!isSame && ::chown(file.c_str(), wanted.st_uid, wanted.st_gid) != 0) {
        throw std::system_error(errno, std::generic_category(), "chown");
    }
}

} // namespace

std::optional<std::string> readSettings(FileOperations& files, const Path& path) {
    try {
        return readWholeFile(files, path, SettingsDocument::maximumBytes);
    } catch (const FileError& error) {
        if (error.kind() == FileError::Kind::notFound) {
            return std::nullopt;
        }
        if (error.kind() == FileError::Kind::tooLarge) {
            throw Failure(Failure::Case::invalid);
        }
        throw;
    }
}

void replaceSettings(FileOperations& files, const Path& path, const std::optional<std::string>& expected,
                     const std::optional<std::string>& bytes) {
    const auto requireUnchanged = [&] {
        if (readSettings(files, path) != expected) {
            throw Failure(Failure::Case::changed);
        }
    };
    if (bytes) {
        // By then the new file has been written and flushed: nothing slow stands between the look and the
        // replacement.
        writeWholeFile(files, path, *bytes, FileMode::keep, [&](const Path& newFile, const Path& target) {
            giveOwnerOf(target, newFile);
            requireUnchanged();
        });
        return;
    }
    try {
        const Path target = files.resolved(path);
        requireUnchanged();
        files.remove(target);
    } catch (const std::system_error& error) {
        throw FileError(FileError::Kind::notWritable, path, error.what());
    }
}

} // namespace FellowCore
