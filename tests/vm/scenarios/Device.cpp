#include "Device.h"
#include "Eventually.h"
#include "Scenarios.h"

#include <QFile>
#include <QTest>

void Scenarios::firstStartSetsRegionAndHardwareAddress()
{
    QVERIFY(m_world.beginUnused());
    QVERIFY(Kernel::setRegion(QStringLiteral("JP")));
    QVERIFY(daemon().startAndWait());

    QVERIFY(connman().startAndWait());

    QVERIFY(eventually([] { return Kernel::region() == QStringLiteral("US"); }));
    QCOMPARE(Kernel::hardwareAddress(QStringLiteral("wlan0")), DevicePeers::addressOfSerialNumber());
    QCOMPARE(daemon().call(QStringLiteral("getWifiRegion")).toString(), QStringLiteral("US"));
    QVERIFY(!does(QStringLiteral("getWifiPower")));
    QVERIFY(does(QStringLiteral("checkWifiTechnology")));
}

void Scenarios::regionReachesTheKernelAndSurvivesARestart()
{
    QVERIFY(does(QStringLiteral("setWifiRegion"), {QStringLiteral("SE")}));

    QVERIFY(eventually([] { return Kernel::region() == QStringLiteral("SE"); }));
    QTRY_VERIFY(daemon().hasSent(QStringLiteral("regionChanged(SE, false)")));

    m_world.spoil();
    QVERIFY(daemon().stopAndWait());
    QVERIFY(Kernel::setRegion(QStringLiteral("US")));
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

    QFile file(Device::file(QStringLiteral("/etc/hostname")));
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
    QTRY_COMPARE(daemon().received(), QStringList{QStringLiteral("powerChanged(false)")});
}
