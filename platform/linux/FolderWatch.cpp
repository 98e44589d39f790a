#include "platform/FolderWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <set>

namespace Platform {

namespace {
constexpr std::uint32_t changes =
    IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr std::uint32_t gone = IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED | IN_UNMOUNT;
} // namespace

FolderWatch::FolderWatch(const std::filesystem::path& folder,
                         std::function<void(const std::string& name)> onChange)
    : onChange_(std::move(onChange)), events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (events_ < 0) {
        return;
    }
    watch_ = inotify_add_watch(events_, folder.c_str(), changes);
    if (watch_ >= 0) {
        notifier_ = std::make_unique<QSocketNotifier>(events_, QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                         [this] { readEvents(); });
    }
}

FolderWatch::~FolderWatch() {
    notifier_.reset();
    if (events_ >= 0) {
        close(events_);
    }
}

void FolderWatch::readEvents() {
    std::set<std::string> names;
    alignas(inotify_event) std::array<char, 16384> buffer;
    for (ssize_t length = 0; (length = read(events_, buffer.data(), buffer.size())) > 0;) {
        for (std::size_t at = 0; at < static_cast<std::size_t>(length);) {
            inotify_event event;
            std::memcpy(&event, buffer.data() + at, sizeof event);
            const char* const name = buffer.data() + at + sizeof event;
            if ((event.mask & gone) != 0) {
                watch_ = -1;
            }
            names.insert(event.len > 0 ? std::string(name) : std::string());
            at += sizeof event + event.len;
        }
    }
    if (watch_ < 0) {
        notifier_->setEnabled(false);
    }
    const auto tell = onChange_; // a copy, because the call may destroy this
    const bool lost = names.contains({});
    if (lost) {
        tell({});
        return;
    }
    for (const std::string& name : names) {
        tell(name);
    }
}

} // namespace Platform
