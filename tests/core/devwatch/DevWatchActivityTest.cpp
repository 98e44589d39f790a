#include "core/devwatch/DevWatchActivityTracker.h"
#include "core/devwatch/DevWatchPose.h"
#include "core/devwatch/DevWatchPresentation.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace FellowCore;
using State = DevWatchActivityState;

constexpr double none = std::numeric_limits<double>::quiet_NaN();

DevWatchProcess numbered(std::int32_t pid) {
    return {{pid, 1000, 1}, "node", "/usr/bin/node", "/"};
}

/// What was seen at one moment.
struct Observation {
    double at = 0;
    std::optional<double> system = std::nullopt;
    std::vector<std::pair<std::int32_t, double>> percents = {};
    std::vector<std::int32_t> listening = {};
};

/// Feeds a tracker with moments in which little changes.
class Tracking {
public:
    Tracking& see(const Observation& seen) {
        std::vector<DevWatchProcessUsage> usages;
        std::vector<DevWatchListener> listeners;
        for (const auto& [pid, percent] : seen.percents) {
            usages.push_back({numbered(pid), percent});
        }
        for (const std::int32_t pid : seen.listening) {
            listeners.push_back({numbered(pid), 8080});
            listeners.push_back({numbered(pid), 8081});
        }
        tracker.observe(seen.system, usages, listeners, {seen.at});
        return *this;
    }
    /// The same at every step, up to and with the end.
    Tracking& seeUntil(double end, Observation seen, double step = 30) {
        for (; at < end; at = std::min(end, at + step)) {
            seen.at = at;
            see(seen);
        }
        seen.at = end;
        return see(seen);
    }

    DevWatchActivityTracker tracker;
    double at = 0;
};

const Observation busy{.system = 60.1};
const Observation hot{.percents = {{7, 80.1}}};
const Observation quiet{.percents = {{7, 1.0}}, .listening = {7}};

TEST(DevWatchActivityTracker, WaitsForWhatLasts) {
    const struct {
        const char* fault;
        Observation seen;
        double until;
        State expected;
    } cases[] = {
        {"exactly 60 percent is not busy", {.system = 60}, 600, State::calm},
        {"not a minute yet", busy, 59, State::calm},
        {"a minute", busy, 60, State::busy},
        {"an unknown use", {.system = none}, 600, State::calm},
        {"not two minutes yet", hot, 119, State::calm},
        {"two minutes", hot, 120, State::hog},
        {"exactly 80 percent is no hog", {.percents = {{7, 80}}}, 600, State::calm},
        {"a use that is no number", {.percents = {{7, none}}, .listening = {7}}, 7300, State::calm},
        {"not two hours yet", quiet, 7199, State::calm},
        {"two hours", quiet, 7200, State::idleServer},
        {"quiet but no server", {.percents = {{7, 0}}}, 7300, State::calm},
        {"a server of unknown use", {.listening = {7}}, 7300, State::calm},
        {"a hog counts before a busy machine", {.system = 99, .percents = {{7, 99}}}, 120, State::hog},
        {"a busy machine before a quiet server",
         {.system = 99, .percents = {{7, 1}}, .listening = {7}},
         7200,
         State::busy},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(Tracking().seeUntil(row.until, row.seen).tracker.state, row.expected) << row.fault;
    }
    const auto third = Tracking().see({0, 99.0, {}, {}}).see({30, 99.0, {}, {}}).see({60, 99.0, {}, {}});
    EXPECT_EQ(third.tracker.state, State::busy) << "seen by the slow poll";
    EXPECT_THAT(Tracking().seeUntil(7200, quiet).tracker.idleServers,
                ::testing::ElementsAre(numbered(7).identity));
}

TEST(DevWatchActivityTracker, ForgetsWhenItLostSight) {
    const auto after = [](double last, double next) {
        Tracking tracking;
        tracking.seeUntil(last, busy);
        Observation again = busy;
        again.at = next;
        return tracking.see(again).tracker;
    };
    EXPECT_EQ(after(60, 105).state, State::busy);
    EXPECT_EQ(after(60, 106).state, State::calm) << "the machine slept";
    EXPECT_EQ(after(60, 60).state, State::calm) << "no time passed";
    EXPECT_EQ(after(60, 59).state, State::calm) << "time went back";
    EXPECT_EQ(after(60, none).previousTime, std::nullopt) << "and can go on with the next time";
    EXPECT_EQ(after(60, 106).busySince, MonotonicInstant{106}) << "what is seen then counts as the first";

    Tracking dipped;
    dipped.seeUntil(30, busy).see({40, 50.0, {}, {}});
    EXPECT_EQ(dipped.see({60, 99.0, {}, {}}).see({99, 99.0, {}, {}}).tracker.state, State::calm)
        << "a dip begins the minute anew";
}

