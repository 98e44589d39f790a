#include "core/base/WholeFile.h"

#include <algorithm>
#include <cerrno>
#include <random>
#include <span>

namespace FellowCore {

namespace {

using Path = std::filesystem::path;

/// Closes a file at the end of a block, whatever happened in it.
class OpenFile {
public:
    OpenFile(FileOperations& files, int file) : files_(files), file_(file) {}
    ~OpenFile() { files_.close(file_); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int file() const { return file_; }

private:
    FileOperations& files_;
    int file_;
};

FileError::Kind readingKind(const std::error_code& code) {
    return code == std::errc::no_such_file_or_directory || code == std::errc::not_a_directory
               ? FileError::Kind::notFound
               : FileError::Kind::notReadable;
}

std::string readAll(FileOperations& files, const Path& path, std::size_t limit) {
    const FileError tooLarge(FileError::Kind::tooLarge, path,
                             "larger than " + std::to_string(limit) + " bytes");
    const OpenFile open(files, files.openForReading(path));
    const std::uintmax_t size = files.size(open.file());
    if (size > limit) {
        throw tooLarge;
    }
    // One byte more than is expected, so that the end of the file is met without growing; a file that grows
    // meanwhile is read on up to the limit.
    std::string bytes(static_cast<std::size_t>(size) + 1, '\0');
    std::size_t length = 0;
    for (;;) {
        const auto room = std::as_writable_bytes(std::span(bytes)).subspan(length);
        const std::size_t count = files.read(open.file(), room);
        length += count;
        if (length > limit) {
            throw tooLarge;
        }
        if (count == 0) {
            bytes.resize(length);
            return bytes;
        }
        if (length == bytes.size()) {
            bytes.resize(length + std::min(limit - length, length) + 1);
        }
    }
}

/// Removes a leftover while another failure is being told, which is the one worth telling; a stray file does
/// no harm.
void removeQuietly(FileOperations& files, const Path& path) noexcept {
    try {
        files.remove(path);
    } catch (const std::system_error&) {
    }
}

/// A file under a name of its own, which goes away again unless it is kept.
class TemporaryFile {
public:
    TemporaryFile(FileOperations& files, const Path& folder, unsigned mode)
        : files_(files), path_(create(files, folder, mode)) {}

    ~TemporaryFile() {
        if (!kept_) {
            removeQuietly(files_, path_);
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// Writes and flushes everything and closes the file.
    void fill(std::string_view bytes) {
        const OpenFile open(files_, file_);
        auto rest = std::as_bytes(std::span(bytes));
        while (!rest.empty()) {
            const std::size_t count = files_.write(open.file(), rest);
            if (count == 0) {
                throw std::system_error(EIO, std::generic_category(), "write");
            }
            rest = rest.subspan(count);
        }
        files_.flush(open.file());
    }

    const Path& path() const { return path_; }

    void moveTo(const Path& target) {
        files_.rename(path_, target);
        kept_ = true;
    }

private:
    /// The name need not be secret, since the file is never created through or over another; it only has to
    /// be one that nobody else is likely to hold.
    Path create(FileOperations& files, const Path& folder, unsigned mode) {
        constexpr int attempts = 16;
        std::random_device random;
        for (int attempt = 1;; ++attempt) {
            Path path = folder / (".deskfellow-" + std::to_string(random()) + std::to_string(random()));
            try {
                file_ = files.createExclusively(path, mode);
                return path;
            } catch (const std::system_error& error) {
                if (error.code() != std::errc::file_exists || attempt == attempts) {
                    throw;
                }
            }
        }
    }

    FileOperations& files_;
    int file_ = -1;
    Path path_;
    bool kept_ = false;
};

unsigned modeFor(FileMode mode, std::optional<unsigned> existing) {
    constexpr unsigned ownerReadsAndWrites = 0600;
    constexpr unsigned ownerRuns = 0700;
    switch (mode) {
    case FileMode::keep:
        return existing.value_or(ownerReadsAndWrites);
    case FileMode::ownerOnly:
        return ownerReadsAndWrites;
    case FileMode::ownerProgram:
        return ownerRuns;
    }
    return ownerReadsAndWrites;
}

void replaceWhole(FileOperations& files, const Path& path, std::string_view bytes, FileMode mode,
                  const BeforeReplacing& beforeReplacing) {
    const Path target = files.resolved(path);
    const auto existing = files.mode(target);
    const Path folder = target.has_parent_path() ? target.parent_path() : Path(".");
    {
        TemporaryFile temporary(files, folder, modeFor(mode, existing));
        temporary.fill(bytes);
        if (beforeReplacing) {
            beforeReplacing(temporary.path(), target);
        }
        temporary.moveTo(target);
    }
    try {
        files.flushFolder(folder);
    } catch (const std::system_error&) {
        // The new file stands and is flushed; only whether a loss of power brings back the old one is left
        // open, and that one is whole too. Some file systems cannot flush folders at all.
    }
}

} // namespace

std::string readWholeFile(FileOperations& files, const Path& path, std::size_t limit) {
    try {
        return readAll(files, path, limit);
    } catch (const std::system_error& error) {
        throw FileError(readingKind(error.code()), path, error.code().message());
    }
}

void makeFolderOf(FileOperations& files, const std::filesystem::path& path) {
    const std::filesystem::path folder = path.parent_path();
    if (folder.empty()) {
        return;
    }
    try {
        files.makeFolders(folder);
    } catch (const std::system_error& error) {
        throw FileError(FileError::Kind::notWritable, folder, error.code().message());
    }
}

void writeWholeFile(FileOperations& files, const Path& path, std::string_view bytes, FileMode mode,
                    const BeforeReplacing& beforeReplacing) {
    try {
        replaceWhole(files, path, bytes, mode, beforeReplacing);
    } catch (const std::system_error& error) {
        throw FileError(FileError::Kind::notWritable, path, error.what());
    }
}

bool moveToFreeName(FileOperations& files, const Path& from, const Path& to) {
    try {
        // An empty file takes the name first: renaming onto it cannot destroy what somebody puts there
        // meanwhile.
        files.close(files.createExclusively(to, 0600));
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::file_exists) {
            return false;
        }
        throw FileError(FileError::Kind::notWritable, from, error.what());
    }
    try {
        files.rename(from, to);
        return true;
    } catch (const std::system_error& error) {
        removeQuietly(files, to);
        throw FileError(FileError::Kind::notWritable, from, error.what());
    }
}

Path moveAside(FileOperations& files, const Path& path) {
    constexpr int attempts = 1000;
    for (int attempt = 1; attempt <= attempts; ++attempt) {
        Path aside = path;
        aside += attempt == 1 ? std::string(".corrupt") : ".corrupt-" + std::to_string(attempt);
        if (moveToFreeName(files, path, aside)) {
            return aside;
        }
    }
    throw FileError(FileError::Kind::notWritable, path, "too many corrupt copies beside it");
}

Path standardized(const Path& path) {
    std::error_code error;
    const Path absolute = std::filesystem::absolute(path, error);
    Path canonical = std::filesystem::weakly_canonical(error ? path : absolute, error);
    if (error) {
        // A folder that may not be looked into, or links in a circle: nothing can be opened there either.
        canonical = (absolute.empty() ? path : absolute).lexically_normal();
    }
    return canonical.has_filename() ? canonical : canonical.parent_path();
}

bool liesBelow(const Path& inner, const Path& outer) {
    const auto [innerRest, outerRest] = std::mismatch(inner.begin(), inner.end(), outer.begin(), outer.end());
    return outerRest == outer.end() && innerRest != inner.end();
}

} // namespace FellowCore
