#include "app/services/SerialQueue.h"

#include <pthread.h>

#include <utility>

namespace DeskSprites {

SerialQueue::SerialQueue(std::string name) : name_(std::move(name)) {}

SerialQueue::~SerialQueue() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void SerialQueue::post(std::function<void()> work) {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(work));
    if (!thread_.joinable()) {
        thread_ = std::thread([this] { run(); });
        pthread_setname_np(thread_.native_handle(), name_.substr(0, 15).c_str());
    }
    changed_.notify_all();
}

void SerialQueue::drain() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return waiting_.empty() && !busy_; });
}

void SerialQueue::run() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return ending_ || !waiting_.empty(); });
        if (waiting_.empty()) {
            return;
        }
        const std::function<void()> work = std::move(waiting_.front());
        waiting_.pop_front();
        busy_ = true;
        lock.unlock();
        work();
        lock.lock();
        busy_ = false;
        changed_.notify_all();
    }
}

} // namespace DeskSprites
