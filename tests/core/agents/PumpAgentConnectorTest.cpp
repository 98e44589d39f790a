#include "core/agents/PumpAgentConnector.h"

#include "core/agents/ClaudeStatusLineConnector.h"
#include "tests/core/agents/ConnectorHome.h"
#include "tests/core/agents/SettingsTexts.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace FellowCore {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::UnorderedElementsAre;
using Case = PumpHookSettings::Failure::Case;
constexpr auto without = PumpProjectConsent::excluded;
constexpr auto with = PumpProjectConsent::included;

class PumpAgentConnectorTest : public ConnectorHome {
protected:
    PumpAgentConnector connector_{files_, folders_, PumpProvider::claude, "/opt/fellow-hook"};

    Case failureOf(const std::function<void()>& call) {
        try {
            call();
        } catch (const PumpHookSettings::Failure& failure) {
            return failure.failure();
        }
        throw std::logic_error("nothing was thrown");
    }
};

TEST_F(PumpAgentConnectorTest, GivesBackEverySettingsFileByteForByte) {
    for (const PumpProvider agent : allPumpProviders) {
        const PumpAgentConnector connector(files_, folders_, agent, "/opt/fellow-hook");
        for (const std::string& text : settingsTexts()) {
            writeBytes(connector.settings(), text);
            connector.connect(without);
            EXPECT_TRUE(connector.connected());
            EXPECT_TRUE(PumpHookSettings::holdsCommand(bytesOf(connector.settings()), connector.command()));
            connector.disconnect();
            EXPECT_FALSE(connector.connected());
            EXPECT_EQ(bytesOf(connector.settings()), text);
            EXPECT_EQ(bytesOf(connector.script()), "#!/bin/sh\nexit 0\n");
        }
    }
}

TEST_F(PumpAgentConnectorTest, AFileThatWasNotThereGoesAgain) {
    connector_.connect(with);
    EXPECT_EQ(Json::parse(bytesOf(connector_.settings())).size(), 1U);
    EXPECT_EQ(modeOf(connector_.settings()), 0600U);
    EXPECT_EQ(modeOf(connector_.backup()), 0600U);
    EXPECT_EQ(modeOf(connector_.script()), 0700U);
    EXPECT_EQ(modeOf(folders_.deskfellow()), 0700U);
    connector_.disconnect();
    EXPECT_FALSE(std::filesystem::exists(connector_.settings()));
    connector_.disconnect();
    EXPECT_THAT(filesBelow(home_.path()), UnorderedElementsAre("pump-claude-hook.sh"));
}

TEST_F(PumpAgentConnectorTest, ClosesAFolderThatStoodOpen) {
    std::filesystem::create_directories(folders_.deskfellow());
    std::filesystem::permissions(folders_.deskfellow(), std::filesystem::perms(0755));
    connector_.connect(without);
    EXPECT_EQ(modeOf(folders_.deskfellow()), 0700U);
}

TEST_F(PumpAgentConnectorTest, ConnectingTwiceIsConnectingOnce) {
    writeBytes(connector_.settings(), R"({"a" : 1})");
    EXPECT_FALSE(connector_.includesProject());
    connector_.connect(without);
    const std::string once = bytesOf(connector_.settings());
    const std::string helper = bytesOf(connector_.script());
    connector_.connect(without);
    EXPECT_EQ(bytesOf(connector_.settings()), once);
    EXPECT_EQ(bytesOf(connector_.script()), helper);
    connector_.connect(with);
    EXPECT_EQ(bytesOf(connector_.settings()), once);
    EXPECT_THAT(bytesOf(connector_.script()), HasSubstr("DF_PROJECT='1'"));
    EXPECT_TRUE(connector_.includesProject());
    connector_.disconnect();
    EXPECT_EQ(bytesOf(connector_.settings()), R"({"a" : 1})");
    EXPECT_EQ(bytesOf(connector_.script()), PumpAgentHook::idleScript) << "the helper was still ours";
}

