#include "OperationsScene.h"
#include "Suite.h"
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
    void networkWithoutIpv6IsSetToAutoOnEveryListing();
    void listedNetworksGetIpv6AutoConfiguration_data();
    void listedNetworksGetIpv6AutoConfiguration();
    void listedPropertiesAreThoseAfterTheAutoConfiguration();
    void refusedAutoConfigurationIsReportedAndTheNetworkListed();
    void networksWithIpv6AutoAreLeftAlone();
    void failedScanStillListsWhatIsKnown();
    void networkThatTheScanFoundIsListedAtOnce();
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
const QString identifier = "wifi_020000000200_486f6d65_managed_psk"_s;

const QString toAuto = write(home, "IPv6.Configuration"_s, "{\"Method\": <\"auto\">}"_s);

/// A scan that finds nothing.
Fault failingScan(SimulatorClient &simulator)
{
    return simulator.injectFault("net.connman.Technology"_s, "Scan"_s,
                                 FaultKind::error("net.connman.Error.NoCarrier"_s, "No carrier"_s));
}
const QString scanFailed = "ConnmanTechnology|critical|Failed to asynchronously call Scan on "
                           "\"/net/connman/technology/wifi\" : \"No carrier\""_s;

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

void QueriesTest::networkWithoutIpv6IsSetToAutoOnEveryListing()
{
    Operations device;
    device.simulator.addService(home);
    device.simulator.removeServiceProperty(home, "IPv6"_s);
    QVERIFY(device.begin());

    networks(device.client);
    networks(device.client);
    QCOMPARE(device.changes(), (QStringList{scan, toAuto, scan, toAuto}));
}

void QueriesTest::listedNetworksGetIpv6AutoConfiguration_data()
{
    QTest::addColumn<QVariant>("ipv6");
    QTest::newRow("without a method") << QVariant(QVariantMap{});
    QTest::newRow("manual") << QVariant(QVariantMap{{"Method"_s, "manual"_s}});
    QTest::newRow("off") << QVariant(QVariantMap{{"Method"_s, "off"_s}});
    QTest::newRow("in capitals") << QVariant(QVariantMap{{"Method"_s, "AUTO"_s}});
    QTest::newRow("no dictionary") << QVariant("auto"_s);
}

void QueriesTest::listedNetworksGetIpv6AutoConfiguration()
{
    QFETCH(QVariant, ipv6);
    Operations device;
    device.simulator.addService(home, {{"IPv6"_s, ipv6}});
    QVERIFY(device.begin());

    networks(device.client);
    QCOMPARE(device.changes(), (QStringList{scan, toAuto}));
}

void QueriesTest::listedPropertiesAreThoseAfterTheAutoConfiguration()
{
    Operations device;
    device.simulator.addService(
        home, {{"IPv6"_s, QVariantMap{}}, {"IPv6.Configuration"_s, QVariantMap{{"Method"_s, "off"_s}}}});
    QVERIFY(device.begin());

    const QVariantMap listed = networks(device.client).value(home).toMap();
    QCOMPARE(listed.value("IPv6.Configuration"_s).toMap().value("Method"_s).toString(), "auto"_s);
}

void QueriesTest::refusedAutoConfigurationIsReportedAndTheNetworkListed()
{
    Operations device;
    device.simulator.addService(home, {{"IPv6"_s, QVariantMap{}}});
    device.simulator.addService(cable);
    QVERIFY(device.begin());
    const Fault refused = device.simulator.injectFault("net.connman.Service"_s, "SetProperty"_s,
                                                       FaultKind::error("net.connman.Error.Failed"_s, "No"_s),
                                                       servicePath(home));

    QCOMPARE(networks(device.client).keys(), (QStringList{cable, home}));
    QCOMPARE(device.client.record().filter("error"_s),
             QStringList(errorSignal("Unable to configure network '%1' with method 'auto'."_s.arg(home))));
    QVERIFY(device.log().takeProblem(
        "ConnmanService.properties|critical|Setting property \"IPv6.Configuration\" failed: \"No\""_s));
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
    const Fault failing = failingScan(device.simulator);

    QCOMPARE(networks(device.client).keys(), QStringList(home));
    QVERIFY(device.log().takeProblem(scanFailed));
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

static const Suite<QueriesTest> suite;
#include "QueriesTest.moc"
