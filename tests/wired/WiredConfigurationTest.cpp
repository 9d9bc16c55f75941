#include "EventWait.h"
#include "Kernel.h"
#include "Text.h"
#include "WiredMain.h"
#include "WiredScene.h"

using namespace test_support;

/// What a client changes at the wired network takes effect in the kernel and the resolver, not only in what
/// ConnMan says.
class WiredConfigurationTest : public QObject
{
    Q_OBJECT
private slots:
    void manualAddressIsSetInTheKernel();
    void manualAddressOutlivesConnman();
    void dhcpBringsTheLeaseBack();
    void offTakesTheAddressAway();
    void incompleteManualConfigurationChangesNothing();
    void nameserversReachTheResolver();
    void emptyNameserverListBringsTheNetworksOwnBack();
    void dhcpForgetsTheNameserversSetByHand();
    void ipv6OffSwitchesIpv6OffInTheKernel();
    void ipv6AutoSwitchesIpv6OnWithTheNextLink();
    void disconnectTakesTheAddressAwayAndTellsIt();
    void connectBringsTheAddressBackAndSpeaks();
    void connectOfAConnectedNetworkFailsAndLeavesItUp();
};

namespace {

const QString manualAddress = "198.51.100.99"_s;
const QStringList manualAddresses{manualAddress + "/24"_s};
const QStringList handSetNameservers{"198.51.100.9"_s, "198.51.100.8"_s};
// What the daemon asks because of ConnMan's last signals may find it gone.
const QString connmanIsGone = "ConnmanService.properties|critical|Call to GetProperties failed:"_s;
const QString alreadyConnected =
    "ConnmanService|critical|Failed to asynchronously call Connect on \"/net/connman/service/%1\" : "
    "QDBusError(\"net.connman.Error.AlreadyConnected\", \"Already connected\")"_s;
constexpr int connectFailedSentence = 5;
constexpr int connectedSentence = 6;

QString service()
{
    return WiredLink::service();
}

QStringList addresses()
{
    return kernel::ipv4Addresses(WiredLink::interface());
}

bool ipv6Enabled()
{
    return kernel::ipv6Enabled(WiredLink::interface());
}

bool configureManually(WiredScene &scene)
{
    return scene.client
        .call("configure", service(), "manual"_s, manualAddress, WiredLink::netmask(), WiredLink::gateway())
        .toBool();
}

bool configure(WiredScene &scene, const QString &method)
{
    return scene.client.call("configure", service(), method).toBool();
}

bool configureIpv6(WiredScene &scene, const QString &method)
{
    return scene.client.call("configureIPv6", service(), method).toBool();
}

bool setNameservers(WiredScene &scene, const QStringList &servers)
{
    return scene.client.call("setNameservers", service(), servers).toBool();
}

} // namespace

// The kernel and the resolver's file tell nobody of a change: they are looked at again and again.
#define EVENTUALLY(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, eventTimeoutMs)

void WiredConfigurationTest::manualAddressIsSetInTheKernel()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(configureManually(scene));
    EVENTUALLY(addresses(), manualAddresses);
    EVENTUALLY(kernel::defaultGateway(WiredLink::interface()), WiredLink::gateway());
    const QVariantMap expected{{"Method"_s, "manual"_s},
                               {"Address"_s, manualAddress},
                               {"Netmask"_s, WiredLink::netmask()},
                               {"Gateway"_s, WiredLink::gateway()}};
    QCOMPARE(scene.client.call("getConfiguration", service()).toMap(), expected);
}

void WiredConfigurationTest::manualAddressOutlivesConnman()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(configureManually(scene));
    EVENTUALLY(addresses(), manualAddresses);
    scene.toleratedProblems << connmanIsGone;
    scene.link.stopConnman();
    EVENTUALLY(addresses(), QStringList());
    scene.link.startConnman();
    EVENTUALLY(addresses(), manualAddresses);
    EVENTUALLY(scene.listedService().value("State"_s).toString(), "ready"_s);
    QCOMPARE(scene.client.call("getAddress", service()).toString(), manualAddress);
}

void WiredConfigurationTest::dhcpBringsTheLeaseBack()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    const QStringList lease = addresses();
    QVERIFY(configureManually(scene));
    EVENTUALLY(addresses(), manualAddresses);
    QVERIFY(configure(scene, "dhcp"_s));
    EVENTUALLY(addresses(), lease);
    EVENTUALLY(scene.daemonKnowsTheLease(), true);
}

void WiredConfigurationTest::offTakesTheAddressAway()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(configure(scene, "off"_s));
    EVENTUALLY(addresses(), QStringList());
    QVERIFY(configure(scene, "dhcp"_s));
    EVENTUALLY(scene.daemonKnowsTheLease(), true);
}

