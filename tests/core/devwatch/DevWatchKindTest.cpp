#include "core/devwatch/DevWatchKind.h"
#include "tests/core/devwatch/FakeSystem.h"

#include <gmock/gmock.h>

namespace {

using namespace FellowCore;
using Case = DevWatchKind::Case;

TEST(DevWatchKind, SortsByNameThenByPlace) {
    const struct {
        const char* name;
        const char* path;
        DevWatchKind expected;
    } cases[] = {
        {"node", "/Applications/Foo.app/Contents/Helpers/node", {Case::devServer}},
        {"Foo", "/Applications/Foo.app/Contents/MacOS/Foo", {Case::appHelper, "Foo"}},
        {"NODE", "/x/y", {Case::devServer}},
        {"MainThread", "/home/a/.nvm/bin/node", {Case::devServer}},
        {"python3.12", "/x/y", {Case::devServer}},
        {"python", "/x/python3.11", {Case::devServer}},
        {"python31", "/x/python31", {Case::tool}},
        {"postgres", "/usr/lib/postgresql/15/bin/postgres", {Case::database}},
        {"postgres", "/usr/bin/node", {Case::devServer}},
        {"nginx", "/usr/sbin/nginx", {Case::devServer}},
        {"cupsd", "/usr/sbin/cupsd", {Case::system}},
        {"helper", "/usr/libexec/helper", {Case::system}},
        {"systemd", "/lib/systemd/systemd", {Case::system}},
        {"server", "/usr/local/bin/server", {Case::tool}},
        {"x", "/System", {Case::system}},
        {"x", "/Systemic/x", {Case::tool}},
        // where Linux keeps applications
        {"gimp",
         "/var/lib/flatpak/app/org.gimp.GIMP/x86_64/stable/1/files/bin/gimp",
         {Case::appHelper, "GIMP"}},
        {"gimp", "/app/bin/gimp-2.10", {Case::appHelper, "gimp-2.10"}},
        {"server", "/app/server", {Case::tool}},
        {"code", "/snap/code/170/usr/share/code/code", {Case::appHelper, "code"}},
        {"code", "/var/lib/snapd/snap/code/170/code", {Case::appHelper, "code"}},
        {"obsidian", "/tmp/.mount_ObsidiAbC123/obsidian", {Case::appHelper, "obsidian"}},
        {"helper", "/tmp/.mount_ObsidiAbC123/lib/helper", {Case::appHelper, "Obsidi"}},
        {"x", "/tmp/.mount_AbC123/x", {Case::tool}},
        {"Ide", "/home/a/Ide.AppImage", {Case::appHelper, "Ide"}},
        {"chrome", "/opt/google/chrome/chrome", {Case::appHelper, "google"}},
        {"thing", "/opt/thing", {Case::tool}},
        {"thing", "/home/a/opt/thing/bin/thing", {Case::tool}},
        {"thing", "/home/a/.app/thing", {Case::tool}},
    };
    for (const auto& row : cases) {
        const auto kind = DevWatchKind::classify({{}, row.name, row.path, "/"});
        EXPECT_EQ(kind, row.expected)
            << row.name << " in " << row.path << " is " << rawValue(kind.kind) << ' ' << kind.application;
    }
}

TEST(DevWatchKind, OpensOnlyWhatABrowserCanShow) {
    const auto url = [](const char* name, const char* path, std::uint16_t port) {
        return DevWatchKind::httpURL({{{}, name, path, "/"}, port}).value_or("");
    };
    EXPECT_EQ(url("node", "/usr/bin/node", 5173), "http://localhost:5173");
    EXPECT_EQ(url("node", "/usr/bin/node", 5432), "");
    EXPECT_EQ(url("node", "/usr/bin/node", 33060), "");
    EXPECT_EQ(url("redis-server", "/usr/bin/redis-server", 8080), "");
    EXPECT_EQ(url("cupsd", "/usr/sbin/cupsd", 631), "");
}

} // namespace
