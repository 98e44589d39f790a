#include "app/characters/dhiru/DevWatchContainers.h"

#include "tests/app/AppHarness.h"
#include "tests/core/containers/ScriptedServer.h"

#include <atomic>
#include <mutex>

namespace {

using namespace AppHarness;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string ok = "HTTP/1.1 200 OK\r\n\r\n";
const std::string silence; // the connection stays open without a word

std::string entry(char digit, const std::string& name, const std::string& image = "shop:2") {
    return R"({"Id":")" + std::string(64, digit) + R"(","Names":["/)" + name + R"("],"Image":")" + image +
           R"(","State":"running","Ports":[],"Labels":{}})";
}

/// An engine of the user's own on a real socket, whose answers the test sets.
class Engine {
public:
    explicit Engine(const Desk& desk)
        : server_(desk.home / ".docker/run/docker.sock",
                  [this](int connection, const std::string& request) { answer(connection, request); }) {}

    void setList(const std::string& entries) { set(list_, ok + "[" + entries + "]"); }
    void setVersion(const std::string& version) {
        set(version_, ok + R"({"ApiVersion":")" + version + "\"}");
    }
    void setStop(const std::string& answer) { set(stop_, answer); }
    /// What the list is once a stop was asked for.
    void setListAfterStop(const std::string& entries) { set(afterStop_, ok + "[" + entries + "]"); }
    /// While it hesitates it answers no question for its version.
    std::atomic<bool> hesitates = false;
    std::atomic<int> versionsAsked = 0;

    /// Ends it and gives what it was asked.
    std::vector<std::string> asked() { return server_.finish(); }

private:
    void set(std::string& text, const std::string& value) {
        const std::lock_guard lock(mutex_);
        text = value;
    }
    std::string textFor(const std::string& request) {
        const std::lock_guard lock(mutex_);
        if (request.starts_with("GET /version ")) {
            return version_;
        }
        if (request.starts_with("GET /containers/json?")) {
            return list_;
        }
        list_ = afterStop_;
        return stop_;
    }
    void answer(int connection, const std::string& request) {
        if (request.starts_with("GET /version ")) {
            ++versionsAsked;
            while (hesitates) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
        const std::string text = textFor(request);
        if (text == silence) {
            TestSupport::heard(connection); // until the client has had enough
        }
        TestSupport::say(connection, text);
    }

    std::mutex mutex_;
    std::string version_ = ok + R"({"ApiVersion":"1.43"})";
    std::string list_ = ok + "[" + entry('b', "till") + "," + entry('a', "shop") + "]";
    std::string afterStop_ = ok + "[" + entry('b', "till") + "]";
    std::string stop_ = "HTTP/1.1 204 No Content\r\n\r\n";
    TestSupport::ScriptedServer server_;
};

struct ContainerDesk : Desk {
    Log notices;
    DevWatchContainers containers{folders, system.clock()};

    ContainerDesk() {
        containers.onChanged = [] {};
        containers.onNotice = [this](const QString& text) { notices.push_back(text.toStdString()); };
    }
    const DevWatchContainerRow* row(const std::string& name) {
        rows_ = containers.rows();
        const auto found = std::ranges::find(
            rows_, name, [](const DevWatchContainerRow& each) { return each.entry.container.name; });
        return found == rows_.end() ? nullptr : &*found;
    }
    bool lists(const std::string& name) {
        return waitUntil([&] { return row(name) != nullptr; });
    }
    bool drops(const std::string& name) {
        return waitUntil([&] { return row(name) == nullptr; });
    }
    bool notes(const std::string& name, const char* text, int milliseconds = 3000) {
        return waitUntil([&] { return row(name) && row(name)->note == QString::fromUtf8(text); },
                         milliseconds);
    }
    bool says(const char* text) {
        return waitUntil([&] { return containers.note() == QString::fromUtf8(text); });
    }
    /// Confirms the stop of a container that is listed.
    void stop(const std::string& name) {
        if (lists(name)) {
            containers.stop(row(name)->entry);
        }
    }

private:
    std::vector<DevWatchContainerRow> rows_;
};

TEST(DevWatchContainers, TellsWhyThereAreNone) {
    ContainerDesk desk;
    EXPECT_TRUE(desk.says("Reading your containers…"));
    desk.containers.setOpen(true);
    EXPECT_TRUE(desk.says("Docker unavailable"));
    Engine engine(desk);
    engine.setList("");
    desk.containers.refresh();
    EXPECT_TRUE(desk.says("No running containers"));
    engine.setList(entry('a', "shop"));
    desk.containers.refresh();
    EXPECT_TRUE(desk.lists("shop"));
    EXPECT_EQ(desk.containers.note(), QString());
}

TEST(DevWatchContainers, AsksNobodyUnlessSomeoneLooks) {
    ContainerDesk desk;
    Engine engine(desk);
    desk.containers.refresh();
    Testing::runFor(100);
    EXPECT_THAT(engine.asked(), IsEmpty());
}

