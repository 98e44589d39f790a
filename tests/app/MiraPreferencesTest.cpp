#include "app/characters/mira/MiraPreferences.h"

#include "core/base/MemoryPreferences.h"

#include <QByteArray>

#include <gmock/gmock.h>

namespace DeskSprites {
namespace {

using FellowCore::BreathingSettings;
using FellowCore::MemoryPreferences;
using testing::ElementsAre;

/// "calm 6 x 10 s, voice 0.6, breath 0.5": what a session would be, whatever is stored.
std::string described(const MiraPreferences& preferences) {
    const BreathingSettings next = preferences.sessionSettings();
    const auto sound = [](const SoundChoice& choice) {
        return choice.on ? QByteArray::number(choice.volume).toStdString() : std::string("off");
    };
    return std::string(FellowCore::rawValue(preferences.rhythm())) + " " + std::to_string(next.rounds) +
           " x " + QByteArray::number(next.cycle()).toStdString() + " s, voice " +
           sound(preferences.voice()) + ", breath " + sound(preferences.breath()) +
           (preferences.reducedMotion() ? ", still" : "");
}

TEST(MiraPreferencesTest, WhateverIsStoredASessionCanBeMadeOfIt) {
    struct Row {
        const char* what;
        const char* stored;
        const char* expected;
    };
    const Row rows[] = {
        {"nothing", "{}", "calm 6 x 10 s, voice 0.6, breath 0.5"},
        {"wrong types",
         R"({"rhythm": 4, "rounds": "many", "minutes": [], "voice": "on", "voiceVolume": "loud",
           "patterns": "none", "pattern": 3, "custom": 8, "reducedMotion": 1})",
         "calm 6 x 10 s, voice 0.6, breath 0.5"},
        {"an unknown rhythm", R"({"rhythm": "samba"})", "calm 6 x 10 s, voice 0.6, breath 0.5"},
        {"too many rounds", R"({"rounds": 100000000000})", "calm 75 x 10 s, voice 0.6, breath 0.5"},
        {"too few", R"({"rounds": -4})", "calm 1 x 10 s, voice 0.6, breath 0.5"},
        {"4-7-8 has its own rounds", R"({"rhythm": "fourSevenEight", "rounds": 40})",
         "fourSevenEight 4 x 19 s, voice 0.6, breath 0.5"},
        {"and never more than eight", R"({"rhythm": "fourSevenEight", "fourSevenEightRounds": 40})",
         "fourSevenEight 8 x 19 s, voice 0.6, breath 0.5"},
        {"not by minutes either", R"({"rhythm": "fourSevenEight", "length": "minutes", "minutes": 5})",
         "fourSevenEight 8 x 19 s, voice 0.6, breath 0.5"},
        {"minutes fill up", R"({"rhythm": "box", "length": "minutes", "minutes": 1})",
         "box 4 x 16 s, voice 0.6, breath 0.5"},
        {"no minutes", R"({"length": "minutes", "minutes": 0})", "calm 6 x 10 s, voice 0.6, breath 0.5"},
        {"an unknown length", R"({"length": "hours"})", "calm 6 x 10 s, voice 0.6, breath 0.5"},
        {"volumes out of bounds", R"({"voiceVolume": 7, "breathVolume": -1})",
         "calm 6 x 10 s, voice 1, breath 0"},
        {"switches", R"({"voice": false, "breath": false, "reducedMotion": true})",
         "calm 6 x 10 s, voice off, breath off, still"},
        {"custom without a pattern", R"({"rhythm": "custom"})", "custom 5 x 12 s, voice 0.6, breath 0.5"},
        {"a pattern that is gone", R"({"rhythm": "custom", "pattern": "Gone", "custom": "3 1 5 1 0"})",
         "custom 5 x 10 s, voice 0.6, breath 0.5"},
        {"a pattern in force",
         R"({"rhythm": "custom", "pattern": "Sea", "patterns": ["3 0 4 0 0 Sea"], "rounds": 9})",
         "custom 9 x 7 s, voice 0.6, breath 0.5"},
        {"lengths beyond every bound", R"({"rhythm": "custom", "custom": "99 99 99 99 99"})",
         "custom 5 x 38 s, voice 0.6, breath 0.5"},
        {"lengths that are none", R"({"rhythm": "custom", "custom": "4 nan inf -3 0"})",
         "custom 5 x 10 s, voice 0.6, breath 0.5"},
        {"half a line", R"({"rhythm": "custom", "custom": "8 8"})", "custom 5 x 12 s, voice 0.6, breath 0.5"},
    };
    for (const Row& row : rows) {
        std::string document = row.stored;
        for (std::size_t at = 0; (at = document.find("\": ", at)) != std::string::npos; at += 3) {
            document.insert(document.rfind('"', at - 1) + 1, "sprites.mira.");
            at = document.find("\": ", at);
        }
        MemoryPreferences stored;
        stored.load(document);
        EXPECT_EQ(described(MiraPreferences(stored)), row.expected) << row.what;
    }
}

