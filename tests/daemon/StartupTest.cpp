#include "Keys.h"
#include "Scene.h"
#include "Suite.h"
#include <csignal>
#include <QTest>

using namespace test_support;

/// Starting, logging and ending of the process.
class StartupTest : public QObject
{
    Q_OBJECT
private slots:
    void startsWithoutConnman();
    void startsWithoutBusAndSaysSoOnce();
    void keysWorkWithoutBus();
    void lostBusEndsTheDaemonWithOneLineAndStatusOne();
    void signalEndsTheDaemonWithStatusZero_data();
    void signalEndsTheDaemonWithStatusZero();
    void signalEndsTheDaemonWithoutBusWithStatusZero();
    void secondSignalEndsADaemonThatConnmanKeepsWaiting_data();
    void secondSignalEndsADaemonThatConnmanKeepsWaiting();
    void firstSignalIsObeyedOnceConnmanAnswers();
    void criticalLineIsPrintedByDefault();
    void warningIsPrintedOnlyWhenRulesAskForIt_data();
    void warningIsPrintedOnlyWhenRulesAskForIt();
    void logIsUtf8WhateverTheLocale();
};

namespace {
const QString noSuchBus = "unix:path=/nonexistent/bus"_s;
const QString noBusLine = "default|critical|Unable to connect to system-bus."_s;
const QString unspoken = "NetworkManager|critical|ERROR: Failed to queue speech-request."_s;
} // namespace

void StartupTest::startsWithoutConnman()
{
    LonelyDaemon device;
    QVERIFY(device.start());
    QCOMPARE(device.client.call("networks").toMap(), QVariantMap());
    QCOMPARE(device.client.call("getWifiPower").toBool(), false);
    QCOMPARE(device.daemon.log().lines(), QStringList());
}

void StartupTest::startsWithoutBusAndSaysSoOnce()
{
    Daemon daemon(noSuchBus);
    QVERIFY(daemon.start());
    QVERIFY(daemon.log().takeProblem(noBusLine));
    QVERIFY(daemon.isRunning());
    QVERIFY(daemon.stop());
    QCOMPARE(daemon.log().lines(), QStringList(noBusLine));
}

void StartupTest::keysWorkWithoutBus()
{
    Daemon daemon(noSuchBus);
    QVERIFY(daemon.start());
    QVERIFY(daemon.log().takeProblem(noBusLine));
    keys::pressChord(daemon.sandbox().keyboard(), keys::wifiOff);
    QVERIFY(daemon.sandbox().commands().waitForCall("connmanctl disable wifi"_s));
    QVERIFY(daemon.log().takeProblem(unspoken));
}

void StartupTest::lostBusEndsTheDaemonWithOneLineAndStatusOne()
{
    LonelyDaemon device;
    QVERIFY(device.start());
    device.bus.stop();
    QCOMPARE(device.daemon.waitForExit(), 1);
    QCOMPARE(device.daemon.log().lines(), QStringList("default|critical|Connection to system-bus lost."_s));
    QVERIFY(device.daemon.log().takeProblem("default|critical|Connection to system-bus lost."_s));
}

void StartupTest::signalEndsTheDaemonWithStatusZero_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
}

void StartupTest::signalEndsTheDaemonWithStatusZero()
{
    QFETCH(int, signal);
    LonelyDaemon device;
    QVERIFY(device.start());
    QVERIFY(device.daemon.sendSignal(signal));
    QCOMPARE(device.daemon.waitForExit(), 0);
    QCOMPARE(device.daemon.log().lines(), QStringList());
}

void StartupTest::signalEndsTheDaemonWithoutBusWithStatusZero()
{
    Daemon daemon(noSuchBus);
    QVERIFY(daemon.start());
    QVERIFY(daemon.log().takeProblem(noBusLine));
    QVERIFY(daemon.sendSignal(SIGINT));
    QCOMPARE(daemon.waitForExit(), 0);
}

void StartupTest::secondSignalEndsADaemonThatConnmanKeepsWaiting_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::newRow("SIGTERM twice") << SIGTERM << SIGTERM;
    QTest::newRow("SIGINT twice") << SIGINT << SIGINT;
    QTest::newRow("SIGINT, then SIGTERM") << SIGINT << SIGTERM;
}

void StartupTest::secondSignalEndsADaemonThatConnmanKeepsWaiting()
{
    QFETCH(int, first);
    QFETCH(int, second);
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    const Fault hanging =
        device.simulator.injectFault("net.connman.Technology"_s, "Scan"_s, FaultKind::never());
    device.client.send("networks");
    QVERIFY(device.simulator.waitForCall(scene::scan));

    QVERIFY(device.daemon.catches(second));
    QVERIFY(device.daemon.sendSignal(first));
    QTRY_VERIFY(!device.daemon.catches(second));
    QVERIFY(device.daemon.isRunning());
    QVERIFY(device.daemon.sendSignal(second));
    QCOMPARE(device.daemon.waitForExit(), 128 + second);
}

void StartupTest::firstSignalIsObeyedOnceConnmanAnswers()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    const Fault slow =
        device.simulator.injectFault("net.connman.Technology"_s, "Scan"_s, FaultKind::delay(500));
    device.client.send("wpsNetworks");
    QVERIFY(device.simulator.waitForCall(scene::scan));
    QVERIFY(device.daemon.sendSignal(SIGTERM));
    QCOMPARE(device.daemon.waitForExit(), 0);
    QVERIFY(device.client.waitFor("wpsNetworks -> []"_s));
}

void StartupTest::criticalLineIsPrintedByDefault()
{
    LonelyDaemon device;
    QVERIFY(device.start());
    QCOMPARE(device.client.call("connect", QString()).toBool(), false);
    QVERIFY(device.daemon.log().takeProblem(
        "NetworkManager|critical|Can't connect with an empty network-name."_s));
}

void StartupTest::warningIsPrintedOnlyWhenRulesAskForIt_data()
{
    QTest::addColumn<QString>("rules");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("no rules") << "" << QStringList();
    QTest::newRow("rules for another category") << "ConnmanManager=true" << QStringList();
    QTest::newRow("rules for the category")
        << "NetworkManager.warning=true"
        << QStringList("NetworkManager|warning|Can't forget an empty SSID."_s);
}

void StartupTest::warningIsPrintedOnlyWhenRulesAskForIt()
{
    QFETCH(QString, rules);
    QFETCH(QStringList, lines);
    LonelyDaemon device;
    device.daemon.setLoggingRules(rules);
    QVERIFY(device.start());
    QCOMPARE(device.client.call("forgetWifi", QString()).toBool(), false);
    QVERIFY(device.daemon.stop());
    QCOMPARE(device.daemon.log().lines(), lines);
}

void StartupTest::logIsUtf8WhateverTheLocale()
{
    LonelyDaemon device;
    device.daemon.setVariable("LC_ALL"_s, "C"_s);
    QVERIFY(device.start());
    QCOMPARE(device.client.call("getHwAddress", "Gerät"_s).toString(), QString());
    QVERIFY(
        device.daemon.log().takeProblem("NetworkManager|critical|No such network available: \"Gerät\""_s));
}

static const Suite<StartupTest> startupTest;
#include "StartupTest.moc"
