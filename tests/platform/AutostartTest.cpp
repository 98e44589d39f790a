#include "platform/Autostart.h"
#include "core/base/WholeFile.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <fstream>

namespace {

class AutostartTest : public testing::Test {
protected:
    std::string content() const {
        std::ifstream file(autostart.entryFile());
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void write(const std::string& text) const {
        std::filesystem::create_directories(folder);
        std::ofstream(autostart.entryFile()) << text;
    }

    QTemporaryDir place;
    std::filesystem::path folder = std::filesystem::path(place.path().toStdString()) / "autostart";
    FellowCore::PosixFileOperations files;
    Platform::Autostart autostart{files, folder, "/opt/Desk Fellow/bin/deskfellow"};
};

TEST(AutostartEntryTest, PathsSurviveTheRulesOfTheExecLine) {
    struct Case {
        const char* fault;
        const char* path;
        const char* argument;
    };
    const Case cases[] = {
        {"quotes what needs none", "/usr/bin/deskfellow", "/usr/bin/deskfellow"},
        {"a space ends the path", "/opt/my apps/deskfellow", "\"/opt/my apps/deskfellow\""},
        {"a percent sign begins a field code", "/opt/100%f/deskfellow", "/opt/100%%f/deskfellow"},
        {"a dollar sign is expanded", "/opt/$x/d", R"("/opt/\\$x/d")"},
        {"a quote ends the quotation", "/opt/\"x/d", R"("/opt/\\"x/d")"},
        {"a backslash is eaten twice", "/opt/a\\b", R"("/opt/a\\\\b")"},
        {"a new line makes a key of its own", "/opt/a\nHidden=true", R"("/opt/a\nHidden=true")"},
    };
    for (const Case& row : cases)
        EXPECT_EQ(Platform::execArgument(row.path), row.argument) << row.fault;
}

TEST_F(AutostartTest, IsWrittenWholeAndRemoved) {
    EXPECT_FALSE(autostart.isEnabled());
    EXPECT_EQ(autostart.setEnabled(false), std::nullopt);
    EXPECT_EQ(autostart.setEnabled(true), std::nullopt);
    EXPECT_TRUE(autostart.isEnabled());
    EXPECT_THAT(content(), testing::StartsWith("[Desktop Entry]\nType=Application\n"));
    EXPECT_THAT(content(), testing::HasSubstr("\nExec=\"/opt/Desk Fellow/bin/deskfellow\"\n"));
    EXPECT_THAT(content(), testing::HasSubstr("\nTryExec=/opt/Desk Fellow/bin/deskfellow\n"));
    EXPECT_EQ(autostart.setEnabled(false), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(autostart.entryFile()));
}

TEST_F(AutostartTest, RespectsWhatTheDesktopSwitchedOff) {
    struct Case {
        const char* fault;
        const char* entry;
        bool enabled;
    };
    const Case cases[] = {
        {"a hidden entry counts", "[Desktop Entry]\nExec=x\nHidden=true\n", false},
        {"the desktop's own switch is not seen", "[Desktop Entry]\r\nX-GNOME-Autostart-enabled = false\r\n",
         false},
        {"another group's key counts", "[Desktop Entry]\nExec=x\n[Desktop Action a]\nHidden=true\n", true},
        {"a comment counts", "[Desktop Entry]\n#Hidden=true\nHidden=false\n", true},
    };
    for (const Case& row : cases) {
        write(row.entry);
        EXPECT_EQ(autostart.isEnabled(), row.enabled) << row.fault;
    }
    write(cases[0].entry);
    EXPECT_EQ(autostart.setEnabled(true), std::nullopt);
    EXPECT_TRUE(autostart.isEnabled()) << "switching on must undo the switch";
}

TEST_F(AutostartTest, SaysWhyItCouldNot) {
    std::ofstream(folder) << "a file where the folder should be";
    const auto error = autostart.setEnabled(true);
    ASSERT_TRUE(error);
    EXPECT_THAT(*error, testing::HasSubstr("could not be added"));
    EXPECT_FALSE(autostart.isEnabled());
}

} // namespace
