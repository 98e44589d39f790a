#include "platform/linux/process/LinuxProcessSource.h"

#include "platform/linux/process/ProcText.h"
#include "platform/linux/process/SocketDiagnostics.h"

#include "core/devwatch/DevWatchProcess.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string_view>

namespace Platform {

namespace {

using FellowCore::DevWatchProcessRecord;
using FellowCore::DevWatchSocketDescriptor;

constexpr std::uint64_t microsecondsPerSecond = 1'000'000;

class File {
public:
    explicit File(int descriptor) : descriptor_(descriptor) {}
    ~File() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    int get() const { return descriptor_; }
    /// The beginning of the file, as much as fits; the texts read here are shorter.
    std::string_view read(std::array<char, 4096>& buffer) const {
        const ssize_t count = ::read(descriptor_, buffer.data(), buffer.size());
        return {buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
    }

private:
    int descriptor_;
};

using Folder = std::unique_ptr<DIR, int (*)(DIR*)>;

Folder folder(int within, const char* name) {
    const int descriptor = ::openat(within, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* const opened = descriptor < 0 ? nullptr : ::fdopendir(descriptor);
    if (opened == nullptr && descriptor >= 0) {
        ::close(descriptor);
    }
    return {opened, ::closedir};
}

/// A path below /proc, made without touching the heap: there are thousands in one sample.
struct ProcPath {
    std::array<char, 48> text;

    ProcPath(std::int32_t pid, const char* name) {
        std::snprintf(text.data(), text.size(), "%d/%s", pid, name);
    }
    ProcPath(std::int32_t pid, std::int32_t descriptor) {
        std::snprintf(text.data(), text.size(), "%d/fd/%d", pid, descriptor);
    }
    const char* get() const { return text.data(); }
};

/// The number that a name is as a whole; nothing for other names.
std::optional<std::int32_t> number(std::string_view name) {
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), value);
    const bool isWhole = error == std::errc() && end == name.data() + name.size() && value >= 0;
    return isWhole ? std::optional(value) : std::nullopt;
}

std::uint64_t nanoseconds(const timespec& time) {
    return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000 + static_cast<std::uint64_t>(time.tv_nsec);
}

std::uint64_t clockNanoseconds(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return nanoseconds(time);
}

std::uint64_t socketAt(int within, const char* path) {
    std::array<char, 64> target;
    const ssize_t count = ::readlinkat(within, path, target.data(), target.size());
    return count > 0 ? ProcText::socket({target.data(), static_cast<std::size_t>(count)}) : 0;
}

} // namespace

LinuxProcessSource::LinuxProcessSource()
    : proc_(::open("/proc", O_PATH | O_DIRECTORY | O_CLOEXEC)),
      ticksPerSecond_(static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK))),
      bootMicroseconds_((clockNanoseconds(CLOCK_REALTIME) - clockNanoseconds(CLOCK_BOOTTIME)) / 1000) {}

LinuxProcessSource::~LinuxProcessSource() {
    if (proc_ >= 0) {
        ::close(proc_);
    }
}

FellowCore::MonotonicInstant LinuxProcessSource::now() const {
    return {static_cast<double>(clockNanoseconds(CLOCK_BOOTTIME)) * 1e-9};
}

std::optional<std::vector<std::int32_t>> LinuxProcessSource::pids(std::uint32_t uid) const {
    const Folder list = folder(proc_, ".");
    if (!list) {
        return std::nullopt;
    }
    std::vector<std::int32_t> pids;
    while (const dirent* const entry = ::readdir(list.get())) {
        const auto pid = number(static_cast<const char*>(entry->d_name));
        struct stat about {};
        if (pid && ::fstatat(proc_, static_cast<const char*>(entry->d_name), &about, 0) == 0 &&
            about.st_uid == uid) {
            pids.push_back(*pid);
        }
    }
    return pids;
}

std::optional<DevWatchProcessRecord> LinuxProcessSource::record(std::int32_t pid) const {
    const File file(::openat(proc_, ProcPath(pid, "stat").get(), O_RDONLY | O_CLOEXEC));
    struct stat about {};
    if (file.get() < 0 || ::fstat(file.get(), &about) != 0) {
        return std::nullopt;
    }
    std::array<char, 4096> buffer;
    auto stat = ProcText::stat(file.read(buffer));
    if (!stat) {
        return std::nullopt;
    }
    const std::uint64_t started =
        bootMicroseconds_ + stat->startTicks * microsecondsPerSecond / ticksPerSecond_;
    const bool isOver = stat->state == 'Z' || stat->state == 'X' || stat->state == 'x';
    return DevWatchProcessRecord{stat->pid,
                                 stat->parent,
                                 about.st_uid,
                                 isOver,
                                 longName(pid, stat->command),
                                 std::move(stat->command),
                                 started / microsecondsPerSecond,
                                 started % microsecondsPerSecond};
}

