#pragma once

#include "app/desktop/DesktopCharacter.h"
#include "app/desktop/RestingArtView.h"
#include "core/host/CharacterRuntime.h"

#include <functional>
#include <memory>

namespace DeskSprites {

/// Wraps a character's runtime so that it can be rested: while paused, a small panel with its still artwork
/// stands in its place.
class ControlledRuntime final : public FellowCore::CharacterRuntime {
public:
    /// The resting character was clicked.
    std::function<void()> onClick;

    /// `character` outlives this.
    ControlledRuntime(DesktopCharacter& character, DesktopServices& services);
    ~ControlledRuntime() override;

    bool isPaused() const { return paused_; }
    /// Takes effect at once on a character that is on the desktop, else when it comes there.
    void setPaused(bool paused);
    /// Brings the resting panel to where the character stands now.
    void syncArt();

    void prepareForActivation() override;
    void activate() override;
    void deactivate() override;

private:
    void rest();
    void wake();

    DesktopCharacter& character_;
    DesktopServices& services_;
    std::unique_ptr<RestingArtView> view_; ///< made when the character first rests
    std::unique_ptr<Platform::DesktopSurface> panel_;
    bool paused_ = false;
    bool activated_ = false;
};

} // namespace DeskSprites
