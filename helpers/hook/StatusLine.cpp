#include "helpers/hook/StatusLine.h"

#include "core/agents/ClaudeRateLimits.h"
#include "helpers/hook/Files.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <ctime>

namespace FellowHook {

namespace {

using FellowCore::ClaudeRateLimits;

void save(const ClaudeRateLimits& limits, const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos || slash == 0 || !makeFolders(path.substr(0, slash))) {
        return;
    }
    const std::string temporary = path + "." + std::to_string(::getpid());
    if (writeNewFile(temporary, limits.file(std::time(nullptr))) &&
        std::rename(temporary.c_str(), path.c_str()) != 0) {
        ::unlink(temporary.c_str());
    }
}

/// A file without a name that holds the input and what is still to come of it.
int fileOf(const std::string& input) {
    const int file = ::memfd_create("status-line-input", 0);
    if (file < 0 || !writeAll(file, input)) {
        return -1;
    }
    for (;;) {
        const std::string more = readUpTo(STDIN_FILENO, ClaudeRateLimits::maximumBytes);
        if (more.empty()) {
            break;
        }
        if (!writeAll(file, more)) {
            return -1;
        }
    }
    ::lseek(file, 0, SEEK_SET);
    return file;
}

/// A pipe, as the agent gives it, when the input fits into one; otherwise nobody would be there to fill it.
int pipeOf(const std::string& input) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        return -1;
    }
    ::fcntl(ends[1], F_SETFL, O_NONBLOCK);
    const bool fits = writeAll(ends[1], input);
    ::close(ends[1]);
    if (!fits) {
        ::close(ends[0]);
        return -1;
    }
    return ends[0];
}

/// Runs the user's own command in the place of this process. Comes back only when there is no shell.
void become(const char* command, const std::string& input) {
    const bool isWhole = input.size() <= ClaudeRateLimits::maximumBytes;
    int source = isWhole ? pipeOf(input) : -1;
    source = source >= 0 ? source : fileOf(input);
    if (source > STDIN_FILENO) {
        ::dup2(source, STDIN_FILENO);
        ::close(source);
    }
    for (const char* shell : {"/bin/bash", "/bin/sh"}) {
        ::execl(shell, shell, "-c", command, nullptr);
    }
}

} // namespace

int showStatusLine(int count, char** values) {
    const std::string input = readUpTo(STDIN_FILENO, ClaudeRateLimits::maximumBytes);
    const ClaudeRateLimits limits = ClaudeRateLimits::parse(input);
    if (count > 0) {
        save(limits, values[0]);
    }
    if (count > 1) {
        become(values[1], input);
        return 0;
    }
    discardRest(STDIN_FILENO);
    writeAll(STDOUT_FILENO, limits.modelName);
    return 0;
}

} // namespace FellowHook
