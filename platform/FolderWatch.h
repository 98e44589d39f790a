#pragma once

#include <QSocketNotifier>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace Platform {

/// Tells when a file of one folder was written, replaced, moved or removed, also when that was done by
/// renaming another file over it. Nothing is read and nothing wakes while nothing happens. Main thread only.
class FolderWatch {
public:
    /// `onChange` gets the file's name, once for each file in a burst of changes; an empty name when so much
    /// happened that names were lost, or when the folder itself has gone, after which nothing more is told.
    /// It may destroy the watch.
    FolderWatch(const std::filesystem::path& folder, std::function<void(const std::string& name)> onChange);
    ~FolderWatch();
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    /// False when the folder could not be watched, as when it does not exist, or has gone since.
    bool isWatching() const { return watch_ >= 0; }

private:
    void readEvents();

    std::function<void(const std::string& name)> onChange_;
    int events_ = -1;
    int watch_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace Platform
