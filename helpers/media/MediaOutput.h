#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>
#include <string>

namespace FellowMedia {

/// Writes lines to a pipe whose reader may be slow, without waiting for it.
class MediaOutput {
public:
    explicit MediaOutput(int descriptor);

    /// The line has been taken whole.
    std::function<void()> onWritten;
    /// Nobody reads any more.
    std::function<void()> onClosed;

    bool isBusy() const { return !line_.empty(); }
    /// Only when not busy.
    void write(std::string line);

private:
    void go();

    int descriptor_;
    std::string line_; ///< what is being written
    std::size_t done_ = 0;
    std::unique_ptr<QSocketNotifier> writable_; ///< absent for what always takes everything
    std::unique_ptr<QSocketNotifier> closed_;
};

} // namespace FellowMedia
