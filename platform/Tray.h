#pragma once

#include <QIcon>
#include <QString>

#include <functional>

class QMenu;

namespace Platform {

/// The program's icon in the desktop's tray, where there is one. It appears once a tray is there, also when
/// that is long after the start, and comes back when the tray does. Nothing here waits.
class Tray {
public:
    virtual ~Tray() = default;

    /// Starts looking for a tray. `build` fills an empty menu, each time it is about to open and on
    /// `refreshMenu`.
    virtual void start(const QIcon& icon, std::function<void(QMenu&)> build) = 0;
    virtual void setTooltip(const QString& text) = 0;
    /// The menu's content has changed. While the menu is open it is left alone and rebuilt when it closes.
    virtual void refreshMenu() = 0;
    /// Whether the icon is in a tray now.
    virtual bool isShown() const = 0;

    /// The icon was clicked (not for its menu).
    std::function<void()> onActivated;
    /// `isShown` has become another.
    std::function<void()> onShownChange;
};

} // namespace Platform
