#pragma once

#include "app/services/SerialQueue.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace DeskSprites {

/// Writes stores on a queue, so that saving never holds up the thread that draws. Of several saves of one
/// store that wait, only the latest is written.
class BackgroundSaver {
public:
    /// Gets "WHAT FAILED: REASON" when a save has failed, on the queue's thread.
    using Failure = std::function<void(const std::string& line)>;

    explicit BackgroundSaver(Failure onFailure);
    /// Writes what still waits.
    ~BackgroundSaver();

    /// `store` tells one store from another, as the path of its file does. `failure` is the sentence to begin
    /// with should the save fail ("Batti could not save its timer"). `write` runs on the queue and may throw
    /// what derives from `std::exception`; it owns all it needs.
    void save(const std::string& store, const std::string& failure, std::function<void()> write);
    /// Blocks until nothing waits.
    void flush();

private:
    struct Waiting {
        std::string failure;
        std::function<void()> write;
    };

    void writeLatest(const std::string& store);

    Failure onFailure_;
    std::mutex mutex_;
    std::map<std::string, Waiting> latest_; ///< by store
    SerialQueue queue_;                     ///< last, so that it ends before what its work uses
};

} // namespace DeskSprites
