#include "core/art/PackFolder.h"

#include "core/base/WholeFile.h"

namespace FellowCore {

namespace {

std::string reasonWords(const FileError& error, std::size_t limit) {
    switch (error.kind()) {
    case FileError::Kind::notFound:
        return "the file is missing.";
    case FileError::Kind::tooLarge:
        return "the file is larger than " + std::to_string(limit >> 20U) + " MB.";
    case FileError::Kind::notReadable:
    case FileError::Kind::notWritable:
        break;
    }
    return "the file cannot be read.";
}

} // namespace

PackFolder::PackFolder(const std::filesystem::path& directory) : directory_(standardized(directory)) {}

std::filesystem::path PackFolder::locate(const std::string& file) const {
    std::filesystem::path place = standardized(directory_ / file);
    if (!liesBelow(place, directory_)) {
        throw ManifestError({ManifestError::Kind::invalidAsset, file, "the file leads out of the pack."});
    }
    return place;
}

std::string PackFolder::read(const std::string& file, std::size_t limit,
                             ManifestError::Kind unreadable) const {
    const std::filesystem::path place = locate(file);
    try {
        PosixFileOperations files;
        return readWholeFile(files, place, limit);
    } catch (const FileError& error) {
        throw ManifestError({unreadable, file, reasonWords(error, limit)});
    }
}

} // namespace FellowCore
