#pragma once

#include "app/desktop/CharacterPanel.h"
#include "core/agents/PumpAgentEvent.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace DeskSprites {

class ControlBubble;

/// What Pump says when a session needs the user, with a button that leads there.
class PumpAgentCue {
public:
    PumpAgentCue(DesktopCharacter& character, CharacterSite& site);
    ~PumpAgentCue();

    /// The button was pressed.
    std::function<void(const FellowCore::PumpAgentEvent&)> onReturn;

    /// Shows the event in place of the one before; false when there is no room beside the character.
    bool show(const FellowCore::PumpAgentEvent& event);
    void dismiss();
    bool isPresented() const;
    /// Whose session it is about while it is open.
    std::optional<std::string> cueKey() const;
    std::vector<FellowCore::Rect> frames() const;
    void anchor();

private:
    void make();

    DesktopCharacter& character_;
    CharacterSite& site_;
    std::unique_ptr<CharacterPanel> panel_; ///< made when first wanted
    ControlBubble* bubble_ = nullptr;
    std::string key_;
};

} // namespace DeskSprites
