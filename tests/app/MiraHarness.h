#pragma once

#include "app/characters/mira/MiraController.h"
#include "app/desktop/ShortcutBoard.h"
#include "core/art/BuiltinCharacters.h"
#include "platform/image/PngDecoder.h"
#include "tests/app/AppHarness.h"
#include "tests/app/QuietCommands.h"
#include "tests/core/breathing/BreathingScript.h"

namespace AppHarness {

/// Mira on a desktop, told what happens in words, with what she asked of the program in `log`.
class MiraScript {
public:
    Desk desk;
    std::unique_ptr<MiraController> mira;
    std::string log;

    MiraScript() {
        commands_.onBringOut = [this] {
            log += " bring";
            mira->activate();
        };
        site_.playSound = [this](FellowCore::InterfaceSoundCue cue, const DesktopCharacter&, double) {
            log += " " + std::string(FellowCore::name(cue)) + (mira->guidesBySound() ? " unheard" : "");
        };
        site_.tell = [this](const QString& sentence) { log += " \"" + sentence.toStdString() + "\""; };
        site_.obstacles = [](const DesktopCharacter&) { return std::vector<FellowCore::Rect>{}; };
        site_.dismissActions = [] {};
        make();
    }

    std::filesystem::path file() const {
        return desk.folders.character("mira") / std::string(FellowCore::BreathingSessionStore::fileName);
    }
    MiraPreferences& preferences() { return mira->preferences(); }

    void make() {
        const auto& manifest = FellowCore::BuiltinCharacters::mira();
        Companion companion{
            manifest, std::make_shared<const FellowCore::ManifestCharacter>(
                          manifest, std::filesystem::path(DESKFELLOW_DATA) / "builtin", Platform::decodePng)};
        mira = std::make_unique<MiraController>(std::move(companion), site_);
    }

    /// "+12.5" lets time pass, "clock-3600" sets the wall's clock, "look" is a frame. "quit" and "crash" end
    /// the program and start it again. The answer is the session, why it stands, and the log.
    std::string run(const std::string& script) {
        std::istringstream words(script);
        for (std::string word; words >> word;) {
            perform(word);
        }
        const auto& reason = mira->pauseReason();
        const char* const reasons[] = {" hidden", " asleep", " locked"};
        return FellowCore::described(mira->session(), mira->now()) +
               (reason ? reasons[static_cast<int>(*reason)] : "") + ":" + log;
    }

private:
    void perform(const std::string& word) {
        if (word.front() == '+') {
            desk.system.time.advance(std::stod(word));
            return;
        }
        if (word.starts_with("clock")) {
            desk.system.time.setWall(std::stod(word.substr(5)));
            return;
        }
        const std::map<std::string, std::function<void()>> verbs{
            {"show", [this] { mira->activate(); }},
            {"hide", [this] { mira->deactivate(); }},
            {"start", [this] { mira->start(); }},
            {"pause", [this] { mira->pause(); }},
            {"end", [this] { mira->end(); }},
            {"look", [this] { mira->look(); }},
            {"lock", [this] { mira->screenLocked(); }},
            {"sleep", [this] { mira->willSleep(); }},
            {"wake", [this] { mira->didWake(); }},
            {"box", [this] { chooseRhythm(FellowCore::BreathingMode::box); }},
            {"478", [this] { chooseRhythm(FellowCore::BreathingMode::fourSevenEight); }},
            {"quiet",
             [this] {
                 preferences().setVoice({false, 1});
                 preferences().setBreath({false, 1});
             }},
            {"quit",
             [this] {
                 mira->deactivate();
                 perform("crash");
             }},
            {"crash", [this] {
                 desk.saver.flush();
                 mira.reset();
                 make();
             }}};
        verbs.at(word)();
    }

    void chooseRhythm(FellowCore::BreathingMode mode) {
        preferences().setRhythm(mode);
        mira->preferencesChanged();
    }

    QuietCommands commands_;
    ShortcutBoard shortcuts_{desk.preferences, desk.system.shortcuts()};
    CharacterSite site_{desk.services, commands_, shortcuts_, DESKFELLOW_DATA, {}, {}, {}, {}, {}, {}};
};

} // namespace AppHarness
