#include "core/sound/InterfaceSoundCue.h"
#include "core/sound/InterfaceSoundGate.h"
#include "core/sound/WaveFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace FellowCore;
using Cue = InterfaceSoundCue;

TEST(InterfaceSoundCueTest, namesAreDistinctAndResourcesAreSharedOnlyWhereMeant) {
    std::set<std::string_view> names;
    std::set<std::string_view> resources;
    for (const auto cue : allInterfaceSoundCues) {
        names.insert(name(cue));
        resources.insert(resourceName(cue));
    }
    EXPECT_EQ(names.size(), 11u);
    EXPECT_EQ(resources.size(), 8u);
    EXPECT_EQ(resourceName(Cue::start), resourceName(Cue::reveal));
    EXPECT_EQ(resourceName(Cue::end), resourceName(Cue::hide));
    EXPECT_EQ(resourceName(Cue::end), resourceName(Cue::close));
    EXPECT_EQ(name(allInterfaceSoundCues.front()), "swap");
    EXPECT_EQ(name(allInterfaceSoundCues.back()), "pumpNeedsYou");
}

TEST(InterfaceSoundCueTest, everyResourceIsASoundWeCanRead) {
    for (const auto cue : allInterfaceSoundCues) {
        SCOPED_TRACE(name(cue));
        const auto file =
            std::filesystem::path(DESKFELLOW_DATA) / "sounds" / (std::string(resourceName(cue)) + ".wav");
        std::ifstream stream(file, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(stream), {});
        const auto sound = WaveFile::parse(bytes);
        EXPECT_EQ(sound.samples.size() * 2 + 44, bytes.size());
    }
}

enum class Guidance { none, active };

/// One request of a scenario; what is not stated is as in the quiet case.
struct Request {
    Seconds at;
    bool expected;
    Cue cue = Cue::open;
    bool enabled = true;
    Guidance guidance = Guidance::none;
    bool muted = false;
};

struct GateCase {
    const char* fault;
    std::vector<Request> requests;
    std::optional<Seconds> lastPlayed;
};

TEST(InterfaceSoundGateTest, permits) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const GateCase cases[] = {
        {"a refused cue pushes the spacing on", {{1.0, true}, {1.05, false}, {1.095, true}}, 1.095},
        {"exactly the spacing is refused", {{0.0, true}, {0.09, true}}, 0.09},
        {"Mira's completion waits its turn", {{1.0, true}, {1.05, true, Cue::miraComplete}}, 1.05},
        {"Mira's completion leaves no mark", {{1.0, true, Cue::miraComplete}, {1.05, false}}, 1.0},
        {"Mira's completion ignores the switch", {{1.0, false, Cue::miraComplete, false}}, {}},
        {"Mira's completion talks over guidance",
         {{1.0, false, Cue::miraComplete, true, Guidance::active}},
         {}},
        {"Mira's completion ignores muting",
         {{1.0, false, Cue::miraComplete, true, Guidance::none, true}},
         {}},
        {"a clock set back silences everything", {{100.0, true}, {1.0, true}, {1.05, false}}, 1.0},
        {"no number is a time", {{nan, false}, {nan, false, Cue::miraComplete}}, {}},
        {"the end of time blocks what follows",
         {{infinity, false}, {-infinity, false, Cue::miraComplete}, {1.0, true}},
         1.0},
        {"a refusal by the switch counts as a sound", {{1.0, false, Cue::open, false}, {1.01, true}}, 1.01},
        {"a refusal by guidance counts as a sound",
         {{1.0, false, Cue::open, true, Guidance::active}, {1.01, true}},
         1.01},
        {"a muted character blocks the others",
         {{1.0, false, Cue::open, true, Guidance::none, true}, {1.01, true}},
         1.01},
        {"a negative origin is no time", {{-5.0, true}, {-4.95, false}, {-4.9, true}}, -4.9},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.fault);
        InterfaceSoundGate gate;
        for (const auto& request : testCase.requests)
            EXPECT_EQ(gate.permits(request.cue, request.enabled, request.guidance == Guidance::active,
                                   request.muted, request.at),
                      request.expected)
                << "at " << request.at;
        EXPECT_EQ(gate.lastPlayed, testCase.lastPlayed);
    }
}

TEST(InterfaceSoundGateTest, resetForgetsTheLastSound) {
    InterfaceSoundGate gate;
    EXPECT_TRUE(gate.permits(Cue::open, true, false, false, 1.0));
    gate.reset();
    EXPECT_TRUE(gate.permits(Cue::open, true, false, false, 1.01));
}

} // namespace
