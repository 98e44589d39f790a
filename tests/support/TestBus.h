#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

namespace Testing {

/// A message bus of a test's own, ended with this object, or one that runs already.
class TestBus {
public:
    TestBus();
    explicit TestBus(const QString& address) : address_(address) {}
    ~TestBus();
    TestBus(const TestBus&) = delete;
    TestBus& operator=(const TestBus&) = delete;

    const QString& address() const { return address_; }
    /// A connection of its own, as another program would have.
    QDBusConnection connection(const QString& name) const;
    /// Starts a mock service (python3-dbusmock) with these arguments, for which this bus is the session bus
    /// as well as the system bus, and waits until it owns `busName`.
    void startMock(QProcess& process, const QStringList& what, const QString& busName) const;

private:
    QProcess daemon_;
    QString address_;
};

/// Ends a process that a test started and waits for it.
void end(QProcess& process);

} // namespace Testing
