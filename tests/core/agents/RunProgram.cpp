#include "tests/core/agents/RunProgram.h"

#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <stdexcept>

namespace TestSupport {

namespace {

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> values;
    for (std::string& text : texts) {
        values.push_back(text.data());
    }
    values.push_back(nullptr);
    return values;
}

/// This process's environment and more.
std::vector<std::string> extended(const std::vector<std::string>& more) {
    std::vector<std::string> all = more;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        all.emplace_back(*entry);
    }
    return all;
}

} // namespace

RunningProgram::RunningProgram(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
                               const std::vector<std::string>& environment) {
    static std::atomic<int> runs = 0;
    const int run = ++runs;
    outputFile_ = folder / ("output-" + std::to_string(run));
    errorFile_ = folder / ("errors-" + std::to_string(run));
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    input_ = pipe[1];
    std::signal(SIGPIPE, SIG_IGN);
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    sigset_t usual;
    ::sigemptyset(&usual);
    ::sigaddset(&usual, SIGPIPE);
    ::posix_spawnattr_setsigdefault(&attributes, &usual);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, pipe[0], STDIN_FILENO);
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outputFile_.c_str(), flags, 0600);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errorFile_.c_str(), flags, 0600);
    std::vector<std::string> values = arguments;
    std::vector<std::string> variables = extended(environment);
    const int failure = ::posix_spawn(&pid_, arguments.front().c_str(), &actions, &attributes,
                                      pointers(values).data(), pointers(variables).data());
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
    ::close(pipe[0]);
    if (failure != 0) {
        ::close(input_);
        throw std::runtime_error("cannot run " + arguments.front());
    }
}

RunningProgram::~RunningProgram() {
    endInput();
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
}

void RunningProgram::feed(std::string_view input) const {
    while (!input.empty()) {
        const ssize_t count = ::write(input_, input.data(), input.size());
        if (count <= 0) {
            return;
        }
        input.remove_prefix(static_cast<std::size_t>(count));
    }
}

void RunningProgram::endInput() {
    if (input_ >= 0) {
        ::close(input_);
        input_ = -1;
    }
}

Ended RunningProgram::wait() {
    endInput();
    int status = 0;
    ::waitpid(pid_, &status, 0);
    pid_ = -1;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), bytesOf(outputFile_),
            bytesOf(errorFile_)};
}

Ended runProgram(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
                 std::string_view input, const std::vector<std::string>& environment) {
    RunningProgram program(folder, arguments, environment);
    program.feed(input);
    return program.wait();
}

} // namespace TestSupport
