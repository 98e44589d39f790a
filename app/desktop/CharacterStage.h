#pragma once

#include "app/desktop/ControlledRuntime.h"
#include "app/desktop/DesktopCharacter.h"
#include "core/host/CharacterHost.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace DeskSprites {

/// Everyone who can stand on the desktop, and the host that says who does. Characters are made once and live
/// as long as this.
class CharacterStage {
public:
    explicit CharacterStage(DesktopServices& services);
    ~CharacterStage();

    /// Before `open` only. Characters come in the order of the roster.
    DesktopCharacter& add(std::unique_ptr<DesktopCharacter> character);
    /// All characters are there: makes the host, with everyone unlocked.
    void open();

    FellowCore::CharacterHost& host() { return *host_; }
    const FellowCore::CharacterHost& host() const { return *host_; }
    /// Nothing for an unknown identifier.
    DesktopCharacter* find(std::string_view identifier) const;
    ControlledRuntime* controlled(std::string_view identifier) const;
    const std::vector<std::unique_ptr<DesktopCharacter>>& all() const { return characters_; }
    /// Those of the on-screen set, in the order of arrival, whether the set is visible or not.
    std::vector<DesktopCharacter*> onScreen() const;
    DesktopCharacter* active() const;
    /// Keeps everyone who stands on this screen out of sight until it is called with another or none. They
    /// go on as they were, and come back in the order in which they stood above each other.
    void coverScreen(const std::optional<FellowCore::Rect>& screen);
    /// The windows that a bubble of this character keeps clear of: those of everyone else who is visible.
    std::vector<FellowCore::Rect> attachmentObstacles(const DesktopCharacter& of) const;

private:
    DesktopServices& services_;
    std::vector<std::unique_ptr<DesktopCharacter>> characters_;
    std::map<std::string, std::unique_ptr<ControlledRuntime>, std::less<>> controlledRuntimes_;
    std::unique_ptr<FellowCore::CharacterHost> host_;
};

} // namespace DeskSprites
