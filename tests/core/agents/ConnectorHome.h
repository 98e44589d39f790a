#pragma once

#include "core/base/FileOperations.h"
#include "core/base/SupportFolders.h"
#include "tests/support/FailingFileOperations.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <array>
#include <set>
#include <string>
#include <utility>

namespace FellowCore {

using TestSupport::bytesOf;
using TestSupport::writeBytes;

/// A home of its own, with a quote in its name, for each test.
class ConnectorHome : public testing::Test {
protected:
    TestSupport::TemporaryFolder temporary_;
    struct Home {
        std::filesystem::path folder;
        const std::filesystem::path& path() const { return folder; }
        std::filesystem::path operator/(const std::filesystem::path& name) const { return folder / name; }
    } home_{temporary_ / "it's home"};
    SupportFolders folders_{{.home = home_.path()}};
    TestSupport::FailingFileOperations files_;

    ConnectorHome() {
        files_.flushes = false;
        std::filesystem::create_directory(home_.path());
    }

    /// Somebody edits a file when the so-manyth file from here on has been written and is about to be
    /// flushed.
    void editAtFlush(int count, const std::filesystem::path& path, const std::string& bytes) {
        files_.onCall = [=, left = count](std::string_view call) mutable {
            if (call == "flush" && --left == 0) {
                writeBytes(path, bytes);
            }
        };
    }
    static unsigned modeOf(const std::filesystem::path& path) {
        return static_cast<unsigned>(std::filesystem::status(path).permissions());
    }
    /// The names of all that is no folder.
    static std::set<std::string> filesBelow(const std::filesystem::path& folder) {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            if (!entry.is_directory()) {
                names.insert(entry.path().filename().string());
            }
        }
        return names;
    }
    /// Somebody whom this process may give files to; with few rights that is a group of its own at best.
    static std::pair<uid_t, gid_t> anotherOwner() {
        if (::geteuid() == 0) {
            return {1234, 4321};
        }
        std::array<gid_t, 64> groups{};
        const int count = ::getgroups(static_cast<int>(groups.size()), groups.data());
        return {::geteuid(), count > 0 ? groups.at(static_cast<std::size_t>(count) - 1) : ::getegid()};
    }
};

} // namespace FellowCore
