#pragma once

#include "app/characters/clock/ClockCharacter.h"
#include "app/desktop/ShortcutBoard.h"
#include "platform/image/PngDecoder.h"
#include "tests/app/AppHarness.h"
#include "tests/app/QuietCommands.h"

namespace ClockHarness {

using namespace AppHarness;
using FellowCore::Calendar;
using FellowCore::WorldClockState;
using FellowCore::WorldClockStore;

/// Counts what is played and plays nothing.
class CountedOutput final : public Platform::AudioOutput {
public:
    explicit CountedOutput(int& strokes) : strokes_(strokes) {}
    void play(Platform::AudioVoice, Platform::AudioSamples, FellowCore::StereoGains,
              FellowCore::SoundStart) override {
        ++strokes_;
    }
    void setGains(Platform::AudioVoice, FellowCore::StereoGains) override {}
    void stop(Platform::AudioVoice) override {}

private:
    int& strokes_;
};

/// Ghanta Ghar as installed, on a machine whose zone is the test's.
class ClockDesk {
public:
    explicit ClockDesk(std::string systemZone = "Etc/UTC") : zone(std::move(systemZone)) {
        site.playSound = [](FellowCore::InterfaceSoundCue, const DesktopCharacter&, double) {};
        site.tell = [this](const QString& sentence) { told.push_back(sentence.toStdString()); };
        site.obstacles = [](const DesktopCharacter&) { return std::vector<FellowCore::Rect>{}; };
        site.dismissActions = [] {};
        site.makeAudio = [this] { return std::make_unique<CountedOutput>(strokes); };
        make();
    }
    ~ClockDesk() { tower.reset(); }

    /// The program starts, anew with what is stored.
    void make() {
        tower.reset();
        const auto folder = std::filesystem::path(DESKFELLOW_DATA) / "characters" / "clock";
        const auto manifest =
            FellowCore::CharacterManifest::fromJson(TestSupport::bytesOf(folder / "manifest.json"));
        const auto art =
            std::make_shared<const FellowCore::ManifestCharacter>(manifest, folder, Platform::decodePng);
        tower = std::make_unique<ManifestCharacterController>(Companion{manifest, art}, desk.services);
        auto made =
            std::make_unique<ClockCharacter>(*tower, site, [this] { return *Calendar::inTimeZone(zone); });
        clock = made.get();
        tower->setAbility(std::move(made));
    }
    bool comeOut() {
        tower->prepareForActivation();
        tower->activate();
        return waitUntil([this] { return clock->keeper().isReady(); });
    }
    void store(const std::string& text) { desk.preferences.setString(WorldClockStore::key, text); }
    void choose(const std::vector<std::string>& zones, std::size_t pins) {
        WorldClockState state;
        state.cityIdentifiers = zones;
        state.pinnedTimeZoneIdentifiers = {zones.begin(), zones.begin() + static_cast<std::ptrdiff_t>(pins)};
        state.defaultFacesApplied = true;
        store(WorldClockStore::encoded(state));
    }
    /// "London|Seoul", what stands under the dials.
    std::string beside() const {
        const auto sides = clock->sides();
        return (sides[0] ? sides[0]->city : "") + "|" + (sides[1] ? sides[1]->city : "");
    }
    std::string home() const {
        return clock->state().homeCity(clock->catalog(), clock->systemTimeZone()).name;
    }
    QImage drawn() const {
        const ClockFaces faces(std::filesystem::path(DESKFELLOW_DATA) / "characters" / "clock",
                               tower->companion().manifest.grid);
        return faces.compose(clock->look());
    }
    void zoneBecomes(const char* other) {
        zone = other;
        clock->keeper().systemTimeChanged();
    }

    std::string zone;
    Desk desk;
    QuietCommands commands;
    ShortcutBoard shortcuts{desk.preferences, desk.system.shortcuts()};
    CharacterSite site{desk.services, commands, shortcuts, DESKFELLOW_DATA, {}, {}, {}, {}, {}, {}};
    Log told;
    int strokes = 0;
    std::unique_ptr<ManifestCharacterController> tower;
    ClockCharacter* clock = nullptr;
};

} // namespace ClockHarness
