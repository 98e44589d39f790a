#include "core/agents/PumpAgentEvent.h"
#include "core/agents/PumpAgentHook.h"
#include "core/agents/PumpHookInput.h"
#include "tests/core/agents/RunProgram.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>

namespace FellowCore {
namespace {

using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using TestSupport::bytesOf;
using TestSupport::Ended;
using TestSupport::RunningProgram;
using TestSupport::writeBytes;
namespace fs = std::filesystem;

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// An agent's hook, run as agents run it: the script, by a shell, with what happened on standard input.
class HookProgram : public testing::Test {
protected:
    static constexpr const char* stop = R"({"hook_event_name":"Stop","session_id":"s","cwd":"/p/project"})";

    TestSupport::TemporaryFolder temporary_;
    fs::path folder_ = temporary_ / "it's home/Deskfellow";
    fs::path file_ = folder_ / "agent-events.jsonl";
    fs::path lock_ = folder_ / "agent-events.lock";

    std::vector<std::string> hook(PumpProvider agent = PumpProvider::claude,
                                  PumpProjectConsent consent = PumpProjectConsent::included) const {
        const fs::path script = temporary_ / (std::string(rawValue(agent)) + ".sh");
        writeBytes(script, PumpAgentHook::script(agent, consent, {FELLOW_HOOK_PROGRAM, folder_}));
        return {"/bin/sh", script};
    }
    Ended run(std::string_view input, PumpProvider agent = PumpProvider::claude,
              PumpProjectConsent consent = PumpProjectConsent::included) const {
        const Ended ended = TestSupport::runProgram(temporary_.path(), hook(agent, consent), input);
        EXPECT_EQ(ended.status, 0);
        EXPECT_EQ(ended.output + ended.errors, "");
        return ended;
    }
    std::vector<PumpAgentEvent> events() const {
        return fs::exists(file_) ? PumpAgentEvent::parseLines(bytesOf(file_)) : std::vector<PumpAgentEvent>();
    }
    /// The event that one run wrote, if any.
    std::optional<PumpAgentEvent> eventOf(std::string_view input, PumpProvider agent = PumpProvider::claude,
                                          PumpProjectConsent consent = PumpProjectConsent::included) const {
        fs::remove(file_);
        run(input, agent, consent);
        const auto all = events();
        EXPECT_LE(all.size(), 1U);
        return all.empty() ? std::nullopt : std::optional(all.front());
    }
    /// Runs a shell command line in a shell of this name, as an ancestor of the hook.
    std::optional<PumpAgentEvent> eventBelow(const std::string& name, const std::string& preparation) const {
        const fs::path shell = temporary_ / name;
        fs::copy_file("/bin/sh", shell, fs::copy_options::overwrite_existing);
        fs::remove(file_);
        const std::string line =
            preparation + "; printf '%s' '" + stop + "' | /bin/sh " + hook().back() + "; true";
        TestSupport::runProgram(temporary_.path(), {shell, "-c", line});
        const auto all = events();
        return all.empty() ? std::nullopt : std::optional(all.front());
    }
    void makeLock(const std::optional<std::string>& owner) const {
        fs::create_directories(lock_);
        if (owner) {
            writeBytes(lock_ / "pid", *owner);
        }
    }
    static void makeOlder(const fs::path& path, int seconds) {
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::seconds(seconds));
    }
};

TEST_F(HookProgram, TellsWhatAnEventMeans) {
    const auto claude = PumpProvider::claude;
    const auto codex = PumpProvider::codex;
    const std::optional<PumpAgentPhase> nothing;
    using enum PumpAgentPhase;
    const struct {
        PumpProvider agent;
        const char* fields;
        std::optional<PumpAgentPhase> phase;
    } cases[] = {
        {claude, R"("hook_event_name":"UserPromptSubmit")", working},
        {codex, R"("hook_event_name":"UserPromptSubmit")", working},
        {codex, R"("hook_event_name":"PermissionRequest")", needsYou},
        {claude, R"("hook_event_name":"PermissionRequest")", nothing},
        {claude, R"("hook_event_name":"Notification","notification_type":"permission_prompt")", needsYou},
        {claude, R"("notification_type":"idle_prompt","hook_event_name":"Notification")", done},
        {claude, R"("hook_event_name":"Notification","notification_type":"auth_success")", nothing},
        {claude, R"("hook_event_name":"Notification")", nothing},
        {codex, R"("hook_event_name":"Notification","notification_type":"permission_prompt")", nothing},
        {claude, R"("hook_event_name":"Stop")", done},
        {codex, R"("hook_event_name":"Interrupt")", done},
        {claude, R"("hook_event_name":"PreToolUse","tool_input":{"hook_event_name":"Stop"})", nothing},
        {claude, R"("hook_event_name":["Stop"])", nothing},
        {claude, R"("hook_event_name":"Stop","hook_event_name":7)", nothing},
        {claude, R"("hook_event_name":7,"hook_event_name":"Stop")", done},
    };
    for (const auto& row : cases) {
        const auto event = eventOf(std::string(R"({"session_id":"s",)") + row.fields + "}", row.agent);
        EXPECT_EQ(event ? std::optional(event->event) : std::nullopt, row.phase) << row.fields;
        EXPECT_TRUE(!event || event->agent == row.agent) << row.fields;
    }
}

TEST_F(HookProgram, RecordsNothingButWhatItMay) {
    const std::string secret =
        R"({"hook_event_name":"Stop","session_id":"a.b:c-D_1","cwd":"/p/é","prompt":"SECRET",)"
        R"("transcript_path":"/SECRET","tool_input":{"session_id":"SECRET","cwd":"/SECRET"}})";
    const auto before = std::chrono::system_clock::now().time_since_epoch();
    const auto event = eventOf(secret).value();
    EXPECT_EQ(event.sessionID, "a.b:c-D_1");
    EXPECT_EQ(event.cwd, "/p/é");
    EXPECT_NEAR(event.timestamp, std::chrono::duration<double>(before).count(), 5);
    EXPECT_EQ(bytesOf(file_).find("SECRET"), std::string::npos);
    EXPECT_EQ(fs::status(file_).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(folder_).permissions(), fs::perms(0700));
    const auto bare = eventOf(secret, PumpProvider::claude, PumpProjectConsent::excluded).value();
    EXPECT_FALSE(bare.cwd || bare.tty);
    const std::string folders[] = {"relative", "/a\\nb", "/a\\u0085", "/" + std::string(1024, 'a')};
    for (const std::string& cwd : folders) {
        const auto other =
            eventOf(R"({"hook_event_name":"Stop","session_id":"s","cwd":")" + cwd + R"("})").value();
        EXPECT_FALSE(other.cwd) << cwd;
    }
}

TEST_F(HookProgram, WritesNothingForWhatItDoesNotUnderstand) {
    std::string large = R"({"hook_event_name":"Stop","session_id":"s","x":")";
    large.resize(PumpHookInput::maximumBytes - 2, 'x');
    large += "\"}";
    EXPECT_TRUE(eventOf(large)) << "a megabyte is still read";
    const std::string session = R"({"hook_event_name":"Stop","session_id":)";
    const std::string inputs[] = {"",
                                  "{",
                                  "null",
                                  "[" + std::string(stop) + "]",
                                  std::string(stop) + "x",
                                  session + "\"a b\"}",
                                  session + "\"\"}",
                                  session + "\"" + std::string(129, 'a') + "\"}",
                                  session + "7}",
                                  std::string(PumpHookInput::maximumBytes, '['),
                                  "\xff\xfe",
                                  std::string(stop) + std::string(1, '\0'),
                                  large + " ",
                                  std::string(5000000, ' ') + stop};
    for (const std::string& input : inputs) {
        EXPECT_FALSE(eventOf(input)) << input.substr(0, 60);
    }
}

