#pragma once

#include "platform/Screens.h"
#include "platform/linux/WorkArea.h"
#include "platform/linux/X11Display.h"

#include <QObject>
#include <QTimer>

#include <set>

class QScreen;

namespace Platform {

/// Screens from Qt, with the free part computed from the panels' struts: Qt's own answer forgets them as soon
/// as there are two monitors.
class X11Screens final : public QObject, public Screens {
public:
    explicit X11Screens(const X11Display& display);

    std::vector<ScreenInfo> all() const override { return current_; }

private:
    void watch(QScreen* screen);
    void received(const xcb_generic_event_t& event);
    void look();
    void findPanels();
    std::vector<ScreenInfo> read() const;
    QRect workArea(const QRect& screen, std::size_t screenCount) const;

    const X11Display& display_;
    X11EventFilter filter_;
    QTimer settle_;
    std::set<xcb_window_t> panels_; ///< windows whose struts are followed
    std::vector<Strut> struts_;
    bool panelsChanged_ = true;
    std::vector<ScreenInfo> current_;
};

} // namespace Platform
