#pragma once

#include "core/base/Preferences.h"
#include "platform/KeepAwake.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <string_view>

namespace DeskSprites {

/// Keeps the machine awake while the user wants it and Dhiru is on the desktop. Main thread only.
class DhiruAwake : public QObject {
    Q_OBJECT

public:
    static constexpr std::string_view preferenceKey = "sprites.devwatch.keepAwake.v1";
    using Make = std::function<std::unique_ptr<Platform::KeepAwake>()>;

    explicit DhiruAwake(FellowCore::Preferences& preferences, Make make = Platform::keepAwake);
    ~DhiruAwake() override;

    bool isWanted() const { return wanted_; }
    void setWanted(bool wanted);
    void setDesktopActive(bool active);
    bool isHeld() const { return hold_ && hold_->isHeld(); }
    /// "Keeping awake"; or that it cannot be done here; empty while there is nothing to tell.
    QString words() const;

Q_SIGNALS:
    /// The wish, the hold or what is told of it is another.
    void changed();

private:
    void update();
    void holdChanged();

    FellowCore::Preferences& preferences_;
    Make make_;
    std::unique_ptr<Platform::KeepAwake> hold_; ///< while wanted and Dhiru is there
    QTimer patience_; ///< runs after asking and after a loss, because answers come later
    bool wanted_;
    bool active_ = false;
};

} // namespace DeskSprites
