#pragma once

#include "platform/KeepAwake.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QObject>

#include <functional>
#include <optional>

namespace Platform {

/// Holds the screen by the session's org.freedesktop.ScreenSaver, or by the inhibit portal where no such
/// service runs, and the machine by logind. A service that is restarted is asked again. All of them let go
/// by themselves when our connection ends.
class BusKeepAwake final : public QObject, public KeepAwake {
public:
    BusKeepAwake(const QDBusConnection& system, const QDBusConnection& session);
    ~BusKeepAwake() override;

    bool isHeld() const override { return letGo_.has_value() || inhibitor_.isValid(); }

private:
    /// Makes of the answer to a request the message that takes it back; nothing when it was refused.
    using TakeBack = std::function<std::optional<QDBusMessage>(const QDBusMessage& answer)>;

    void askScreenSaver();
    void askPortal();
    void askScreen(const QDBusMessage& call, const TakeBack& takeBack,
                   void (BusKeepAwake::*otherwise)() = nullptr);
    void screenServiceChanged(const QString& service, const QString& before);
    void askLogind();
    void tellChange(bool wasHeld) const;

    QDBusConnection system_;
    QDBusConnection session_;
    QDBusServiceWatcher screenServices_;
    QDBusServiceWatcher logind_;
    std::optional<QDBusMessage> letGo_; ///< what takes our hold on the screen back
    unsigned turn_ = 0;                 ///< answers to questions of an earlier turn are too late
    QDBusUnixFileDescriptor inhibitor_; ///< sleep waits for as long as it is open
};

} // namespace Platform
