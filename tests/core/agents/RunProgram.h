#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace TestSupport {

/// How a program that was run to its end behaved.
struct Ended {
    int status = 0; ///< exit status, or 128 and the signal
    std::string output;
    std::string errors;
};

/// A program that is running, with its standard input fed through a pipe and its output kept in files.
class RunningProgram {
public:
    /// `environment` (NAME=VALUE) is added to this process's.
    RunningProgram(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
                   const std::vector<std::string>& environment = {});
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    int pid() const { return pid_; }
    /// Gives it some input; a program that has stopped listening is none of the caller's business.
    void feed(std::string_view input) const;
    void endInput();
    Ended wait();

private:
    std::filesystem::path outputFile_;
    std::filesystem::path errorFile_;
    int pid_ = -1;
    int input_ = -1;
};

/// Runs a program with this input to its end. `folder` is for its output files.
Ended runProgram(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
                 std::string_view input = {}, const std::vector<std::string>& environment = {});

} // namespace TestSupport
