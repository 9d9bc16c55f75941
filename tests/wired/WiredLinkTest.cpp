#include "BusMonitor.h"
#include "EventWait.h"
#include "Kernel.h"
#include "Text.h"
#include "WebServer.h"
#include "WiredMain.h"
#include "WiredScene.h"

using namespace test_support;

/// The daemon follows the wired link: what it tells of it agrees with the kernel and the resolver, through
/// every change of the cable and of ConnMan.
class WiredLinkTest : public QObject
{
    Q_OBJECT
private slots:
    void networksListsTheWiredServiceAsConnmanHasIt();
    void addressQueriesAgreeWithTheKernel();
    void nameserversAgreeWithTheResolver();
    void configurationIsTheLease();
    void hardwareAddressIsTheInterfacesOwn();
    void wiredServiceIsTheActiveNetwork();
    void listingNetworksAgainAndAgainLeavesTheLinkUp();
    void thereIsNoWifiTechnology();
    void addressIsSpokenPartByPartAndLightsTheLed();
    void linkFoundOnlineLightsTheLedUnannounced();
    void unpluggedCableEmptiesTheListAndSwitchesTheLedOff();
    void cablePluggedInAgainIsAnnouncedAgain();
    void cableThatWasOutAtTheStartIsFollowedWhenItComes();
    void daemonStartedBeforeConnmanCatchesUp();
    void agentIsRegisteredWithEachConnman();
    void connmanThatIsKilledAndComesBackIsFollowedAgain();
    void withoutASpeechServiceTheLedStillTells();
};

namespace {

const QString wiredName = "Wired"_s;
const QString unspoken = "NetworkManager|critical|ERROR: Failed to queue speech-request."_s;
constexpr int ethernetAddressSentence = 0;

} // namespace

void WiredLinkTest::networksListsTheWiredServiceAsConnmanHasIt()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    const QVariantMap listed = scene.listedService();
    const QVariantMap actual = scene.link.connmanProperties();
    QCOMPARE(listed.keys(), actual.keys());
    QCOMPARE(listed.value("State"_s).toString(), "ready"_s);
    QCOMPARE(listed.value("Name"_s).toString(), wiredName);
    for (const QString &key : {"Ethernet"_s, "IPv4"_s, "IPv4.Configuration"_s, "IPv6.Configuration"_s}) {
        QCOMPARE(subMap(listed, key), subMap(actual, key));
    }
}

void WiredLinkTest::addressQueriesAgreeWithTheKernel()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    const QString address = scene.client.call("getAddress", WiredLink::service()).toString();
    QCOMPARE(kernel::ipv4Addresses(WiredLink::interface()), QStringList(address + "/24"_s));
    QCOMPARE(scene.client.call("getNetmask", WiredLink::service()).toString(), WiredLink::netmask());
    QCOMPARE(scene.client.call("getGateway", WiredLink::service()).toString(), WiredLink::gateway());
    QCOMPARE(kernel::defaultGateway(WiredLink::interface()), WiredLink::gateway());
}

void WiredLinkTest::nameserversAgreeWithTheResolver()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QCOMPARE(scene.client.call("getNameservers", WiredLink::service()).toStringList(),
             WiredLink::nameservers());
    QCOMPARE(kernel::nameservers(), WiredLink::nameservers());
}

void WiredLinkTest::configurationIsTheLease()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    const QVariantMap expected{{"Method"_s, "dhcp"_s},
                               {"Address"_s, scene.client.call("getAddress", WiredLink::service())},
                               {"Netmask"_s, WiredLink::netmask()},
                               {"Gateway"_s, WiredLink::gateway()}};
    QCOMPARE(scene.client.call("getConfiguration", WiredLink::service()).toMap(), expected);
}

void WiredLinkTest::hardwareAddressIsTheInterfacesOwn()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QCOMPARE(scene.client.call("getHwAddress", WiredLink::interface()).toString().toLower(),
             kernel::hardwareAddress(WiredLink::interface()));
}

void WiredLinkTest::wiredServiceIsTheActiveNetwork()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QCOMPARE(scene.client.call("activeNetworks").toStringList(), QStringList(wiredName));
}

// Without a router for IPv6 the service never has an IPv6 method, so every listing sets it anew.
void WiredLinkTest::listingNetworksAgainAndAgainLeavesTheLinkUp()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    const QStringList addresses = kernel::ipv4Addresses(WiredLink::interface());
    for (int i = 0; i < 10; ++i) {
        QCOMPARE(scene.listedService().value("State"_s).toString(), "ready"_s);
    }
    QCOMPARE(kernel::ipv4Addresses(WiredLink::interface()), addresses);
}