TEST_F(PumpAgentConnectorTest, KeepsWhatWasEditedMeanwhile) {
    writeBytes(connector_.settings(), R"({"b" : 1, "a" : 2})");
    connector_.connect(without);
    Json edited = Json::parse(bytesOf(connector_.settings()));
    edited["hooks"]["Stop"].push_back(Json::parse(R"({"hooks":[{"type":"command","command":"mine"}]})"));
    writeBytes(connector_.settings(), edited.dump());
    connector_.disconnect();
    EXPECT_EQ(
        Json::parse(bytesOf(connector_.settings())),
        Json::parse(R"({"a":2,"b":1,"hooks":{"Stop":[{"hooks":[{"type":"command","command":"mine"}]}]}})"));
    connector_.connect(without);
    writeBytes(connector_.settings(), "{ broken");
    EXPECT_EQ(failureOf([&] { connector_.disconnect(); }), Case::invalid);
    EXPECT_EQ(bytesOf(connector_.settings()), "{ broken");
    EXPECT_TRUE(connector_.connected());
    std::filesystem::remove(connector_.settings());
    connector_.disconnect();
    EXPECT_FALSE(std::filesystem::exists(connector_.settings())) << "the user removed it";
    EXPECT_FALSE(connector_.connected());
}

TEST_F(PumpAgentConnectorTest, RefusesAndLeavesEverythingAsItWas) {
    std::vector<std::string> texts = refusedSettingsTexts();
    texts.push_back("{\"x\":\"" + std::string(17 * 1024 * 1024, 'x') + "\"}");
    for (const std::string& text : texts) {
        writeBytes(connector_.settings(), text);
        EXPECT_EQ(failureOf([&] { connector_.connect(without); }), Case::invalid) << text.substr(0, 80);
        EXPECT_EQ(bytesOf(connector_.settings()), text);
        EXPECT_THAT(filesBelow(home_.path()), UnorderedElementsAre("settings.json"));
    }
}

TEST_F(PumpAgentConnectorTest, TenMegabytesAreKept) {
    const std::string text = "{\"x\" : \"" + std::string(10 * 1024 * 1024, 'x') + "\"}";
    writeBytes(connector_.settings(), text);
    connector_.connect(without);
    connector_.disconnect();
    EXPECT_EQ(bytesOf(connector_.settings()), text);
}

TEST_F(PumpAgentConnectorTest, ALostBackupIsNotPaperedOver) {
    connector_.connect(without);
    const std::string settings = bytesOf(connector_.settings());
    std::filesystem::remove(connector_.backup());
    EXPECT_EQ(failureOf([&] { connector_.connect(without); }), Case::missingBackup);
    writeBytes(connector_.backup(), "{");
    EXPECT_EQ(failureOf([&] { connector_.connect(without); }), Case::missingBackup);
    EXPECT_EQ(failureOf([&] { connector_.disconnect(); }), Case::missingBackup);
    EXPECT_EQ(bytesOf(connector_.settings()), settings);
}

TEST_F(PumpAgentConnectorTest, AnEditedHelperStays) {
    writeBytes(connector_.script(), "mine");
    EXPECT_EQ(failureOf([&] { connector_.connect(without); }), Case::editedHelper);
    EXPECT_THAT(filesBelow(home_.path()), UnorderedElementsAre("pump-claude-hook.sh"));
    std::filesystem::remove(connector_.script());
    connector_.connect(without);
    writeBytes(connector_.script(), "edited");
    EXPECT_EQ(failureOf([&] { connector_.connect(with); }), Case::editedHelper);
    EXPECT_FALSE(connector_.includesProject());
    connector_.disconnect();
    EXPECT_EQ(bytesOf(connector_.script()), "edited");
    EXPECT_FALSE(connector_.connected());
}

