#include "platform/InstalledApplications.h"

#include "platform/ApplicationLauncher.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Waiting.h"

#include <QByteArray>

#include <gmock/gmock.h>

#include <fstream>
#include <map>

namespace {

using Platform::installedApplication;

/// Application folders of a user and of a system.
class InstalledApplicationsTest : public testing::Test {
protected:
    InstalledApplicationsTest() {
        set("XDG_DATA_HOME", (folder / "home").string());
        set("XDG_DATA_DIRS", (folder / "site").string() + ":" + (folder / "system").string());
        set("LC_ALL", "de_AT.UTF-8");
    }
    ~InstalledApplicationsTest() override {
        for (const auto& [variable, value] : before)
            value.isNull() ? qunsetenv(variable) : qputenv(variable, value);
    }
    void set(const char* variable, const std::string& value) {
        before.try_emplace(variable, qgetenv(variable));
        qputenv(variable, QByteArray::fromStdString(value));
    }
    std::string install(const std::string& place, const std::string& keys) {
        const auto path = folder / (place + ".desktop");
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << "[Desktop Entry]\nType=Application\n" << keys;
        return path.string();
    }
    static std::string nameOf(const std::string& key) {
        const auto found = installedApplication(key);
        return found ? found->name : "(none)";
    }

    TestSupport::TemporaryFolder folder;
    std::map<const char*, QByteArray> before;
};

TEST_F(InstalledApplicationsTest, FindsThemByIDAndByTheClassOfTheirWindows) {
    const std::string path = install("system/applications/org.example.Files",
                                     "Name=Files\nName[de]=Dateien\nStartupWMClass=FilesWindow\n");
    install("system/applications/kde/tools-Paint", "Name=Paint\n");
    install("system/applications/aaa", "Name=Broken\nStartupWMClass=FilesWindowToo\n");
    install("system/applications/gimp", "Name=Gimp\n");
    install("system/applications/nameless", "StartupWMClass=Nameless\n");
    install("system/applications/zzz", "Name=By class\nStartupWMClass=GIMP\n");
    install("system/outside", "Name=Outside\n");
    std::filesystem::create_directory(folder / "system/applications/folder.desktop");
    std::filesystem::create_symlink("nowhere", folder / "system/applications/gone.desktop");
    const struct {
        const char* fault;
        std::string key;
        std::string name;
    } cases[] = {
        {"by id", "org.example.Files", "Dateien"},
        {"by id with its ending", "org.example.Files.desktop", "Dateien"},
        {"by the class of its windows", "FilesWindow", "Dateien"},
        {"the beginning of a class is another class", "Files", "(none)"},
        {"a step down is a dash in the id", "kde-tools-Paint", "Paint"},
        {"an id in another case", "Kde-Tools-paint", "Paint"},
        {"a class goes before an id in another case", "GIMP", "By class"},
        {"an id goes before a class", "gimp", "Gimp"},
        {"one without a name", "nameless", "(none)"},
        {"a path is no id", "kde/tools-Paint", "(none)"},
        {"a step up", "../applications/gimp", "(none)"},
        {"a step up written as a dash", "..-outside", "(none)"},
        {"nothing", "", "(none)"},
        {"only an ending", ".desktop", "(none)"},
        {"a NUL", std::string("gimp\0", 5), "(none)"},
        {"a folder with such a name", "folder", "(none)"},
        {"a link to nowhere", "gone", "(none)"},
        {"longer than a file name", std::string(5000, '-'), "(none)"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(nameOf(each.key), each.name) << each.fault;
    EXPECT_EQ(installedApplication("FilesWindow")->id, "org.example.Files");
    EXPECT_EQ(installedApplication("FilesWindow")->path, path);
}

TEST_F(InstalledApplicationsTest, TheUsersOwnFileHidesTheSystems) {
    install("system/applications/a", "Name=system\nStartupWMClass=A\n");
    install("site/applications/a", "Name=site\nStartupWMClass=A2\n");
    EXPECT_EQ(nameOf("a"), "site");
    EXPECT_EQ(nameOf("A2"), "site");
    install("home/applications/a", "Name=own\nStartupWMClass=A\nHidden=true\n");
    EXPECT_EQ(nameOf("a"), "(none)") << "the user removed it";
    EXPECT_EQ(nameOf("A2"), "(none)");
}

TEST_F(InstalledApplicationsTest, StartsThemByTheSameID) {
    const std::string made = (folder / "made").string();
    install("site/applications/tools/touch", "Name=Touch\nExec=touch %f\n");
    EXPECT_FALSE(Platform::launchApplication("touch", {made}));
    EXPECT_TRUE(Platform::launchApplication("tools-touch.desktop", {made}));
    EXPECT_TRUE(Testing::waitUntil([&] { return std::filesystem::exists(made); }));
}

} // namespace
