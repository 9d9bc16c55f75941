#include "HangingScene.h"
#include "Scene.h"
#include "Suite.h"

#include <algorithm>
#include <csignal>

#include <QDir>
#include <QTest>

using namespace test_support;

/// The end of the process where something keeps its event loop from turning.
class EndTest : public QObject
{
    Q_OBJECT

private slots:
    void firstSignalEndsABlockedDaemonWithStatusZero_data() { addAllMoments(); }
    void firstSignalEndsABlockedDaemonWithStatusZero();
    void firstSignalEndsADaemonThatWaitsForThePowerState();
    void firstSignalEndsADaemonWithinAPowerCycle();
    void runningCommandEndsWithAKilledDaemon_data();
    void runningCommandEndsWithAKilledDaemon();
    void whatAKilledDaemonLeavesRunningIsEnded();
    void busLostDuringACommandEndsTheDaemonWithOneLineAndStatusOne();
};

namespace {

} // namespace

void EndTest::firstSignalEndsABlockedDaemonWithStatusZero()
{
    QFETCH(BlockingMoment, block);
    HangingDevice device;
    QVERIFY(block(device));
    QVERIFY(device.daemon.sendSignal(SIGTERM));
    QCOMPARE(device.daemon.waitForExit(), 0);
}

void EndTest::firstSignalEndsADaemonThatWaitsForThePowerState()
{
    TestDevice device;
    device.simulator.removeTechnologyProperty("wifi"_s, "Powered"_s);
    const QString unknown =
        "ConnmanTechnology|critical|Missing property \"Powered\" of service \"/net/connman/technology/wifi\""_s;
    device.log().tolerate(unknown);
    QVERIFY(device.start());
    QVERIFY(device.log().waitFor(unknown, 2));
    QVERIFY(device.daemon.sendSignal(SIGINT));
    QCOMPARE(device.daemon.waitForExit(), 0);
}

void EndTest::firstSignalEndsADaemonWithinAPowerCycle()
{
    TestDevice device;
    device.daemon.sandbox().setSettings("region"_s, scene::regionSweden);
    QVERIFY(device.start());
    QVERIFY(device.commands().waitForCall("connmanctl disable wifi"_s));
    QVERIFY(device.daemon.sendSignal(SIGTERM));
    QCOMPARE(device.daemon.waitForExit(), 0);
}

namespace {

/// Whether any program that the daemon has started still runs.
bool anyCommandRuns(TestDevice &device)
{
    const QByteArray mark = device.commands().variable().toLocal8Bit();
    const QStringList processes = QDir("/proc"_s).entryList({"[1-9]*"_s}, QDir::Dirs);
    return std::any_of(processes.cbegin(), processes.cend(), [&mark](const QString &process) {
        QFile environment("/proc/%1/environ"_s.arg(process));
        return environment.open(QIODevice::ReadOnly) && environment.readAll().contains(mark);
    });
}

} // namespace

void EndTest::runningCommandEndsWithAKilledDaemon_data()
{
    QTest::addColumn<BlockingMoment>("block");
    QTest::newRow("iw list") << commandHangsAtStart("iw list"_s);
    QTest::newRow("address command") << BlockingMoment(addressCommandHangs);
    QTest::newRow("region command") << BlockingMoment(regionCommandOfAClientHangs);
    QTest::newRow("connmanctl") << BlockingMoment(connmanctlHangs);
}

void EndTest::runningCommandEndsWithAKilledDaemon()
{
    QFETCH(BlockingMoment, block);
    HangingDevice device;
    QVERIFY(block(device));
    QVERIFY(anyCommandRuns(device));
    QVERIFY(device.daemon.sendSignal(SIGKILL));
    QCOMPARE(device.daemon.waitForExit(), 128 + SIGKILL);
    QTRY_VERIFY(!anyCommandRuns(device));
}

/// A child whose parent is killed before it could ask to end with it is ended by the init system, and here by
/// the test.
void EndTest::whatAKilledDaemonLeavesRunningIsEnded()
{
    TestDevice device;
    device.daemon.setWrapper({"/bin/sh"_s, "-c"_s, "/bin/sleep infinity & exec \"$@\""_s, "sh"_s});
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.daemon.sendSignal(SIGKILL));
    QCOMPARE(device.daemon.waitForExit(), 128 + SIGKILL);
    QVERIFY(anyCommandRuns(device));
    device.daemon.endLeftovers();
    QTRY_VERIFY(!anyCommandRuns(device));
}

void EndTest::busLostDuringACommandEndsTheDaemonWithOneLineAndStatusOne()
{
    TestDevice device;
    device.commands().script("iw reg"_s, {"hold"_s});
    QVERIFY(device.startWithoutRadio());
    device.client.send("setWifiRegion", "DE"_s);
    QVERIFY(device.commands().waitForCall("iw reg set DE"_s));
    device.bus.stop();
    QVERIFY(device.daemon.isRunning());
    device.commands().release();
    QCOMPARE(device.daemon.waitForExit(), 1);
    QVERIFY(device.log().takeProblem(scene::busLost));
}

static const Suite<EndTest> endTest;
#include "EndTest.moc"
