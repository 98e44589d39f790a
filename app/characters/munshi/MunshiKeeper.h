#pragma once

#include "app/services/SerialQueue.h"
#include "core/ledger/MunshiStore.h"

#include <QObject>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace DeskSprites {

/// A ledger with the state of the file that it was made from, and the moment and the calendar by which its
/// day is to be turned over.
struct MunshiWork {
    FellowCore::MunshiLedger mine;
    FellowCore::MunshiLedger base;
    FellowCore::Instant now;
    FellowCore::Calendar calendar;
};

/// What came of a piece of work with the ledger's file.
struct MunshiAnswer {
    enum class Kind {
        opened, ///< `ledger` is what to work on
        same,   ///< the file holds what it held
        merged, ///< `ledger` is mine and what others have written; the file holds `base`
        saved,  ///< the same, and the file holds it
        busy,   ///< another program is saving: nothing was done
        failed, ///< nothing was written; `sentence` is the reason
    };

    Kind kind = Kind::same;
    FellowCore::MunshiLedger ledger = {};
    FellowCore::MunshiLedger base = {}; ///< what the file holds now
    std::vector<FellowCore::MunshiMergeChoice> choices = {};
    std::string sentence = {}; ///< what the user should know, or the reason of a failure; may be empty
};

/// Does what touches the ledger's file, on a thread of its own, one piece at a time.
class MunshiKeeper {
public:
    /// `files` outlives the keeper.
    MunshiKeeper(FellowCore::FileOperations& files, std::filesystem::path url);
    /// Ends the work at hand; its answer is not told any more.
    ~MunshiKeeper();

    /// Called on the main loop when a piece of work has ended. May start the next.
    std::function<void(MunshiAnswer answer)> onAnswer;

    bool isWorking() const { return working_; }
    const std::filesystem::path& url() const { return store_.url(); }

    // Each is to be called only while no other is at work.

    /// Reads the file for the first time; makes its folder, so that it can be watched.
    void open(FellowCore::Instant now, const FellowCore::Calendar& calendar);
    /// Looks whether another program has written, and merges; writes nothing.
    void look(MunshiWork work);
    void save(MunshiWork work);
    /// Blocks until the work at hand has ended, and has its answer told.
    void finish();

private:
    void start(std::function<MunshiAnswer()> work);
    void deliver();

    FellowCore::FileOperations& files_;
    FellowCore::MunshiStore store_;
    bool working_ = false;
    std::mutex mutex_;
    std::optional<MunshiAnswer> answer_;
    QObject context_;   ///< for calls from the queue to the main loop
    SerialQueue queue_; ///< last, so that it ends before what its work uses
};

} // namespace DeskSprites
