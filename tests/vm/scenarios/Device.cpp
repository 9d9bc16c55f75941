#include "Device.h"
#include "Eventually.h"
#include "Kernel.h"
#include "Scenarios.h"
#include "Text.h"

#include <QFile>
#include <QTest>

void Scenarios::firstStartSetsRegionAndHardwareAddress()
{
    QVERIFY(m_world.beginUnused());
    QVERIFY(Kernel::setRegion("JP"_s));
    QVERIFY(daemon().startAndWait());

    QVERIFY(connman().startAndWait());

    QVERIFY(eventually([] { return Kernel::region() == "US"_s; }));
    QCOMPARE(Kernel::hardwareAddress("wlan0"_s), DevicePeers::addressOfSerialNumber());
    QCOMPARE(daemon().call("getWifiRegion"_s).toString(), "US"_s);
    QVERIFY(!does("getWifiPower"_s));
    QVERIFY(does("checkWifiTechnology"_s));
}

void Scenarios::regionReachesTheKernelAndSurvivesARestart()
{
    QVERIFY(does("setWifiRegion"_s, {"SE"_s}));

    QVERIFY(eventually([] { return Kernel::region() == "SE"_s; }));
    QTRY_VERIFY(daemon().hasSent("regionChanged(SE, false)"_s));

    m_world.spoil();
    QVERIFY(daemon().stopAndWait());
    QVERIFY(Kernel::setRegion("US"_s));
    QVERIFY(daemon().startAndWait());
    QVERIFY(eventually([] { return Kernel::region() == "SE"_s; }));
    QCOMPARE(daemon().call("getWifiRegion"_s).toString(), "SE"_s);
}

void Scenarios::lockedRegionCannotBeChanged()
{
    const QString region = daemon().call("getWifiRegion"_s).toString();
    QVERIFY(does("setLockRegion"_s, {true}));
    QTRY_VERIFY(daemon().hasSent("regionChanged(%1, true)"_s.arg(region)));
    QVERIFY(does("getLockRegion"_s));

    QVERIFY(!does("setWifiRegion"_s, {"DE"_s}));

    QCOMPARE(Kernel::region(), region);
    QCOMPARE(daemon().call("getWifiRegion"_s).toString(), region);
    QVERIFY(does("setLockRegion"_s, {false}));
    QVERIFY(!does("getLockRegion"_s));
}

void Scenarios::hostNameIsWrittenToItsFile()
{
    QVERIFY(does("setHostName"_s, {"printer-7"_s}));

    QFile file(Device::file("/etc/hostname"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("printer-7"));
    QCOMPARE(daemon().call("getHostName"_s).toString(), "printer-7"_s);
}

void Scenarios::technologiesAreReported()
{
    QVERIFY(does("checkWifiTechnology"_s));
    QVERIFY(!does("checkBluetoothTechnology"_s));
    QVERIFY(does("getWifiPower"_s));

    QVERIFY(does("setWifiPower"_s, {false}));

    QVERIFY(!does("getWifiPower"_s));
    QVERIFY(!connman().isWifiPowered());
    QTRY_COMPARE(daemon().received(), QStringList{"powerChanged(false)"_s});
}
