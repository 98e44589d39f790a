#include "platform/TimeChanges.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <cstdint>

namespace Platform {

namespace {
constexpr time_t year2200 = 7258118400;
} // namespace

TimeChanges::TimeChanges(std::function<void()> onChange)
    : onChange_(std::move(onChange)), timer_(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)),
      zone_("/etc", [this](const std::string& name) {
          if (name == "localtime" || name == "timezone") {
              onChange_();
          }
      }) {
    if (timer_ >= 0) {
        notifier_ = std::make_unique<QSocketNotifier>(timer_, QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                         [this] { clockSet(); });
        arm();
    }
}

TimeChanges::~TimeChanges() {
    notifier_.reset();
    if (timer_ >= 0) {
        close(timer_);
    }
}

/// A timer that nobody lives to see due, and that the kernel cancels when the clock is set
/// (timerfd_create(2)).
void TimeChanges::arm() const {
    itimerspec never{};
    never.it_value.tv_sec = year2200;
    timerfd_settime(timer_, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr);
}

void TimeChanges::clockSet() {
    std::uint64_t expirations = 0;
    // Read for its effect, which is that the timer can tell again; the answer is ECANCELED.
    [[maybe_unused]] const ssize_t ignored = read(timer_, &expirations, sizeof expirations);
    arm();
    const auto tell = onChange_; // a copy, because the call may destroy this
    tell();
}

} // namespace Platform
