#include "helpers/media/MediaOutput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace FellowMedia {

MediaOutput::MediaOutput(int descriptor) : descriptor_(descriptor) {
    struct stat status {};
    const bool isPipe = ::fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
    if (!isPipe && !S_ISSOCK(status.st_mode)) {
        return;
    }
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
    writable_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Write);
    writable_->setEnabled(false);
    QObject::connect(writable_.get(), &QSocketNotifier::activated, writable_.get(), [this] { go(); });
    if (isPipe) {
        // The end that is written to becomes readable only when the other end is closed.
        closed_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
        QObject::connect(closed_.get(), &QSocketNotifier::activated, closed_.get(), [this] {
            closed_->setEnabled(false);
            onClosed();
        });
    }
}

void MediaOutput::write(std::string line) {
    line_ = std::move(line);
    done_ = 0;
    go();
}

void MediaOutput::go() {
    while (done_ < line_.size()) {
        const ssize_t count = ::write(descriptor_, line_.data() + done_, line_.size() - done_);
        if (count >= 0) {
            done_ += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN && writable_) {
            writable_->setEnabled(true);
            return;
        } else if (errno != EINTR) {
            onClosed();
            return;
        }
    }
    if (writable_) {
        writable_->setEnabled(false);
    }
    line_ = {};
    onWritten();
}

} // namespace FellowMedia
