// The reader against a slow and obvious model, which reads every log from its first byte at every step.

#include "core/pump/PumpUsageReader.h"

#include "tests/core/pump/UsageHome.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <random>
#include <set>
#include <sstream>
#include <utility>

namespace FellowCore {
namespace {

using TestSupport::bytesOf;
using TestSupport::writeBytes;
namespace fs = std::filesystem;

constexpr Seconds hour = 3600;

struct Message {
    double at = 0; ///< seconds since 1970
    std::int64_t input = 0;
    std::int64_t output = 0;
};

/// What all logs say together.
struct Model {
    std::map<std::string, Message> messages;
    bool partial = false;
    bool any = false;

    explicit Model(const fs::path& root) {
        for (const auto& entry : fs::recursive_directory_iterator(root)) {
            if (entry.is_regular_file() && entry.path().extension() == ".jsonl") {
                any = true;
                take(entry.path());
            }
        }
    }

    PumpClaudeUsage usage(Instant now, Instant weekStart, std::int64_t budget) const {
        std::multiset<double> activity;
        for (const auto& [key, message] : messages) {
            activity.insert(message.at);
        }
        std::optional<double> start;
        for (const double at : activity) {
            if (!start || at >= *start + 5 * hour) {
                start = at - std::fmod(at, hour);
            }
        }
        PumpClaudeUsage usage;
        usage.hasLogs = !activity.empty();
        if (start && now.toUnix() < *start + 5 * hour) {
            usage.blockStart = Instant::fromUnix(*start);
            usage.resetsAt = Instant::fromUnix(*start + 5 * hour);
        }
        for (const auto& [key, message] : messages) {
            const Instant at = Instant::fromUnix(message.at);
            const std::int64_t tokens = message.input + message.output;
            usage.weekTokens += at >= weekStart ? tokens : 0;
            usage.blockTokens += usage.blockStart && at >= *usage.blockStart ? tokens : 0;
        }
        usage.usedPercent = static_cast<double>(usage.blockTokens) / static_cast<double>(budget) * 100;
        return usage;
    }

private:
    void take(const fs::path& path) {
        const std::string bytes = bytesOf(path);
        std::istringstream lines(bytes);
        std::string line;
        for (int number = 0; std::getline(lines, line); ++number) {
            if (lines.eof()) {
                partial = true; // no line feed after it yet
            } else if (!line.empty()) {
                takeLine(line, path.string() + "#" + std::to_string(number));
            }
        }
    }

    void takeLine(const std::string& line, const std::string& place) {
        const Json json = Json::parse(line, nullptr, false);
        if (!json.is_object()) {
            partial = true;
            return;
        }
        if (json.value("type", "") != "assistant") {
            return;
        }
        const Json& message = json.at("message");
        const double at = instantFromIso8601(json.at("timestamp").get<std::string>()).value().toUnix();
        Message& known = messages.try_emplace(message.value("id", place), Message{at, 0, 0}).first->second;
        known.at = std::min(known.at, at);
        known.input = std::max(known.input, message.at("usage").at("input_tokens").get<std::int64_t>());
        known.output = std::max(known.output, message.at("usage").at("output_tokens").get<std::int64_t>());
    }
};

/// Does to a few logs what agents and users do to them.
class History {
public:
    explicit History(unsigned seed) : random_(seed) {}

    void step() {
        const fs::path log = home.claude(pick());
        switch (below(12)) {
        case 0:
            if (fs::exists(log)) {
                fs::resize_file(log, below(fs::file_size(log) + 1));
            }
            break;
        case 1:
            replace(log, lines());
            break;
        case 2:
            if (const fs::path from = home.claude(pick()); fs::exists(from) && from != log) {
                replace(log, bytesOf(from) + lines());
            }
            break;
        case 3:
            fs::remove(log);
            break;
        case 4:
            home.restart();
            return;
        case 5:
            now = now + static_cast<Seconds>(below(3 * 3600));
            return;
        default:
            home.append(log, std::exchange(rests_[log.string()], "") + lines());
            cut(log);
            return;
        }
        rests_.erase(log.string()); // it does not fit what stands there now
    }

    UsageHome home;
    Instant now = wednesday("00:00:00");

private:
    std::size_t below(std::size_t limit) { return random_() % limit; }

    std::string pick() {
        static constexpr const char* names[] = {"p/a.jsonl", "p/b.jsonl", "q/c.jsonl", "q/d.jsonl"};
        return names[below(4)];
    }

    void replace(const fs::path& log, const std::string& bytes) const {
        writeBytes(home.folder / "new", bytes);
        fs::create_directories(log.parent_path());
        fs::rename(home.folder / "new", log);
    }

    std::string stamp(bool recent) {
        // Within the week, or far enough before it that no copy of one message lies on either side.
        const Seconds age = recent ? static_cast<Seconds>(below(40 * 3600))
                                   : 20 * 86400 + static_cast<Seconds>(below(40 * 3600));
        return iso8601Text(now - age);
    }

    std::string lines() {
        std::string text;
        for (std::size_t count = 1 + below(4); count > 0; --count) {
            switch (below(8)) {
            case 0:
                text += "{\"type\":\"user\",\"text\":\"" + std::string(below(300), 'x') + "\"}\n";
                break;
            case 1:
                text += below(4) == 0 ? "{broken\n" : "\n";
                break;
            default: {
                const std::size_t number = below(30);
                const bool named = number < 26;
                // A name fixes how old its message is, for each report of it.
                text += AssistantLine{.at = stamp(!named || number % 2 == 0),
                                      .id = named ? "msg_" + std::to_string(number) : "",
                                      .input = static_cast<std::int64_t>(below(500)),
                                      .output = static_cast<std::int64_t>(below(500))}
                            .text();
            }
            }
        }
        return text;
    }

    /// Sometimes takes the end of the last line off again, to be written by a later step.
    void cut(const fs::path& log) {
        if (below(4) != 0 || fs::file_size(log) < 20) {
            return;
        }
        const std::string bytes = bytesOf(log);
        const std::size_t keep = bytes.size() - 1 - below(15);
        rests_[log.string()] = bytes.substr(keep);
        fs::resize_file(log, keep);
    }

    std::mt19937 random_;
    std::map<std::string, std::string> rests_; ///< of the lines that are written half
};

TEST(PumpUsageModel, AgreesWithTheReaderOverRandomHistories) {
    int blocks = 0;
    int partial = 0;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        History history(seed);
        history.home.files.flushes = false;
        fs::create_directories(history.home.claude(""));
        for (int step = 0; step < 60; ++step) {
            history.step();
            const PumpUsageSnapshot snapshot = history.home.refresh(history.now);
            const Model model(history.home.claude(""));
            const Instant monday = instantFromIso8601("2026-03-02T00:00:00Z").value();
            const PumpClaudeUsage expected = model.usage(history.now, monday, 44'000);
            ASSERT_EQ(snapshot.claude.weekTokens, expected.weekTokens) << seed << ", " << step;
            ASSERT_EQ(snapshot.claude.blockStart, expected.blockStart) << seed << ", " << step;
            ASSERT_EQ(snapshot.claude, expected) << seed << ", " << step;
            ASSERT_EQ(snapshot.claudeSource, !model.any      ? PumpSourceState::missing
                                             : model.partial ? PumpSourceState::partial
                                                             : PumpSourceState::ready)
                << seed << ", " << step;
            blocks += expected.blockStart ? 1 : 0;
            partial += model.partial ? 1 : 0;
        }
    }
    EXPECT_GT(blocks, 500);
    EXPECT_GT(partial, 200);
}

} // namespace
} // namespace FellowCore
