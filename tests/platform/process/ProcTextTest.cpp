#include "platform/linux/process/ProcText.h"
#include "platform/linux/process/SocketDiagnostics.h"

#include <gmock/gmock.h>

#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>

#include <arpa/inet.h>

#include <cstring>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace Platform;

TEST(ProcText, ReadsOnlyWholeTexts) {
    const std::string behind = " S 7 1 1 0 -1 4194560 1 0 0 0 0 0 0 0 20 0 1 0 91723 1 1\n";
    const auto stat = ProcText::stat("4242 (a) (b\n)" + behind);
    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->pid, 4242);
    EXPECT_EQ(stat->command, "a) (b\n");
    EXPECT_EQ(stat->state, 'S');
    EXPECT_EQ(stat->parent, 7);
    EXPECT_EQ(stat->startTicks, 91723U);
    for (const std::string text : {"", "4242", "4242 (a", "4242 )a(", "4242 (a)", "4242 (a) ", "x (a) S 7",
                                   "4242 (a) S 7 1 1 0 -1 4194560 1 0 0 0 0 0 0 0 20 0 1 0"}) {
        EXPECT_FALSE(ProcText::stat(text)) << text;
    }
    const auto owners = ProcText::owners("Name:\tUid:\\nx\nUid:\t1000\t0\t0\t0\n");
    ASSERT_TRUE(owners);
    EXPECT_EQ(owners->real, 1000U);
    EXPECT_EQ(owners->effective, 0U);
    EXPECT_FALSE(ProcText::owners("Name:\tx\nUid:\t1000\n"));
    EXPECT_FALSE(ProcText::owners("Name:\tx\nUid:\t-1\t0\n"));
    const auto ticks = ProcText::systemTicks("cpu  1 2 4 8 16 32 64 128 0 0\ncpu0 1\n");
    ASSERT_TRUE(ticks);
    EXPECT_EQ(ticks->activeTicks, 103U);
    EXPECT_EQ(ticks->idleTicks, 24U);
    EXPECT_FALSE(ProcText::systemTicks("cpu 1 2 3"));
    EXPECT_EQ(ProcText::socket("socket:[4026]"), 4026U);
    for (const char* target : {"socket:[]", "socket:[12", "socket:[1x]", "pipe:[4026]", "/socket:[1]",
                               "socket:[99999999999999999999]"}) {
        EXPECT_EQ(ProcText::socket(target), 0U) << target;
    }
}

/// One message of a kernel's answer; the length may lie.
std::string message(std::uint16_t type, const std::string& body, std::int32_t lie = 0) {
    nlmsghdr header{};
    header.nlmsg_len =
        static_cast<std::uint32_t>(static_cast<std::int32_t>(sizeof header + body.size()) + lie);
    header.nlmsg_type = type;
    std::string text(sizeof header, '\0');
    std::memcpy(text.data(), &header, sizeof header);
    return text + body;
}

std::string entry(std::uint8_t state, std::uint16_t port, std::uint32_t socket) {
    inet_diag_msg body{};
    body.idiag_state = state;
    body.id.idiag_sport = htons(port);
    body.idiag_inode = socket;
    std::string text(sizeof body, '\0');
    std::memcpy(text.data(), &body, sizeof body);
    return message(SOCK_DIAG_BY_FAMILY, text);
}

TEST(SocketDiagnostics, TakesOnlyWholeMessages) {
    constexpr std::uint8_t listening = 10;
    constexpr std::uint8_t established = 1;
    const auto read = [](const std::string& text, SocketDiagnostics::Dump& dump) {
        return SocketDiagnostics::read(std::as_bytes(std::span(text)), dump);
    };
    SocketDiagnostics::Dump dump;
    EXPECT_TRUE(
        read(entry(listening, 8080, 70) + entry(established, 80, 71) + entry(listening, 0, 72), dump));
    EXPECT_FALSE(dump.complete);
    EXPECT_TRUE(read(entry(listening, 9090, 73) + message(NLMSG_DONE, "1234"), dump));
    EXPECT_TRUE(dump.complete);
    EXPECT_THAT(dump.sockets, ::testing::ElementsAre(FellowCore::DevWatchListeningSocket{70, 8080},
                                                     FellowCore::DevWatchListeningSocket{73, 9090}));
    for (const std::string& bad :
         {std::string("short"), message(SOCK_DIAG_BY_FAMILY, "too little"), message(NLMSG_NOOP, "", 4),
          message(NLMSG_NOOP, "", -1), message(NLMSG_NOOP, "", -16), message(NLMSG_ERROR, "")}) {
        SocketDiagnostics::Dump none;
        EXPECT_FALSE(read(bad, none));
        EXPECT_FALSE(none.complete);
    }
}

} // namespace
