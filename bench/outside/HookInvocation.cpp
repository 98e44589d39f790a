// How long an agent waits for its hook and for its status line: from being run to having ended, the shell
// that runs the script included.

#include "bench/support/Figures.h"
#include "bench/support/Options.h"
#include "bench/support/RunningProgram.h"
#include "core/agents/ClaudeStatusLineConnector.h"
#include "core/agents/PumpAgentHook.h"
#include "core/base/WholeFile.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace {

using FellowCore::FileMode;
namespace fs = std::filesystem;

constexpr double budgetMilliseconds = 10;
constexpr int rounds = 400;
constexpr int quickRounds = 50;
constexpr std::size_t largeInput = 1'000'000;

/// Runs a script to its end with a file as its standard input.
double millisecondsOf(const std::vector<std::string>& arguments, const fs::path& input) {
    std::vector<char*> values;
    for (const std::string& argument : arguments) {
        values.push_back(const_cast<char*>(argument.c_str())); // posix_spawn changes nothing
    }
    values.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, input.c_str(), O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const Bench::Time start = std::chrono::steady_clock::now();
    pid_t pid = 0;
    const int failure = ::posix_spawn(&pid, values.front(), &actions, nullptr, values.data(), environ);
    int status = 0;
    if (failure != 0 || ::waitpid(pid, &status, 0) != pid || status != 0) {
        throw std::runtime_error(arguments.front() + " could not be run");
    }
    const Bench::Time end = std::chrono::steady_clock::now();
    ::posix_spawn_file_actions_destroy(&actions);
    return Bench::millisecondsBetween(start, end);
}

std::vector<double> measure(const Bench::Options& options, const std::vector<std::string>& arguments,
                            const fs::path& input) {
    std::vector<double> samples;
    const int count = options.quick ? quickRounds : rounds;
    millisecondsOf(arguments, input); // this one warms the caches
    for (int round = 0; round < count; ++round) {
        samples.push_back(millisecondsOf(arguments, input));
    }
    return samples;
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const fs::path program = options.program.parent_path() / "fellow-hook";
    if (!fs::is_regular_file(program)) {
        throw std::runtime_error(program.string() + " is not there; build it first");
    }
    const Bench::TemporaryHome home;
    const FellowCore::SupportFolders& folders = home.folders();
    FellowCore::PosixFileOperations files;
    const auto written = [&](const char* name, const std::string& bytes) {
        writeWholeFile(files, folders.home() / name, bytes, FileMode::ownerProgram);
        return folders.home() / name;
    };
    using enum FellowCore::PumpProjectConsent;
    const auto script =
        written("hook.sh", FellowCore::PumpAgentHook::script(FellowCore::PumpProvider::claude, included,
                                                             {program, folders.deskfellow()}));
    const std::string fields = R"({"hook_event_name":"Stop","session_id":"s","cwd":"/home/u/project")";
    const auto input = written("input", fields + "}");
    const auto large =
        written("large", fields + R"(,"tool_response":")" + std::string(largeInput, 'x') + "\"}");
    const auto limits =
        written("limits", R"({"rate_limits":{"five_hour":{"used_percentage":42.5,"resets_at":1}}})");
    const FellowCore::ClaudeStatusLineConnector connector(files, folders, program);
    const auto line = written("line.sh", connector.scriptText());

    Bench::Figures figures;
    const std::string shell = "/bin/sh";
    figures.add({"the shell alone", measure(options, {shell, "-c", ":"}, input), "ms", {}, 2});
    figures.add({"hook, an event", measure(options, {shell, script}, input), "ms", budgetMilliseconds, 2});
    figures.add(
        {"hook, a megabyte of input", measure(options, {shell, script}, large), "ms", budgetMilliseconds, 2});
    figures.add({"status line", measure(options, {shell, line}, limits), "ms", budgetMilliseconds, 2});
    figures.add(
        {"status line, wrapping a command", measure(options, {shell, line, "cat"}, limits), "ms", {}, 2});
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
