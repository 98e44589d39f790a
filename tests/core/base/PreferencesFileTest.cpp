#include "core/base/PreferencesFile.h"

#include "tests/support/FailingFileOperations.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace FellowCore {
namespace {

using TestSupport::bytesOf;
using TestSupport::FailingFileOperations;
using TestSupport::TemporaryFolder;
using TestSupport::writeBytes;
namespace fs = std::filesystem;
using Names = std::set<std::string>;

TEST(PreferencesFile, SavesAndLoadsThroughAFolderThatIsNotThereYet) {
    const TemporaryFolder folder;
    PosixFileOperations files;
    PreferencesFile file(files, folder / "config/deskfellow/preferences.json");
    MemoryPreferences preferences;
    EXPECT_EQ(file.load(preferences), std::nullopt) << "absent is no fault";
    preferences.setString("a", "b");
    file.save(preferences.document());
    fs::permissions(file.path(), fs::perms(0644));
    file.save(preferences.document());
    MemoryPreferences again;
    EXPECT_EQ(file.load(again), std::nullopt);
    EXPECT_EQ(again.string("a"), "b");
    EXPECT_EQ(fs::status(file.path()).permissions(), fs::perms(0600)) << "closed to others again";
    EXPECT_EQ(fs::status(folder / "config").permissions(), fs::perms(0700));
}

TEST(PreferencesFile, MovesAsideWhatItCannotUnderstand) {
    const struct {
        const char* fault;
        std::string bytes;
    } cases[] = {
        {"empty after a crash", ""},
        {"zeros after a crash", std::string(4096, '\0')},
        {"cut off", R"({"a": )"},
        {"a list at the root", "[1]"},
        {"a bare word", "null"},
        {"not UTF-8", "{\"a\": \"\xFF\"}"},
        {"nested to exhaust the stack", R"({"a":)" + std::string(100'000, '[')},
    };
    PosixFileOperations files;
    for (const auto& row : cases) {
        const TemporaryFolder folder;
        writeBytes(folder / "preferences.json", row.bytes);
        PreferencesFile file(files, folder / "preferences.json");
        MemoryPreferences preferences;
        EXPECT_NE(file.load(preferences), std::nullopt) << row.fault;
        EXPECT_TRUE(file.isWritable()) << row.fault;
        file.save("{}\n");
        EXPECT_EQ(bytesOf(folder / "preferences.json.corrupt"), row.bytes) << row.fault;
        EXPECT_EQ(bytesOf(folder / "preferences.json"), "{}\n") << row.fault;
    }
}

TEST(PreferencesFile, MovesAHugeFileAsideWithoutReadingIt) {
    const TemporaryFolder folder;
    writeBytes(folder / "preferences.json", "{}");
    fs::resize_file(folder / "preferences.json", 100U << 20U);
    FailingFileOperations files;
    PreferencesFile file(files, folder / "preferences.json");
    MemoryPreferences preferences;
    EXPECT_NE(file.load(preferences), std::nullopt);
    EXPECT_EQ(files.calls, 4) << "open, size, create, rename; no read";
    EXPECT_EQ(fs::file_size(folder / "preferences.json.corrupt"), 100U << 20U);
}

TEST(PreferencesFile, NeverWritesOverAFolder) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "preferences.json");
    PosixFileOperations files;
    PreferencesFile file(files, folder / "preferences.json");
    MemoryPreferences preferences;
    EXPECT_NE(file.load(preferences), std::nullopt);
    EXPECT_FALSE(file.isWritable());
    EXPECT_THROW(file.save("{}"), FileError);
    EXPECT_EQ(folder.names(), Names{"preferences.json"});
}

/// Whatever fails while loading, the user's bytes must still be somewhere after the next save.
TEST(PreferencesFile, LosesNothingWhicheverCallFails) {
    for (const std::string bytes : {R"({"precious": true})", R"({"precious": tr)"}) {
        bool failing = true;
        for (int failAt = 1; failing; ++failAt) {
            const TemporaryFolder folder;
            writeBytes(folder / "preferences.json", bytes);
            FailingFileOperations files;
            files.failAt = failAt;
            files.code = EACCES;
            PreferencesFile file(files, folder / "preferences.json");
            MemoryPreferences preferences;
            const auto fault = file.load(preferences);
            failing = !files.failed.empty();
            SCOPED_TRACE(bytes + ", failing at " + files.failed);
            EXPECT_EQ(file.isWritable(), !failing);
            EXPECT_TRUE(fault || !failing) << "a fault that nobody hears of";
            files.failAt = 0;
            if (file.isWritable()) {
                preferences.setBoolean("new", true);
                file.save(preferences.document());
            } else {
                EXPECT_THROW(file.save("{}"), FileError);
            }
            const bool understood = file.isWritable() && preferences.boolean("precious") == true;
            const fs::path aside = folder / "preferences.json.corrupt";
            EXPECT_TRUE(understood || bytesOf(fs::exists(aside) ? aside : file.path()) == bytes);
        }
    }
}

} // namespace
} // namespace FellowCore
