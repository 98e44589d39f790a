#pragma once

#include "app/characters/batti/BattiController.h"
#include "app/characters/manifest/ManifestCharacterController.h"
#include "app/desktop/CharacterStage.h"
#include "core/base/MemoryPreferences.h"
#include "core/host/PreferenceKeys.h"
#include "tests/support/FailingFileOperations.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Waiting.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace AppHarness {

using namespace DeskSprites;
using Testing::waitUntil;
using Log = std::vector<std::string>;

/// A clock that stands still until it is told to go on, or to run with the real time.
class TestClock final : public Platform::Clock {
public:
    static constexpr FellowCore::Instant start{800000000};

    FellowCore::Instant wall() const override { return start + elapsed() + set_; }
    FellowCore::MonotonicInstant monotonic() const override { return {1000 + elapsed()}; }
    void advance(FellowCore::Seconds length) { told_ += length; }
    void run() { running_.start(); }
    /// Someone sets the wall's clock, by so much.
    void setWall(FellowCore::Seconds by) { set_ += by; }

private:
    FellowCore::Seconds elapsed() const {
        return told_ + (running_.isValid() ? static_cast<double>(running_.nsecsElapsed()) * 1e-9 : 0);
    }

    FellowCore::Seconds told_ = 0;
    FellowCore::Seconds set_ = 0;
    QElapsedTimer running_;
};

class TestMotion final : public Platform::ReducedMotion {
public:
    bool reduced = false;
    bool isReduced() const override { return reduced; }
};

/// The real system, but for the time and the wish for less motion, which are the test's.
class TestSystem final : public Platform::System {
public:
    TestClock time;
    TestMotion wish;
    std::vector<Platform::DesktopSurface*> surfaces;      ///< in the order in which they were made
    std::vector<Platform::DesktopSurfaceClient*> clients; ///< whose each surface is

    Platform::Clock& clock() override { return time; }
    Platform::ReducedMotion& motion() override { return wish; }
    Platform::Screens& screens() override { return real_->screens(); }
    Platform::SessionEvents& session() override { return real_->session(); }
    Platform::GlobalShortcuts& shortcuts() override { return real_->shortcuts(); }
    Platform::FrontmostApplication& frontmost() override { return real_->frontmost(); }
    Platform::ApplicationWindows& windows() override { return real_->windows(); }
    Platform::Tray& tray() override { return real_->tray(); }
    Platform::PointerPresses& presses() override { return real_->presses(); }
    std::unique_ptr<Platform::DesktopSurface> makeSurface(Platform::DesktopSurfaceClient& client) override;
    bool hasCompositor() const override { return real_->hasCompositor(); }
    bool hasWindowManager() const override { return real_->hasWindowManager(); }

private:
    std::unique_ptr<Platform::System> real_ = Platform::makeSystem();
};

/// What a small pack is made of. Its pictures are opaque but for the rim told here.
struct PackForm {
    std::string id = "moth";
    FellowCore::CharacterManifest::Grid grid{40, 40};
    std::vector<FellowCore::CharacterManifest::Behaviour> behaviours{
        FellowCore::CharacterManifest::Behaviour::idle};
    std::vector<std::string> poses{"idle"};
    int clearLeft = 0; ///< columns without art
};

/// A desktop with no one on it, and everything a character works with.
class Desk {
public:
    static constexpr FellowCore::Rect screen{0, 0, 1600, 1000};

    TestSupport::TemporaryFolder home;
    TestSystem system;
    FellowCore::MemoryPreferences preferences;
    TestSupport::FailingFileOperations files;
    Log failures; ///< of saves; read after `saver.flush`
    BackgroundSaver saver{[this](const std::string& line) { failures.push_back(line); }};
    FellowCore::SupportFolders folders{FellowCore::FolderEnvironment{.home = home.path()}};
    DesktopServices services{system, preferences, files, saver, folders};

    /// Batti as installed.
    Companion batti() const;
    std::unique_ptr<BattiController> makeBatti();
    /// A pack of the test's own.
    Companion pack(const PackForm& form);
    std::unique_ptr<ManifestCharacterController> makePack(const PackForm& form);

    std::filesystem::path timerFile(const std::string& id) const { return folders.focusTimerFile(id); }
    /// The saved timer, once everything is written.
    FellowCore::FocusTimer savedTimer(const std::string& id);
    void writeTimer(const std::string& id, const FellowCore::FocusTimer& timer) const;

    /// Drags what a surface shows by its body, in so many equal moves.
    void drag(std::size_t surface, double dx, double dy, int moves = 1);
};

inline std::string rawStatus(const FellowCore::FocusTimer& timer) {
    return std::string(FellowCore::rawValue(timer.status));
}

} // namespace AppHarness
