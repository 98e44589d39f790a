#include "core/containers/UnixHTTPRequest.h"

#include "core/containers/DevWatchHTTPFailure.h"
#include "tests/core/containers/ScriptedServer.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <fcntl.h>
#include <limits>
#include <poll.h>
#include <sys/wait.h>

namespace {

using namespace FellowCore;
using namespace TestSupport;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Kind = DevWatchHTTPFailure::Kind;

constexpr std::size_t room = 65536;
const std::string answer = "HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nours";

void answerPlainly(int connection, const std::string&) {
    say(connection, answer);
}

void expectKind(Kind kind, const std::string& path, Seconds timeout = 2, int systemError = 0) {
    try {
        unixHTTPRequest(path, "GET", "/version", timeout, room);
        ADD_FAILURE() << "was answered";
    } catch (const DevWatchHTTPFailure& failure) {
        EXPECT_EQ(failure.kind(), kind) << failure.what();
        EXPECT_TRUE(systemError == 0 || failure.systemError() == systemError) << failure.what();
    }
}

TEST(UnixHTTPRequestTest, saysExactlyThisAndReadsTheAnswer) {
    const TemporaryFolder folder;
    ScriptedServer server(folder / "s", [](int connection, const std::string&) {
        say(connection, "HTTP/1.1 304 Not Modified\r\nTransfer-Encoding: chunked\r\n");
        std::this_thread::sleep_for(20ms);
        say(connection, "\r\n3\r\nabc\r\n0\r\n\r\n");
    });
    const auto response =
        unixHTTPRequest(folder / "s", "POST", "/x?t=-1", longestUnixHTTPTimeout, leastUnixHTTPBytes);
    EXPECT_EQ(response.status, 304);
    EXPECT_EQ(response.body, "abc");
    EXPECT_THAT(
        server.finish(),
        testing::ElementsAre("POST /x?t=-1 HTTP/1.1\r\nHost: localhost\r\nAccept: application/json\r\n"
                             "Connection: close\r\nContent-Length: 0\r\n\r\n"));
}

TEST(UnixHTTPRequestTest, refusesToSendWhatCouldBeMisread) {
    const TemporaryFolder folder;
    ScriptedServer server(folder / "s", answerPlainly);
    struct Case {
        const char* fault;
        std::string method = "GET";
        std::string target = "/";
        Seconds timeout = 1;
        std::size_t maxBytes = 1024;
        std::string pathTail = {};
    };
    const Case cases[] = {
        {"a method that destroys", "DELETE"},
        {"a method in lower case", "get"},
        {"a target that is a host", "GET", "version"},
        {"an empty target", "GET", ""},
        {"a target that ends its line", "GET", "/\r\nX: y"},
        {"a target that ends its word", "GET", "/a b"},
        {"a target with a NUL", "GET", std::string("/\0a", 3)},
        {"a target with DEL", "GET", "/\x7F"},
        {"a target that is not ASCII", "GET", "/\xC2\xA0"},
        {"no time", "GET", "/", 0},
        {"time that never comes", "GET", "/", std::nan("")},
        {"time without end", "GET", "/", std::numeric_limits<double>::infinity()},
        {"too much time", "GET", "/", 10.5},
        {"too little room", "GET", "/", 1, 1023},
        {"a path cut at a NUL", "GET", "/", 1, 1024, std::string("\0x", 2)},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        expectFailure<DevWatchHTTPFailure>(Kind::invalidRequest, [&] {
            unixHTTPRequest((folder / "s").string() + testCase.pathTail, testCase.method, testCase.target,
                            testCase.timeout, testCase.maxBytes);
        });
    }
    EXPECT_THAT(server.finish(), testing::IsEmpty());
}

TEST(UnixHTTPRequestTest, givesUpOnAServerThatPlaysForTime) {
    std::atomic<std::size_t> taken = 0;
    const auto pour = [&](int connection, const std::string& piece, std::size_t bytes) {
        for (taken = 0; taken < bytes && say(connection, piece);) {
            taken += piece.size();
        }
    };
    struct Case {
        const char* fault;
        ScriptedServer::Answer behaviour;
        Kind kind;
    };
    const Case cases[] = {
        {"silence is waited for", [](int, const std::string&) { std::this_thread::sleep_for(500ms); },
         Kind::timeout},
        {"each byte of a trickle begins the time anew",
         [](int connection, const std::string&) {
             for (int sent = 0; sent < 40 && say(connection, "H"); ++sent) {
                 std::this_thread::sleep_for(20ms);
             }
         },
         Kind::timeout},
        {"an endless header is kept",
         [&](int connection, const std::string&) {
             say(connection, "HTTP/1.1 200 OK\r\n");
             pour(connection, "X-Again: and again\r\n", 100'000'000);
         },
         Kind::tooLarge},
        {"100 MB are read to the end",
         [&](int connection, const std::string&) {
             say(connection, "HTTP/1.1 200 OK\r\nContent-Length: 100000000\r\n\r\n");
             pour(connection, std::string(10'000, 'x'), 100'000'000);
         },
         Kind::tooLarge},
        {"a short body passes for a long one",
         [](int connection, const std::string&) {
             say(connection, "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nours");
         },
         Kind::malformed},
        {"hanging up is an answer", [](int, const std::string&) {}, Kind::malformed},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        const TemporaryFolder folder;
        ScriptedServer server(folder / "s", testCase.behaviour);
        const auto start = Clock::now();
        expectKind(testCase.kind, folder / "s", 0.3);
        EXPECT_LT(Clock::now() - start, 700ms);
        server.finish();
        EXPECT_LT(taken, 2'000'000u) << "beyond what a socket holds by itself";
    }
}

TEST(UnixHTTPRequestTest, refusesWhatIsNoSocketOfTheUsers) {
    const TemporaryFolder folder;
    ScriptedServer server(folder / "s", answerPlainly);
    writeBytes(folder / "file", "");
    std::filesystem::create_symlink(folder / "s", folder / "link");
    expectKind(Kind::unsafeSocket, folder / "file");
    expectKind(Kind::unsafeSocket, folder / "link");
    expectKind(Kind::unsafeSocket, folder.path());
    expectKind(Kind::syscall, folder / "missing", 2, ENOENT);
    EXPECT_THAT(server.finish(), testing::IsEmpty());
    expectKind(Kind::syscall, folder / "s", 2, ECONNREFUSED); // the file outlives its server
}

TEST(UnixHTTPRequestTest, takesAPathThatFitsEverySystem) {
    const TemporaryFolder folder;
    ScriptedServer server(folder / "s", answerPlainly);
    const auto pathOf = [&](std::size_t bytes) {
        return folder / std::string(bytes - folder.path().string().size() - 1, 'p');
    };
    std::filesystem::rename(folder / "s", pathOf(102));
    EXPECT_EQ(unixHTTPRequest(pathOf(102), "GET", "/", 2, room).body, "ours");
    std::filesystem::rename(pathOf(102), pathOf(103));
    expectKind(Kind::invalidRequest, pathOf(103));
}

TEST(UnixHTTPRequestTest, waitsForRoomInAFullQueueButNotForEver) {
    const TemporaryFolder folder;
    const int listener = boundSocket(folder / "s");
    ::listen(listener, 0); // room for one that waits
    const int waiting = socketAt(folder / "s", ::connect);
    expectKind(Kind::timeout, folder / "s", 0.1);
    std::thread later([&] {
        std::this_thread::sleep_for(50ms);
        ::close(::accept(listener, nullptr, nullptr));
        const int second = ::accept(listener, nullptr, nullptr);
        heard(second);
        say(second, answer);
        ::close(second);
    });
    EXPECT_EQ(unixHTTPRequest(folder / "s", "GET", "/", 2, room).body, "ours");
    later.join();
    ::close(waiting);
    ::close(listener);
}

TEST(UnixHTTPRequestTest, isNotDisturbedBySignals) {
    const TemporaryFolder folder;
    ScriptedServer server(folder / "s", [](int connection, const std::string&) {
        std::this_thread::sleep_for(100ms);
        say(connection, answer);
    });
    struct sigaction noticed = {};
    struct sigaction before = {};
    noticed.sa_handler = [](int) {}; // without SA_RESTART, so every wait ends early
    ::sigaction(SIGUSR1, &noticed, &before);
    std::atomic<bool> done = false;
    const auto receiver = ::pthread_self();
    std::thread sender([&] {
        while (!done) {
            ::pthread_kill(receiver, SIGUSR1);
            std::this_thread::sleep_for(2ms);
        }
    });
    EXPECT_EQ(unixHTTPRequest(folder / "s", "GET", "/", 2, room).body, "ours");
    expectKind(Kind::timeout, folder / "s", 0.05);
    done = true;
    sender.join();
    ::sigaction(SIGUSR1, &before, nullptr);
}

TEST(UnixHTTPRequestTest, survivesAServerThatHangsUpUnheard) {
    const TemporaryFolder folder;
    const int listener = boundSocket(folder / "s");
    ::listen(listener, 16);
    std::thread server([&] {
        for (int connection; (connection = ::accept(listener, nullptr, nullptr)) >= 0;) {
            ::close(connection);
        }
    });
    for (int round = 0; round < 50; ++round) { // before or after our words: a signal would end the program
        expectKind(Kind::syscall, folder / "s");
    }
    ::shutdown(listener, SHUT_RDWR);
    server.join();
    ::close(listener);
}

/// A process of another user that listens on a socket whose file is ours, and tells through a pipe when it
/// hears a word.
class ForeignServer {
public:
    explicit ForeignServer(const std::filesystem::path& path) : listener_(boundSocket(path)) {
        if (::pipe2(ends_, O_CLOEXEC) != 0 || (child_ = ::fork()) < 0) {
            throw std::runtime_error("no child");
        }
        if (child_ == 0) {
            serve();
        }
        char ready = 0;
        EXPECT_EQ(::read(ends_[0], &ready, 1), 1);
    }
    ~ForeignServer() {
        ::kill(child_, SIGKILL);
        ::waitpid(child_, nullptr, 0);
        for (const int descriptor : {listener_, ends_[0], ends_[1]}) {
            ::close(descriptor);
        }
    }
    ForeignServer(const ForeignServer&) = delete;
    ForeignServer& operator=(const ForeignServer&) = delete;

    bool heardAnything() const {
        pollfd words = {.fd = ends_[0], .events = POLLIN, .revents = 0};
        return ::poll(&words, 1, 50) != 0;
    }

private:
    [[noreturn]] void serve() const {
        constexpr uid_t nobody = 65534;
        const bool listens = ::setuid(nobody) == 0 && ::listen(listener_, 64) == 0;
        bool told = listens && ::write(ends_[1], "r", 1) == 1;
        for (int connection; told && (connection = ::accept(listener_, nullptr, nullptr)) >= 0;) {
            told = heard(connection).empty() || ::write(ends_[1], "w", 1) == 1;
            say(connection, answer);
            ::close(connection);
        }
        ::_exit(1);
    }

    int listener_;
    int ends_[2] = {-1, -1};
    pid_t child_ = -1;
};

TEST(UnixHTTPRequestTest, saysNothingToAnotherUsersProcess) {
    if (::getuid() != 0) {
        GTEST_SKIP() << "only root can start a process of another user";
    }
    const TemporaryFolder folder;
    const ForeignServer foreign(folder / "foreign");
    expectKind(Kind::unsafeSocket, folder / "foreign");

    // The same file swapped to and fro under the client: whatever it checked, it must look at who answers.
    ScriptedServer ours(folder / "s", answerPlainly);
    std::atomic<bool> done = false;
    std::thread swapper([&] {
        while (!done) {
            ::renameat2(AT_FDCWD, (folder / "s").c_str(), AT_FDCWD, (folder / "foreign").c_str(),
                        RENAME_EXCHANGE);
        }
    });
    int answered = 0;
    int refused = 0;
    for (int round = 0; round < 2000; ++round) {
        try {
            answered += unixHTTPRequest(folder / "s", "GET", "/", 2, room).body == "ours" ? 1 : 0;
        } catch (const DevWatchHTTPFailure& failure) {
            EXPECT_EQ(failure.kind(), Kind::unsafeSocket) << failure.what();
            ++refused;
        }
    }
    done = true;
    swapper.join();
    EXPECT_GT(answered, 0);
    EXPECT_GT(refused, 0);
    EXPECT_FALSE(foreign.heardAnything());

    ASSERT_EQ(::chown((folder / "s").c_str(), 65534, 65534), 0);
    expectKind(Kind::unsafeSocket, folder / "s");
}

} // namespace
