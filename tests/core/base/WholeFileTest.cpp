#include "core/base/WholeFile.h"

#include "tests/support/FailingFileOperations.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <functional>

namespace FellowCore {
namespace {

using TestSupport::bytesOf;
using TestSupport::FailingFileOperations;
using TestSupport::TemporaryFolder;
using TestSupport::writeBytes;
namespace fs = std::filesystem;

unsigned modeOf(const fs::path& path) {
    return static_cast<unsigned>(fs::status(path).permissions());
}

std::optional<std::string> bytesIfAny(const fs::path& path) {
    return fs::exists(path) ? std::optional(bytesOf(path)) : std::nullopt;
}

FileError::Kind kindOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const FileError& error) {
        return error.kind();
    }
    throw std::logic_error("nothing was thrown");
}

/// Something that a file may replace, with what a reader finds at "file" before.
struct Stage {
    const char* name;
    std::optional<std::string> before;
    std::function<void(const TemporaryFolder&)> set;
};

const Stage stages[] = {
    {"no file yet", std::nullopt, [](const TemporaryFolder&) {}},
    {"over a file", "old", [](const TemporaryFolder& folder) { writeBytes(folder / "file", "old"); }},
    {"over a link", "old",
     [](const TemporaryFolder& folder) {
         writeBytes(folder / "elsewhere/target", "old");
         fs::create_symlink("elsewhere/target", folder / "file");
     }},
    {"over a link to nothing", std::nullopt,
     [](const TemporaryFolder& folder) {
         fs::create_directory(folder / "elsewhere");
         fs::create_symlink(folder / "elsewhere/target", folder / "file");
     }},
};

std::set<fs::path> everythingIn(const TemporaryFolder& folder) {
    const fs::recursive_directory_iterator all(folder.path());
    return {begin(all), end(all)};
}

/// Runs one save with faults and checks that a reader finds the old file or the new one, as the caller was
/// told. Returns whether any fault was met.
bool expectOldOrNew(const Stage& stage, FailingFileOperations& files) {
    const TemporaryFolder folder;
    stage.set(folder);
    auto expected = everythingIn(folder);
    bool saved = true;
    try {
        writeWholeFile(files, folder / "file", "the new text");
    } catch (const FileError& error) {
        EXPECT_EQ(error.kind(), FileError::Kind::notWritable);
        saved = false;
    }
    SCOPED_TRACE(std::string(stage.name) + ", failing at " + files.failed +
                 ", saved: " + (saved ? "yes" : "no"));
    EXPECT_EQ(bytesIfAny(folder / "file"), saved ? "the new text" : stage.before);
    if (saved) {
        expected.insert(folder / (fs::exists(folder / "elsewhere") ? "elsewhere/target" : "file"));
    }
    if (files.failures == 1) {
        EXPECT_EQ(everythingIn(folder), expected) << "a temporary file is left";
    }
    return !files.failed.empty();
}

TEST(WholeFile, IsTheOldOneOrTheNewOneWhicheverCallFails) {
    std::set<std::string> met;
    for (const Stage& stage : stages) {
        for (const int failures : {1, 1000}) {
            bool failing = true;
            for (int failAt = 1; failing; ++failAt) {
                FailingFileOperations files;
                files.failAt = failAt;
                files.failures = failures;
                files.code = ENOSPC;
                files.atOnce = 5; // so that the second and third piece can fail too
                failing = expectOldOrNew(stage, files);
                met.insert(files.failed);
            }
        }
    }
    const std::set<std::string> every = {
        "", "createExclusively", "flush", "flushFolder", "mode", "remove", "rename", "resolved", "write"};
    EXPECT_EQ(met, every) << "a call that never failed was never tried";
}

TEST(WholeFile, FollowsALinkAndLeavesItALink) {
    PosixFileOperations files;
    for (const Stage& stage : stages) {
        const TemporaryFolder folder;
        stage.set(folder);
        const bool wasLink = fs::is_symlink(folder / "file");
        writeWholeFile(files, folder / "file", "new");
        EXPECT_EQ(fs::is_symlink(folder / "file"), wasLink) << stage.name;
        EXPECT_EQ(bytesOf(folder / "file"), "new") << stage.name;
    }
}

TEST(WholeFile, HasTheModeAskedForWhateverTheUmask) {
    const struct {
        const char* fault;
        std::optional<unsigned> before;
        FileMode asked;
        unsigned after;
    } cases[] = {
        {"shared files stay shared", 0664, FileMode::keep, 0664},
        {"a new file is the owner's", std::nullopt, FileMode::keep, 0600},
        {"an open file is closed to others", 0644, FileMode::ownerOnly, 0600},
        {"a program can run", 0600, FileMode::ownerProgram, 0700},
    };
    PosixFileOperations files;
    const mode_t usual = ::umask(077);
    for (const auto& row : cases) {
        const TemporaryFolder folder;
        if (row.before) {
            writeBytes(folder / "file", "old");
            fs::permissions(folder / "file", fs::perms(*row.before));
        }
        writeWholeFile(files, folder / "file", "new", row.asked);
        EXPECT_EQ(modeOf(folder / "file"), row.after) << row.fault;
    }
    ::umask(usual);
}

