#include "core/base/FileOperations.h"

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <array>
#include <map>
#include <utility>

namespace FellowCore {
namespace {

using TestSupport::TemporaryFolder;
using TestSupport::writeBytes;
namespace fs = std::filesystem;

TEST(FileStatus, ListingTellsKindsAndSizesAndFollowsNoLink) {
    TemporaryFolder folder;
    writeBytes(folder / "file", "12345");
    fs::create_directory(folder / "folder");
    fs::create_symlink("file", folder / "link");
    ASSERT_EQ(::mkfifo((folder / ".pipe").c_str(), 0600), 0);
    std::map<std::string, FileStatus> found;
    PosixFileOperations files;
    files.list(folder.path(),
               [&](std::string_view name, const FileStatus& status) { found.emplace(name, status); });
    ASSERT_THAT(found, testing::SizeIs(4));
    EXPECT_EQ(found["file"].kind, FileStatus::Kind::file);
    EXPECT_EQ(found["file"].size, 5U);
    EXPECT_EQ(found["folder"].kind, FileStatus::Kind::folder);
    EXPECT_EQ(found["link"].kind, FileStatus::Kind::link);
    EXPECT_EQ(found[".pipe"].kind, FileStatus::Kind::other);
    EXPECT_EQ(files.status(folder / "link")->kind, FileStatus::Kind::file)
        << "by its path a link is followed";
    EXPECT_EQ(files.status(folder / "link")->identity, found["file"].identity);
    EXPECT_FALSE(files.status(folder / "none").has_value());
    EXPECT_FALSE(files.status(folder / "file/below").has_value());
    EXPECT_THROW(files.list(folder / "file", [](std::string_view, const FileStatus&) {}), std::system_error);
}

TEST(FileStatus, AFileKeepsItsIdentityUntilAnotherTakesItsName) {
    TemporaryFolder folder;
    PosixFileOperations files;
    writeBytes(folder / "file", "one");
    const FileStatus before = files.status(folder / "file").value();
    std::ofstream(folder / "file", std::ios::app) << "two";
    fs::rename(folder / "file", folder / "moved");
    EXPECT_EQ(files.status(folder / "moved")->identity, before.identity);
    EXPECT_EQ(files.status(folder / "moved")->size, 6U);
    writeBytes(folder / "file", "one");
    EXPECT_NE(files.status(folder / "file")->identity, before.identity);
}

TEST(FileStatus, ReadingAtAPlaceMovesNothing) {
    TemporaryFolder folder;
    PosixFileOperations files;
    writeBytes(folder / "file", "0123456789");
    const int file = files.openForReading(folder / "file");
    std::array<char, 4> bytes{};
    const auto room = std::as_writable_bytes(std::span(bytes));
    EXPECT_EQ(files.readAt(file, 7, room), 3U);
    EXPECT_EQ(bytes.front(), '7');
    EXPECT_EQ(files.read(file, room), 4U);
    EXPECT_EQ(bytes.front(), '0') << "the other way of reading was moved";
    EXPECT_EQ(files.readAt(file, 100, room), 0U);
    files.close(file);
}

} // namespace
} // namespace FellowCore
