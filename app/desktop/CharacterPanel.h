#pragma once

#include "app/desktop/Bubble.h"
#include "app/desktop/CharacterSite.h"
#include "app/desktop/DesktopCharacter.h"

#include <memory>
#include <optional>

namespace DeskSprites {

/// Whether opening a panel closes the quick actions that are open.
enum class PanelOpening { replacesActions, besideActions };

/// A bubble that hangs on a character: it opens beside the face, keeps clear of every other window of the
/// desktop, moves along with the character and takes its colours. The owner calls `anchor` when the character
/// has moved (`ManifestCharacterAbility::moved`) and lists `frames` among the character's attachments.
class CharacterPanel {
public:
    CharacterPanel(DesktopCharacter& character, CharacterSite& site, std::unique_ptr<Bubble> bubble);
    ~CharacterPanel();

    /// False, and nothing opens, while the character is hidden or no place is clear.
    bool present(PanelOpening opening);
    void dismiss() { bubble_->dismiss(); }
    /// Brings a shown panel to where the character stands now; one that finds no place is dismissed.
    void anchor();
    bool isPresented() const { return bubble_->isPresented(); }
    /// Where the panel stands; nothing while it is closed.
    std::vector<FellowCore::Rect> frames() const;
    Bubble& bubble() { return *bubble_; }
    /// After the panel went away, by whichever way.
    std::function<void()> onDismissed;

private:
    FellowCore::BubblePlacement placement() const;

    DesktopCharacter& character_;
    CharacterSite& site_;
    std::unique_ptr<Bubble> bubble_;
};

} // namespace DeskSprites
