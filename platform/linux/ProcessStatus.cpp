#include "platform/linux/ProcessStatus.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace Platform {
namespace {
constexpr std::size_t environmentLimit = 1 << 20;

std::string procFile(long pid, const char* name) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/" + name, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}
} // namespace

std::optional<ProcessStatus> processStatus(long pid) {
    const std::string text = procFile(pid, "stat");
    const auto open = text.find('(');
    const auto close = text.rfind(')'); // the name itself may hold parentheses
    if (open == std::string::npos || close == std::string::npos || close < open) {
        return std::nullopt;
    }
    ProcessStatus status;
    status.name = text.substr(open + 1, close - open - 1);
    // state ppid pgrp session tty_nr (man 5 proc)
    const int found = std::sscanf(text.c_str() + close + 1, " %*c %ld %*d %ld %d", &status.parent,
                                  &status.session, &status.terminal);
    return found == 3 ? std::optional(status) : std::nullopt;
}

std::vector<long> allProcesses() {
    std::vector<long> numbers;
    std::error_code ended;
    for (std::filesystem::directory_iterator entry("/proc", ended), end; !ended && entry != end;
         entry.increment(ended)) {
        const std::string name = entry->path().filename();
        long number = 0;
        const auto read = std::from_chars(name.data(), name.data() + name.size(), number);
        if (read.ec == std::errc() && read.ptr == name.data() + name.size()) {
            numbers.push_back(number);
        }
    }
    std::ranges::sort(numbers);
    return numbers;
}

std::string startVariable(long pid, const std::string& name) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/environ", std::ios::binary);
    const std::string wanted = name + "=";
    std::string entry;
    for (std::size_t seen = 0; seen < environmentLimit && std::getline(file, entry, '\0');
         seen += entry.size() + 1) {
        if (entry.starts_with(wanted)) {
            return entry.substr(wanted.size());
        }
    }
    return {};
}

bool isTerminal(int terminal, const std::string& device) {
    struct stat status {};
    if (terminal == 0 || stat(device.c_str(), &status) != 0 || !S_ISCHR(status.st_mode)) {
        return false;
    }
    // The kernel's encoding: minor in bits 0 to 7 and 20 to 31, major in bits 8 to 19.
    const auto bits = static_cast<unsigned>(terminal);
    const unsigned minorNumber = (bits & 0xFFU) | ((bits >> 12U) & 0xFFF00U);
    return major(status.st_rdev) == ((bits >> 8U) & 0xFFFU) && minor(status.st_rdev) == minorNumber;
}

} // namespace Platform
