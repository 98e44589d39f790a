#include "platform/linux/LinuxTray.h"

#include "platform/linux/Buses.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QSystemTrayIcon>

namespace Platform {
namespace {

const QString notifierWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString notifierPath = QStringLiteral("/StatusNotifierWatcher");

/// At login the desktop's own tray may start after us; the older protocol is taken only when this has passed.
constexpr int patienceMilliseconds = 2000;

} // namespace

LinuxTray::LinuxTray(const X11Display& display)
    : display_(display), filter_([this](const xcb_generic_event_t& event) {
          // A new X11 tray announces itself on the root window (ICCCM 2.8).
          if (x11EventNumber(event) != XCB_CLIENT_MESSAGE)
              return;
          const auto& message = x11Event<xcb_client_message_event_t>(event);
          if (message.type == display_.atom(X11Atom::manager) &&
              message.data.data32[1] == display_.atom(X11Atom::systemTray) && build_ && !patience_.isActive())
              QTimer::singleShot(0, this, &LinuxTray::lookForEmbedded);
      }) {
    patience_.setSingleShot(true);
    patience_.setInterval(patienceMilliseconds);
    connect(&patience_, &QTimer::timeout, this, &LinuxTray::lookForEmbedded);
}

LinuxTray::~LinuxTray() = default;

void LinuxTray::start(const QIcon& icon, std::function<void(QMenu&)> build) {
    picture_ = icon;
    build_ = std::move(build);
    menu_ = std::make_unique<QMenu>();
    connect(menu_.get(), &QMenu::aboutToShow, this, [this] {
        menuOpen_ = true;
        rebuildMenu();
    });
    connect(menu_.get(), &QMenu::aboutToHide, this, [this] {
        menuOpen_ = false;
        // The entry that was chosen is told of after the menu hides; it must still be there then.
        if (menuStale_)
            QTimer::singleShot(0, this, &LinuxTray::refreshMenu);
    });
    patience_.start();
    QTimer::singleShot(0, this, &LinuxTray::watch);
}

void LinuxTray::watch() {
    if (!bus_)
        bus_ = sessionBusIfAny();
    if (!bus_->isConnected())
        return;
    watcher_.setConnection(*bus_);
    watcher_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    watcher_.addWatchedService(notifierWatcher);
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) {
                disappear(Kind::notifier);
                if (!owner.isEmpty())
                    askForHost();
            });
    bus_->connect(notifierWatcher, notifierPath, notifierWatcher,
                  QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(askForHost()));
    askForHost();
}

void LinuxTray::askForHost() {
    // The watcher may run long before a panel that shows items; Qt finds no tray until there is one.
    QDBusMessage call = QDBusMessage::createMethodCall(notifierWatcher, notifierPath,
                                                       QStringLiteral("org.freedesktop.DBus.Properties"),
                                                       QStringLiteral("Get"));
    call.setAutoStartService(false);
    call.setArguments({notifierWatcher, QStringLiteral("IsStatusNotifierHostRegistered")});
    auto* asked = new QDBusPendingCallWatcher(bus_->asyncCall(call), this);
    connect(asked, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* done) {
        done->deleteLater();
        const QDBusPendingReply<QDBusVariant> registered(*done);
        if (!registered.isError() && registered.value().variant().toBool())
            appear(Kind::notifier);
    });
}

void LinuxTray::lookForEmbedded() {
    if (!icon_ && display_.hasOwner(X11Atom::systemTray))
        appear(Kind::embedded);
}

void LinuxTray::appear(Kind kind) {
    if (icon_)
        return;
    patience_.stop();
    kind_ = kind;
    rebuildMenu();
    icon_ = std::make_unique<QSystemTrayIcon>(picture_);
    icon_->setToolTip(tooltip_);
    icon_->setContextMenu(menu_.get());
    connect(icon_.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger && onActivated)
            onActivated();
    });
    icon_->show();
    if (onShownChange)
        onShownChange();
}

void LinuxTray::disappear(Kind kind) {
    if (!icon_ || kind_ != kind)
        return;
    icon_.reset();
    kind_.reset();
    menuOpen_ = false;
    if (onShownChange)
        onShownChange();
}

void LinuxTray::setTooltip(const QString& text) {
    tooltip_ = text;
    if (icon_ && icon_->toolTip() != text)
        icon_->setToolTip(text);
}

void LinuxTray::refreshMenu() {
    menuStale_ = true;
    if (icon_ && !menuOpen_)
        rebuildMenu();
}

void LinuxTray::rebuildMenu() {
    menuStale_ = false;
    menu_->clear();
    build_(*menu_);
}

} // namespace Platform
