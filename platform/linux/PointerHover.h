#pragma once

#include <QPointF>
#include <QTimer>

#include <functional>

namespace Platform {

/// Tells a pointer that comes and goes from a window whose shape changes under it. Both make the same enter
/// and leave events; only the first moves the pointer.
class PointerHover {
public:
    /// How long a region may be away from under a still pointer before that counts as leaving, in
    /// milliseconds.
    static constexpr int graceMilliseconds = 250;

    PointerHover();

    std::function<void()> onEnter;
    std::function<void()> onLeave;

    /// The window system's news. Positions are the pointer's, global.
    void entered(QPointF at);
    void left(QPointF at);
    /// The pointer moved on the window, or pressed there.
    void moved(QPointF at);
    /// Between a press and its release nothing is told; what happened meanwhile is told afterwards.
    void setHeld(bool held);
    /// The window is gone.
    void reset();

    bool isInside() const { return told_; }

private:
    void settle();

    QTimer grace_;
    QPointF last_;
    bool known_ = false;  ///< `last_` is a position
    bool actual_ = false; ///< the window system has the pointer on the window
    bool told_ = false;   ///< the listener believes so
    bool held_ = false;
};

} // namespace Platform
