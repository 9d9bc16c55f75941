#include "Command.h"
#include "Scenarios.h"

#include <QFile>
#include <QTest>

namespace {

const QString addressOfSerialNumber =
    QStringLiteral("02:a7:c4:03:1f:a7"); // 4711 + 200000 is 31fa7 in hexadecimal

} // namespace

void Scenarios::firstStartSetsRegionAndHardwareAddress()
{
    QVERIFY(m_world.beginUnused());
    QVERIFY(run(QStringLiteral("iw"), {QStringLiteral("reg"), QStringLiteral("set"), QStringLiteral("JP")}));
    QVERIFY(eventually([] { return Kernel::region() == QStringLiteral("JP"); }));
    QVERIFY(daemon().startAndWait());

    QVERIFY(connman().startAndWait());

    QVERIFY(eventually([] { return Kernel::region() == QStringLiteral("US"); }));
    QCOMPARE(Kernel::hardwareAddress(QStringLiteral("wlan0")), addressOfSerialNumber);
    QCOMPARE(daemon().call(QStringLiteral("getWifiRegion")).toString(), QStringLiteral("US"));
    QVERIFY(!does(QStringLiteral("getWifiPower")));
    QVERIFY(does(QStringLiteral("checkWifiTechnology")));
}

void Scenarios::wlanUsesTheAddressOfTheSerialNumberOnTheAir()
{
    QVERIFY(!joinAtelier().isEmpty());

    QCOMPARE(air().stations(QStringLiteral("home")), QStringList{addressOfSerialNumber});
    QCOMPARE(daemon().call(QStringLiteral("getHwAddress"), {QStringLiteral("wlan0")}).toString(),
             addressOfSerialNumber.toUpper());
}

void Scenarios::regionReachesTheKernelAndSurvivesARestart()
{
    QVERIFY(does(QStringLiteral("setWifiRegion"), {QStringLiteral("SE")}));

    QVERIFY(eventually([] { return Kernel::region() == QStringLiteral("SE"); }));
    QTRY_VERIFY(daemon().hasSent(QStringLiteral("regionChanged(SE, false)")));

    m_world.spoil();
    QVERIFY(daemon().stopAndWait());
    QVERIFY(run(QStringLiteral("iw"), {QStringLiteral("reg"), QStringLiteral("set"), QStringLiteral("US")}));
    QVERIFY(daemon().startAndWait());
    QVERIFY(eventually([] { return Kernel::region() == QStringLiteral("SE"); }));
    QCOMPARE(daemon().call(QStringLiteral("getWifiRegion")).toString(), QStringLiteral("SE"));
}

void Scenarios::lockedRegionCannotBeChanged()
{
    const QString region = daemon().call(QStringLiteral("getWifiRegion")).toString();
    QVERIFY(does(QStringLiteral("setLockRegion"), {true}));
    QTRY_VERIFY(daemon().hasSent(QStringLiteral("regionChanged(%1, true)").arg(region)));
    QVERIFY(does(QStringLiteral("getLockRegion")));

    QVERIFY(!does(QStringLiteral("setWifiRegion"), {QStringLiteral("DE")}));

    QCOMPARE(Kernel::region(), region);
    QCOMPARE(daemon().call(QStringLiteral("getWifiRegion")).toString(), region);
    QVERIFY(does(QStringLiteral("setLockRegion"), {false}));
    QVERIFY(!does(QStringLiteral("getLockRegion")));
}

void Scenarios::hostNameIsWrittenToItsFile()
{
    QVERIFY(does(QStringLiteral("setHostName"), {QStringLiteral("printer-7")}));

    QFile file(QStringLiteral("/etc/hostname"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("printer-7"));
    QCOMPARE(daemon().call(QStringLiteral("getHostName")).toString(), QStringLiteral("printer-7"));
}

void Scenarios::technologiesAreReported()
{
    QVERIFY(does(QStringLiteral("checkWifiTechnology")));
    QVERIFY(!does(QStringLiteral("checkBluetoothTechnology")));
    QVERIFY(does(QStringLiteral("getWifiPower")));

    QVERIFY(does(QStringLiteral("setWifiPower"), {false}));

    QVERIFY(!does(QStringLiteral("getWifiPower")));
    QVERIFY(!connman().isWifiPowered());
    QVERIFY(eventually([] { return !Kernel::isUp(QStringLiteral("wlan0")); }));
    QTRY_COMPARE(daemon().received(), QStringList{QStringLiteral("powerChanged(false)")});
}
