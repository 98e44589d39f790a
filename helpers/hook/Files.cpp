#include "helpers/hook/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace FellowHook {

namespace {

ssize_t readSome(int file, char* into, std::size_t size) {
    for (;;) {
        const ssize_t count = ::read(file, into, size);
        if (count >= 0 || errno != EINTR) {
            return count;
        }
    }
}

} // namespace

OpenFile::~OpenFile() {
    if (isOpen()) {
        ::close(file_);
    }
}

std::string readUpTo(int file, std::size_t limit) {
    constexpr std::size_t smallest = 4096;
    std::string bytes;
    std::size_t length = 0;
    while (length <= limit) {
        bytes.resize(std::min(length + std::max(length, smallest), limit + 1));
        const ssize_t count = readSome(file, bytes.data() + length, bytes.size() - length);
        if (count <= 0) {
            break;
        }
        length += static_cast<std::size_t>(count);
    }
    bytes.resize(length);
    return bytes;
}

void discardRest(int file) {
    constexpr std::size_t bound = std::size_t{64} * 1024 * 1024;
    std::array<char, 65536> unread{};
    for (std::size_t total = 0; total < bound;) {
        const ssize_t count = readSome(file, unread.data(), unread.size());
        if (count <= 0) {
            return;
        }
        total += static_cast<std::size_t>(count);
    }
}

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::optional<std::string> readFile(const std::string& path, std::size_t limit) {
    // Without O_NONBLOCK opening a pipe would wait for its writer.
    const OpenFile file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    std::string bytes = readUpTo(file.get(), limit);
    return bytes.size() <= limit ? std::optional(std::move(bytes)) : std::nullopt;
}

bool makeFolders(const std::string& path) {
    if (::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST) {
        return true;
    }
    const auto slash = path.rfind('/');
    return errno == ENOENT && slash != std::string::npos && slash > 0 && makeFolders(path.substr(0, slash)) &&
           (::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST);
}

bool writeNewFile(const std::string& path, std::string_view bytes) {
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    ::unlink(path.c_str());
    const OpenFile file(::open(path.c_str(), flags, 0600));
    if (!file.isOpen()) {
        return false;
    }
    if (!writeAll(file.get(), bytes)) {
        ::unlink(path.c_str());
        return false;
    }
    return true;
}

} // namespace FellowHook
