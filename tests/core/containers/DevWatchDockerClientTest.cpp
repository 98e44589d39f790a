#include "core/containers/DevWatchDockerClient.h"

#include "core/containers/DevWatchDockerEngines.h"
#include "core/containers/DevWatchDockerFailure.h"
#include "core/containers/DevWatchHTTPFailure.h"
#include "tests/core/containers/ScriptedServer.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using namespace FellowCore;
using namespace TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;
using Kind = DevWatchDockerFailure::Kind;

const std::string socketBelowHome = ".docker/run/docker.sock";
const std::string yes = "HTTP/1.1 200 OK\r\n\r\n";
const std::string version142 = yes + R"({"Version":"23.0","ApiVersion":"1.42"})";
const std::string silence; // the connection stays open without a word

std::string entry(char digit, const std::string& name, const std::string& image = "shop:2",
                  const std::string& port = "8080", const std::string& project = "/srv") {
    return R"({"Id":")" + std::string(64, digit) + R"(","Names":["/)" + name + R"("],"Image":")" + image +
           R"(","State":"running","Ports":[{"PublicPort":)" + port +
           R"(,"Type":"tcp"}],"Labels":{"com.docker.compose.project.working_dir":")" + project + R"("}})";
}

/// What an engine answers to each of the three questions.
struct Script {
    std::string version = version142;
    std::string list = yes + "[" + entry('b', "till") + "," + entry('a', "shop") + "]";
    std::string stop = "HTTP/1.1 204 No Content\r\n\r\n";
};

/// An engine of the user's own in a home of its own.
struct Engine {
    TemporaryFolder home;
    DevWatchDockerClient client{home.path()};
    ScriptedServer server;

    explicit Engine(const Script& script)
        : server(home / socketBelowHome, [script](int connection, const std::string& request) {
              const std::string& text = request.starts_with("GET /version ")           ? script.version
                                        : request.starts_with("GET /containers/json?") ? script.list
                                                                                       : script.stop;
              if (text == silence) {
                  heard(connection); // until the client has had enough
              }
              say(connection, text);
          }) {}

    std::vector<std::string> targets() {
        std::vector<std::string> targets;
        for (const auto& request : server.finish()) {
            targets.push_back(request.substr(0, request.find(" HTTP")));
        }
        return targets;
    }
};

const DevWatchDockerContainer shop = {std::string(64, 'a'), "shop", "shop:2", {8080}, "/srv"};
const std::string stopTarget = "POST /containers/" + shop.id + "/stop?t=-1&signal=SIGTERM";

bool authorized() {
    return true;
}

TEST(DevWatchDockerClientTest, listsTheRunningContainers) {
    Engine engine({});
    EXPECT_TRUE(engine.client.available());
    const auto list = engine.client.containers();
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list.front(), shop);
    EXPECT_THAT(engine.targets(), ElementsAre("GET /containers/json?all=false"));
}

TEST(DevWatchDockerClientTest, tellsWhyThereIsNoList) {
    struct Case {
        const char* fault;
        std::string list;
        Kind kind;
        int status = 0;
    };
    const Case cases[] = {
        {"an error is an empty list", "HTTP/1.1 500 Oops\r\n\r\n[]", Kind::status, 500},
        {"any success will do", "HTTP/1.1 204 No Content\r\n\r\n[]", Kind::status, 204},
        {"what is not HTTP is guessed at", "[]", Kind::unavailable},
        {"what is not JSON is guessed at", yes + "<html>", Kind::invalidResponse},
        {"a large list is cut", yes + "[" + std::string(1100000, ' ') + "]", Kind::invalidResponse},
        {"an endless list is kept", yes + "[" + std::string(3000000, ' ') + "]", Kind::unavailable},
        {"an engine that hangs holds us", silence, Kind::unavailable},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        const Engine engine({.list = testCase.list});
        try {
            engine.client.containers();
            ADD_FAILURE() << "gave a list";
        } catch (const DevWatchDockerFailure& failure) {
            EXPECT_EQ(failure.kind(), testCase.kind) << failure.what();
            EXPECT_EQ(failure.status(), testCase.status);
        }
    }
}

TEST(DevWatchDockerClientTest, asksNobodyButTheUsersOwnSocket) {
    const TemporaryFolder home;
    const auto nothing = [](int connection, const std::string&) { say(connection, yes + "[]"); };
    ScriptedServer linked(home / "linked.sock", nothing);
    ScriptedServer other(home / "other.sock", nothing);
    std::filesystem::create_directories(home / ".docker/run");
    std::filesystem::create_symlink(home / "linked.sock", home / socketBelowHome);
    const DevWatchDockerClient clients[] = {DevWatchDockerClient(home.path()),
                                            DevWatchDockerClient(home / "other.sock", home.path()),
                                            DevWatchDockerClient(home / "missing", home.path())};
    for (const auto& client : clients) {
        SCOPED_TRACE(client.socketPath);
        EXPECT_FALSE(client.available());
        expectFailure<DevWatchDockerFailure>(Kind::unavailable, [&] { client.containers(); });
        expectFailure<DevWatchDockerFailure>(Kind::unavailable, [&] { client.stop(shop, authorized); });
    }
    EXPECT_THAT(linked.finish(), IsEmpty());
    EXPECT_THAT(other.finish(), IsEmpty());
}

