#pragma once

#include "core/base/Instant.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace FellowCore {

/// What went wrong with a file, with the path in `what()`.
class FileError : public std::runtime_error {
public:
    enum class Kind { notFound, notReadable, tooLarge, notWritable };

    FileError(Kind kind, const std::filesystem::path& path, const std::string& reason);

    Kind kind() const { return kind_; }
    const std::filesystem::path& path() const { return path_; }

private:
    Kind kind_;
    std::filesystem::path path_;
};

/// Tells a file from every other that ever takes its name. On a file system that does not say when a file was
/// made, two that follow each other may look alike.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;         ///< of the file on its device
    std::int64_t bornSeconds = 0;     ///< since 1970
    std::int64_t bornNanoseconds = 0; ///< 0...999999999

    friend auto operator<=>(const FileIdentity&, const FileIdentity&) = default;
};

/// What stands under a name, without a look inside.
struct FileStatus {
    enum class Kind { file, folder, link, other };

    Kind kind = Kind::other;
    FileIdentity identity;
    std::uintmax_t size = 0; ///< bytes
    Instant modified;
};

/// The file calls that stores make, one virtual each, so that a test can make any of them fail. All block.
/// Every operation throws `std::system_error` with the system's code when it fails.
class FileOperations {
public:
    virtual ~FileOperations() = default;

    /// Opens an existing file for reading; directories and special files are refused.
    virtual int openForReading(const std::filesystem::path& path) = 0;
    /// Creates a new file (never an existing one, never through a link) with exactly this mode, whatever the
    /// umask.
    virtual int createExclusively(const std::filesystem::path& path, unsigned mode) = 0;
    /// How many bytes were read, 0 at the end of the file.
    virtual std::size_t read(int file, std::span<std::byte> into) = 0;
    /// The same from a place of the caller's choice, without moving the place where `read` goes on.
    virtual std::size_t readAt(int file, std::uintmax_t offset, std::span<std::byte> into) = 0;
    /// How many bytes were taken, which may be fewer than were given.
    virtual std::size_t write(int file, std::span<const std::byte> from) = 0;
    /// Flushes to the device.
    virtual void flush(int file) = 0;
    /// Flushes the names in a folder to the device, so that a rename survives a loss of power.
    virtual void flushFolder(const std::filesystem::path& folder) = 0;
    /// Never throws: a descriptor is gone after close whatever it answers, and `flush` has already told of
    /// errors.
    virtual void close(int file) noexcept = 0;
    virtual std::uintmax_t size(int file) = 0;
    virtual void rename(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
    virtual void remove(const std::filesystem::path& path) = 0;
    /// Makes the folder and its parents with mode 0700 for those that are new; an existing folder is fine.
    virtual void makeFolders(const std::filesystem::path& path) = 0;
    /// Permission bits (0...0777) of an existing file, or nothing when there is none; what is no regular file
    /// is refused.
    virtual std::optional<unsigned> mode(const std::filesystem::path& path) = 0;
    /// What stands at a path once links are followed; nothing when nothing does.
    virtual std::optional<FileStatus> status(const std::filesystem::path& path) = 0;
    /// Calls back for everything in a folder but "." and "..", in no order. Links are not followed, and what
    /// vanishes meanwhile is left out. The name is valid during the call only.
    virtual void list(const std::filesystem::path& folder,
                      const std::function<void(std::string_view name, const FileStatus&)>& onEntry) = 0;
    /// Where a link leads in the end, even when nothing stands there; the path itself when it is no link or
    /// does not exist.
    virtual std::filesystem::path resolved(const std::filesystem::path& path) = 0;
    /// Takes the lock that stands for a file at `path`, which is made (mode 0600) when missing and is never
    /// removed, until the answer is closed or the process ends. Nothing at once when another process or
    /// thread holds it. Only those who ask are kept apart. On a file system without locks it is always taken.
    virtual std::optional<int> tryLock(const std::filesystem::path& path) = 0;
};

/// The real thing, over POSIX calls; stateless.
class PosixFileOperations final : public FileOperations {
public:
    int openForReading(const std::filesystem::path& path) override;
    int createExclusively(const std::filesystem::path& path, unsigned mode) override;
    std::size_t read(int file, std::span<std::byte> into) override;
    std::size_t readAt(int file, std::uintmax_t offset, std::span<std::byte> into) override;
    std::size_t write(int file, std::span<const std::byte> from) override;
    void flush(int file) override;
    void flushFolder(const std::filesystem::path& folder) override;
    void close(int file) noexcept override;
    std::uintmax_t size(int file) override;
    void rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void remove(const std::filesystem::path& path) override;
    void makeFolders(const std::filesystem::path& path) override;
    std::optional<unsigned> mode(const std::filesystem::path& path) override;
    std::optional<FileStatus> status(const std::filesystem::path& path) override;
    void list(const std::filesystem::path& folder,
              const std::function<void(std::string_view name, const FileStatus&)>& onEntry) override;
    std::filesystem::path resolved(const std::filesystem::path& path) override;
    std::optional<int> tryLock(const std::filesystem::path& path) override;
};

} // namespace FellowCore
