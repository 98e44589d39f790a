#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace DeskSprites {

/// Runs work one piece after another on a thread of its own, in the order in which it was posted. The thread
/// starts with the first piece and sleeps without waking while there is none. Work must not throw.
class SerialQueue {
public:
    /// `name` is shown by the system's thread list (its first 15 bytes).
    explicit SerialQueue(std::string name);
    /// Finishes what was posted, then ends the thread.
    ~SerialQueue();
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;

    void post(std::function<void()> work);
    /// Blocks until everything posted before the call is done. Not to be called from the queue's own work.
    void drain();

private:
    void run();

    std::string name_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> waiting_;
    bool busy_ = false;
    bool ending_ = false;
    std::thread thread_;
};

} // namespace DeskSprites
