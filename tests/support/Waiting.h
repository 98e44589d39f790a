#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QThread>

namespace Testing {

/// Runs the event loop until `done` holds, or gives up. Returns whether it held.
template <typename Predicate>
bool waitUntil(const Predicate& done, int milliseconds = 3000) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (!done()) {
        if (elapsed.elapsed() > milliseconds)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QThread::msleep(1);
    }
    return true;
}

/// Runs the event loop for a time in which nothing is expected to happen.
inline void runFor(int milliseconds) {
    waitUntil([] { return false; }, milliseconds);
}

} // namespace Testing
