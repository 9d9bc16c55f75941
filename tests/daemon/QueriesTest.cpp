#include "OperationsScene.h"
#include <libtactora/DBusArgument.h>
#include <QTest>

using namespace scene;
using namespace test_support;

/// The list queries of the bus interface: networks, wpsNetworks, activeNetworks, and the technologies.
class QueriesTest : public QObject
{
    Q_OBJECT
private slots:
    void networksAreListedByIdentifierAfterOneScan();
    void listedNetworksGetIpv6AutoConfiguration();
    void networksWithIpv6AutoAreLeftAlone();
    void failedScanStillListsWhatIsKnown();
    void networkThatTheScanFoundIsListedAtOnce();
    void wpsNetworksAreListedByNameAfterOneScan();
    void activeNetworksAreListedByNameWithoutScan_data();
    void activeNetworksAreListedByNameWithoutScan();
    void wifiPowerIsWhatConnmanSays_data();
    void wifiPowerIsWhatConnmanSays();
    void technologiesAreThoseOfConnman();
    void networksAnswersTwiceWhateverAPropertyHolds_data();
    void networksAnswersTwiceWhateverAPropertyHolds();
    void getConfigurationAnswersTwiceWhateverItHolds_data();
    void getConfigurationAnswersTwiceWhateverItHolds();
};

namespace {
const QString identifier = "wifi_020000000200_486f6d65_managed_psk"_s;

/// The reply of networks(), plain at every depth.
QVariantMap networks(DaemonClient &client)
{
    return libtactora::dbusArgumentUnpack(client.call("networks").toMap());
}

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
    device.simulator.addService(identifier, {{"Strange"_s, value}});
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
    device.simulator.addService(identifier,
                                {{"IPv4"_s, QVariantMap{{"Method"_s, "dhcp"_s}, {"Strange"_s, value}}}});
    QVERIFY(device.startWithoutRadio());

    const QString first = textOf(device.client.call("getConfiguration", identifier));
    QVERIFY(first.contains("Strange"_s));
    QCOMPARE(textOf(device.client.call("getConfiguration", identifier)), first);
}

void QueriesTest::networksAreListedByIdentifierAfterOneScan()
{
    Operations device;
    device.simulator.addService(home, {{"Name"_s, "Home"_s}});
    device.simulator.addService(cable);
    QVERIFY(device.begin());

    const QVariantMap listed = networks(device.client);
    QCOMPARE(listed.keys(), (QStringList{cable, home}));
    QCOMPARE(listed.value(home).toMap().value("Name"_s).toString(), "Home"_s);
    QCOMPARE(listed.value(home).toMap(),
             libtactora::dbusArgumentUnpack(device.simulator.serviceProperties(home)));
    QCOMPARE(device.changes().count(scan), 1);
    QCOMPARE(device.changes().constFirst(), scan);
}

void QueriesTest::listedNetworksGetIpv6AutoConfiguration()
{
    Operations device;
    device.simulator.addService(home, {{"IPv6"_s, QVariantMap{}}});
    QVERIFY(device.begin());

    const QString toAuto = write(home, "IPv6.Configuration"_s, "{\"Method\": <\"auto\">}"_s);
    networks(device.client);
    QCOMPARE(device.changes(), (QStringList{scan, toAuto}));
    device.simulator.clearCalls();
    device.simulator.removeServiceProperty(home, "IPv6"_s);
    networks(device.client);
    QCOMPARE(device.changes(), (QStringList{scan, toAuto}));
}

void QueriesTest::networksWithIpv6AutoAreLeftAlone()
{
    Operations device;
    device.simulator.addService(home, {{"IPv6"_s, QVariantMap{{"Method"_s, "auto"_s}}}});
    QVERIFY(device.begin());

    networks(device.client);
    QCOMPARE(device.changes(), QStringList(scan));
}

void QueriesTest::failedScanStillListsWhatIsKnown()
{
    Operations device;
    device.simulator.addService(home);
    QVERIFY(device.begin());
    const Fault failing =
        device.simulator.injectFault("net.connman.Technology"_s, "Scan"_s,
                                     FaultKind::error("net.connman.Error.NoCarrier"_s, "No carrier"_s));

    QCOMPARE(networks(device.client).keys(), QStringList(home));
    QVERIFY(device.log().takeProblem("ConnmanTechnology|critical|Failed to asynchronously call Scan on "
                                     "\"/net/connman/technology/wifi\" : \"No carrier\""_s));
}

void QueriesTest::networkThatTheScanFoundIsListedAtOnce()
{
    Operations device;
    QVERIFY(device.begin());
    const QString found = device.simulator.addNetwork({{"ssid"_s, "Den"_s}, {"atOnce"_s, false}});
    device.simulator.setTiming("announce"_s, 100);

    QCOMPARE(networks(device.client).keys(), QStringList(found));
}

void QueriesTest::wpsNetworksAreListedByNameAfterOneScan()
{
    Operations device;
    device.simulator.addService(home, {{"Name"_s, "Home"_s}, {"Security"_s, QStringList{"psk"_s, "wps"_s}}});
    device.simulator.addService("wifi_020000000200_41_managed_psk"_s,
                                {{"Name"_s, "Other"_s}, {"Security"_s, QStringList{"psk"_s, "WPS"_s}}});
    QVERIFY(device.begin());

    QCOMPARE(device.client.call("wpsNetworks").toStringList(), QStringList("Home"_s));
    QCOMPARE(device.changes(), QStringList(scan));
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

QTEST_GUILESS_MAIN(QueriesTest)
#include "QueriesTest.moc"
