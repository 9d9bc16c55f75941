#include "BusCall.h"
#include "EventWait.h"
#include "MachineScenarios.h"
#include "Systemd.h"
#include "Text.h"

#include <QElapsedTimer>
#include <QTest>

using test_support::eventually;

namespace {

const QString atelier = "Atelier"_s;
const QString connmanUnit = "connman.service"_s;
constexpr int manyCrashes = 6; // one more than systemd would put up with by default

QString processOf(const QString &unit)
{
    return Systemd::property(unit, "MainPID"_s);
}

bool sendSignal(const QString &unit, const QString &signal)
{
    return Systemd::control({"kill"_s, "--kill-who=main"_s, "--signal="_s + signal, unit});
}

/// Ends the unit's process by force and waits until systemd has put another one in its place.
bool crash(const QString &unit, const QString &signal)
{
    const QString before = processOf(unit);
    return sendSignal(unit, signal) && eventually([&] {
               const QString now = processOf(unit);
               return now != before && now != "0"_s;
           });
}

} // namespace

/// systemd would kill it after five seconds, and say so.
void MachineScenarios::stopInsideAConnectEndsInTime()
{
    m_world.spoil();
    const QString identifier = network(atelier);
    QVERIFY(air().serveAddresses(false)); // keeps Connect waiting
    client().send("registerWifi", identifier, Secret::atelier);
    QVERIFY(eventually([&] { return connman().state(identifier) == "configuration"_s; }));

    QElapsedTimer elapsed;
    elapsed.start();
    QVERIFY(m_world.stopDaemon());

    qInfo("stopped after %.1f s", static_cast<double>(elapsed.elapsed()) / 1000);
    QCOMPARE(Systemd::property(daemonUnit, "ExecMainCode"_s),
             "1"_s); // it has exited
    QCOMPARE(Systemd::property(daemonUnit, "ExecMainStatus"_s), "0"_s);
}

void MachineScenarios::killedDaemonComesBackAndRejoins_data()
{
    QTest::addColumn<QString>("signal");
    QTest::newRow("killed") << "KILL"_s;
    QTest::newRow("crashed") << "SEGV"_s;
}

void MachineScenarios::killedDaemonComesBackAndRejoins()
{
    QFETCH(QString, signal);
    m_world.spoil();
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    client().clearRecord();

    QVERIFY(crash(daemonUnit, signal));

    QVERIFY(isRejoined(identifier));
}

void MachineScenarios::manyCrashesInARowDoNotSilenceIt()
{
    m_world.spoil();
    for (int crashes = 0; crashes < manyCrashes; ++crashes) {
        QVERIFY(crash(daemonUnit, "SEGV"_s));
    }

    QVERIFY(eventually([] { return isOnBus(daemonName); }));
    QVERIFY(client().call("getWifiRegion").isValid());
}

void MachineScenarios::killedConnmanComesBackAndIsRejoined()
{
    const QString identifier = joinAtelierToStay();
    QVERIFY(!identifier.isEmpty());
    client().clearRecord();
    daemon().markLog();

    QVERIFY(crash(connmanUnit, "KILL"_s));

    QVERIFY(m_world.waitUntilConnmanIsBack());
    QVERIFY(isRejoined(identifier));
}

void MachineScenarios::restartOfBothAtOnceRejoins()
{
    const QString identifier = joinAtelierToStay();
    QVERIFY(!identifier.isEmpty());
    client().clearRecord();

    QVERIFY(Systemd::control({"restart"_s, connmanUnit, daemonUnit}));

    QVERIFY(isRejoined(identifier));
}