TEST_F(HookProgram, KeepsTwoHundredLinesAndLeavesNothingBesideThem) {
    std::string lines;
    for (int line = 1; line <= 200; ++line) {
        lines += "{\"line\":" + std::to_string(line) + "}\n";
    }
    writeBytes(file_, lines);
    run(stop);
    std::string text = bytesOf(file_);
    EXPECT_EQ(std::ranges::count(text, '\n'), 200);
    EXPECT_TRUE(text.starts_with("{\"line\":2}\n"));
    writeBytes(file_, std::string(409601, 'x'));
    run(stop);
    EXPECT_EQ(std::ranges::count(bytesOf(file_), '\n'), 1) << "too long to be read back";
    fs::remove(file_);
    ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0);
    run(stop);
    EXPECT_EQ(events().size(), 1U) << "a pipe is not waited for";
    EXPECT_THAT(std::distance(fs::directory_iterator(folder_), {}), 1);
}

TEST_F(HookProgram, FindsTheTerminalAndTheApplication) {
    EXPECT_EQ(eventBelow("konsole", "true")->terminalBundleID, "org.kde.konsole.desktop");
    EXPECT_EQ(eventBelow("code", "true")->terminalBundleID, "code.desktop");
    EXPECT_EQ(eventBelow("other", "export GIO_LAUNCHED_DESKTOP_FILE_PID=$$ "
                                  "GIO_LAUNCHED_DESKTOP_FILE=/usr/share/applications/org.my.Term.desktop")
                  ->terminalBundleID,
              "org.my.Term.desktop");
    const std::string line = std::string("printf '%s' '") + stop + "' | /bin/sh " + hook().back();
    char name[64] = {};
    int terminal = -1;
    fs::remove(file_);
    const pid_t child = ::forkpty(&terminal, name, nullptr, nullptr);
    if (child == 0) {
        ::execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
        ::_exit(127);
    }
    ::waitpid(child, nullptr, 0);
    ::close(terminal);
    EXPECT_EQ(events().at(0).tty, name);
}

