#pragma once

#include <sys/types.h>

#include <string>

namespace FellowHook {

/// The lock between helpers that write the events file at once: a folder, whose making is atomic, with the
/// holder's process id in it. Given back at the end of a block, and on the signals that end a program.
class EventLock {
public:
    /// `folder` is the support folder, which must exist.
    explicit EventLock(std::string folder);
    ~EventLock();
    EventLock(const EventLock&) = delete;
    EventLock& operator=(const EventLock&) = delete;

    /// Tries 20 times, 25 milliseconds apart; whether it is held now. A lock whose owner is dead, or that has
    /// had no owner for more than 10 seconds, is cleared away.
    bool acquire();
    /// False when another helper took this one for dead.
    bool isStillHeld() const;
    /// The file that the holder may use for what is to replace another one; removed when it dies holding the
    /// lock, by a signal or otherwise.
    std::string temporaryFile() const;

    /// Ends the process quietly and successfully on HUP, INT and TERM, and after so many seconds, whatever it
    /// waits for; a lock that is held is given back.
    static void endQuietlyAfter(double seconds);

private:
    enum class Owner { none, alive, dead };
    enum class Taking { taken, busy, impossible };

    Taking tryToTake();
    bool clearIfStale() const;
    Owner owner(pid_t& pid) const;
    std::string temporaryFileOf(pid_t pid) const;

    std::string folder_;
    std::string lock_;
    std::string pidFile_;
    bool held_ = false;
};

} // namespace FellowHook
