#pragma once

#include "tests/support/TemporaryFolder.h"

#include <sys/wait.h>

#include <cstdlib>
#include <string>

namespace FellowTest {

/// What the real program answered.
struct Answer {
    int status; ///< -1 when a signal ended it
    std::string out;
    std::string err;
};

/// Runs the real program in UTC; `words` go through the shell.
inline Answer runFellow(const std::string& words, const std::string& input = {}) {
    const TestSupport::TemporaryFolder scratch;
    TestSupport::writeBytes(scratch / "in", input);
    const std::string line = std::string("TZ=UTC LC_ALL=C ") + FELLOW_PROGRAM + " " + words + " >" +
                             (scratch / "out").string() + " 2>" + (scratch / "err").string() + " <" +
                             (scratch / "in").string();
    const int status = std::system(line.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, TestSupport::bytesOf(scratch / "out"),
            TestSupport::bytesOf(scratch / "err")};
}

} // namespace FellowTest
