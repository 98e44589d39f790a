#include "core/base/SupportFolders.h"

#include <gtest/gtest.h>

namespace FellowCore {
namespace {

TEST(SupportFolders, StandUnderHomeWhenTheEnvironmentIsSilentOrRelative) {
    const FolderEnvironment cases[] = {
        {.home = "/home/u"},
        {.home = "/home/u", .dataHome = "", .cacheHome = "", .configHome = "", .runtimeDir = ""},
        {.home = "/home/u", .dataHome = "data", .cacheHome = "./c", .configHome = "~/x", .runtimeDir = "run"},
    };
    for (const auto& environment : cases) {
        const SupportFolders folders(environment);
        EXPECT_EQ(folders.deskSprites(), "/home/u/.local/share/DeskSprites");
        EXPECT_EQ(folders.deskfellow(), "/home/u/.local/share/Deskfellow");
        EXPECT_EQ(folders.cache(), "/home/u/.cache/deskfellow");
        EXPECT_EQ(folders.preferencesFile(), "/home/u/.config/deskfellow/preferences.json");
        EXPECT_EQ(folders.autostartFolder(), "/home/u/.config/autostart");
        EXPECT_EQ(folders.runtime(), std::nullopt);
    }
}

TEST(SupportFolders, FollowTheEnvironmentEachOnItsOwn) {
    const SupportFolders folders({.home = "/home/u",
                                  .dataHome = "/d",
                                  .cacheHome = "/c",
                                  .configHome = "/f",
                                  .runtimeDir = "/run/user/7"});
    EXPECT_EQ(folders.focusTimerFile("batti"), "/d/DeskSprites/sprites/batti/focus-timer.json");
    EXPECT_EQ(folders.ledgerFile(), "/d/DeskSprites/sprites/munshi/ledger.json");
    EXPECT_EQ(folders.cache(), "/c/deskfellow");
    EXPECT_EQ(folders.preferencesFile(), "/f/deskfellow/preferences.json");
    EXPECT_EQ(folders.autostartFolder(), "/f/autostart");
    EXPECT_EQ(folders.runtime(), "/run/user/7");
}

TEST(SupportFolders, AreReadWithTheHomeShortened) {
    const SupportFolders folders({.home = "/home/u"});
    EXPECT_EQ(folders.shortened("/home/u/.docker/run"), "~/.docker/run");
    EXPECT_EQ(folders.shortened("/home/user/x"), "/home/user/x") << "somebody else's";
    EXPECT_EQ(folders.shortened("/run/user/7"), "/run/user/7");
}

} // namespace
} // namespace FellowCore
