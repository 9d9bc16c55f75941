#include "EventWait.h"
#include "Scene.h"
#include "Suite.h"
#include "Text.h"

using namespace test_support;

/// What a client changes at the wired network takes effect in the kernel and the resolver, not only in what
/// ConnMan says.
class ConfigurationTest : public QObject
{
    Q_OBJECT
private slots:
    void manualAddressIsSet();
    void manualAddressOutlivesConnman();
    void dhcpBringsTheLeaseBack();
    void offTakesTheAddressAway();
    void incompleteManualConfigurationChangesNothing();
    void nameserversAreSet();
    void emptyNameserverListBringsTheNetworksOwnBack();
    void dhcpForgetsTheNameserversSetByHand();
    void ipv6OffSwitchesIpv6Off();
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

bool configureManually(Scene &scene)
{
    return scene.client
        .call("configure", scene.surroundings.service(), "manual"_s, manualAddress, Surroundings::netmask(),
              Surroundings::gateway())
        .toBool();
}

bool configure(Scene &scene, const QString &method)
{
    return scene.client.call("configure", scene.surroundings.service(), method).toBool();
}

bool configureIpv6(Scene &scene, const QString &method)
{
    return scene.client.call("configureIPv6", scene.surroundings.service(), method).toBool();
}

bool setNameservers(Scene &scene, const QStringList &servers)
{
    return scene.client.call("setNameservers", scene.surroundings.service(), servers).toBool();
}

} // namespace

// The kernel and the resolver's file tell nobody of a change: they are looked at again and again.
#define EVENTUALLY(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, eventTimeoutMs)

void ConfigurationTest::manualAddressIsSet()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(configureManually(scene));
    EVENTUALLY(scene.surroundings.addresses(), manualAddresses);
    EVENTUALLY(scene.surroundings.defaultGateway(), Surroundings::gateway());
    const QVariantMap expected{{"Method"_s, "manual"_s},
                               {"Address"_s, manualAddress},
                               {"Netmask"_s, Surroundings::netmask()},
                               {"Gateway"_s, Surroundings::gateway()}};
    QCOMPARE(scene.client.call("getConfiguration", scene.surroundings.service()).toMap(), expected);
}

void ConfigurationTest::manualAddressOutlivesConnman()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(configureManually(scene));
    EVENTUALLY(scene.surroundings.addresses(), manualAddresses);
    scene.toleratedProblems << connmanIsGone;
    scene.surroundings.stopConnman();
    EVENTUALLY(scene.surroundings.addresses(), QStringList());
    scene.surroundings.startConnman();
    EVENTUALLY(scene.surroundings.addresses(), manualAddresses);
    EVENTUALLY(scene.listedService().value("State"_s).toString(), "ready"_s);
    QCOMPARE(scene.client.call("getAddress", scene.surroundings.service()).toString(), manualAddress);
}

void ConfigurationTest::dhcpBringsTheLeaseBack()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    const QStringList lease = scene.surroundings.addresses();
    QVERIFY(configureManually(scene));
    EVENTUALLY(scene.surroundings.addresses(), manualAddresses);
    QVERIFY(configure(scene, "dhcp"_s));
    EVENTUALLY(scene.surroundings.addresses(), lease);
    EVENTUALLY(scene.daemonKnowsTheLease(), true);
}

void ConfigurationTest::offTakesTheAddressAway()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(configure(scene, "off"_s));
    EVENTUALLY(scene.surroundings.addresses(), QStringList());
    QVERIFY(configure(scene, "dhcp"_s));
    EVENTUALLY(scene.daemonKnowsTheLease(), true);
}

void ConfigurationTest::incompleteManualConfigurationChangesNothing()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    const QStringList lease = scene.surroundings.addresses();
    scene.client.clearRecord();
    QVERIFY(!configure(scene, "manual"_s));
    QCOMPARE(scene.client.record(),
             QStringList({"error(\"Invalid parameter, address: ''\")"_s, "configure -> false"_s}));
    QVERIFY(scene.daemon.log().takeProblem("NetworkManager|critical|Invalid address specified: \"\""_s));
    QCOMPARE(scene.surroundings.addresses(), lease);
    QCOMPARE(scene.surroundings.connmanProperties().value("IPv4.Configuration"_s).toMap(),
             (QVariantMap{{"Method"_s, "dhcp"_s}}));
}

void ConfigurationTest::nameserversAreSet()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(setNameservers(scene, handSetNameservers));
    EVENTUALLY(scene.surroundings.nameservers(), handSetNameservers);
    EVENTUALLY(scene.client.call("getNameservers", scene.surroundings.service()).toStringList(),
               handSetNameservers);
}

