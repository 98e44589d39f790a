#pragma once

#include <functional>

namespace DeskSprites {

/// How a character gives under the finger: its art stands a little lower while it is held down.
class PixelCharacterFeedback {
public:
    /// Runs when `drop` has changed; the view redraws.
    std::function<void()> onChange;

    /// How many art pixels the art is lowered, 0 or 1.
    int drop() const { return drop_; }
    void press() { set(1); }
    void release() { set(0); }
    void reset() { set(0); }

private:
    void set(int drop) {
        if (drop_ == drop) {
            return;
        }
        drop_ = drop;
        if (onChange) {
            onChange();
        }
    }

    int drop_ = 0;
};

} // namespace DeskSprites
