#pragma once

#include <stdexcept>
#include <string>

namespace FellowCore {

/// Why an exchange over a Unix socket gave no answer.
class DevWatchHTTPFailure : public std::runtime_error {
public:
    enum class Kind {
        syscall,        ///< the system refused a call; `systemError` says why
        unsafeSocket,   ///< what stands there, or who answers, is not the user's own
        invalidRequest, ///< the caller asked for what is never sent
        timeout,        ///< the exchange as a whole took too long
        tooLarge,       ///< the answer is longer than the caller takes
        malformed,      ///< the answer is not HTTP/1, or not as long as it says
    };

    /// For every kind but `syscall`.
    DevWatchHTTPFailure(Kind kind, const std::string& reason);
    /// A call that failed, with its `errno`.
    static DevWatchHTTPFailure syscall(const char* call, int systemError);

    Kind kind() const { return kind_; }
    int systemError() const { return systemError_; } ///< an `errno`; 0 unless the kind is `syscall`

private:
    DevWatchHTTPFailure(Kind kind, const std::string& reason, int systemError);

    Kind kind_;
    int systemError_ = 0;
};

} // namespace FellowCore
