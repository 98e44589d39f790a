#include "platform/linux/PortalReducedMotion.h"
#include "tests/support/TestBus.h"
#include "tests/support/Waiting.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVirtualObject>

#include <gmock/gmock.h>

using Testing::waitUntil;

namespace {

using Groups = QMap<QString, QVariantMap>;

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString animations = QStringLiteral("enable-animations");

/// The settings portal, as far as anyone asks it here.
class Portal final : public QDBusVirtualObject {
public:
    Portal(const QDBusConnection& bus, const Groups& values) : bus_(bus), values_(values) {
        qDBusRegisterMetaType<Groups>();
        bus_.registerVirtualObject(portalPath, this);
        bus_.registerService(portalName);
    }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != QStringLiteral("ReadAll"))
            return false;
        return QDBusConnection(connection).send(message.createReply(QVariant::fromValue(values_)));
    }
    void change(const QString& group, const QString& key, const QVariant& value) {
        QDBusMessage signal =
            QDBusMessage::createSignal(portalPath, settings, QStringLiteral("SettingChanged"));
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        bus_.send(signal);
    }

private:
    QDBusConnection bus_;
    Groups values_;
};

TEST(ReducedMotionTest, FollowsWhicheverSettingTheDesktopHas) {
    struct Case {
        const char* fault;
        Groups values;
        bool reduced;
    };
    const QString kde = QStringLiteral("org.kde.kdeglobals.KDE");
    const QString factor = QStringLiteral("AnimationDurationFactor");
    const QString appearance = QStringLiteral("org.freedesktop.appearance");
    const QString reducedMotion = QStringLiteral("reduced-motion");
    const Case cases[] = {
        {"a portal without the setting stills everything", {}, false},
        {"animations that are on count as off", {{gnome, {{animations, true}}}}, false},
        {"animations that are off are not seen", {{gnome, {{animations, false}}}}, true},
        {"the common setting is not seen", {{appearance, {{reducedMotion, 1U}}}}, true},
        {"no preference counts as one", {{appearance, {{reducedMotion, 0U}}}}, false},
        {"a factor of zero is not seen", {{kde, {{factor, QStringLiteral("0")}}}}, true},
        {"any factor counts", {{kde, {{factor, QStringLiteral("0.5")}}}}, false},
        {"a value of the wrong type counts",
         {{gnome, {{animations, QStringLiteral("no")}}}, {kde, {{factor, QString()}}}},
         false},
    };
    for (const Case& row : cases) {
        Testing::TestBus bus;
        const Portal portal(bus.connection(QStringLiteral("portal")), row.values);
        Platform::PortalReducedMotion motion;
        motion.start(bus.connection(QStringLiteral("program")));
        EXPECT_FALSE(motion.isReduced()) << "the start waits for the answer";
        if (row.reduced)
            EXPECT_TRUE(waitUntil([&] { return motion.isReduced(); })) << row.fault;
        else
            Testing::runFor(60);
        EXPECT_EQ(motion.isReduced(), row.reduced) << row.fault;
    }
}

TEST(ReducedMotionTest, ChangesAreTold) {
    Testing::TestBus bus;
    Portal portal(bus.connection(QStringLiteral("portal")), {{gnome, {{animations, true}}}});
    Platform::PortalReducedMotion motion;
    std::vector<bool> told;
    motion.onChange = [&] { told.push_back(motion.isReduced()); };
    motion.start(bus.connection(QStringLiteral("program")));
    Testing::runFor(60);
    portal.change(gnome, QStringLiteral("color-scheme"), QStringLiteral("dark"));
    portal.change(gnome, animations, false);
    portal.change(gnome, animations, false);
    portal.change(gnome, animations, true);
    EXPECT_TRUE(waitUntil([&] { return told.size() == 2; }));
    EXPECT_EQ(told, (std::vector{true, false}));
}

} // namespace
