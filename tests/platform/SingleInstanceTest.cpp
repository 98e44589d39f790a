#include "platform/SingleInstance.h"
#include "tests/support/Waiting.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using Platform::InstanceOutcome;
using Platform::SingleInstance;
using Testing::waitUntil;

namespace {

constexpr int exitBase = 40;

class SingleInstanceTest : public testing::Test {
protected:
    /// Starts the program once more, really as another process, and returns how its claim came out.
    int claimElsewhere(const QString& lockFolder, bool withBus = true) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("CLAIM_FOLDER"), lockFolder);
        if (!withBus) {
            environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
            environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), lockFolder);
        }
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("--gtest_also_run_disabled_tests"),
                       QStringLiteral("--gtest_filter=*DISABLED_ClaimsInAnotherProcess")});
        waitUntil([&] { return process.state() == QProcess::NotRunning; }, 8000);
        return process.exitCode();
    }
    static int exitCode(InstanceOutcome outcome) { return exitBase + static_cast<int>(outcome); }

    QTemporaryDir folder;
};

TEST_F(SingleInstanceTest, DISABLED_ClaimsInAnotherProcess) {
    SingleInstance instance(qEnvironmentVariable("CLAIM_FOLDER").toStdString());
    const InstanceOutcome outcome =
        instance.claim({QStringLiteral("--library"), QStringLiteral("deskfellow://open?a=b c")});
    std::_Exit(exitCode(outcome));
}

TEST_F(SingleInstanceTest, TheSecondHandsItsArgumentsOver) {
    SingleInstance first(folder.path().toStdString());
    ASSERT_EQ(first.claim({}), InstanceOutcome::first);
    EXPECT_EQ(claimElsewhere(folder.path()), exitCode(InstanceOutcome::forwarded));

    // What came before anyone listened is not lost.
    QList<QStringList> got;
    first.onArguments = [&](const QStringList& arguments) { got.append(arguments); };
    first.deliverPending();
    const QStringList sent{QStringLiteral("--library"), QStringLiteral("deskfellow://open?a=b c")};
    EXPECT_EQ(got, QList<QStringList>{sent});
    EXPECT_EQ(claimElsewhere(folder.path()), exitCode(InstanceOutcome::forwarded));
    EXPECT_TRUE(waitUntil([&] { return got == QList<QStringList>({sent, sent}); }));

    QTemporaryDir elsewhere;
    EXPECT_EQ(claimElsewhere(elsewhere.path()), exitCode(InstanceOutcome::forwarded))
        << "the same bus means the same user, whatever the folder";
    EXPECT_EQ(claimElsewhere(QStringLiteral("/proc/nowhere")), exitCode(InstanceOutcome::forwarded));
}

TEST_F(SingleInstanceTest, WithoutABusTheLockDecides) {
    {
        SingleInstance first(folder.path().toStdString());
        ASSERT_EQ(first.claim({}), InstanceOutcome::first);
        EXPECT_EQ(claimElsewhere(folder.path(), false), exitCode(InstanceOutcome::alreadyRunning));
    }
    EXPECT_EQ(claimElsewhere(folder.path(), false), exitCode(InstanceOutcome::first))
        << "the lock outlives its program";
    EXPECT_EQ(claimElsewhere(folder.filePath(QStringLiteral("new/deeper")), false),
              exitCode(InstanceOutcome::first));
    EXPECT_EQ(claimElsewhere(QStringLiteral("/proc/nowhere"), false), exitCode(InstanceOutcome::first))
        << "a folder that takes no lock keeps the program from starting";
}

} // namespace