void WiredConfigurationTest::incompleteManualConfigurationChangesNothing()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    const QStringList lease = addresses();
    scene.client.clearRecord();
    QVERIFY(!configure(scene, "manual"_s));
    QCOMPARE(scene.client.record(),
             QStringList({"error(\"Invalid parameter, address: ''\")"_s, "configure -> false"_s}));
    QVERIFY(scene.daemon.log().takeProblem("NetworkManager|critical|Invalid address specified: \"\""_s));
    QCOMPARE(addresses(), lease);
    QCOMPARE(subMap(scene.link.connmanProperties(), "IPv4.Configuration"_s),
             (QVariantMap{{"Method"_s, "dhcp"_s}}));
}

void WiredConfigurationTest::nameserversReachTheResolver()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(setNameservers(scene, handSetNameservers));
    EVENTUALLY(kernel::nameservers(), handSetNameservers);
    EVENTUALLY(scene.client.call("getNameservers", service()).toStringList(), handSetNameservers);
}

void WiredConfigurationTest::emptyNameserverListBringsTheNetworksOwnBack()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(setNameservers(scene, handSetNameservers));
    EVENTUALLY(kernel::nameservers(), handSetNameservers);
    QVERIFY(setNameservers(scene, {}));
    EVENTUALLY(kernel::nameservers(), WiredLink::nameservers());
    EVENTUALLY(scene.client.call("getNameservers", service()).toStringList(), WiredLink::nameservers());
}

void WiredConfigurationTest::dhcpForgetsTheNameserversSetByHand()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(setNameservers(scene, handSetNameservers));
    EVENTUALLY(kernel::nameservers(), handSetNameservers);
    QVERIFY(configure(scene, "dhcp"_s));
    EVENTUALLY(kernel::nameservers(), WiredLink::nameservers());
}

void WiredConfigurationTest::ipv6OffSwitchesIpv6OffInTheKernel()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(ipv6Enabled());
    QVERIFY(configureIpv6(scene, "off"_s));
    EVENTUALLY(ipv6Enabled(), false);
    QCOMPARE(scene.client.call("getIPv6Configuration", service()).toMap(),
             (QVariantMap{{"Method"_s, "off"_s}}));
}

// ConnMan 1.41 leaves IPv6 off in the kernel until the link comes up the next time.
void WiredConfigurationTest::ipv6AutoSwitchesIpv6OnWithTheNextLink()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(configureIpv6(scene, "off"_s));
    EVENTUALLY(ipv6Enabled(), false);
    QVERIFY(configureIpv6(scene, "auto"_s));
    QCOMPARE(scene.client.call("getIPv6Configuration", service()).toMap().value("Method"_s).toString(),
             "auto"_s);
    scene.link.unplugCable();
    EVENTUALLY(addresses(), QStringList());
    scene.link.plugCable();
    EVENTUALLY(ipv6Enabled(), true);
}

void WiredConfigurationTest::disconnectTakesTheAddressAwayAndTellsIt()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    scene.client.clearRecord();
    QVERIFY(scene.client.call("disconnect", service()).toBool());
    QCOMPARE(scene.client.record(),
             QStringList({"networkDisconnected(\"%1\")"_s.arg(service()), "disconnect -> true"_s}));
    EVENTUALLY(addresses(), QStringList());
    EVENTUALLY(kernel::nameservers(), QStringList());
    // ConnMan does not tell of changes to a service that it has not announced yet, 0.1 s after it came.
    EVENTUALLY(scene.client.call("activeNetworks").toStringList(), QStringList());
}

void WiredConfigurationTest::connectBringsTheAddressBackAndSpeaks()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    const QString address = scene.client.call("getAddress", service()).toString();
    QVERIFY(scene.client.call("disconnect", service()).toBool());
    EVENTUALLY(addresses(), QStringList());
    scene.client.clearRecord();
    QVERIFY(scene.client.call("connect", service()).toBool());
    QCOMPARE(scene.client.record(),
             QStringList({"networkConnected(\"%1\")"_s.arg(service()), "connect -> true"_s}));
    QVERIFY(scene.speech.waitFor(connectedSentence));
    // A disconnected network is configured by hand with its last address, but no netmask.
    EVENTUALLY(addresses(), QStringList(address + "/32"_s));
    EVENTUALLY(kernel::defaultGateway(WiredLink::interface()), WiredLink::gateway());
}

void WiredConfigurationTest::connectOfAConnectedNetworkFailsAndLeavesItUp()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    const QStringList lease = addresses();
    scene.client.clearRecord();
    QVERIFY(!scene.client.call("connect", service()).toBool());
    QCOMPARE(
        scene.client.record(),
        QStringList({"error(\"Unable to connect network '%1'.\")"_s.arg(service()), "connect -> false"_s}));
    QVERIFY(scene.speech.waitFor(connectFailedSentence));
    QVERIFY(scene.daemon.log().takeProblem(alreadyConnected.arg(service())));
    QCOMPARE(addresses(), lease);
}

WIRED_MAIN(WiredConfigurationTest)

#include "WiredConfigurationTest.moc"
