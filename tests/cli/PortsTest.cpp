#include "tests/cli/RunFellow.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace {

using FellowTest::Answer;
using FellowTest::runFellow;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;

/// A port that this very process listens on.
class Listener {
public:
    Listener() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        if (::bind(socket_, generic, length) == 0 && ::listen(socket_, 1) == 0 &&
            ::getsockname(socket_, generic, &length) == 0) {
            port_ = ntohs(address.sin_port);
        }
    }
    ~Listener() { ::close(socket_); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    int port() const { return port_; }

private:
    int socket_;
    int port_ = 0;
};

Answer fellow(const std::string& words) {
    return runFellow("ports " + words);
}

TEST(Ports, ListsAListenerWithItsProject) {
    const Listener listener;
    const std::string folder = std::filesystem::current_path().string();
    const Answer answer = fellow("--json --home /nowhere");
    ASSERT_EQ(answer.status, 0) << answer.err;
    nlohmann::json found;
    for (const auto& entry : nlohmann::json::parse(answer.out)) {
        if (entry["port"] == listener.port()) {
            found = entry;
        }
    }
    EXPECT_EQ(found["pid"], ::getpid());
    EXPECT_EQ(found["name"], "test_cli");
    EXPECT_EQ(found["folder"], folder);
    EXPECT_EQ(found["project"], std::filesystem::path(folder).filename().string());
    EXPECT_EQ(found["kind"], "tool");
    EXPECT_EQ(found["url"], "http://localhost:" + std::to_string(listener.port()));

    const Answer table = fellow("--home '" + folder + "'");
    EXPECT_EQ(table.status, 0);
    const std::string port = std::to_string(listener.port());
    EXPECT_THAT(table.out, ContainsRegex(port + " +" + std::to_string(::getpid()) +
                                         " +test_cli +Tool +http://localhost:" + port + "\n"));
}

TEST(Ports, AProcessCannotWriteToTheTerminalByItsName) {
    const Listener listener;
    ::prctl(PR_SET_NAME, "a\x1B[2J\nb\xFF");
    const Answer table = fellow("");
    const Answer json = fellow("--json");
    ::prctl(PR_SET_NAME, "test_cli");
    EXPECT_THAT(table.out, HasSubstr("  a [2J b\xEF\xBF\xBD  "));
    EXPECT_THAT(table.out, Not(HasSubstr("\x1B")));
    EXPECT_EQ(json.status, 0) << json.err;
    EXPECT_THAT(json.out, HasSubstr("a\\u001b[2J\\nb\xEF\xBF\xBD"));
}

TEST(Ports, RefusesAWrongCommandLine) {
    for (const char* words : {"--jsn", "--home", "8080"}) {
        const Answer answer = fellow(words);
        EXPECT_EQ(answer.status, 2) << words;
        EXPECT_THAT(answer.err, HasSubstr("usage: fellow ports")) << words;
    }
}

} // namespace