void ConfigurationTest::emptyNameserverListBringsTheNetworksOwnBack()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(setNameservers(scene, handSetNameservers));
    EVENTUALLY(scene.surroundings.nameservers(), handSetNameservers);
    QVERIFY(setNameservers(scene, {}));
    EVENTUALLY(scene.surroundings.nameservers(), scene.surroundings.offeredNameservers());
    EVENTUALLY(scene.client.call("getNameservers", scene.surroundings.service()).toStringList(),
               scene.surroundings.offeredNameservers());
}

void ConfigurationTest::dhcpForgetsTheNameserversSetByHand()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(setNameservers(scene, handSetNameservers));
    EVENTUALLY(scene.surroundings.nameservers(), handSetNameservers);
    QVERIFY(configure(scene, "dhcp"_s));
    EVENTUALLY(scene.surroundings.nameservers(), scene.surroundings.offeredNameservers());
}

void ConfigurationTest::ipv6OffSwitchesIpv6Off()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(scene.surroundings.ipv6Enabled());
    QVERIFY(configureIpv6(scene, "off"_s));
    EVENTUALLY(scene.surroundings.ipv6Enabled(), false);
    QCOMPARE(scene.client.call("getIPv6Configuration", scene.surroundings.service()).toMap(),
             (QVariantMap{{"Method"_s, "off"_s}}));
}

// ConnMan 1.41 leaves IPv6 off in the kernel until the link comes up the next time.
void ConfigurationTest::ipv6AutoSwitchesIpv6OnWithTheNextLink()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(configureIpv6(scene, "off"_s));
    EVENTUALLY(scene.surroundings.ipv6Enabled(), false);
    QVERIFY(configureIpv6(scene, "auto"_s));
    QCOMPARE(scene.client.call("getIPv6Configuration", scene.surroundings.service())
                 .toMap()
                 .value("Method"_s)
                 .toString(),
             "auto"_s);
    scene.surroundings.unplugCable();
    EVENTUALLY(scene.surroundings.addresses(), QStringList());
    scene.surroundings.plugCable();
    EVENTUALLY(scene.surroundings.ipv6Enabled(), true);
}

void ConfigurationTest::disconnectTakesTheAddressAwayAndTellsIt()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    scene.client.clearRecord();
    QVERIFY(scene.client.call("disconnect", scene.surroundings.service()).toBool());
    QCOMPARE(scene.client.record(),
             QStringList({"networkDisconnected(\"%1\")"_s.arg(scene.surroundings.service()),
                          "disconnect -> true"_s}));
    EVENTUALLY(scene.surroundings.addresses(), QStringList());
    EVENTUALLY(scene.surroundings.nameservers(), QStringList());
    // ConnMan does not tell of changes to a service that it has not announced yet, 0.1 s after it came.
    EVENTUALLY(scene.client.call("activeNetworks").toStringList(), QStringList());
}

void ConfigurationTest::connectBringsTheAddressBackAndSpeaks()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    const QString address = scene.client.call("getAddress", scene.surroundings.service()).toString();
    QVERIFY(scene.client.call("disconnect", scene.surroundings.service()).toBool());
    EVENTUALLY(scene.surroundings.addresses(), QStringList());
    scene.client.clearRecord();
    QVERIFY(scene.client.call("connect", scene.surroundings.service()).toBool());
    QCOMPARE(
        scene.client.record(),
        QStringList({"networkConnected(\"%1\")"_s.arg(scene.surroundings.service()), "connect -> true"_s}));
    QVERIFY(scene.speech().waitFor(connectedSentence));
    // A disconnected network is configured by hand with its last address, but no netmask.
    EVENTUALLY(scene.surroundings.addresses(), QStringList(address + "/32"_s));
    EVENTUALLY(scene.surroundings.defaultGateway(), Surroundings::gateway());
}

void ConfigurationTest::connectOfAConnectedNetworkFailsAndLeavesItUp()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    const QStringList lease = scene.surroundings.addresses();
    scene.client.clearRecord();
    QVERIFY(!scene.client.call("connect", scene.surroundings.service()).toBool());
    QCOMPARE(scene.client.record(),
             QStringList({"error(\"Unable to connect network '%1'.\")"_s.arg(scene.surroundings.service()),
                          "connect -> false"_s}));
    QVERIFY(scene.speech().waitFor(connectFailedSentence));
    QVERIFY(scene.daemon.log().takeProblem(alreadyConnected.arg(scene.surroundings.service())));
    QCOMPARE(scene.surroundings.addresses(), lease);
}

static const Suite<ConfigurationTest> configurationTest;

#include "ConfigurationTest.moc"
