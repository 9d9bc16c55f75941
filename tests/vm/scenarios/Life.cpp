#include "BusCall.h"
#include "Eventually.h"
#include "MachineScenarios.h"
#include "Systemd.h"

#include <QElapsedTimer>
#include <QTest>

namespace {

const QString atelier = QStringLiteral("Atelier");
const QString daemonUnit = QStringLiteral("network-manager.service");
const QString connmanUnit = QStringLiteral("connman.service");
const QString daemonName = QStringLiteral("com.tactora.NetworkManager");
constexpr int manyCrashes = 6; // one more than systemd would put up with by default

QString processOf(const QString &unit)
{
    return Systemd::property(unit, QStringLiteral("MainPID"));
}

bool sendSignal(const QString &unit, const QString &signal)
{
    return Systemd::control({QStringLiteral("kill"), QStringLiteral("--kill-who=main"),
                             QStringLiteral("--signal=") + signal, unit});
}

/// Ends the unit's process by force and waits until systemd has put another one in its place.
bool crash(const QString &unit, const QString &signal)
{
    const QString before = processOf(unit);
    return sendSignal(unit, signal) && eventually([&] {
               const QString now = processOf(unit);
               return now != before && now != QStringLiteral("0");
           });
}

} // namespace

/// systemd would kill it after five seconds, and say so.
void MachineScenarios::stopInsideAConnectEndsInTime()
{
    m_world.spoil();
    const QString identifier = network(atelier);
    QVERIFY(air().serveAddresses(false)); // keeps Connect waiting
    daemon().begin(QStringLiteral("registerWifi"), {identifier, Secret::atelier});
    QVERIFY(eventually([&] { return connman().state(identifier) == QStringLiteral("configuration"); }));

    QElapsedTimer elapsed;
    elapsed.start();
    QVERIFY(daemon().stopAndWait());

    qInfo("stopped after %.1f s", static_cast<double>(elapsed.elapsed()) / 1000);
    QCOMPARE(Systemd::property(daemonUnit, QStringLiteral("ExecMainCode")),
             QStringLiteral("1")); // it has exited
    QCOMPARE(Systemd::property(daemonUnit, QStringLiteral("ExecMainStatus")), QStringLiteral("0"));
}

void MachineScenarios::killedDaemonComesBackAndRejoins_data()
{
    QTest::addColumn<QString>("signal");
    QTest::newRow("killed") << QStringLiteral("KILL");
    QTest::newRow("crashed") << QStringLiteral("SEGV");
}

void MachineScenarios::killedDaemonComesBackAndRejoins()
{
    QFETCH(QString, signal);
    m_world.spoil();
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    daemon().forgetSignals();

    QVERIFY(crash(daemonUnit, signal));

    QVERIFY(isRejoined(identifier));
}

void MachineScenarios::manyCrashesInARowDoNotSilenceIt()
{
    m_world.spoil();
    for (int crashes = 0; crashes < manyCrashes; ++crashes) {
        QVERIFY(crash(daemonUnit, QStringLiteral("SEGV")));
    }

    QVERIFY(eventually([] { return isOnBus(daemonName); }));
    QVERIFY(daemon().call(QStringLiteral("getWifiRegion")).isValid());
}

void MachineScenarios::killedConnmanComesBackAndIsRejoined()
{
    const QString identifier = joinAtelierToStay();
    QVERIFY(!identifier.isEmpty());
    daemon().forgetSignals();
    daemon().markLog();

    QVERIFY(crash(connmanUnit, QStringLiteral("KILL")));

    QVERIFY(m_world.waitUntilConnmanIsBack());
    QVERIFY(isRejoined(identifier));
}

void MachineScenarios::restartOfBothAtOnceRejoins()
{
    const QString identifier = joinAtelierToStay();
    QVERIFY(!identifier.isEmpty());
    daemon().forgetSignals();

    QVERIFY(Systemd::control({QStringLiteral("restart"), connmanUnit, daemonUnit}));

    QVERIFY(isRejoined(identifier));
}
