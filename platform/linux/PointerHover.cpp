#include "platform/linux/PointerHover.h"

namespace Platform {

PointerHover::PointerHover() {
    grace_.setSingleShot(true);
    grace_.setInterval(graceMilliseconds);
    grace_.callOnTimeout([this] { settle(); });
}

void PointerHover::entered(QPointF at) {
    const bool still = known_ && at == last_;
    known_ = true;
    last_ = at;
    actual_ = true;
    grace_.stop();
    if (!still)
        settle();
}

void PointerHover::left(QPointF at) {
    const bool still = known_ && at == last_;
    known_ = true;
    last_ = at;
    actual_ = false;
    if (!still)
        settle();
    else if (told_)
        grace_.start();
}

void PointerHover::moved(QPointF at) {
    known_ = true;
    last_ = at;
    if (held_)
        return; // The grab delivers moves from far outside the window, too.
    actual_ = true;
    grace_.stop();
    settle();
}

void PointerHover::setHeld(bool held) {
    if (held_ == held)
        return;
    held_ = held;
    if (!held_)
        settle();
}

void PointerHover::reset() {
    grace_.stop();
    known_ = false;
    actual_ = false;
    held_ = false;
    settle();
}

void PointerHover::settle() {
    if (held_ || told_ == actual_)
        return;
    told_ = actual_;
    const auto& tell = told_ ? onEnter : onLeave;
    if (tell)
        tell();
}

} // namespace Platform
