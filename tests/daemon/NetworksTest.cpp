#include "OperationsScene.h"
#include "Suite.h"
#include <libtactora/DBusArgument.h>
#include <QTest>

using namespace scene;
using namespace test_support;

namespace {
const QString toAuto = write(home, "IPv6.Configuration"_s, "{\"Method\": <\"auto\">}"_s);

/// The reply of networks(), plain at every depth.
QVariantMap networks(DaemonClient &client)
{
    return libtactora::dbusArgumentUnpack(client.call("networks").toMap());
}
} // namespace

/// networks(): what is listed, and the IPv6 configuration that it brings along.
class NetworksTest : public QObject
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
    void connmanThatDiesInTheScanLeavesNoGhosts();
    void networkThatTheScanFoundIsListedAtOnce();
};

void NetworksTest::networksAreListedByIdentifierAfterOneScan()
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

void NetworksTest::networkWithoutIpv6IsSetToAutoOnEveryListing()
{
    Operations device;
    device.simulator.addService(home);
    device.simulator.removeServiceProperty(home, "IPv6"_s);
    QVERIFY(device.begin());

    networks(device.client);
    networks(device.client);
    QCOMPARE(device.changes(), (QStringList{scan, toAuto, scan, toAuto}));
}

void NetworksTest::listedNetworksGetIpv6AutoConfiguration_data()
{
    QTest::addColumn<QVariant>("ipv6");
    QTest::newRow("without a method") << QVariant(QVariantMap{});
    QTest::newRow("manual") << QVariant(QVariantMap{{"Method"_s, "manual"_s}});
    QTest::newRow("off") << QVariant(QVariantMap{{"Method"_s, "off"_s}});
    QTest::newRow("in capitals") << QVariant(QVariantMap{{"Method"_s, "AUTO"_s}});
    QTest::newRow("no dictionary") << QVariant("auto"_s);
}

void NetworksTest::listedNetworksGetIpv6AutoConfiguration()
{
    QFETCH(QVariant, ipv6);
    Operations device;
    device.simulator.addService(home, {{"IPv6"_s, ipv6}});
    QVERIFY(device.begin());

    networks(device.client);
    QCOMPARE(device.changes(), (QStringList{scan, toAuto}));
}

void NetworksTest::listedPropertiesAreThoseAfterTheAutoConfiguration()
{
    Operations device;
    device.simulator.addService(
        home, {{"IPv6"_s, QVariantMap{}}, {"IPv6.Configuration"_s, QVariantMap{{"Method"_s, "off"_s}}}});
    QVERIFY(device.begin());

    const QVariantMap listed = networks(device.client).value(home).toMap();
    QCOMPARE(listed.value("IPv6.Configuration"_s).toMap().value("Method"_s).toString(), "auto"_s);
}

void NetworksTest::refusedAutoConfigurationIsReportedAndTheNetworkListed()
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

void NetworksTest::networksWithIpv6AutoAreLeftAlone()
{
    Operations device;
    device.simulator.addService(home, {{"IPv6"_s, QVariantMap{{"Method"_s, "auto"_s}}}});
    QVERIFY(device.begin());

    networks(device.client);
    QCOMPARE(device.changes(), QStringList(scan));
}

void NetworksTest::failedScanStillListsWhatIsKnown()
{
    Operations device;
    device.simulator.addService(home);
    QVERIFY(device.begin());
    const Fault failing = failingScan(device.simulator);

    QCOMPARE(networks(device.client).keys(), QStringList(home));
    QVERIFY(device.log().takeProblem(scanFailed));
}

void NetworksTest::connmanThatDiesInTheScanLeavesNoGhosts()
{
    Operations device;
    device.simulator.addService(home);
    QVERIFY(device.begin());
    const Fault death =
        device.simulator.injectFault("net.connman.Technology"_s, "Scan"_s, FaultKind::vanish());

    QCOMPARE(networks(device.client).keys(), QStringList());
    QCOMPARE(device.client.record().filter("error"_s), QStringList());
    const QStringList problems = device.log().problems();
    QCOMPARE(problems.size(), 1);
    QVERIFY2(
        problems.constFirst().startsWith("ConnmanTechnology|critical|Failed to asynchronously call Scan"_s),
        qPrintable(problems.constFirst()));
    QVERIFY(device.log().takeProblem(problems.constFirst()));
}

void NetworksTest::networkThatTheScanFoundIsListedAtOnce()
{
    Operations device;
    QVERIFY(device.begin());
    const QString found = device.simulator.addNetwork({{"ssid"_s, "Den"_s}, {"atOnce"_s, false}});
    device.simulator.setTiming("announce"_s, 100);

    QCOMPARE(networks(device.client).keys(), QStringList(found));
}

static const Suite<NetworksTest> networksTest;
#include "NetworksTest.moc"