TEST(WholeFile, ReplacesNothingThatIsNoFile) {
    const TemporaryFolder folder;
    PosixFileOperations files;
    fs::create_directory(folder / "folder");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("circle", folder / "circle");
    writeBytes(folder / "plain", "x");
    const auto before = everythingIn(folder);
    for (const char* name : {"folder", "pipe", "circle", "absent/file", "plain/file"}) {
        EXPECT_EQ(kindOf([&] { writeWholeFile(files, folder / name, "new"); }), FileError::Kind::notWritable)
            << name;
        EXPECT_EQ(everythingIn(folder), before) << name;
    }
    EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
}

TEST(WholeFile, IsReadWholeOrRefused) {
    const TemporaryFolder folder;
    FailingFileOperations files;
    files.atOnce = 3; // reads may come short
    writeBytes(folder / "file", "12345678");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(readWholeFile(files, folder / "file", 8), "12345678");
    EXPECT_EQ(readWholeFile(files, "/proc/self/stat", 4096).empty(), false) << "a file that states no size";
    const struct {
        const char* fault;
        fs::path path;
        FileError::Kind kind;
    } cases[] = {
        {"one byte too many", folder / "file", FileError::Kind::tooLarge},
        {"endless, though it states no size", "/proc/self/maps", FileError::Kind::tooLarge},
        {"absent", folder / "absent", FileError::Kind::notFound},
        {"below a file", folder / "file/below", FileError::Kind::notFound},
        {"a folder", folder.path(), FileError::Kind::notReadable},
        {"a pipe would wait for ever", folder / "pipe", FileError::Kind::notReadable},
        {"a device", "/dev/zero", FileError::Kind::notReadable},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(kindOf([&] { readWholeFile(files, row.path, 7); }), row.kind) << row.fault;
    }
}

TEST(MoveAside, NeverReplacesAnEarlierOne) {
    const TemporaryFolder folder;
    PosixFileOperations files;
    writeBytes(folder / "a.json.corrupt", "first");
    fs::create_symlink("nowhere", folder / "a.json.corrupt-2");
    writeBytes(folder / "a.json", "third");
    EXPECT_EQ(moveAside(files, folder / "a.json"), folder / "a.json.corrupt-3");
    EXPECT_EQ(bytesOf(folder / "a.json.corrupt"), "first");
    EXPECT_EQ(bytesOf(folder / "a.json.corrupt-3"), "third");
    EXPECT_FALSE(fs::exists(folder / "a.json"));
}

TEST(MoveAside, LeavesTheFileWhereItIsWhenItFails) {
    for (const int failAt : {1, 2}) {
        const TemporaryFolder folder;
        FailingFileOperations files;
        files.failAt = failAt;
        files.code = EROFS;
        writeBytes(folder / "a.json", "precious");
        EXPECT_EQ(kindOf([&] { moveAside(files, folder / "a.json"); }), FileError::Kind::notWritable);
        EXPECT_EQ(folder.names(), std::set<std::string>{"a.json"}) << files.failed;
        EXPECT_EQ(bytesOf(folder / "a.json"), "precious") << files.failed;
    }
}

TEST(FileOperations, MakesPrivateFoldersAndAcceptsExistingOnes) {
    const TemporaryFolder folder;
    PosixFileOperations files;
    files.makeFolders(folder / "a/b/");
    files.makeFolders(folder / "a/b");
    EXPECT_EQ(modeOf(folder / "a"), 0700U);
    EXPECT_EQ(modeOf(folder / "a/b"), 0700U);
    writeBytes(folder / "file", "");
    fs::create_symlink("nowhere", folder / "link");
    for (const char* blocked : {"file", "file/below", "link", "link/below"}) {
        EXPECT_THROW(files.makeFolders(folder / blocked), std::system_error) << blocked;
    }
}

TEST(StandardizedPath, ShowsWhereAPathReallyLeads) {
    const TemporaryFolder folder;
    fs::create_directories(folder / "pack/art");
    fs::create_directory(folder / "pack-2");
    fs::create_symlink(folder / "pack-2", folder / "pack/out");
    fs::create_symlink("circle", folder / "circle");
    const fs::path pack = standardized(folder / "pack/");
    const struct {
        const char* fault;
        fs::path inner;
        bool below;
    } cases[] = {
        {"below", pack / "art/idle.png", true},
        {"dots that come back", pack / "art/../art/./idle.png", true},
        {"dots that leave", pack / "art/../../pack-2/x.png", false},
        {"a link that leaves", pack / "out/x.png", false},
        {"a neighbour whose name begins alike", folder / "pack-2", false},
        {"the folder itself", folder / "pack/art/..", false},
        {"links in a circle", folder / "circle/x", false},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(liesBelow(standardized(row.inner), pack), row.below) << row.fault;
    }
}

} // namespace
} // namespace FellowCore
