#pragma once

#include "platform/Tray.h"
#include "platform/linux/X11Display.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QMenu>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

class QSystemTrayIcon;

namespace Platform {

/// The tray by StatusNotifierItem, or by the older X11 protocol where only that is there. Qt looks once in a
/// process which of the two there is and keeps its answer, so its icon is made only when one of them is known
/// to be there.
class LinuxTray final : public QObject, public Tray {
    Q_OBJECT

public:
    explicit LinuxTray(const X11Display& display);
    ~LinuxTray() override;

    void start(const QIcon& icon, std::function<void(QMenu&)> build) override;
    void setTooltip(const QString& text) override;
    void refreshMenu() override;
    bool isShown() const override { return icon_ != nullptr; }

    /// The bus to look for a tray on; before `start`, for tests. The session bus otherwise.
    void setBus(const QDBusConnection& bus) { bus_ = bus; }

private Q_SLOTS:
    void askForHost();

private:
    enum class Kind { notifier, embedded };

    void watch();
    void lookForEmbedded();
    void appear(Kind kind);
    void disappear(Kind kind);
    void rebuildMenu();

    const X11Display& display_;
    X11EventFilter filter_;
    std::optional<QDBusConnection> bus_;
    QDBusServiceWatcher watcher_;
    QTimer patience_;
    QIcon picture_;
    QString tooltip_;
    std::function<void(QMenu&)> build_;
    std::unique_ptr<QMenu> menu_;
    std::unique_ptr<QSystemTrayIcon> icon_;
    std::optional<Kind> kind_;
    bool menuOpen_ = false;
    bool menuStale_ = false;
};

} // namespace Platform
