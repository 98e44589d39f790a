#pragma once

#include <QStringList>

#include <filesystem>
#include <functional>
#include <memory>

namespace Platform {

enum class InstanceOutcome {
    first,          ///< this program is the running one from here on
    forwarded,      ///< another runs and has taken the arguments; exit with success
    alreadyRunning, ///< another runs and could not be reached; say so and exit
};

/// Sees to it that a user runs the program once, and hands the arguments of later starts to the running one.
/// A lock file decides; the session bus (name "io.deskfellow.Deskfellow", object "/io/deskfellow/Deskfellow",
/// method `Open(as)`) carries arguments. The lock goes with the process, however it ends.
class SingleInstance {
public:
    /// `folder` holds the lock file: the user's runtime folder, or the data folder where there is none. It is
    /// made when missing.
    explicit SingleInstance(std::filesystem::path folder);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Call once, early, after the application object exists. `arguments` are the command line without the
    /// program's name, passed on as they are. Blocks: a few milliseconds, and up to three seconds when the
    /// running program does not answer. A folder that cannot hold the lock counts as `first` when no running
    /// program can be reached, so that a full disk does not keep the program from starting.
    InstanceOutcome claim(const QStringList& arguments);

    /// Called on the main loop with the arguments of each later start. Those that came before this was set
    /// are kept and delivered by the next `deliverPending`.
    std::function<void(const QStringList& arguments)> onArguments;
    void deliverPending();

private:
    class Receiver;
    bool takeLock();
    bool forward(const QStringList& arguments);

    std::filesystem::path folder_;
    int lock_ = -1;
    bool lockUnusable_ = false;
    std::unique_ptr<Receiver> receiver_;
};

} // namespace Platform
