#include "BusMonitor.h"
#include "EventWait.h"
#include "Scene.h"
#include "Suite.h"
#include "Text.h"

using namespace test_support;

/// The daemon follows the wired link: what it tells of it agrees with what is really set, through every
/// change of the cable and of ConnMan.
class LinkTest : public QObject
{
    Q_OBJECT
private slots:
    void networksListsTheWiredServiceAsConnmanHasIt();
    void addressQueriesAgreeWithWhatIsSet();
    void nameserversAgreeWithWhatIsSet();
    void configurationIsTheLease();
    void wiredServiceIsTheActiveNetwork();
    void listingNetworksAgainAndAgainLeavesTheLinkUp();
    void thereIsNoWifiTechnology();
    void addressIsSpokenPartByPartAndLightsTheLed();
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

void LinkTest::networksListsTheWiredServiceAsConnmanHasIt()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    const QVariantMap listed = scene.listedService();
    const QVariantMap actual = scene.world().connmanProperties();
    QCOMPARE(listed.keys(), actual.keys());
    QCOMPARE(listed.value("State"_s).toString(), "ready"_s);
    QCOMPARE(listed.value("Name"_s).toString(), wiredName);
    for (const QString &key : {"Ethernet"_s, "IPv4"_s, "IPv4.Configuration"_s, "IPv6.Configuration"_s}) {
        QCOMPARE(subMap(listed, key), subMap(actual, key));
    }
}

void LinkTest::addressQueriesAgreeWithWhatIsSet()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    const QString address = scene.client.call("getAddress", scene.world().service()).toString();
    QCOMPARE(scene.world().addresses(), QStringList(address + "/24"_s));
    QCOMPARE(scene.client.call("getNetmask", scene.world().service()).toString(), Surroundings::netmask());
    QCOMPARE(scene.client.call("getGateway", scene.world().service()).toString(), Surroundings::gateway());
    QCOMPARE(scene.world().defaultGateway(), Surroundings::gateway());
}

void LinkTest::nameserversAgreeWithWhatIsSet()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QCOMPARE(scene.client.call("getNameservers", scene.world().service()).toStringList(),
             scene.world().offeredNameservers());
    QCOMPARE(scene.world().nameservers(), scene.world().offeredNameservers());
}

void LinkTest::configurationIsTheLease()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    const QVariantMap expected{{"Method"_s, "dhcp"_s},
                               {"Address"_s, scene.client.call("getAddress", scene.world().service())},
                               {"Netmask"_s, Surroundings::netmask()},
                               {"Gateway"_s, Surroundings::gateway()}};
    QCOMPARE(scene.client.call("getConfiguration", scene.world().service()).toMap(), expected);
}

void LinkTest::wiredServiceIsTheActiveNetwork()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QCOMPARE(scene.client.call("activeNetworks").toStringList(), QStringList(wiredName));
}

// Without a router for IPv6 the service never has an IPv6 method, so every listing sets it anew.
void LinkTest::listingNetworksAgainAndAgainLeavesTheLinkUp()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    const QStringList addresses = scene.world().addresses();
    for (int i = 0; i < 10; ++i) {
        QCOMPARE(scene.listedService().value("State"_s).toString(), "ready"_s);
    }
    QCOMPARE(scene.world().addresses(), addresses);
}

void LinkTest::thereIsNoWifiTechnology()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QCOMPARE(scene.client.call("checkWifiTechnology").toBool(), false);
    QCOMPARE(scene.client.call("getWifiPower").toBool(), false);
}

void LinkTest::addressIsSpokenPartByPartAndLightsTheLed()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    const QString address = scene.client.call("getAddress", scene.world().service()).toString();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.speech().waitFor(ethernetAddressSentence));
    const QVariantMap expected{{"serviceId"_s, 4},
                               {"sentenceId"_s, ethernetAddressSentence},
                               {"arguments"_s, address.split(QLatin1Char('.'))}};
    QCOMPARE(scene.speech().requests(), QVector<QVariantMap>{expected});
}

void LinkTest::unpluggedCableEmptiesTheListAndSwitchesTheLedOff()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    scene.world().unplugCable();
    QVERIFY(scene.waitForLed(LedPattern::off()));
    QCOMPARE(scene.client.call("networks").toMap(), QVariantMap());
    QCOMPARE(scene.client.call("activeNetworks").toStringList(), QStringList());
    QCOMPARE(scene.world().addresses(), QStringList());
}

void LinkTest::cablePluggedInAgainIsAnnouncedAgain()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    scene.world().unplugCable();
    QVERIFY(scene.waitForLed(LedPattern::off()));
    scene.world().plugCable();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.speech().waitFor(ethernetAddressSentence, 2));
    QCOMPARE(scene.speech().requests().size(), 2);
    QVERIFY(scene.daemonKnowsTheLease());
}

void LinkTest::cableThatWasOutAtTheStartIsFollowedWhenItComes()
{
    Scene scene;
    scene.world().startDhcpServer();
    scene.world().startConnman();
    QVERIFY(scene.startDaemon());
    QCOMPARE(scene.client.call("networks").toMap(), QVariantMap());
    scene.world().plugCable();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.daemonKnowsTheLease());
}

void LinkTest::daemonStartedBeforeConnmanCatchesUp()
{
    Scene scene;
    QVERIFY(scene.startDaemon());
    QCOMPARE(scene.client.call("networks").toMap(), QVariantMap());
    scene.world().startDhcpServer();
    scene.world().plugCable();
    scene.world().startConnman();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.daemonKnowsTheLease());
}

void LinkTest::agentIsRegisteredWithEachConnman()
{
    Scene scene;
    BusMonitor registrations("type='method_call',member='RegisterAgent'"_s);
    QVERIFY(scene.bringUp());
    QVERIFY(registrations.waitFor("object path \"/agent\""_s, 1));
    scene.world().killConnman();
    scene.world().startConnman();
    QVERIFY(registrations.waitFor("object path \"/agent\""_s, 2));
}

void LinkTest::connmanThatIsKilledAndComesBackIsFollowedAgain()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    scene.world().killConnman();
    QVERIFY(scene.waitForLed(LedPattern::off()));
    scene.world().startConnman();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    scene.world().unplugCable();
    QVERIFY(scene.waitForLed(LedPattern::off()));
    QCOMPARE(scene.client.call("networks").toMap(), QVariantMap());
    scene.world().plugCable();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.daemonKnowsTheLease());
}

void LinkTest::withoutASpeechServiceTheLedStillTells()
{
    Scene scene;
    scene.world().setSpeechServicePresent(false);
    QVERIFY(scene.bringUp());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.daemon.log().takeProblem(unspoken));
}

static const Suite<LinkTest> suite;

#include "LinkTest.moc"