std::vector<std::string> names(const MiraPreferences& preferences) {
    std::vector<std::string> all;
    for (const BreathingPattern& pattern : preferences.patterns()) {
        all.push_back(pattern.name);
    }
    return all;
}

TEST(MiraPreferencesTest, LinesThatAreNoPatternAreLeftOut) {
    MemoryPreferences stored;
    stored.setStrings("sprites.mira.patterns",
                      {"4 2 6 0 0 Evening", "", "4 2 6 0 0", "4 2 6 0 0   ", "4 2 six 0 0 Word",
                       "4,2,6,0,0 Commas", "4 2 6 0 0 evening", "1e9 -1 3.3 0 0 Drawn\nin",
                       "4 2 6 0 0 \xff\xfe", "5 0 5 0 0 2 5 0", "4 2 6 0 0 " + std::string(500, 'x')});
    const MiraPreferences preferences(stored);
    EXPECT_THAT(names(preferences),
                ElementsAre("Evening", "Drawn in", "\uFFFD\uFFFD", "2 5 0", std::string(40, 'x')));
    EXPECT_EQ(preferences.patterns().at(1).lengths, BreathingSettings(8, 0, 3.5, 1));
}

TEST(MiraPreferencesTest, PatternsAreSavedRenamedChangedAndForgotten) {
    MemoryPreferences stored;
    MiraPreferences preferences(stored);
    preferences.setCustomLengths({3, 1, 5, 1});
    EXPECT_FALSE(preferences.savePattern("  \n ")) << "no name";
    EXPECT_TRUE(preferences.savePattern(" Sea "));
    EXPECT_FALSE(preferences.savePattern("SEA")) << "the same name in another case";
    EXPECT_TRUE(preferences.savePattern("Hill"));
    preferences.setCustomLengths({6, 0, 6, 1});
    preferences.choosePattern("Sea");
    EXPECT_EQ(preferences.customLengths(), BreathingSettings(3, 1, 5, 1)) << "each keeps its own lengths";
    EXPECT_FALSE(preferences.renameChosen("hill"));
    EXPECT_TRUE(preferences.renameChosen("sea")) << "another case of its own name";
    EXPECT_TRUE(preferences.renameChosen("Shore"));
    EXPECT_THAT(names(preferences), ElementsAre("Shore", "Hill"));
    EXPECT_EQ(preferences.chosenPattern()->name, "Shore");
    preferences.removeChosen();
    EXPECT_THAT(names(preferences), ElementsAre("Hill"));
    EXPECT_FALSE(preferences.chosenPattern());
    EXPECT_EQ(preferences.customLengths(), BreathingSettings(3, 1, 5, 1)) << "its lengths are not lost";
    EXPECT_FALSE(preferences.renameChosen("Nothing"));
    for (int number = 0; number < 40; ++number) {
        preferences.savePattern("Pattern " + std::to_string(number));
    }
    EXPECT_EQ(preferences.patterns().size(), MiraPreferences::mostPatterns);
    EXPECT_EQ(MiraPreferences(stored).patterns(), preferences.patterns());
}

} // namespace
} // namespace DeskSprites