/// The kernel keeps 15 bytes of a name, and some runtimes call their first thread by what it is. The program
/// tells the whole name then; otherwise the short name is the name.
std::string LinuxProcessSource::longName(std::int32_t pid, const std::string& command) const {
    constexpr std::size_t longest = 15;
    const bool isCut = command.size() >= longest;
    const bool isThread = command.ends_with("MainThread");
    const auto path = isCut || isThread ? executablePath(pid) : std::nullopt;
    if (!path) {
        return {};
    }
    std::string program = FellowCore::devWatchLastComponent(*path);
    return isThread || program.starts_with(command) ? program : std::string();
}

std::optional<FellowCore::DevWatchProcessOwners> LinuxProcessSource::owners(std::int32_t pid) const {
    const File file(::openat(proc_, ProcPath(pid, "status").get(), O_RDONLY | O_CLOEXEC));
    std::array<char, 4096> buffer;
    return file.get() < 0 ? std::nullopt : ProcText::owners(file.read(buffer));
}

std::optional<std::string> LinuxProcessSource::pathBehind(std::int32_t pid, const char* link) const {
    const ProcPath path(pid, link);
    std::array<char, 4096> buffer;
    const ssize_t count = ::readlinkat(proc_, path.get(), buffer.data(), buffer.size());
    if (count <= 0 || static_cast<std::size_t>(count) == buffer.size()) {
        return std::nullopt;
    }
    std::string target(buffer.data(), static_cast<std::size_t>(count));
    constexpr std::string_view gone = " (deleted)";
    if (target.ends_with(gone)) {
        // A name may end so by itself; then it leads to what the link leads to.
        struct stat named {};
        struct stat meant {};
        const bool isName = ::stat(target.c_str(), &named) == 0 &&
                            ::fstatat(proc_, path.get(), &meant, 0) == 0 && named.st_dev == meant.st_dev &&
                            named.st_ino == meant.st_ino;
        target.resize(isName ? target.size() : target.size() - gone.size());
    }
    return target;
}

std::optional<std::string> LinuxProcessSource::executablePath(std::int32_t pid) const {
    return pathBehind(pid, "exe");
}

std::optional<std::string> LinuxProcessSource::workingDirectory(std::int32_t pid) const {
    return pathBehind(pid, "cwd");
}

/// The process's clock counts all its threads, to the nanosecond; /proc has either ticks or single threads.
std::optional<std::uint64_t> LinuxProcessSource::cpuTimeNanoseconds(std::int32_t pid) const {
    clockid_t clock{};
    timespec time{};
    if (::clock_getcpuclockid(pid, &clock) != 0 || ::clock_gettime(clock, &time) != 0) {
        return std::nullopt;
    }
    return nanoseconds(time);
}

std::optional<std::vector<FellowCore::DevWatchListeningSocket>> LinuxProcessSource::listeningSockets() const {
    return SocketDiagnostics::listeningSockets();
}

std::vector<DevWatchSocketDescriptor> LinuxProcessSource::socketDescriptors(std::int32_t pid) const {
    constexpr std::size_t most = 1'000'000; // more than that is no server that anyone would stop from a panel
    std::vector<DevWatchSocketDescriptor> sockets;
    const Folder list = folder(proc_, ProcPath(pid, "fd").get());
    std::size_t count = 0;
    while (const dirent* const entry = list ? ::readdir(list.get()) : nullptr) {
        const char* const name = static_cast<const char*>(entry->d_name);
        const auto descriptor = number(name);
        if (++count > most) {
            return {};
        }
        if (const std::uint64_t socket = descriptor ? socketAt(::dirfd(list.get()), name) : 0) {
            sockets.push_back({*descriptor, socket});
        }
    }
    return sockets;
}

std::uint64_t LinuxProcessSource::socketBehind(std::int32_t pid, std::int32_t descriptor) const {
    return socketAt(proc_, ProcPath(pid, descriptor).get());
}

std::optional<FellowCore::DevWatchSystemCPUSample> LinuxProcessSource::systemTicks() const {
    const File file(::openat(proc_, "stat", O_RDONLY | O_CLOEXEC));
    std::array<char, 4096> buffer;
    return file.get() < 0 ? std::nullopt : ProcText::systemTicks(file.read(buffer));
}

} // namespace Platform
