#pragma once

#include "core/devwatch/DevWatchOperations.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Platform {

/// Reads /proc and asks the kernel for sockets; no program is started. Keeps nothing between two calls but
/// when the machine was booted, so it may be asked from several threads at once.
class LinuxProcessSource final : public FellowCore::DevWatchOperations {
public:
    LinuxProcessSource();
    ~LinuxProcessSource() override;
    LinuxProcessSource(const LinuxProcessSource&) = delete;
    LinuxProcessSource& operator=(const LinuxProcessSource&) = delete;

    FellowCore::MonotonicInstant now() const override;
    std::optional<std::vector<std::int32_t>> pids(std::uint32_t uid) const override;
    std::optional<FellowCore::DevWatchProcessRecord> record(std::int32_t pid) const override;
    std::optional<FellowCore::DevWatchProcessOwners> owners(std::int32_t pid) const override;
    std::optional<std::string> executablePath(std::int32_t pid) const override;
    std::optional<std::string> workingDirectory(std::int32_t pid) const override;
    std::optional<std::uint64_t> cpuTimeNanoseconds(std::int32_t pid) const override;
    std::optional<std::vector<FellowCore::DevWatchListeningSocket>> listeningSockets() const override;
    std::vector<FellowCore::DevWatchSocketDescriptor> socketDescriptors(std::int32_t pid) const override;
    std::uint64_t socketBehind(std::int32_t pid, std::int32_t descriptor) const override;
    std::optional<FellowCore::DevWatchSystemCPUSample> systemTicks() const override;

private:
    std::string longName(std::int32_t pid, const std::string& command) const;
    std::optional<std::string> pathBehind(std::int32_t pid, const char* link) const;

    int proc_; ///< -1 when there is no /proc
    std::uint64_t ticksPerSecond_;
    /// Wall time of the boot, taken once: it would step with the wall clock, and an identity must not.
    std::uint64_t bootMicroseconds_;
};

} // namespace Platform
