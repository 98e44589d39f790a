#include "platform/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace Platform {
namespace {

constexpr std::array signalNumbers = {SIGTERM, SIGHUP, SIGINT};

// A signal handler can reach nothing but what is static.
std::atomic<int> wakeFile{-1};
std::array<struct sigaction, signalNumbers.size()> earlier;

extern "C" void noteSignal(int) {
    const int saved = errno;
    const std::uint64_t one = 1;
    // There is nothing to be done about a failure here, and none can occur on a counter that is read.
    [[maybe_unused]] const auto written = write(wakeFile.load(), &one, sizeof one);
    errno = saved;
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onTerminate)
    : onTerminate_(std::move(onTerminate)) {
    wakeFile = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    notifier_ = new QSocketNotifier(wakeFile, QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, &TerminationSignals::received);
    for (std::size_t i = 0; i < signalNumbers.size(); ++i) {
        struct sigaction action {};
        action.sa_handler = noteSignal;
        // Those who end sessions often send several signals at once; none of them may cut short the saving.
        action.sa_flags = SA_RESTART;
        sigaction(signalNumbers[i], nullptr, &earlier[i]);
        // Who started us with a signal ignored (nohup, a background job) meant it.
        if (earlier[i].sa_handler != SIG_IGN)
            sigaction(signalNumbers[i], &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals() {
    for (std::size_t i = 0; i < signalNumbers.size(); ++i)
        sigaction(signalNumbers[i], &earlier[i], nullptr);
    delete notifier_;
    close(wakeFile.exchange(-1));
}

void TerminationSignals::received() {
    std::uint64_t count = 0;
    if (read(wakeFile, &count, sizeof count) != sizeof count)
        return;
    notifier_->setEnabled(false);
    if (const auto tell = std::exchange(onTerminate_, nullptr))
        tell();
}

} // namespace Platform
