#pragma once

#include "app/desktop/CharacterPresentation.h"
#include "app/desktop/DesktopServices.h"
#include "app/desktop/SpriteView.h"
#include "app/roster/Companion.h"
#include "core/art/DesktopSizePreview.h"
#include "core/host/CharacterRuntime.h"
#include "platform/Screens.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace DeskSprites {

/// Where a character stands now, in screen coordinates.
struct CharacterGeometry {
    FellowCore::Rect frame;   ///< its window
    FellowCore::Rect artwork; ///< its opaque art
    FellowCore::Rect foot;    ///< what placement goes by: as large as the art, standing on the ground line
    double faceY = 0;         ///< where bubbles point
};

enum class FrameSave { throttled, forced };

/// A character with a window on the desktop: its size, its place and how both are remembered. What it does
/// and how it looks is the subclass's.
class DesktopCharacter : public FellowCore::CharacterRuntime {
public:
    std::function<void()> onClick;
    std::function<void(MovePhase)> onMoved;
    std::function<void(int notches)> onResize;
    std::function<std::unique_ptr<QMenu>()> menuProvider;
    /// The presentation has become another.
    std::function<void()> onChange;

    ~DesktopCharacter() override;

    const Companion& companion() const { return companion_; }
    const std::string& identifier() const { return companion_.rawValue(); }
    QString name() const { return QString::fromStdString(companion_.manifest.name); }
    bool isShown() const { return shown_; }
    /// Takes the window out of sight while something covers its screen, and brings it back. Everything else
    /// about the character, `isShown` too, stays as it is.
    void setCovered(bool covered);
    virtual CharacterPresentation presentation() = 0;
    /// The still picture at native pixels, for the settings window and while resting.
    virtual QImage portrait() const;

    CharacterGeometry geometry() const;
    /// The character's own panels and cues that are open, in screen coordinates.
    virtual std::vector<FellowCore::Rect> attachments() const { return {}; }
    /// Every window of the character, for bubbles of others to avoid.
    std::vector<FellowCore::Rect> obstacles() const;
    /// The screen that shows most of the character, or the main one. Nothing only while no monitor is
    /// connected.
    std::optional<Platform::ScreenInfo> screen() const;

    /// The height of the visible art that the character has now, in points.
    double visibleHeight() const { return visibleHeight_; }
    /// Takes a height without moving the foot.
    virtual void setVisibleHeight(double height, FellowCore::Sizing sizing);
    /// The layout at some height, without taking it.
    FellowCore::ManifestCharacterLayout layoutAt(double height, FellowCore::Sizing sizing) const;
    /// The height at which one art pixel is a whole number of device pixels, closest to the given one.
    double crispVisibleHeight(double height) const;
    /// The largest such height that is not above the given one; 140 where there is none.
    double crispVisibleHeightAtMost(double height) const;
    /// The height at which one art pixel takes one device pixel more, or fewer, than now; within the limits.
    double steppedHeight(int steps) const;

    /// Puts the foot on a point, kept on the screen that has the point.
    void place(FellowCore::Point anchor);
    void moveWindow(const FellowCore::Rect& frame);
    FellowCore::Point anchor() const;
    /// Moves the character so that its art, not the transparent rim around it, is on a screen.
    void clampFrame();
    /// Remembers where the window stands; throttled to once a second unless forced.
    void saveFrame(FrameSave when);

    /// Whether it guides the user by sounds now; the desktop's own cues are silent meanwhile.
    virtual bool guidesBySound() const { return false; }
    /// A click on the art. True when the character has used it up, as to close its own panel; otherwise its
    /// quick actions open.
    virtual bool clicked() { return false; }
    virtual void willSleep() {}
    virtual void didWake() {}
    /// The screen was locked, or the session went to the background.
    virtual void screenLocked() {}
    /// The screen was unlocked, or the session came back.
    virtual void screenUnlocked() {}
    /// The desktop's or the character's own wish for less motion has changed.
    virtual void motionChanged() {}

protected:
    DesktopCharacter(Companion companion, DesktopServices& services);

    /// The subclass hands over its view once it exists; the surface is made for it.
    void attachView(SpriteView& view);
    /// Takes the remembered height and place, or the default place at the lower right of the main screen.
    void restoreSizeAndFrame();
    void showWindow();
    void hideWindow();
    /// Reads the presentation anew for assistive technology and tells `onChange`.
    void presentationChanged();
    virtual FellowCore::ManifestCharacterLayout adjusted(FellowCore::ManifestCharacterLayout layout) const {
        return layout;
    }
    virtual double faceHeight(const FellowCore::ManifestCharacterLayout& layout) const {
        return layout.face.y;
    }
    /// The window stands elsewhere, or has another size.
    virtual void frameChanged() {}

    const FellowCore::ManifestCharacter& art() const { return *companion_.pack; }
    DesktopServices& services() const { return services_; }
    Platform::DesktopSurface& surface() const { return *surface_; }
    bool reducesMotion() const;

private:
    void connectView();
    FellowCore::Point exactAnchor() const;
    void applyLayout(FellowCore::Sizing sizing);
    std::optional<Platform::ScreenInfo> screenAt(FellowCore::Point point) const;

    Companion companion_;
    DesktopServices& services_;
    SpriteView* view_ = nullptr;
    std::unique_ptr<Platform::DesktopSurface> surface_;
    double visibleHeight_ = 320;
    FellowCore::Sizing sizing_ = FellowCore::Sizing::snapped;
    FellowCore::Point resizeFoot_; ///< where the foot stood before windows' whole points rounded it
    FellowCore::Rect
        resizedFrame_; ///< the frame that came of it; `resizeFoot_` holds while the window stands there
    std::optional<FellowCore::MonotonicInstant> lastFrameSave_;
    bool shown_ = false;
    bool covered_ = false;
};

} // namespace DeskSprites