TEST_F(HookProgram, FortyAtOnceLoseNothingWithinTheLocksPromise) {
    constexpr int count = 40;
    constexpr double promise = 0.47; // nineteen pauses of 25 ms, less what a clock may round
    const auto command = hook();
    run(stop);
    std::atomic<bool> isOver = false;
    std::atomic<int> torn = 0;
    std::thread reader([&] {
        while (!isOver) {
            const std::string text = bytesOf(file_);
            const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n'));
            torn += PumpAgentEvent::parseLines(text).size() == lines && text.ends_with('\n') ? 0 : 1;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    std::vector<std::thread> agents;
    std::array<bool, count> isExcused{};
    for (int agent = 0; agent < count; ++agent) {
        agents.emplace_back([&, agent] {
            const auto start = std::chrono::steady_clock::now();
            const std::string input =
                R"({"hook_event_name":"Stop","session_id":"n)" + std::to_string(agent) + R"("})";
            const Ended ended = TestSupport::runProgram(temporary_.path(), command, input);
            EXPECT_EQ(ended.status, 0);
            isExcused.at(static_cast<std::size_t>(agent)) = secondsSince(start) >= promise;
        });
    }
    for (std::thread& agent : agents) {
        agent.join();
    }
    isOver = true;
    reader.join();
    EXPECT_EQ(torn, 0);
    std::set<std::string> sessions;
    for (const PumpAgentEvent& event : events()) {
        EXPECT_TRUE(sessions.insert(event.sessionID).second) << event.sessionID << " is there twice";
    }
    for (std::size_t agent = 0; agent < count; ++agent) {
        EXPECT_TRUE(isExcused.at(agent) || sessions.contains("n" + std::to_string(agent))) << agent;
    }
    EXPECT_GT(sessions.size(), 20U);
    EXPECT_FALSE(fs::exists(lock_));
}

TEST_F(HookProgram, AKilledHolderLeavesAWholeFileAndALockThatOpens) {
    run(stop);
    for (int round = 0; round < 60; ++round) {
        RunningProgram victim(temporary_.path(), {FELLOW_HOOK_PROGRAM, "event", "claude", "1", folder_, "1"});
        victim.feed(stop);
        victim.endInput();
        std::this_thread::sleep_for(std::chrono::microseconds(round * 50));
        ::kill(victim.pid(), round % 2 == 0 ? SIGKILL : SIGTERM);
        const int status = victim.wait().status;
        EXPECT_TRUE(status == 0 || status == 128 + SIGKILL || status == 128 + SIGTERM) << status;
        const std::string text = bytesOf(file_);
        EXPECT_EQ(PumpAgentEvent::parseLines(text).size(),
                  static_cast<std::size_t>(std::ranges::count(text, '\n')));
    }
    if (fs::exists(lock_) && (!fs::exists(lock_ / "pid") || fs::is_empty(lock_ / "pid"))) {
        makeOlder(lock_, 11); // died before it could say who it was, which only time tells
    }
    const std::string last = R"({"hook_event_name":"Stop","session_id":"last"})";
    run(last);
    EXPECT_EQ(events().back().sessionID, "last");
    EXPECT_FALSE(fs::exists(lock_));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 1) << "a dead holder's file is left";
}

TEST_F(HookProgram, ClearsOnlyStaleLocks) {
    const pid_t zombie = ::fork();
    if (zombie == 0) {
        ::_exit(0);
    }
    const pid_t dead = ::fork();
    if (dead == 0) {
        ::_exit(0);
    }
    ::waitpid(dead, nullptr, 0);
    const std::string self = std::to_string(::getpid()) + "\n";
    const struct {
        const char* fault;
        std::optional<std::string> owner;
        int age;
        bool isCleared;
    } cases[] = {
        {"a dead owner", std::to_string(dead) + "\n", 0, true},
        {"an owner that nobody buried", std::to_string(zombie) + "\n", 0, true},
        {"an owner that is no number", "x\n", 0, true},
        {"a live owner", self, 0, false},
        {"a live process with a dead owner's number", self, 1000000, true},
        {"nobody yet", std::nullopt, 0, false},
        {"nobody for nine seconds", std::nullopt, 9, false},
        {"nobody for eleven seconds", std::nullopt, 11, true},
        {"a name not written yet", "", 0, false},
        {"a name never written", "", 11, true},
        {"nobody, in the future", std::nullopt, -60, true},
    };
    for (const auto& row : cases) {
        fs::remove(file_);
        makeLock(row.owner);
        writeBytes(folder_ / (".agent-events-" + std::to_string(dead)), "half");
        makeOlder(row.owner.value_or("").empty() ? lock_ : lock_ / "pid", row.age);
        const auto start = std::chrono::steady_clock::now();
        run(stop);
        EXPECT_EQ(events().size(), row.isCleared ? 1U : 0U) << row.fault;
        EXPECT_EQ(fs::exists(lock_), !row.isCleared) << row.fault;
        EXPECT_TRUE(row.isCleared || secondsSince(start) >= 0.47) << row.fault << ": gave up too soon";
        EXPECT_LT(secondsSince(start), 1.9) << row.fault;
        fs::remove_all(lock_);
    }
    ::waitpid(zombie, nullptr, 0);
    fs::remove(folder_ / (".agent-events-" + std::to_string(dead)));
}

TEST_F(HookProgram, EndsQuietlyWhenToldToAndByItself) {
    makeLock(std::to_string(::getpid()));
    RunningProgram waiting(temporary_.path(), {FELLOW_HOOK_PROGRAM, "event", "claude", "1", folder_, "1"});
    waiting.feed(stop);
    waiting.endInput();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    ::kill(waiting.pid(), SIGTERM);
    EXPECT_EQ(waiting.wait().status, 0);
    EXPECT_TRUE(fs::exists(lock_ / "pid")) << "another's lock is not given back";
    fs::remove_all(lock_);

    const auto start = std::chrono::steady_clock::now();
    RunningProgram endless(temporary_.path(), hook());
    endless.feed(stop);
    int status = 0;
    ::waitpid(endless.pid(), &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_LT(secondsSince(start), 3) << "an agent that never closes its end";
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(HookProgram, FailsOpenWhereverItStands) {
    const fs::path gone = temporary_ / "gone.sh";
    writeBytes(gone, PumpAgentHook::script(PumpProvider::claude, PumpProjectConsent::included,
                                           {temporary_ / "no such program", folder_}));
    writeBytes(temporary_ / "file", "");
    const std::string program = FELLOW_HOOK_PROGRAM;
    const std::vector<std::string> commands[] = {
        {"/bin/sh", gone},
        {program},
        {program, "nonsense"},
        {program, "event"},
        {program, "event", "gemini", "1", folder_, "1"},
        {program, "event", "claude", "1", "relative", "1"},
        {program, "event", "claude", "1", temporary_ / "file", "1"},
        {program, "event", "claude", "1", "/proc/nowhere", "1"},
        {program, "statusline"},
        {program, "statusline", "/proc/nowhere/file"},
    };
    for (const auto& command : commands) {
        const Ended ended = TestSupport::runProgram(temporary_.path(), command, stop);
        EXPECT_EQ(ended.status, 0) << testing::PrintToString(command);
        EXPECT_EQ(ended.output + ended.errors, "") << testing::PrintToString(command);
    }
    EXPECT_FALSE(fs::exists(file_));
    EXPECT_EQ(bytesOf(temporary_ / "file"), "");
}

} // namespace
} // namespace FellowCore
