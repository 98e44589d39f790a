#pragma once

#include "core/base/SupportFolders.h"

#include <filesystem>
#include <string>
#include <vector>

namespace Bench {

/// A user's home of its own, removed at the end. The cache is not part of it: it stays the caller's, because
/// what is measured is a program that the machine has run before.
class TemporaryHome {
public:
    /// With these characters on the desktop, or, without any, as a new user's.
    explicit TemporaryHome(const std::vector<std::string>& onScreen = {});
    ~TemporaryHome();
    TemporaryHome(const TemporaryHome&) = delete;
    TemporaryHome& operator=(const TemporaryHome&) = delete;

    const FellowCore::SupportFolders& folders() const { return folders_; }
    /// The environment of this process, moved into the home: NAME=VALUE.
    std::vector<std::string> environment() const;

private:
    std::filesystem::path path_;
    FellowCore::SupportFolders folders_;
};

} // namespace Bench