TEST_F(PumpAgentConnectorTest, SeesAnEditOfTheLastMoment) {
    constexpr int settingsOfConnect = 3; // after the backup and the helper
    constexpr int settingsOfDisconnect = 1;
    writeBytes(connector_.settings(), "{}");
    editAtFlush(settingsOfConnect, connector_.settings(), R"({"edited":true})");
    EXPECT_EQ(failureOf([&] { connector_.connect(without); }), Case::changed);
    EXPECT_EQ(bytesOf(connector_.settings()), R"({"edited":true})");
    EXPECT_THAT(filesBelow(home_.path()), UnorderedElementsAre("settings.json"));

    connector_.connect(without);
    writeBytes(connector_.settings(), bytesOf(connector_.settings()) + " ");
    editAtFlush(settingsOfDisconnect, connector_.settings(), R"({"again":true})");
    EXPECT_EQ(failureOf([&] { connector_.disconnect(); }), Case::changed);
    EXPECT_EQ(bytesOf(connector_.settings()), R"({"again":true})");
    EXPECT_TRUE(connector_.connected());
    EXPECT_THAT(bytesOf(connector_.script()), HasSubstr("fellow-hook"))
        << "still connected, so still at work";

    connector_.disconnect();
    std::filesystem::remove(connector_.settings());
    editAtFlush(settingsOfConnect, connector_.settings(), "{ }");
    EXPECT_EQ(failureOf([&] { connector_.connect(without); }), Case::changed) << "not there before";
    EXPECT_EQ(bytesOf(connector_.settings()), "{ }");
    EXPECT_EQ(bytesOf(connector_.script()), PumpAgentHook::idleScript) << "put back as it was";
}

TEST_F(PumpAgentConnectorTest, WritesThroughALinkAndKeepsModeAndOwner) {
    const auto target = home_ / "dotfiles/claude.json";
    writeBytes(target, R"({"a":1})");
    std::filesystem::permissions(target, std::filesystem::perms(0640));
    const auto [user, group] = anotherOwner();
    ASSERT_EQ(::chown(target.c_str(), user, group), 0);
    std::filesystem::create_directories(connector_.settings().parent_path());
    std::filesystem::create_symlink("../dotfiles/claude.json", connector_.settings());
    const auto expectKept = [&, owner = user, ownerGroup = group](const char* when) {
        struct stat status {};
        ASSERT_EQ(::stat(target.c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, owner) << when;
        EXPECT_EQ(status.st_gid, ownerGroup) << when;
        EXPECT_EQ(status.st_mode & 07777U, 0640U) << when;
        EXPECT_TRUE(std::filesystem::is_symlink(connector_.settings())) << when;
    };
    connector_.connect(without);
    EXPECT_THAT(bytesOf(target), HasSubstr("UserPromptSubmit"));
    expectKept("connected");
    connector_.disconnect();
    EXPECT_EQ(bytesOf(target), R"({"a":1})");
    expectKept("disconnected");

    std::filesystem::remove(target);
    connector_.connect(without);
    EXPECT_TRUE(std::filesystem::exists(target)) << "a link to nothing yet";
    connector_.disconnect();
    EXPECT_FALSE(std::filesystem::exists(target));
    EXPECT_TRUE(std::filesystem::is_symlink(connector_.settings())) << "the link is the user's";
}

/// As another user who may write the folder but not give files away; needs to be root to become one.
TEST_F(PumpAgentConnectorTest, DoesNotTakeOverAFileThatItCannotGiveBack) {
    writeBytes(connector_.settings(), "{}");
    if (::geteuid() != 0) {
        // The file is then one's own, which nothing can take over.
        connector_.connect(without);
        connector_.disconnect();
        EXPECT_EQ(bytesOf(connector_.settings()), "{}");
        return;
    }
    for (const auto& folder : {temporary_.path(), home_.path(), connector_.settings().parent_path()}) {
        std::filesystem::permissions(folder, std::filesystem::perms(0777));
    }
    const pid_t child = ::fork();
    if (child == 0) {
        bool isRefused = false;
        if (::setgid(65534) == 0 && ::setuid(65534) == 0) {
            try {
                connector_.connect(without);
            } catch (const FileError& error) {
                isRefused = error.kind() == FileError::Kind::notWritable;
            }
        }
        ::_exit(isRefused ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(bytesOf(connector_.settings()), "{}");
    EXPECT_THAT(filesBelow(home_.path()), UnorderedElementsAre("settings.json"));
}

TEST_F(PumpAgentConnectorTest, SpecialFilesAreRefusedAndNotWaitedFor) {
    std::filesystem::create_directories(connector_.settings().parent_path());
    ASSERT_EQ(::mkfifo(connector_.settings().c_str(), 0600), 0);
    EXPECT_THROW(connector_.connect(without), FileError);
    std::filesystem::remove(connector_.settings());
    std::filesystem::create_directory(connector_.settings());
    EXPECT_THROW(connector_.connect(without), FileError);
    EXPECT_THAT(filesBelow(home_.path()), IsEmpty());
}

} // namespace
} // namespace FellowCore
