#pragma once

#include <QObject>

#include <functional>

class QSocketNotifier;

namespace Platform {

/// Turns the signals that ask a program to end (TERM, HUP, INT) into one call on the main loop, so that the
/// program ends in good order. Further ones change nothing while it does. One object at a time; destroying it
/// puts the earlier handling back.
class TerminationSignals : public QObject {
public:
    /// `onTerminate` is called once, on the loop of the thread that made this object.
    explicit TerminationSignals(std::function<void()> onTerminate);
    ~TerminationSignals() override;

private:
    void received();

    std::function<void()> onTerminate_;
    QSocketNotifier* notifier_ = nullptr;
};

} // namespace Platform
