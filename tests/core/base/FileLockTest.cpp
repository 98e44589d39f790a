#include "core/base/FileOperations.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

namespace FellowCore {
namespace {

TEST(FileLock, KeepsOthersOutUntilItIsClosedOrItsProcessEnds) {
    const TestSupport::TemporaryFolder folder;
    PosixFileOperations files;
    const auto path = folder / "a.lock";
    const auto first = files.tryLock(path);
    ASSERT_TRUE(first);
    EXPECT_FALSE(files.tryLock(path)) << "the same process, another thread";
    EXPECT_TRUE(files.tryLock(folder / "b.lock")) << "another file";
    files.close(*first);
    const auto second = files.tryLock(path);
    ASSERT_TRUE(second) << "closed";
    files.close(*second);

    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(files.tryLock(path) ? 0 : 1); // ends without closing
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(files.tryLock(path)) << "its holder died";
}

TEST(FileLock, IsNeverTakenThroughALinkOrWhereNoFileCanStand) {
    const TestSupport::TemporaryFolder folder;
    PosixFileOperations files;
    TestSupport::writeBytes(folder / "diary", "dear diary");
    std::filesystem::create_symlink(folder / "diary", folder / "a.lock");
    EXPECT_THROW(files.tryLock(folder / "a.lock"), std::system_error);
    EXPECT_THROW(files.tryLock(folder / "no" / "b.lock"), std::system_error);
    EXPECT_EQ(TestSupport::bytesOf(folder / "diary"), "dear diary");
}

} // namespace
} // namespace FellowCore
