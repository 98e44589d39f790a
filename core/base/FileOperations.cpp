#include "core/base/FileOperations.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <memory>

namespace FellowCore {

namespace {

constexpr mode_t permissionBits = 0777;

[[noreturn]] void throwSystemError(int code, const char* call) {
    throw std::system_error(code, std::generic_category(), call);
}

/// Makes a system call again while a signal interrupts it, and throws when it fails.
template <typename Call>
auto checked(const char* name, Call call) {
    for (;;) {
        const auto answer = call();
        if (answer >= 0) {
            return answer;
        }
        if (errno != EINTR) {
            throwSystemError(errno, name);
        }
    }
}

/// Follows links; nothing when nothing stands there.
std::optional<struct stat> statusOf(const std::filesystem::path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0) {
        return status;
    }
    if (errno != ENOENT) {
        throwSystemError(errno, "stat");
    }
    return std::nullopt;
}

/// What one link says, or nothing when the path is no link or does not exist.
std::optional<std::filesystem::path> linkText(const std::filesystem::path& path) {
    std::array<char, PATH_MAX> text{};
    const ssize_t length = ::readlink(path.c_str(), text.data(), text.size());
    if (length >= 0) {
        return std::string(text.data(), static_cast<std::size_t>(length));
    }
    if (errno != EINVAL && errno != ENOENT) {
        throwSystemError(errno, "readlink");
    }
    return std::nullopt;
}

/// Closes a file that is not wanted after all and throws.
[[noreturn]] void giveUp(int file, int code, const char* call) {
    ::close(file);
    throwSystemError(code, call);
}

FileStatus::Kind kindOf(unsigned mode) {
    if (S_ISREG(mode)) {
        return FileStatus::Kind::file;
    }
    if (S_ISDIR(mode)) {
        return FileStatus::Kind::folder;
    }
    return S_ISLNK(mode) ? FileStatus::Kind::link : FileStatus::Kind::other;
}

/// The status of a name in an open folder (or AT_FDCWD); nothing when nothing stands there.
std::optional<FileStatus> statusAt(int folder, const char* name, int flags) {
    constexpr unsigned wanted = STATX_TYPE | STATX_INO | STATX_SIZE | STATX_MTIME | STATX_BTIME;
    constexpr Seconds nanosecond = 1e-9;
    struct statx status {};
    if (::statx(folder, name, flags | AT_STATX_SYNC_AS_STAT, wanted, &status) != 0) {
        if (errno == ENOENT || errno == ENOTDIR) {
            return std::nullopt;
        }
        throwSystemError(errno, "statx");
    }
    const bool knowsBirth = (status.stx_mask & STATX_BTIME) != 0;
    return FileStatus{.kind = kindOf(status.stx_mode),
                      .identity = {.device = ::makedev(status.stx_dev_major, status.stx_dev_minor),
                                   .number = status.stx_ino,
                                   .bornSeconds = knowsBirth ? status.stx_btime.tv_sec : 0,
                                   .bornNanoseconds = knowsBirth ? status.stx_btime.tv_nsec : 0},
                      .size = status.stx_size,
                      .modified = Instant::fromUnix(static_cast<Seconds>(status.stx_mtime.tv_sec) +
                                                    status.stx_mtime.tv_nsec * nanosecond)};
}

} // namespace

FileError::FileError(Kind kind, const std::filesystem::path& path, const std::string& reason)
    : std::runtime_error(path.string() + ": " + reason), kind_(kind), path_(path) {}

int PosixFileOperations::openForReading(const std::filesystem::path& path) {
    // Without O_NONBLOCK opening a pipe would wait for its writer, before it can be seen to be a pipe.
    const int file =
        checked("open", [&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK); });
    struct stat status {};
    if (::fstat(file, &status) != 0) {
        giveUp(file, errno, "fstat");
    }
    if (!S_ISREG(status.st_mode)) {
        giveUp(file, S_ISDIR(status.st_mode) ? EISDIR : EINVAL, "open");
    }
    return file;
}

int PosixFileOperations::createExclusively(const std::filesystem::path& path, unsigned mode) {
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY;
    const int file = checked("open", [&] { return ::open(path.c_str(), flags, mode); });
    // The umask may have taken bits away. Nothing is asked for when it has not, because some file systems
    // know one mode only and refuse even to be told it.
    struct stat status {};
    if (::fstat(file, &status) != 0 ||
        ((status.st_mode & permissionBits) != mode && ::fchmod(file, mode) != 0)) {
        const int code = errno;
        ::unlink(path.c_str());
        giveUp(file, code, "fchmod");
    }
    return file;
}