TEST(DevWatchDockerClientTest, stopsWhatWasConfirmed) {
    for (const char* const status : {"204 No Content", "304 Not Modified"}) {
        Engine engine({.stop = "HTTP/1.1 " + std::string(status) + "\r\n\r\n"});
        int asked = 0;
        engine.client.stop(shop, [&] { return ++asked == 1; });
        EXPECT_EQ(asked, 1);
        EXPECT_THAT(engine.targets(),
                    ElementsAre("GET /version", "GET /containers/json?all=false", stopTarget));
    }
}

TEST(DevWatchDockerClientTest, sendsNothingUnlessAllStillHolds) {
    const auto listOf = [](const std::string& only) { return Script{.list = yes + "[" + only + "]"}; };
    struct Case {
        const char* fault;
        Script script;
        Kind kind;
        DevWatchDockerContainer confirmed = shop;
        bool authorized = true;
    };
    auto traversing = shop;
    traversing.id = "../../" + std::string(58, 'a');
    const Case cases[] = {
        {"an id leaves its place in the target", {}, Kind::changedContainer, traversing},
        {"an older engine kills at once",
         {.version = yes + R"({"ApiVersion":"1.41"})"},
         Kind::unsupportedAPI},
        {"a version is guessed", {.version = yes + R"({"Version":"23.0"})"}, Kind::invalidResponse},
        {"a version is a number", {.version = yes + R"({"ApiVersion":1.43})"}, Kind::invalidResponse},
        {"a version's status is not looked at",
         {.version = "HTTP/1.1 404 No\r\n\r\n{\"ApiVersion\":\"1.43\"}"},
         Kind::status},
        {"a version that is no HTTP", {.version = "{}"}, Kind::unavailable},
        {"a list's status is not looked at", {.list = "HTTP/1.1 503 No\r\n\r\n[]"}, Kind::status},
        {"a container that is gone", listOf(entry('b', "shop")), Kind::changedContainer},
        {"another name", listOf(entry('a', "till")), Kind::changedContainer},
        {"another image", listOf(entry('a', "shop", "shop:3")), Kind::changedContainer},
        {"another port", listOf(entry('a', "shop", "shop:2", "8081")), Kind::changedContainer},
        {"another project", listOf(entry('a', "shop", "shop:2", "8080", "/tmp")), Kind::changedContainer},
        {"a confirmation that was withdrawn", {}, Kind::changedContainer, shop, false},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        Engine engine(testCase.script);
        bool asked = false;
        expectFailure<DevWatchDockerFailure>(testCase.kind, [&] {
            engine.client.stop(testCase.confirmed, [&] {
                asked = true;
                return testCase.authorized;
            });
        });
        EXPECT_EQ(asked, !testCase.authorized) << "asked before everything else held";
        EXPECT_THAT(engine.targets(), testing::Not(testing::Contains(testing::StartsWith("POST"))));
    }
    Engine engine({});
    expectFailure<DevWatchDockerFailure>(Kind::changedContainer, [&] { engine.client.stop(shop, {}); });
}

TEST(DevWatchDockerClientTest, tellsARefusedStopFromOneWithoutAnAnswer) {
    Engine refusing({.stop = "HTTP/1.1 404 Not Found\r\n\r\n"});
    expectFailure<DevWatchDockerFailure>(Kind::status, [&] { refusing.client.stop(shop, authorized); });
    Engine waiting({.stop = silence});
    expectFailure<DevWatchHTTPFailure>(DevWatchHTTPFailure::Kind::timeout,
                                       [&] { waiting.client.stop(shop, authorized); });
    EXPECT_THAT(waiting.targets(), testing::Contains(stopTarget)) << "which is why it may have arrived";
}

TEST(DevWatchDockerClientTest, knowsWhichEnginesStopPolitely) {
    for (const char* const version : {"1.42", "1.100", "2.0", "10.1", "01.042"}) {
        EXPECT_TRUE(DevWatchDockerClient::supportsTermStop(version)) << version;
    }
    for (const char* const version :
         {"", ".", "1", "1.", ".42", "1.41", "0.99", "1.42.0", "v1.42", "1.42 ", " 1.42", "1.-42", "-2.0",
          "+2.0", "1.4\u0662", "99999999999999999999.0", "2.99999999999999999999"}) {
        EXPECT_FALSE(DevWatchDockerClient::supportsTermStop(version)) << version;
    }
}

TEST(DevWatchDockerEnginesTest, joinsTheListsOfAllThatAnswer) {
    const TemporaryFolder home;
    const std::string session = home / "session";
    const DevWatchDockerEngines engines(home.path(), session);
    EXPECT_FALSE(engines.available());
    expectFailure<DevWatchDockerFailure>(Kind::unavailable, [&] { engines.containers(); });

    ::close(boundSocket(home / socketBelowHome)); // an engine that has ended
    EXPECT_TRUE(engines.available());
    expectFailure<DevWatchDockerFailure>(Kind::unavailable, [&] { engines.containers(); });

    const auto listing = [](const std::string& entries) {
        return [entries](int connection, const std::string&) { say(connection, yes + "[" + entries + "]"); };
    };
    ScriptedServer rootless(session + "/docker.sock", listing(entry('a', "shop") + "," + entry('c', "b")));
    ScriptedServer desktop(home / ".docker/desktop/docker.sock",
                           listing(entry('d', "a") + "," + entry('a', "x")));
    std::vector<std::string> found;
    for (const auto& [engine, container] : engines.containers()) {
        found.push_back(container.name + " " + engine.socketPath.substr(home.path().string().size()));
    }
    EXPECT_THAT(found, ElementsAre("a /.docker/desktop/docker.sock", "b /session/docker.sock",
                                   "shop /session/docker.sock"));
}

} // namespace