TEST(DevWatchContainers, StopsAndTellsItOnceItIsGone) {
    ContainerDesk desk;
    Engine engine(desk);
    desk.containers.setOpen(true);
    desk.stop("shop");
    desk.stop("shop");
    ASSERT_NE(desk.row("shop"), nullptr);
    EXPECT_EQ(desk.row("shop")->stage, DevWatchStage::sending);
    EXPECT_EQ(desk.row("shop")->note, QStringLiteral("Requesting container Stop…"));
    EXPECT_TRUE(desk.drops("shop"));
    EXPECT_TRUE(waitUntil([&] { return !desk.notices.empty(); }));
    EXPECT_THAT(desk.notices, ElementsAre("Container stopped"));
    EXPECT_EQ(desk.row("till")->stage, DevWatchStage::running);
    const auto asked = engine.asked();
    EXPECT_EQ(std::ranges::count_if(asked, [](const auto& text) { return text.starts_with("POST"); }), 1);
}

TEST(DevWatchContainers, LooksAfterAStopThatWasNotConfirmed) {
    ContainerDesk desk;
    Engine engine(desk);
    engine.setStop(silence);
    engine.setListAfterStop(entry('a', "shop"));
    desk.containers.setOpen(true);
    desk.stop("shop");
    ASSERT_TRUE(desk.notes("shop", "Stop unconfirmed. Checking container…", 5000));
    EXPECT_EQ(desk.row("shop")->stage, DevWatchStage::waiting);
    EXPECT_THAT(desk.notices, IsEmpty());
    desk.containers.setOpen(false);
    engine.setList("");
    EXPECT_TRUE(waitUntil([&] { return !desk.notices.empty(); }))
        << "nobody looks any more, but it was asked";
    EXPECT_THAT(desk.notices, ElementsAre("Container stopped"));
}

TEST(DevWatchContainers, SaysNothingStoppedWhenAnEngineVanishes) {
    ContainerDesk desk;
    auto engine = std::make_unique<Engine>(desk);
    engine->setStop(silence);
    engine->setListAfterStop(entry('a', "shop"));
    desk.containers.setOpen(true);
    desk.stop("shop");
    ASSERT_TRUE(desk.notes("shop", "Stop unconfirmed. Checking container…", 5000));
    engine.reset();
    EXPECT_TRUE(desk.says("Docker unavailable"));
    Testing::runFor(200);
    EXPECT_THAT(desk.notices, IsEmpty());
}

TEST(DevWatchContainers, TellsWhyNothingWasSent) {
    struct Case {
        const char* fault;
        std::function<void(Engine&)> change;
        const char* note;
        bool staysListed = true;
    };
    const Case cases[] = {
        {"an old engine kills", [](Engine& engine) { engine.setVersion("1.41"); },
         "Docker needs API 1.42 or later"},
        {"another image is stopped", [](Engine& engine) { engine.setList(entry('a', "shop", "shop:3")); },
         "Container unavailable or changed"},
        {"what is gone is passed over in silence", [](Engine& engine) { engine.setList(entry('b', "till")); },
         "Container unavailable or changed", false},
        {"an engine that is at a loss is believed", [](Engine& engine) { engine.setVersion("\"}{"); },
         "Docker unavailable"},
    };
    for (const Case& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        ContainerDesk desk;
        Engine engine(desk);
        desk.containers.setOpen(true);
        ASSERT_TRUE(desk.lists("shop"));
        testCase.change(engine);
        desk.stop("shop");
        if (testCase.staysListed) {
            EXPECT_TRUE(desk.notes("shop", testCase.note));
            EXPECT_EQ(desk.row("shop")->stage, DevWatchStage::running);
        } else {
            EXPECT_TRUE(waitUntil([&] { return !desk.notices.empty(); }));
            EXPECT_THAT(desk.notices, ElementsAre(testCase.note));
        }
        EXPECT_THAT(engine.asked(), Not(Contains(StartsWith("POST"))));
    }
}

TEST(DevWatchContainers, SendsNothingOnceTheConsentIsTakenBack) {
    const std::function<void(DevWatchContainers&)> ways[] = {
        [](DevWatchContainers& containers) { containers.withdraw(); },
        [](DevWatchContainers& containers) { containers.setOpen(false); },
        [](DevWatchContainers& containers) { containers.close(); },
    };
    for (const auto& takeBack : ways) {
        ContainerDesk desk;
        Engine engine(desk);
        engine.hesitates = true;
        desk.containers.setOpen(true);
        desk.stop("shop");
        ASSERT_TRUE(waitUntil([&] { return engine.versionsAsked > 0; }));
        takeBack(desk.containers);
        engine.hesitates = false;
        desk.containers.setOpen(true);
        ASSERT_TRUE(desk.notes("shop", ""));
        EXPECT_EQ(desk.row("shop")->stage, DevWatchStage::running);
        EXPECT_THAT(engine.asked(), Not(Contains(StartsWith("POST"))));
    }
}

TEST(DevWatchContainers, EndsWithARequestUnderWay) {
    auto desk = std::make_unique<ContainerDesk>();
    Engine engine(*desk);
    engine.hesitates = true;
    desk->containers.setOpen(true);
    desk->stop("shop");
    ASSERT_TRUE(waitUntil([&] { return engine.versionsAsked > 0; }));
    std::thread later([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        engine.hesitates = false;
    });
    desk.reset();
    later.join();
    EXPECT_THAT(engine.asked(), Not(Contains(StartsWith("POST"))));
}

} // namespace