/// The judgement, from all that was seen, without any memory of its own.
State judgedSlowly(const std::vector<Observation>& history) {
    std::size_t first = history.size() - 1;
    while (first > 0 && history[first].at > history[first - 1].at &&
           history[first].at - history[first - 1].at <= 45) {
        --first;
    }
    const auto lasted = [&](double least, const auto& holds) {
        std::size_t start = history.size();
        while (start > first && holds(history[start - 1])) {
            --start;
        }
        return start < history.size() && history.back().at - history[start].at >= least;
    };
    const auto percent = [](const Observation& seen, std::int32_t pid) {
        for (const auto& [number, value] : seen.percents) {
            if (number == pid) {
                return value;
            }
        }
        return none;
    };
    bool isHog = false;
    bool isIdle = false;
    for (std::int32_t pid = 1; pid <= 3; ++pid) {
        isHog = isHog || lasted(120, [&](const Observation& seen) { return percent(seen, pid) > 80; });
        isIdle = isIdle || lasted(7200, [&](const Observation& seen) {
                     return percent(seen, pid) <= 1 && std::ranges::count(seen.listening, pid) > 0;
                 });
    }
    const bool isBusy = lasted(60, [](const Observation& seen) { return seen.system.value_or(0) > 60; });
    return isHog ? State::hog : isBusy ? State::busy : isIdle ? State::idleServer : State::calm;
}

TEST(DevWatchActivityTracker, JudgesAsASlowModelDoes) {
    std::mt19937 random(11);
    const auto chance = [&random](unsigned one) { return random() % one == 0; };
    std::array<int, 4> states{};
    for (int run = 0; run < 30; ++run) {
        Tracking tracking;
        std::vector<Observation> history;
        // Some runs change hardly ever, so that hours of quiet happen.
        const unsigned restless = run % 3 == 0 ? 12 : 2000;
        Observation seen{.percents = {{1, 0.5}, {2, 70}, {3, 1}}, .listening = {1, 3}};
        for (int step = 0; step < 600; ++step) {
            seen.at += chance(restless) ? 46 - static_cast<double>(random() % 60) : chance(9) ? 45 : 30;
            if (chance(restless / 2)) {
                seen.system = chance(2) ? std::optional(61.0) : std::nullopt;
            }
            if (chance(restless)) {
                seen.percents[random() % 3].second = chance(2) ? 0.9 : 85;
            }
            if (chance(restless)) {
                seen.listening =
                    chance(2) ? std::vector<std::int32_t>{2} : std::vector<std::int32_t>{1, 2, 3};
            }
            history.push_back(seen);
            tracking.see(seen);
            const State expected = judgedSlowly(history);
            ASSERT_EQ(tracking.tracker.state, expected) << "run " << run << ", step " << step;
            ++states[static_cast<std::size_t>(expected)];
        }
    }
    EXPECT_THAT(states, ::testing::Each(::testing::Gt(0))) << "every state was judged";
}

TEST(DevWatchPose, TapsFourBeats) {
    const struct {
        State state;
        std::optional<Seconds> elapsed;
        bool reduced;
        const char* expected;
    } cases[] = {
        {State::calm, 0.35, false, "idle"},
        {State::busy, 0.35, false, "busy"},
        {State::hog, 0.35, false, "hog"},
        {State::idleServer, std::nullopt, false, "idle-server"},
        {State::idleServer, 0.35, false, "idle-server-tap"},
        {State::idleServer, 0.65, false, "idle-server"},
        {State::idleServer, 1.19, false, "idle-server-tap"},
        {State::idleServer, 1.2, false, "idle-server"},
        {State::idleServer, 0.35, true, "idle-server"},
        {State::idleServer, -0.35, false, "idle-server"},
        {State::idleServer, none, false, "idle-server"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(DevWatchPose::name(row.state, row.elapsed, row.reduced), row.expected)
            << rawValue(row.state) << " after " << row.elapsed.value_or(-1);
    }
    EXPECT_EQ(DevWatchPolling::interval(true), 5);
    EXPECT_EQ(DevWatchPolling::interval(false), 30);
}

TEST(DevWatchPresentation, SaysLengthsAndProjectsShortly) {
    using namespace DevWatchPresentation;
    const std::pair<Seconds, const char*> lengths[] = {
        {59.9, "<1m"}, {60, "1m"},     {3599, "59m"},  {3600, "1h"},  {86399, "23h"},
        {86400, "1d"}, {250000, "2d"}, {-7200, "<1m"}, {none, "<1m"}, {1e300, "<1m"},
    };
    for (const auto& [length, text] : lengths) {
        EXPECT_EQ(uptime(length), text) << length;
    }
    EXPECT_EQ(serverMeta(7300, false), "up 2h");
    EXPECT_EQ(serverMeta(7300, true), "quiet 2h+");
    EXPECT_EQ(reason(State::idleServer), "Listening process quiet for over two hours");
    EXPECT_EQ(reason(State::calm), std::nullopt);
    EXPECT_EQ(project("/home/asha/my site/", "/home/asha"), "my site");
    EXPECT_EQ(project("/home/asha/", "/home/asha"), std::nullopt);
    EXPECT_EQ(project("/", ""), std::nullopt);
    EXPECT_EQ(project("/srv/a\nb", ""), "a b");
    EXPECT_EQ(emptyTitle(DevWatchProcessListState::unavailable), "Process list unavailable");
}

} // namespace
