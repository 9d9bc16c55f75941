#include "Device.h"
#include "EventWait.h"
#include "Kernel.h"
#include "Peers.h"
#include "Scenarios.h"
#include "Text.h"

#include <QFile>
#include <QTest>

using test_support::eventually;

void Scenarios::firstStartSetsRegionAndHardwareAddress()
{
    QVERIFY(m_world.beginUnused());
    QVERIFY(Kernel::setRegion("JP"_s));
    QVERIFY(m_world.startDaemon());

    QVERIFY(connman().startAndWait());

    QVERIFY(eventually([] { return Kernel::region() == "US"_s; }));
    QCOMPARE(Kernel::hardwareAddress("wlan0"_s), Peers::addressOfSerialNumber());
    QCOMPARE(client().call("getWifiRegion").toString(), "US"_s);
    QVERIFY(!does("getWifiPower"));
    QVERIFY(does("checkWifiTechnology"));
}

void Scenarios::regionReachesTheKernelAndSurvivesARestart()
{
    QVERIFY(does("setWifiRegion", "SE"_s));

    QVERIFY(eventually([] { return Kernel::region() == "SE"_s; }));
    QTRY_VERIFY(client().heard().contains("regionChanged(\"SE\", false)"_s));

    m_world.spoil();
    QVERIFY(m_world.stopDaemon());
    QVERIFY(Kernel::setRegion("US"_s));
    QVERIFY(m_world.startDaemon());
    QVERIFY(eventually([] { return Kernel::region() == "SE"_s; }));
    QCOMPARE(client().call("getWifiRegion").toString(), "SE"_s);
}

void Scenarios::lockedRegionCannotBeChanged()
{
    const QString region = client().call("getWifiRegion").toString();
    QVERIFY(does("setLockRegion", true));
    QTRY_VERIFY(client().heard().contains("regionChanged(\"%1\", true)"_s.arg(region)));
    QVERIFY(does("getLockRegion"));

    QVERIFY(!does("setWifiRegion", "DE"_s));

    QCOMPARE(Kernel::region(), region);
    QCOMPARE(client().call("getWifiRegion").toString(), region);
    QVERIFY(does("setLockRegion", false));
    QVERIFY(!does("getLockRegion"));
}

void Scenarios::hostNameIsWrittenToItsFile()
{
    QVERIFY(does("setHostName", "printer-7"_s));

    QFile file(Device::file("/etc/hostname"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("printer-7"));
    QCOMPARE(client().call("getHostName").toString(), "printer-7"_s);
}

void Scenarios::technologiesAreReported()
{
    QVERIFY(does("checkWifiTechnology"));
    QVERIFY(!does("checkBluetoothTechnology"));
    QVERIFY(does("getWifiPower"));

    QVERIFY(does("setWifiPower", false));

    QVERIFY(!does("getWifiPower"));
    QVERIFY(!connman().isWifiPowered());
    QTRY_COMPARE(client().heard(), QStringList{"powerChanged(false)"_s});
}
