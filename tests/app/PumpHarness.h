#pragma once

#include "app/characters/pump/PumpAbility.h"
#include "app/desktop/ShortcutBoard.h"
#include "core/agents/PumpAgentConnector.h"
#include "core/agents/PumpAgentLog.h"
#include "tests/app/AppHarness.h"
#include "tests/app/QuietCommands.h"

namespace PumpHarness {

using namespace AppHarness;
using FellowCore::PumpAgentEvent;
using FellowCore::PumpAgentPhase;
using FellowCore::PumpPreferences;
using FellowCore::PumpProvider;
using FellowCore::PumpSourceState;
using FellowCore::PumpUsageSnapshot;

/// A desktop whose agents write real event files.
class AgentDesk : public Desk {
public:
    void connectAgent(PumpProvider agent) {
        FellowCore::PumpAgentConnector(files, folders, agent, "/usr/bin/fellow-hook")
            .connect(FellowCore::PumpProjectConsent::included);
    }
    void disconnectAgent(PumpProvider agent) {
        FellowCore::PumpAgentConnector(files, folders, agent, "/usr/bin/fellow-hook").disconnect();
    }

    std::string line(PumpProvider agent, PumpAgentPhase phase, const std::string& session, double age,
                     const std::string& cwd = "/home/u/parser") const {
        return *FellowCore::PumpAgentLog::line({.agent = rawValue(agent),
                                                .event = phase,
                                                .session = session,
                                                .timestamp = system.time.wall().toUnix() - age,
                                                .application = "debian-xterm.desktop",
                                                .cwd = cwd});
    }
    /// Adds a line in the way of the hooks: a new file in place of the old one.
    void write(const std::string& line) {
        lines_ += line + "\n";
        const std::filesystem::path file = agentEventsFile(folders);
        TestSupport::writeBytes(file.string() + ".new", lines_);
        std::filesystem::rename(file.string() + ".new", file);
    }

private:
    std::string lines_;
};

/// Pump on a real desktop, with readings that are the test's.
class PumpDesk : public AgentDesk {
public:
    PumpDesk() {
        site.playSound = [this](FellowCore::InterfaceSoundCue cue, const DesktopCharacter&, double) {
            sounds.emplace_back(FellowCore::name(cue));
        };
        site.tell = [this](const QString& sentence) { told.push_back(sentence.toStdString()); };
        site.obstacles = [](const DesktopCharacter&) { return std::vector<FellowCore::Rect>{}; };
        site.dismissActions = [] {};
        const auto makeReader = [this] {
            return [this](FellowCore::Instant now, const PumpPreferences&) {
                PumpUsageSnapshot read = reading;
                read.at = now;
                return read;
            };
        };
        auto made = std::make_unique<PumpAbility>(*pump, site, makeReader, "/usr/bin/fellow-hook");
        ability = made.get();
        pump->setAbility(std::move(made));
    }
    ~PumpDesk() {
        pump.reset(); // while everything it was given still stands
    }

    void setLeft(double claudeLeft) {
        reading.claudeSource = PumpSourceState::ready;
        reading.claude.hasLogs = true;
        reading.claude.usedPercent = 100 - claudeLeft;
    }
    /// Brings Pump out and waits for the first looks at usage and sessions.
    bool comeOut() {
        pump->prepareForActivation();
        pump->activate();
        return waitUntil([this] { return ability->usage().snapshot() && !ability->usage().isReading(); }) &&
               settled();
    }
    bool settled() {
        bool looked = false;
        const auto link =
            QObject::connect(&ability->agents(), &PumpAgentService::changed, [&] { looked = true; });
        ability->agents().refresh();
        const bool done = waitUntil([&] { return looked; });
        QObject::disconnect(link);
        return done;
    }

    QuietCommands commands;
    ShortcutBoard shortcuts{preferences, system.shortcuts()};
    CharacterSite site{services, commands, shortcuts, {}, {}, {}, {}, {}, {}, {}};
    Log sounds;
    Log told;
    PumpUsageSnapshot reading{};
    std::unique_ptr<ManifestCharacterController> pump = makePack({.id = "pump", .grid = {104, 156}});
    PumpAbility* ability = nullptr;
};

} // namespace PumpHarness
