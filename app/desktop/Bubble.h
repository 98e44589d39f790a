#pragma once

#include "app/desktop/DialoguePalette.h"
#include "core/art/BubblePlacement.h"

#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

#include <functional>
#include <optional>

namespace DeskSprites {

class PixelFrame;

/// What closes a bubble besides Escape and `dismiss()`.
enum class BubbleDismissal {
    explicitOnly, ///< nothing
    clickOutside, ///< a press in another window of ours, or losing the keyboard after having had it
};

/// Whether windows may move by themselves.
enum class BubbleMotion { full, reduced };

/// Whether a bubble points at whoever it hangs on.
enum class BubblePointer { towardsFace, none };

/// A paper bubble beside a character. It never takes the keyboard when it appears; after a click in it, Tab,
/// the arrow keys and Escape work. It opens with a fade and a short slide away from the character, and has no
/// timer afterwards.
class Bubble : public QWidget {
    Q_OBJECT

public:
    static constexpr int openingMilliseconds = 160;

    explicit Bubble(BubbleDismissal dismissal = BubbleDismissal::clickOutside);
    ~Bubble() override;

    /// Takes the palette of a character, and follows the desktop between light and dark.
    void setAccent(const FellowCore::CharacterManifest::Accent& accent);
    /// Takes a palette that stays as it is.
    void setDialoguePalette(const DialoguePalette& palette);
    const DialoguePalette& dialoguePalette() const { return palette_; }
    /// Whether a compositor makes windows translucent, which a bubble takes for granted at first. Without one
    /// it has a hard edge, or its corners would be black.
    void setTranslucent(bool translucent);
    /// For a bubble that belongs to no one on the desktop; bubbles point at first.
    void setPointer(BubblePointer pointer) { pointer_ = pointer; }
    /// Takes `content` as the only thing inside, in place of what was there, which is deleted.
    void setContent(QWidget* content);

    /// The frame the bubble wants, in points, with room for the pointer and the drop edge. Valid before it is
    /// shown.
    FellowCore::Size preferredSize() const;
    /// Shows the bubble, with motion unless it is reduced; a shown one only moves. False, and nothing is
    /// shown, when `canPresent` is false.
    bool present(const FellowCore::BubblePlacement& placement, BubbleMotion motion = BubbleMotion::full);
    /// Moves a shown bubble at once, or remembers the place of a hidden one.
    void place(const FellowCore::BubblePlacement& placement);
    /// Hides a shown bubble.
    void dismiss();
    bool isPresented() const { return isVisible(); }
    /// The frame of the last placement, y-up, for others to avoid.
    FellowCore::Rect placedFrame() const { return placement_.frame; }
    /// Tells of a press elsewhere, which dismisses the bubble when it was asked to. Presses in our own
    /// windows are noticed without it.
    void pressedOutside(const QPoint& globalPosition);

    /// After the bubble went away, by whichever way, once for each showing.
    std::function<void()> onDismissed;
    /// When a shown bubble wants another `preferredSize` than before: place it again.
    std::function<void()> onPreferredSizeChanged;
    /// True for presses that `clickOutside` must not count, such as those on the character that owns the
    /// bubble.
    std::function<bool(const QPoint& globalPosition)> isOwnPlace;

protected:
    /// After the palette changed; a subclass hands it to its controls.
    virtual void paletteChanged() {}
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    PixelFrame frame() const;
    void layOutContent();
    void checkPreferredSize();
    void applyShape();
    void showOpening(double share);

    BubbleDismissal dismissal_;
    std::optional<FellowCore::CharacterManifest::Accent> accent_;
    DialoguePalette palette_;
    FellowCore::BubblePlacement placement_;
    FellowCore::Size knownSize_; ///< the preferred size that the owner was told last
    QPointer<QWidget> content_;
    BubblePointer pointer_ = BubblePointer::towardsFace;
    QVariantAnimation opening_;
    bool prepared_ = false;
    bool translucent_ = true;
    bool hadKeyboard_ = false;
};

} // namespace DeskSprites
