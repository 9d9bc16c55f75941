#include "OperationsScene.h"
#include "Suite.h"
#include <libtactora/DBusArgument.h>
#include <QTest>

using namespace scene;
using namespace test_support;

/// The queries of the bus interface about networks and technologies; of networks() only what any reply may
/// hold.
class QueriesTest : public QObject
{
    Q_OBJECT
private slots:
    void wpsNetworksAreListedByNameAfterOneScan();
    void wpsNetworksOfOneNameAreListedEach();
    void failedScanStillListsWhatOffersWps();
    void activeNetworksAreListedByNameWithoutScan_data();
    void activeNetworksAreListedByNameWithoutScan();
    void wifiPowerIsWhatConnmanSays_data();
    void wifiPowerIsWhatConnmanSays();
    void wifiPowerThatConnmanDoesNotTellIsOff();
    void technologiesAreThoseOfConnman();
    void networksAnswersTwiceWhateverAPropertyHolds_data();
    void networksAnswersTwiceWhateverAPropertyHolds();
    void getConfigurationAnswersTwiceWhateverItHolds_data();
    void getConfigurationAnswersTwiceWhateverItHolds();
};

namespace {

/// A reply in words, plain at every depth.
QString textOf(const QVariant &reply)
{
    QString text;
    QDebug(&text) << libtactora::dbusArgumentUnpack(reply);
    return text;
}
} // namespace

void QueriesTest::networksAnswersTwiceWhateverAPropertyHolds_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("array of integers") << QVariant::fromValue(QList<int>{1, 2, 3});
    QTest::newRow("object paths") << QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath("/a"_s)});
    QTest::newRow("dictionary in a dictionary")
        << QVariant(QVariantMap{{"Outer"_s, QVariantMap{{"Inner"_s, 7}}}});
    QTest::newRow("list of variants") << QVariant(QVariantList{1, "two"_s});
}

void QueriesTest::networksAnswersTwiceWhateverAPropertyHolds()
{
    QFETCH(QVariant, value);
    TestDevice device;
    device.simulator.addService(home, {{"Strange"_s, value}});
    QVERIFY(device.startWithoutRadio());

    const QString first = textOf(device.client.call("networks"));
    QVERIFY(first.contains("Strange"_s));
    QCOMPARE(textOf(device.client.call("networks")), first);
}

void QueriesTest::getConfigurationAnswersTwiceWhateverItHolds_data()
{
    networksAnswersTwiceWhateverAPropertyHolds_data();
}

void QueriesTest::getConfigurationAnswersTwiceWhateverItHolds()
{
    QFETCH(QVariant, value);
    TestDevice device;
    device.simulator.addService(home,
                                {{"IPv4"_s, QVariantMap{{"Method"_s, "dhcp"_s}, {"Strange"_s, value}}}});
    QVERIFY(device.startWithoutRadio());

    const QString first = textOf(device.client.call("getConfiguration", home));
    QVERIFY(first.contains("Strange"_s));
    QCOMPARE(textOf(device.client.call("getConfiguration", home)), first);
}

void QueriesTest::wpsNetworksAreListedByNameAfterOneScan()
{
    Operations device;
    device.simulator.addService(home, {{"Name"_s, "Home"_s}, {"Security"_s, QStringList{"psk"_s, "wps"_s}}});
    device.simulator.addService(
        "wifi_020000000200_41_managed_psk"_s,
        {{"Name"_s, "Other"_s}, {"Security"_s, QStringList{"psk"_s, "WPS"_s, "wps_advertising"_s}}});
    QVERIFY(device.begin());

    QCOMPARE(device.client.call("wpsNetworks").toStringList(), QStringList("Home"_s));
    QCOMPARE(device.changes(), QStringList(scan));
}

void QueriesTest::wpsNetworksOfOneNameAreListedEach()
{
    Operations device;
    const QVariantMap properties{{"Name"_s, "Home"_s}, {"Security"_s, QStringList{"psk"_s, "wps"_s}}};
    device.simulator.addService(home, properties);
    device.simulator.addService("wifi_020000000201_486f6d65_managed_psk"_s, properties);
    QVERIFY(device.begin());

    QCOMPARE(device.client.call("wpsNetworks").toStringList(), (QStringList{"Home"_s, "Home"_s}));
}

void QueriesTest::failedScanStillListsWhatOffersWps()
{
    Operations device;
    device.simulator.addService(home, {{"Name"_s, "Home"_s}, {"Security"_s, QStringList{"wps"_s}}});
    QVERIFY(device.begin());
    const Fault failing = failingScan(device.simulator);

    QCOMPARE(device.client.call("wpsNetworks").toStringList(), QStringList("Home"_s));
    QVERIFY(device.log().takeProblem(scanFailed));
}

void QueriesTest::activeNetworksAreListedByNameWithoutScan_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("isActive");
    for (const char *state : {"association", "configuration", "ready", "online"}) {
        QTest::newRow(state) << QString::fromLatin1(state) << true;
    }
    for (const char *state : {"idle", "failure", "disconnect", "unknown"}) {
        QTest::newRow(state) << QString::fromLatin1(state) << false;
    }
}

void QueriesTest::activeNetworksAreListedByNameWithoutScan()
{
    QFETCH(QString, state);
    QFETCH(bool, isActive);
    Operations device;
    device.simulator.addService(home, {{"Name"_s, "Home"_s}, {"State"_s, state}});
    QVERIFY(device.begin());

    QCOMPARE(device.client.call("activeNetworks").toStringList(),
             isActive ? QStringList("Home"_s) : QStringList());
    QCOMPARE(device.simulator.calls(), QStringList());
    device.log().tolerate("ConnmanService.properties|critical|Unknown/invalid state received: \"unknown\""_s);
}

void QueriesTest::wifiPowerIsWhatConnmanSays_data()
{
    QTest::addColumn<bool>("isPowered");
    QTest::newRow("on") << true;
    QTest::newRow("off") << false;
}

void QueriesTest::wifiPowerIsWhatConnmanSays()
{
    QFETCH(bool, isPowered);
    constexpr bool silently = true;
    Operations device;
    QVERIFY(device.begin());
    device.simulator.setTechnologyProperty("wifi"_s, "Powered"_s, isPowered, silently);

    QCOMPARE(device.client.call("getWifiPower").toBool(), isPowered);
}

void QueriesTest::wifiPowerThatConnmanDoesNotTellIsOff()
{
    Operations device;
    QVERIFY(device.begin());
    device.simulator.removeTechnologyProperty("wifi"_s, "Powered"_s);

    QCOMPARE(device.client.call("getWifiPower").toBool(), false);
    QVERIFY(device.log().takeProblem("ConnmanTechnology|critical|Missing property \"Powered\" of service "
                                     "\"/net/connman/technology/wifi\""_s));
}

void QueriesTest::technologiesAreThoseOfConnman()
{
    Operations device;
    QVERIFY(device.begin());
    QVERIFY(device.client.call("checkWifiTechnology").toBool());
    QVERIFY(!device.client.call("checkBluetoothTechnology").toBool());

    device.simulator.addTechnology("bluetooth"_s);
    device.simulator.removeTechnology("wifi"_s);
    QVERIFY(!device.client.call("checkWifiTechnology").toBool());
    QVERIFY(device.client.call("checkBluetoothTechnology").toBool());
}

static const Suite<QueriesTest> queriesTest;
#include "QueriesTest.moc"