void WiredLinkTest::thereIsNoWifiTechnology()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QCOMPARE(scene.client.call("checkWifiTechnology").toBool(), false);
    QCOMPARE(scene.client.call("getWifiPower").toBool(), false);
}

void WiredLinkTest::addressIsSpokenPartByPartAndLightsTheLed()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    const QString address = scene.client.call("getAddress", WiredLink::service()).toString();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.speech.waitFor(ethernetAddressSentence));
    const QVariantMap expected{{"serviceId"_s, 4},
                               {"sentenceId"_s, ethernetAddressSentence},
                               {"arguments"_s, address.split(QLatin1Char('.'))}};
    QCOMPARE(scene.speech.requests(), QVector<QVariantMap>{expected});
}

void WiredLinkTest::linkFoundOnlineLightsTheLedUnannounced()
{
    WiredScene scene;
    const WebServer onlineCheckServer;
    scene.link.startDhcpServer();
    scene.link.plugCable();
    scene.link.startConnman("connman-online.conf"_s);
    QTRY_COMPARE_WITH_TIMEOUT(scene.link.connmanProperties().value("State"_s).toString(), "online"_s,
                              eventTimeoutMs);
    QVERIFY(scene.startDaemon());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QCOMPARE(scene.listedService().value("State"_s).toString(), "online"_s);
    QCOMPARE(scene.speech.requests().size(), 0);
}

void WiredLinkTest::unpluggedCableEmptiesTheListAndSwitchesTheLedOff()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    scene.link.unplugCable();
    QVERIFY(scene.waitForLed(LedPattern::off()));
    QCOMPARE(scene.client.call("networks").toMap(), QVariantMap());
    QCOMPARE(scene.client.call("activeNetworks").toStringList(), QStringList());
    QCOMPARE(kernel::ipv4Addresses(WiredLink::interface()), QStringList());
}

void WiredLinkTest::cablePluggedInAgainIsAnnouncedAgain()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    scene.link.unplugCable();
    QVERIFY(scene.waitForLed(LedPattern::off()));
    scene.link.plugCable();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.speech.waitFor(ethernetAddressSentence, 2));
    QCOMPARE(scene.speech.requests().size(), 2);
    QVERIFY(scene.daemonKnowsTheLease());
}

void WiredLinkTest::cableThatWasOutAtTheStartIsFollowedWhenItComes()
{
    WiredScene scene;
    scene.link.startDhcpServer();
    scene.link.startConnman();
    QVERIFY(scene.startDaemon());
    QCOMPARE(scene.client.call("networks").toMap(), QVariantMap());
    scene.link.plugCable();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.daemonKnowsTheLease());
}

void WiredLinkTest::daemonStartedBeforeConnmanCatchesUp()
{
    WiredScene scene;
    QVERIFY(scene.startDaemon());
    QCOMPARE(scene.client.call("networks").toMap(), QVariantMap());
    scene.link.startDhcpServer();
    scene.link.plugCable();
    scene.link.startConnman();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.daemonKnowsTheLease());
}

void WiredLinkTest::agentIsRegisteredWithEachConnman()
{
    WiredScene scene;
    BusMonitor registrations("type='method_call',member='RegisterAgent'"_s);
    QVERIFY(scene.bringUp());
    QVERIFY(registrations.waitFor("object path \"/agent\""_s, 1));
    scene.link.killConnman();
    scene.link.startConnman();
    QVERIFY(registrations.waitFor("object path \"/agent\""_s, 2));
}

void WiredLinkTest::connmanThatIsKilledAndComesBackIsFollowedAgain()
{
    WiredScene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    scene.link.killConnman();
    BusMonitor announcements("type='signal',member='ServicesChanged'"_s);
    scene.link.startConnman();
    // ConnMan says nothing of a service that comes and goes before it has announced it.
    QVERIFY(announcements.waitFor("member=ServicesChanged"_s, 1));
    scene.link.unplugCable();
    QVERIFY(scene.waitForLed(LedPattern::off()));
    QCOMPARE(scene.client.call("networks").toMap(), QVariantMap());
    scene.link.plugCable();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.daemonKnowsTheLease());
}

void WiredLinkTest::withoutASpeechServiceTheLedStillTells()
{
    WiredScene scene;
    scene.speech.setPresent(false);
    QVERIFY(scene.bringUp());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.daemon.log().takeProblem(unspoken));
}

WIRED_MAIN(WiredLinkTest)

#include "WiredLinkTest.moc"
