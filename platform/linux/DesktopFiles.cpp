#include "platform/linux/DesktopFiles.h"

#include "core/base/DesktopEntry.h"
#include "core/base/FileOperations.h"
#include "core/base/Text.h"
#include "core/base/WholeFile.h"

#include <QStandardPaths>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string_view>
#include <vector>

namespace Platform {
namespace {

using Path = std::filesystem::path;

constexpr std::size_t sizeLimit = 1 << 20;
constexpr std::string_view ending = ".desktop";

/// The most important folder first.
std::vector<Path> applicationFolders() {
    std::vector<Path> folders;
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation))
        folders.emplace_back(folder.toStdString());
    return folders;
}

std::optional<DesktopFile> opened(const std::string& id, const Path& path) {
    try {
        FellowCore::PosixFileOperations files;
        return DesktopFile{id, path.string(), FellowCore::readWholeFile(files, path, sizeLimit)};
    } catch (const FellowCore::FileError&) {
        return std::nullopt; // gone since it was found, or not ours to read: as good as not installed
    }
}

/// The file in the folder, or in one below it: a "-" of an id may stand for a step down.
std::optional<Path> fileBelow(const Path& folder, const std::string& name) {
    std::error_code missing;
    if (std::filesystem::exists(folder / name, missing))
        return folder / name;
    for (auto dash = name.find('-'); dash != std::string::npos; dash = name.find('-', dash + 1)) {
        const std::string below = name.substr(0, dash);
        if (below.empty() || below == "." || below == ".." ||
            !std::filesystem::is_directory(folder / below, missing))
            continue;
        if (auto found = fileBelow(folder / below, name.substr(dash + 1)))
            return found;
    }
    return std::nullopt;
}

/// Adds the files of a folder by id, save for ids that a more important folder has.
void collect(const Path& folder, std::map<std::string, Path>& into) {
    std::error_code unreadable; // such a folder is as good as empty
    std::filesystem::recursive_directory_iterator each(
        folder, std::filesystem::directory_options::skip_permission_denied, unreadable);
    for (; !unreadable && each != std::filesystem::recursive_directory_iterator();
         each.increment(unreadable)) {
        std::string id = each->path().lexically_relative(folder).string();
        if (!id.ends_with(ending))
            continue;
        id.erase(id.size() - ending.size());
        std::ranges::replace(id, '/', '-');
        into.try_emplace(id, each->path());
    }
}

} // namespace

std::optional<DesktopFile> desktopFileWithID(const std::string& id) {
    const std::string bare = id.ends_with(ending) ? id.substr(0, id.size() - ending.size()) : id;
    if (bare.empty() || bare.find_first_of(std::string_view("/\0", 2)) != std::string::npos)
        return std::nullopt;
    for (const Path& folder : applicationFolders()) {
        if (const auto path = fileBelow(folder, bare + std::string(ending)))
            return opened(bare, *path);
    }
    return std::nullopt;
}

std::optional<DesktopFile> desktopFileWithWindowClass(const std::string& windowClass) {
    if (windowClass.empty())
        return std::nullopt;
    std::map<std::string, Path> files;
    for (const Path& folder : applicationFolders())
        collect(folder, files);
    const std::string lower = FellowCore::lowercased(windowClass);
    std::optional<DesktopFile> sameName;
    for (const auto& [id, path] : files) {
        auto file = opened(id, path);
        if (file && FellowCore::desktopEntryWindowClass(file->text) == windowClass)
            return file;
        if (file && FellowCore::lowercased(id) == lower)
            sameName = std::move(file);
    }
    return sameName;
}

} // namespace Platform
