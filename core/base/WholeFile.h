#pragma once

#include "core/base/FileOperations.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace FellowCore {

/// Reads a whole file of at most `limit` bytes. Blocks. Throws `FileError`: notFound, notReadable (also for
/// folders and special files) or tooLarge (nothing of such a file is kept).
std::string readWholeFile(FileOperations& files, const std::filesystem::path& path, std::size_t limit);

/// What becomes of an existing file's permission bits when it is replaced.
enum class FileMode {
    keep,         ///< those of the file that is replaced, 0600 for a new one
    ownerOnly,    ///< always 0600
    ownerProgram, ///< always 0700
};

/// Replaces a file whole: a new file in the same folder, flushed, then renamed over the old one, and the
/// folder flushed. A link is followed to its target, which is what gets replaced, or made when nothing stands
/// there. The folder must exist; folders and special files are refused. Blocks. When any step up to the
/// rename fails the old file stands as it was, the temporary file is removed, and `FileError` (notWritable)
/// is thrown. A folder that cannot be flushed is no failure: the new file stands, and a loss of power leaves
/// one of the two.
///
/// `beforeReplacing` is called with the finished new file and with what it is about to replace (or make), as
/// the last step before that. What it throws stops the replacement; a `std::system_error` comes out as
/// `FileError`, anything else as it is.
using BeforeReplacing =
    std::function<void(const std::filesystem::path& newFile, const std::filesystem::path& target)>;
void writeWholeFile(FileOperations& files, const std::filesystem::path& path, std::string_view bytes,
                    FileMode mode = FileMode::keep, const BeforeReplacing& beforeReplacing = {});

/// Makes the folder that the file is to stand in, and its parents. Blocks. Throws `FileError` (notWritable)
/// when it cannot be made.
void makeFolderOf(FileOperations& files, const std::filesystem::path& path);

/// Moves a file that cannot be understood out of the way, to "NAME.corrupt", "NAME.corrupt-2", ... in the
/// same folder, never over another file, and returns where it went. Throws `FileError` (notWritable) when it
/// cannot be moved.
std::filesystem::path moveAside(FileOperations& files, const std::filesystem::path& path);

/// Moves a file to a name in the same folder that nobody else holds; false, with the file left where it was,
/// when something stands there. Throws `FileError` (notWritable) when it cannot be moved.
bool moveToFreeName(FileOperations& files, const std::filesystem::path& from,
                    const std::filesystem::path& to);

/// The path made absolute and free of "." and ".." with every link resolved as far as it exists.
std::filesystem::path standardized(const std::filesystem::path& path);

/// Whether `inner`, both standardised, lies below `outer` (not equal to it).
bool liesBelow(const std::filesystem::path& inner, const std::filesystem::path& outer);

} // namespace FellowCore
