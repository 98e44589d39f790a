#include "platform/SingleInstance.h"

#include "platform/linux/Buses.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVirtualObject>
#include <QTimer>

#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace Platform {
namespace {

const QString busName = QStringLiteral("io.deskfellow.Deskfellow");
const QString objectPath = QStringLiteral("/io/deskfellow/Deskfellow");
const QString openMethod = QStringLiteral("Open");

constexpr int answerMilliseconds = 2000;
/// How long the other program may need between taking the lock and answering to its name.
constexpr std::chrono::milliseconds nameWait{800};
constexpr std::chrono::milliseconds nameStep{20};

} // namespace

/// The object on the bus. Arguments wait in it until someone listens.
class SingleInstance::Receiver final : public QDBusVirtualObject {
public:
    explicit Receiver(SingleInstance& owner) : owner_(owner) {}

    QString introspect(const QString&) const override {
        return QStringLiteral("<interface name=\"io.deskfellow.Deskfellow\"><method name=\"Open\">"
                              "<arg name=\"arguments\" type=\"as\" direction=\"in\"/></method></interface>");
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != openMethod || message.signature() != QStringLiteral("as"))
            return false;
        pending_.append(message.arguments().constFirst().toStringList());
        QDBusConnection(connection).send(message.createReply());
        // The caller is let go first; what the arguments start may take its time.
        QTimer::singleShot(0, this, &Receiver::deliver);
        return true;
    }

    void deliver() {
        if (!owner_.onArguments)
            return;
        for (const QStringList& arguments : std::exchange(pending_, {}))
            owner_.onArguments(arguments);
    }

private:
    SingleInstance& owner_;
    QList<QStringList> pending_;
};

SingleInstance::SingleInstance(std::filesystem::path folder) : folder_(std::move(folder)) {}

SingleInstance::~SingleInstance() {
    if (receiver_) {
        QDBusConnection bus = sessionBusIfAny();
        bus.unregisterService(busName);
        bus.unregisterObject(objectPath);
    }
    if (lock_ >= 0)
        close(lock_);
}

bool SingleInstance::takeLock() {
    std::error_code ignored; // Opening the file tells.
    std::filesystem::create_directories(folder_, ignored);
    lock_ = open((folder_ / "deskfellow.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (lock_ < 0) {
        lockUnusable_ = true;
        return true;
    }
    if (flock(lock_, LOCK_EX | LOCK_NB) == 0)
        return true;
    lockUnusable_ = errno != EWOULDBLOCK;
    close(lock_);
    lock_ = -1;
    return lockUnusable_;
}

InstanceOutcome SingleInstance::claim(const QStringList& arguments) {
    const bool locked = takeLock();
    QDBusConnection bus = sessionBusIfAny();
    if (!locked)
        return bus.isConnected() && forward(arguments) ? InstanceOutcome::forwarded
                                                       : InstanceOutcome::alreadyRunning;
    if (!bus.isConnected())
        return InstanceOutcome::first;
    // The object comes first: whoever finds the name finds it answering.
    receiver_ = std::make_unique<Receiver>(*this);
    bus.registerVirtualObject(objectPath, receiver_.get());
    if (bus.registerService(busName))
        return InstanceOutcome::first;
    bus.unregisterObject(objectPath);
    receiver_.reset();
    // Someone else with another folder, or without a usable lock, has the name on this bus.
    return forward(arguments) ? InstanceOutcome::forwarded : InstanceOutcome::alreadyRunning;
}

bool SingleInstance::forward(const QStringList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(busName, objectPath, busName, openMethod);
    call.setAutoStartService(false);
    call.setArguments({arguments});
    const auto start = std::chrono::steady_clock::now();
    while (true) {
        const QDBusMessage reply = sessionBusIfAny().call(call, QDBus::Block, answerMilliseconds);
        if (reply.type() == QDBusMessage::ReplyMessage)
            return true;
        const bool nameless = QDBusError(reply).type() == QDBusError::ServiceUnknown;
        if (!nameless || std::chrono::steady_clock::now() - start > nameWait)
            return false;
        std::this_thread::sleep_for(nameStep);
    }
}

void SingleInstance::deliverPending() {
    if (receiver_)
        receiver_->deliver();
}

} // namespace Platform
