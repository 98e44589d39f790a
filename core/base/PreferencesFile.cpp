#include "core/base/PreferencesFile.h"

#include "core/base/Json.h"
#include "core/base/WholeFile.h"

namespace FellowCore {

PreferencesFile::PreferencesFile(FileOperations& files, std::filesystem::path path)
    : files_(files), path_(std::move(path)) {}

std::optional<std::string> PreferencesFile::load(MemoryPreferences& into) {
    std::string fault;
    try {
        into.load(readWholeFile(files_, path_, sizeLimit));
        return std::nullopt;
    } catch (const FileError& error) {
        if (error.kind() == FileError::Kind::notFound) {
            return std::nullopt;
        }
        if (error.kind() != FileError::Kind::tooLarge) {
            writable_ = false;
            return std::string("The preferences cannot be read and will not be saved: ") + error.what();
        }
        fault = error.what();
    } catch (const JsonError& error) {
        fault = path_.string() + ": " + error.what();
    }
    try {
        const auto aside = moveAside(files_, path_);
        return "The preferences could not be understood and were moved to " + aside.string() + ": " + fault;
    } catch (const FileError& error) {
        writable_ = false;
        return "The preferences could not be understood and will not be saved: " + fault + "; " +
               error.what();
    }
}

void PreferencesFile::save(const std::string& document) const {
    if (!writable_) {
        throw FileError(FileError::Kind::notWritable, path_, "holds settings that could not be read");
    }
    try {
        files_.makeFolders(path_.parent_path());
    } catch (const std::system_error& error) {
        throw FileError(FileError::Kind::notWritable, path_, error.what());
    }
    writeWholeFile(files_, path_, document, FileMode::ownerOnly);
}

} // namespace FellowCore
