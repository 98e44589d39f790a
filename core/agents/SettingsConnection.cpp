#include "core/agents/SettingsConnection.h"

#include "core/agents/PumpHookSettings.h"
#include "core/agents/SettingsDocument.h"
#include "core/agents/SettingsReplacement.h"
#include "core/base/Json.h"
#include "core/base/WholeFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <utility>
#include <vector>

namespace FellowCore {

namespace {

using Path = std::filesystem::path;
using Failure = PumpHookSettings::Failure;

/// A backup holds the settings twice, in base64, and a script.
constexpr std::size_t maximumBackupBytes = 4 * SettingsDocument::maximumBytes;

std::optional<std::string> bytesIfAny(FileOperations& files, const Path& path) {
    try {
        return readWholeFile(files, path, maximumBackupBytes);
    } catch (const FileError& error) {
        if (error.kind() == FileError::Kind::notFound) {
            return std::nullopt;
        }
        throw;
    }
}

void removeFile(FileOperations& files, const Path& path) {
    try {
        files.remove(path);
    } catch (const std::system_error& error) {
        throw FileError(FileError::Kind::notWritable, path, error.what());
    }
}

void closeToOthers(const Path& folder) {
    struct stat status {};
    if (::stat(folder.c_str(), &status) != 0 ||
        ((status.st_mode & 07777U) != 0700 && ::chmod(folder.c_str(), 0700) != 0)) {
        throw FileError(FileError::Kind::notWritable, folder,
                        std::error_code(errno, std::generic_category()).message());
    }
}

/// Files that were written beside the settings, put back as they were unless the whole thing is kept.
class WrittenFiles {
public:
    explicit WrittenFiles(FileOperations& files) : files_(files) {}
    ~WrittenFiles() {
        while (!kept_ && !before_.empty()) {
            putBack(before_.back());
            before_.pop_back();
        }
    }
    WrittenFiles(const WrittenFiles&) = delete;
    WrittenFiles& operator=(const WrittenFiles&) = delete;

    void write(const Path& path, const std::optional<std::string>& before, const std::string& bytes,
               FileMode mode) {
        writeWholeFile(files_, path, bytes, mode);
        before_.push_back({path, before, mode});
    }
    void keep() { kept_ = true; }

private:
    struct Before {
        Path path;
        std::optional<std::string> bytes;
        FileMode mode;
    };

    void putBack(const Before& before) noexcept {
        try {
            if (before.bytes) {
                writeWholeFile(files_, before.path, *before.bytes, before.mode);
            } else {
                files_.remove(before.path);
            }
        } catch (const std::exception&) {
            // Another failure is being told, which is the one worth telling; what is left does nothing on its
            // own, since the settings do not name it, and disconnecting clears it.
        }
    }

    FileOperations& files_;
    std::vector<Before> before_;
    bool kept_ = false;
};

/// What the settings become: nothing when there was no file and nothing is left in it.
std::optional<std::string> restored(std::string_view current, const SettingsBackup& backup,
                                    const SettingsConnection::Restore& restore) {
    std::string bytes = restore(current, backup);
    return !backup.existed && bytes == backup.original ? std::nullopt : std::optional(std::move(bytes));
}

} // namespace

SettingsConnection::SettingsConnection(FileOperations& files, Places places)
    : files_(files), places_(std::move(places)) {}

bool SettingsConnection::connected() const {
    try {
        return files_.mode(places_.backup).has_value();
    } catch (const std::system_error& error) {
        throw FileError(FileError::Kind::notReadable, places_.backup, error.what());
    }
}

std::optional<SettingsBackup> SettingsConnection::backup() const {
    const auto text = bytesIfAny(files_, places_.backup);
    if (!text) {
        return std::nullopt;
    }
    try {
        return SettingsBackup::decoded(*text);
    } catch (const JsonError&) {
        throw Failure(Failure::Case::missingBackup);
    }
}

std::optional<std::string> SettingsConnection::script() const {
    return bytesIfAny(files_, places_.script);
}

/// What is at the helper's place may only be overwritten if it is known to have come from here.
void SettingsConnection::requireOurs(const std::optional<std::string>& found, const Helper& helper,
                                     const std::string* installed) const {
    if (found && *found != helper.script && *found != helper.idleScript &&
        (installed == nullptr || *found != *installed)) {
        throw Failure(Failure::Case::editedHelper);
    }
}

void SettingsConnection::makeFolders() const {
    for (const Path* file : {&places_.backup, &places_.script, &places_.settings}) {
        makeFolderOf(files_, *file);
    }
    if (places_.privateFolder) {
        closeToOthers(*places_.privateFolder);
    }
}

void SettingsConnection::connect(const Helper& helper, const Prepare& prepare) const {
    if (auto existing = backup()) {
        reconnect(std::move(*existing), helper);
        return;
    }
    const auto original = readSettings(files_, places_.settings);
    const Installation installation = prepare(original.value_or(""));
    const auto scriptBefore = script();
    requireOurs(scriptBefore, helper, nullptr);
    const SettingsBackup backup{.original = original.value_or(""),
                                .installed = installation.installed,
                                .existed = original.has_value(),
                                .command = installation.command,
                                .script = helper.script,
                                .includeProject = helper.includeProject};
    makeFolders();
    WrittenFiles written(files_);
    written.write(places_.backup, std::nullopt, backup.encoded(), FileMode::ownerOnly);
    written.write(places_.script, scriptBefore, helper.script, FileMode::ownerProgram);
    replaceSettings(files_, places_.settings, original, installation.installed);
    written.keep();
}

void SettingsConnection::reconnect(SettingsBackup backup, const Helper& helper) const {
    const auto scriptBefore = script();
    requireOurs(scriptBefore, helper, &backup.script);
    const std::string before = backup.encoded();
    backup.script = helper.script;
    backup.includeProject = helper.includeProject;
    makeFolders();
    WrittenFiles written(files_);
    written.write(places_.script, scriptBefore, helper.script, FileMode::ownerProgram);
    written.write(places_.backup, before, backup.encoded(), FileMode::ownerOnly);
    written.keep();
}

void SettingsConnection::disconnect(std::string_view idleScript, const Restore& restore) const {
    const auto backup = this->backup();
    if (!backup) {
        return;
    }
    if (const auto current = readSettings(files_, places_.settings)) {
        const auto after = restored(*current, *backup, restore);
        if (after != current) {
            replaceSettings(files_, places_.settings, current, after);
        }
    }
    rebaseOther(*backup, restore);
    if (script() == backup->script) {
        writeWholeFile(files_, places_.script, idleScript, FileMode::ownerProgram);
    }
    removeFile(files_, places_.backup);
}

/// The bytes that the other connector keeps still have in them what was taken out of the settings just now:
/// it must neither put that back nor take its absence for an edit.
void SettingsConnection::rebaseOther(const SettingsBackup& backup, const Restore& restore) const {
    const auto text = places_.otherBackup ? bytesIfAny(files_, *places_.otherBackup) : std::nullopt;
    if (!text) {
        return;
    }
    SettingsBackup other;
    try {
        other = SettingsBackup::decoded(*text);
    } catch (const JsonError&) {
        return; // its own connector will refuse it, and says so to the user
    }
    if (other.existed) {
        const auto original = restored(other.original, backup, restore);
        other.existed = original.has_value();
        other.original = original.value_or("");
    }
    other.installed = restored(other.installed, backup, restore).value_or("");
    if (const std::string rebased = other.encoded(); rebased != *text) {
        writeWholeFile(files_, *places_.otherBackup, rebased, FileMode::ownerOnly);
    }
}

} // namespace FellowCore
