#pragma once

#include "app/desktop/CharacterPresentation.h"
#include "core/base/Geometry.h"
#include "core/base/Instant.h"

#include <QPainter>
#include <QRectF>
#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace DeskSprites {

/// The job of one manifest character: the one way by which a pack becomes more than a picture that blinks.
/// Every operation has a default, so an ability writes only what its character does. Main thread only.
class ManifestCharacterAbility {
public:
    virtual ~ManifestCharacterAbility() = default;

    /// The ability's own windows that are open, in screen coordinates; bubbles keep clear of them.
    virtual std::vector<FellowCore::Rect> attachmentWindows() const { return {}; }
    /// A spoken value beside the character's name.
    virtual std::optional<QString> accessibilityValue() const { return std::nullopt; }
    /// A pose that wins over the computed one.
    virtual std::optional<std::string> artworkPose() const { return std::nullopt; }
    virtual std::optional<QString> statusOverride() const { return std::nullopt; }
    /// A few digits shown large beside the status.
    virtual std::optional<QString> badge() const { return std::nullopt; }
    /// Whether there are open eyes to close now.
    virtual bool canBlink() const { return true; }
    virtual FellowCore::Seconds blinkInterval() const { return 4.6; }
    virtual FellowCore::Seconds blinkDuration() const { return 0.14; }

    /// The character has come on the desktop, or left it.
    virtual void activate() {}
    virtual void deactivate() {}
    /// The machine is about to sleep, and has woken with the character on the desktop.
    virtual void pause() {}
    virtual void resumeMonitoring() {}
    /// The screen was locked, or the session went to the background.
    virtual void screenLocked() {}
    /// The screen was unlocked, or the session came back.
    virtual void screenUnlocked() {}
    /// A click on the character; true when that is all it should do, as to close the ability's own panel.
    virtual bool clicked() { return false; }
    /// The wish for reduced motion has changed.
    virtual void motionChanged() {}
    /// Draws over the sprite: `art` is the canvas in points (y down), `unit` the points of one art pixel.
    virtual void draw(QPainter&, const QRectF&, double) {}

    /// What the character offers in its quick actions and menus.
    virtual std::vector<QuickAction> actions() { return {}; }
    /// Text was dropped on the character; false when it has no use for it.
    virtual bool acceptsText() const { return false; }
    virtual void textDropped(const QString&) {}
    /// The character's window has moved or changed its size: re-place what hangs on it.
    virtual void moved() {}
};

} // namespace DeskSprites
