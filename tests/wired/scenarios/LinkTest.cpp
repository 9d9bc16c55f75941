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
    void linkFoundOnlineLightsTheLedUnannounced();
    void withoutASpeechServiceTheLedStillTells();
};

namespace {

const QString wiredName = "Wired"_s;
const QString unspoken = "NetworkManager|critical|ERROR: Failed to queue speech-request."_s;

} // namespace

void LinkTest::networksListsTheWiredServiceAsConnmanHasIt()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    const QVariantMap listed = scene.listedService();
    const QVariantMap actual = scene.surroundings.connmanProperties();
    QCOMPARE(listed.keys(), actual.keys());
    QCOMPARE(listed.value("State"_s).toString(), "ready"_s);
    QCOMPARE(listed.value("Name"_s).toString(), wiredName);
    for (const QString &key : {"Ethernet"_s, "IPv4"_s, "IPv4.Configuration"_s, "IPv6.Configuration"_s}) {
        QCOMPARE(listed.value(key).toMap(), actual.value(key).toMap());
    }
}

void LinkTest::addressQueriesAgreeWithWhatIsSet()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    const QString address = scene.client.call("getAddress", scene.surroundings.service()).toString();
    QCOMPARE(scene.surroundings.addresses(), QStringList(address + "/24"_s));
    QCOMPARE(scene.client.call("getNetmask", scene.surroundings.service()).toString(),
             Surroundings::netmask());
    QCOMPARE(scene.client.call("getGateway", scene.surroundings.service()).toString(),
             Surroundings::gateway());
    QCOMPARE(scene.surroundings.defaultGateway(), Surroundings::gateway());
}

void LinkTest::nameserversAgreeWithWhatIsSet()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QCOMPARE(scene.client.call("getNameservers", scene.surroundings.service()).toStringList(),
             scene.surroundings.offeredNameservers());
    QCOMPARE(scene.surroundings.nameservers(), scene.surroundings.offeredNameservers());
}

void LinkTest::configurationIsTheLease()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    const QVariantMap expected{{"Method"_s, "dhcp"_s},
                               {"Address"_s, scene.client.call("getAddress", scene.surroundings.service())},
                               {"Netmask"_s, Surroundings::netmask()},
                               {"Gateway"_s, Surroundings::gateway()}};
    QCOMPARE(scene.client.call("getConfiguration", scene.surroundings.service()).toMap(), expected);
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
    const QStringList addresses = scene.surroundings.addresses();
    for (int i = 0; i < 10; ++i) {
        QCOMPARE(scene.listedService().value("State"_s).toString(), "ready"_s);
    }
    QCOMPARE(scene.surroundings.addresses(), addresses);
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
    const QString address = scene.client.call("getAddress", scene.surroundings.service()).toString();
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
    scene.surroundings.unplugCable();
    QVERIFY(scene.waitForLed(LedPattern::off()));
    QCOMPARE(scene.client.call("networks").toMap(), QVariantMap());
    QCOMPARE(scene.client.call("activeNetworks").toStringList(), QStringList());
    QCOMPARE(scene.surroundings.addresses(), QStringList());
}

void LinkTest::cablePluggedInAgainIsAnnouncedAgain()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    scene.surroundings.unplugCable();
    QVERIFY(scene.waitForLed(LedPattern::off()));
    scene.surroundings.plugCable();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.speech().waitFor(ethernetAddressSentence, 2));
    QCOMPARE(scene.speech().requests().size(), 2);
    QVERIFY(scene.daemonKnowsTheLease());
}

void LinkTest::cableThatWasOutAtTheStartIsFollowedWhenItComes()
{
    Scene scene;
    scene.surroundings.startDhcpServer();
    scene.surroundings.startConnman();
    QVERIFY(scene.startDaemon());
    QCOMPARE(scene.client.call("networks").toMap(), QVariantMap());
    scene.surroundings.plugCable();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.daemonKnowsTheLease());
}

void LinkTest::daemonStartedBeforeConnmanCatchesUp()
{
    Scene scene;
    QVERIFY(scene.startDaemon());
    QCOMPARE(scene.client.call("networks").toMap(), QVariantMap());
    scene.surroundings.startDhcpServer();
    scene.surroundings.plugCable();
    scene.surroundings.startConnman();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.daemonKnowsTheLease());
}

void LinkTest::agentIsRegisteredWithEachConnman()
{
    Scene scene;
    BusMonitor registrations("type='method_call',member='RegisterAgent'"_s);
    QVERIFY(scene.bringUp());
    QVERIFY(registrations.waitFor("object path \"/agent\""_s, 1));
    scene.surroundings.killConnman();
    scene.surroundings.startConnman();
    QVERIFY(registrations.waitFor("object path \"/agent\""_s, 2));
}

void LinkTest::connmanThatIsKilledAndComesBackIsFollowedAgain()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    scene.surroundings.killConnman();
    QVERIFY(scene.waitForLed(LedPattern::off()));
    scene.surroundings.startConnman();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    scene.surroundings.unplugCable();
    QVERIFY(scene.waitForLed(LedPattern::off()));
    QCOMPARE(scene.client.call("networks").toMap(), QVariantMap());
    scene.surroundings.plugCable();
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.daemonKnowsTheLease());
}

void LinkTest::linkFoundOnlineLightsTheLedUnannounced()
{
    Scene scene;
    scene.surroundings.startDhcpServer();
    scene.surroundings.plugCable();
    scene.surroundings.startConnman(Surroundings::OnlineCheck::On);
    QTRY_COMPARE_WITH_TIMEOUT(scene.surroundings.connmanProperties().value("State"_s).toString(), "online"_s,
                              eventTimeoutMs);
    QVERIFY(scene.startDaemon());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QCOMPARE(scene.listedService().value("State"_s).toString(), "online"_s);
    QCOMPARE(scene.speech().requests().size(), 0);
}

void LinkTest::withoutASpeechServiceTheLedStillTells()
{
    Scene scene;
    scene.surroundings.setSpeechServicePresent(false);
    QVERIFY(scene.bringUp());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QVERIFY(scene.daemon.log().takeProblem(unspoken));
}

static const Suite<LinkTest> linkTest;

#include "LinkTest.moc"
