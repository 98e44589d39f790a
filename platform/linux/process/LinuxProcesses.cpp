#include "platform/Processes.h"

#include "core/devwatch/DevWatchProcessReading.h"
#include "platform/linux/process/LinuxProcessSource.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>

namespace Platform {

namespace {

using FellowCore::DevWatchSignal;

class LinuxProcessHandle final : public FellowCore::DevWatchProcessHandle {
public:
    explicit LinuxProcessHandle(int pidfd) : pidfd_(pidfd) {}
    ~LinuxProcessHandle() override { ::close(pidfd_); }
    LinuxProcessHandle(const LinuxProcessHandle&) = delete;
    LinuxProcessHandle& operator=(const LinuxProcessHandle&) = delete;

    bool send(DevWatchSignal signal) override {
        const int number = signal == DevWatchSignal::force ? SIGKILL : SIGTERM;
        return ::syscall(SYS_pidfd_send_signal, pidfd_, number, nullptr, 0) == 0;
    }

private:
    int pidfd_;
};

} // namespace

std::unique_ptr<FellowCore::DevWatchOperations> processOperations() {
    return std::make_unique<LinuxProcessSource>();
}

std::unique_ptr<FellowCore::DevWatchProcessHandle> openProcess(std::int32_t pid) {
    // A pidfd is closed on exec by itself.
    const auto pidfd = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
    return pidfd < 0 ? nullptr : std::make_unique<LinuxProcessHandle>(pidfd);
}

FellowCore::DevWatchSafetyPolicy ownSafetyPolicy(const FellowCore::DevWatchOperations& system) {
    const std::int32_t self = ::getpid();
    FellowCore::DevWatchSafetyPolicy policy{.currentUserID = ::getuid(), .selfPID = self};
    if (const auto path = system.executablePath(self)) {
        policy.appExecutablePath = FellowCore::devWatchResolvedLinks(*path);
    }
    policy.ancestors = FellowCore::DevWatchProcessReading::ancestors(system, self);
    return policy;
}

} // namespace Platform