std::size_t PosixFileOperations::read(int file, std::span<std::byte> into) {
    return static_cast<std::size_t>(checked("read", [&] { return ::read(file, into.data(), into.size()); }));
}

std::size_t PosixFileOperations::readAt(int file, std::uintmax_t offset, std::span<std::byte> into) {
    return static_cast<std::size_t>(checked(
        "pread", [&] { return ::pread(file, into.data(), into.size(), static_cast<off_t>(offset)); }));
}

std::size_t PosixFileOperations::write(int file, std::span<const std::byte> from) {
    return static_cast<std::size_t>(
        checked("write", [&] { return ::write(file, from.data(), from.size()); }));
}

void PosixFileOperations::flush(int file) {
    checked("fsync", [&] { return ::fsync(file); });
}

void PosixFileOperations::flushFolder(const std::filesystem::path& folder) {
    const int file =
        checked("open", [&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (::fsync(file) != 0) {
        giveUp(file, errno, "fsync");
    }
    ::close(file);
}

void PosixFileOperations::close(int file) noexcept {
    ::close(file);
}

std::uintmax_t PosixFileOperations::size(int file) {
    struct stat status {};
    checked("fstat", [&] { return ::fstat(file, &status); });
    return static_cast<std::uintmax_t>(status.st_size);
}

void PosixFileOperations::rename(const std::filesystem::path& from, const std::filesystem::path& to) {
    checked("rename", [&] { return ::rename(from.c_str(), to.c_str()); });
}

void PosixFileOperations::remove(const std::filesystem::path& path) {
    checked("unlink", [&] { return ::unlink(path.c_str()); });
}

void PosixFileOperations::makeFolders(const std::filesystem::path& path) {
    if (path.empty()) {
        return; // the working folder, which exists
    }
    if (const auto status = statusOf(path)) {
        if (!S_ISDIR(status->st_mode)) {
            throwSystemError(ENOTDIR, "mkdir");
        }
        return;
    }
    makeFolders(path.parent_path());
    if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) {
        throwSystemError(errno, "mkdir");
    }
    // Something may have come in between, or a link leads nowhere; only a folder will do.
    const auto made = statusOf(path);
    if (!made || !S_ISDIR(made->st_mode)) {
        throwSystemError(ENOTDIR, "mkdir");
    }
}

std::optional<unsigned> PosixFileOperations::mode(const std::filesystem::path& path) {
    const auto status = statusOf(path);
    if (!status) {
        return std::nullopt;
    }
    if (!S_ISREG(status->st_mode)) {
        throwSystemError(S_ISDIR(status->st_mode) ? EISDIR : EINVAL, "stat");
    }
    return status->st_mode & permissionBits;
}

std::optional<FileStatus> PosixFileOperations::status(const std::filesystem::path& path) {
    return statusAt(AT_FDCWD, path.c_str(), 0);
}

void PosixFileOperations::list(const std::filesystem::path& folder,
                               const std::function<void(std::string_view, const FileStatus&)>& onEntry) {
    const auto close = [](DIR* open) { ::closedir(open); };
    const std::unique_ptr<DIR, decltype(close)> open(::opendir(folder.c_str()), close);
    if (!open) {
        throwSystemError(errno, "opendir");
    }
    for (;;) {
        errno = 0;
        const dirent* const entry = ::readdir(open.get());
        if (entry == nullptr) {
            break;
        }
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        if (const auto status = statusAt(::dirfd(open.get()), entry->d_name, AT_SYMLINK_NOFOLLOW)) {
            onEntry(name, *status);
        }
    }
    if (errno != 0) {
        throwSystemError(errno, "readdir");
    }
}

std::filesystem::path PosixFileOperations::resolved(const std::filesystem::path& path) {
    constexpr int maximumLinks = 40; // as the kernel has it
    std::filesystem::path target = path;
    for (int followed = 0; followed <= maximumLinks; ++followed) {
        const auto text = linkText(target);
        if (!text) {
            return target;
        }
        target = target.parent_path() / *text; // an absolute text replaces the folder
    }
    throwSystemError(ELOOP, "readlink");
}

std::optional<int> PosixFileOperations::tryLock(const std::filesystem::path& path) {
    const int flags = O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    const int file = checked("open", [&] { return ::open(path.c_str(), flags, 0600); });
    if (::flock(file, LOCK_EX | LOCK_NB) == 0) {
        return file;
    }
    switch (errno) {
    case EWOULDBLOCK:
        ::close(file);
        return std::nullopt;
    case ENOLCK:
    case ENOSYS:
    case EOPNOTSUPP:
        return file; // no locks here; who locks also looks at the file again before replacing it
    default:
        giveUp(file, errno, "flock");
    }
}

} // namespace FellowCore
