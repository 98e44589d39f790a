#pragma once

#include "platform/linux/X11Display.h"

#include <QObject>

namespace Platform {

/// Whether a compositor makes windows translucent, followed as compositors come and go.
class X11Compositor : public QObject {
    Q_OBJECT

public:
    explicit X11Compositor(const X11Display& display);

    bool isRunning() const { return running_; }

Q_SIGNALS:
    void changed();

private:
    void look();

    const X11Display& display_;
    std::uint8_t selectionEvent_;
    bool running_;
    X11EventFilter filter_;
};

} // namespace Platform
