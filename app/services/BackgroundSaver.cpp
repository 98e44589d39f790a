#include "app/services/BackgroundSaver.h"

#include <exception>
#include <utility>

namespace DeskSprites {

BackgroundSaver::BackgroundSaver(Failure onFailure)
    : onFailure_(std::move(onFailure)), queue_("fellow-save") {}

BackgroundSaver::~BackgroundSaver() {
    flush();
}

void BackgroundSaver::save(const std::string& store, const std::string& failure,
                           std::function<void()> write) {
    {
        const std::lock_guard lock(mutex_);
        const bool isWaiting = latest_.contains(store);
        latest_[store] = {failure, std::move(write)};
        if (isWaiting) {
            return;
        }
    }
    queue_.post([this, store] { writeLatest(store); });
}

void BackgroundSaver::flush() {
    queue_.drain();
}

void BackgroundSaver::writeLatest(const std::string& store) {
    Waiting latest;
    {
        const std::lock_guard lock(mutex_);
        const auto found = latest_.find(store);
        latest = std::move(found->second);
        latest_.erase(found);
    }
    try {
        latest.write();
    } catch (const std::exception& error) {
        onFailure_(latest.failure + ": " + error.what());
    }
}

} // namespace DeskSprites
