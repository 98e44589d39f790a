#include "platform/TerminationSignals.h"
#include "tests/support/Waiting.h"

#include <gmock/gmock.h>

#include <csignal>

namespace {

TEST(TerminationSignalsTest, EachIsOneCallOnTheMainLoop) {
    for (const int number : {SIGTERM, SIGHUP, SIGINT}) {
        int calls = 0;
        Platform::TerminationSignals signals([&] { ++calls; });
        std::raise(number);
        EXPECT_EQ(calls, 0) << "called from inside the handler";
        EXPECT_TRUE(Testing::waitUntil([&] { return calls == 1; })) << number;
    }
}

TEST(TerminationSignalsTest, IgnoredSignalsStayIgnoredAndTheOldHandlingComesBack) {
    std::signal(SIGHUP, SIG_IGN);
    {
        int calls = 0;
        Platform::TerminationSignals signals([&] { ++calls; });
        std::raise(SIGHUP);
        Testing::runFor(30);
        EXPECT_EQ(calls, 0) << "nohup has no effect";
    }
    EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
    EXPECT_EQ(std::signal(SIGTERM, SIG_DFL), SIG_DFL);
}

TEST(TerminationSignalsTest, FurtherSignalsDoNotCutTheEndingShort) {
    int calls = 0;
    Platform::TerminationSignals signals([&] { ++calls; });
    for (const int number : {SIGTERM, SIGTERM, SIGHUP}) {
        std::raise(number);
    }
    EXPECT_TRUE(Testing::waitUntil([&] { return calls == 1; }));
    Testing::runFor(30);
    EXPECT_EQ(calls, 1);
}

} // namespace
