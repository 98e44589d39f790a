#include "bench/support/RunningProgram.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>

namespace Bench {

namespace {

constexpr auto patience = std::chrono::seconds(10);

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> made;
    for (std::string& text : texts) {
        made.push_back(text.data());
    }
    made.push_back(nullptr);
    return made;
}

std::filesystem::path processFolder(pid_t pid) {
    return std::filesystem::path("/proc") / std::to_string(pid);
}

/// The number behind "NAME:" in a file of such lines.
std::uint64_t numberIn(const std::filesystem::path& path, const std::string& name) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(name + ":")) {
            return std::stoull(line.substr(name.size() + 1));
        }
    }
    throw std::runtime_error(path.string() + " does not tell \"" + name + "\"");
}

std::vector<std::string> muted(const std::filesystem::path& program,
                               const std::vector<std::string>& further) {
    std::vector<std::string> arguments{program.string(), "--mute-interface-for-testing"};
    arguments.insert(arguments.end(), further.begin(), further.end());
    return arguments;
}

} // namespace

double millisecondsBetween(Time start, Time end) {
    return std::chrono::duration<double, std::milli>(end - start).count();
}

RunningProgram::RunningProgram(std::vector<std::string> arguments, const TemporaryHome& home,
                               const posix_spawn_file_actions_t* files) {
    std::vector<std::string> environment = home.environment();
    const auto argumentPointers = pointers(arguments);
    const auto environmentPointers = pointers(environment);
    started_ = std::chrono::steady_clock::now();
    const int failure = posix_spawn(&pid_, arguments.front().c_str(), files, nullptr, argumentPointers.data(),
                                    environmentPointers.data());
    if (failure != 0) {
        throw std::runtime_error("cannot run " + arguments.front() + ": " + std::strerror(failure));
    }
}

RunningProgram::RunningProgram(const std::filesystem::path& program, const TemporaryHome& home,
                               const std::vector<std::string>& further)
    : RunningProgram(muted(program, further), home, nullptr) {}

RunningProgram::~RunningProgram() {
    ::kill(pid_, SIGTERM);
    const Time end = std::chrono::steady_clock::now() + patience;
    while (::waitpid(pid_, nullptr, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > end) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

Usage RunningProgram::usage() const {
    Usage sum;
    for (const auto& thread : std::filesystem::directory_iterator(processFolder(pid_) / "task")) {
        std::ifstream times(thread.path() / "schedstat");
        std::uint64_t nanoseconds = 0;
        if (!(times >> nanoseconds)) {
            throw std::runtime_error("the kernel does not tell the time of a thread");
        }
        sum.processorNanoseconds += nanoseconds;
        sum.wakeups += numberIn(thread.path() / "status", "voluntary_ctxt_switches");
    }
    return sum;
}

double RunningProgram::memory(const char* entry) const {
    return static_cast<double>(numberIn(processFolder(pid_) / "smaps_rollup", entry)) / 1024;
}

} // namespace Bench
