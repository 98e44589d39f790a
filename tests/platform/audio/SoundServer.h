#pragma once

#include "tests/support/TemporaryFolder.h"

#include <QByteArray>
#include <QProcess>

#include <cstdint>
#include <string>

namespace TestSupport {

/// What two ears took in: the sum of the squared samples, full scale being 1.
struct Heard {
    double left = 0;
    double right = 0;

    double both() const { return left + right; }
};

/// Runs this thread's event loop for so long.
void runFor(int milliseconds);

/// A real sound server of our own whose only loudspeaker is a recorder. This process and its children use it
/// from the constructor on; the first use of audio in a process decides for good which server it talks to.
class SoundServer {
public:
    /// Whether the programs that this needs are installed.
    static bool isInstalled();

    /// Waits until what is played arrives in the recording without delay. Throws when it never does.
    SoundServer();
    ~SoundServer();

    /// Starts the server again where it was, after `kill`.
    void start();
    /// Ends the server as a crash would.
    void kill();
    /// Makes the server hang.
    void suspend() const;

    /// Runs the event loop for so long and says what was heard since the last call of `hear`.
    Heard hear(int milliseconds);
    /// How many programs have a stream open.
    int openStreams() const;

private:
    static void dieWithParent(QProcess& process);
    void startRecorder();
    QByteArray ask(const QStringList& arguments) const;

    TemporaryFolder folder_;
    QProcess server_;
    QProcess recorder_;
};

} // namespace TestSupport
