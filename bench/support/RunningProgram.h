#pragma once

#include "bench/support/TemporaryHome.h"

#include <spawn.h>
#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace Bench {

using Time = std::chrono::steady_clock::time_point;

double millisecondsBetween(Time start, Time end);

/// What all threads of a process have used since it began.
struct Usage {
    std::uint64_t processorNanoseconds = 0;
    std::uint64_t wakeups = 0; ///< voluntary context switches: each time a thread had slept and went on
};

/// A program in a home of its own, ended with this object.
class RunningProgram {
public:
    /// `arguments` begin with the path of the program; `files` say what its descriptors are, those of this
    /// process otherwise.
    RunningProgram(std::vector<std::string> arguments, const TemporaryHome& home,
                   const posix_spawn_file_actions_t* files);
    /// A `deskfellow` without sound.
    ///
    /// `further` are arguments for the program, such as a link it should act on.
    RunningProgram(const std::filesystem::path& program, const TemporaryHome& home,
                   const std::vector<std::string>& further = {});
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    pid_t pid() const { return pid_; }
    /// The moment before the system was asked to run it.
    Time started() const { return started_; }

    /// From /proc/PID/task/*/schedstat and status. A thread that ends between two looks takes its share with
    /// it.
    Usage usage() const;
    /// One entry of /proc/PID/smaps_rollup ("Pss"), in megabytes of 1024 times 1024 bytes.
    double memory(const char* entry) const;

private:
    pid_t pid_ = 0;
    Time started_;
};

} // namespace Bench
