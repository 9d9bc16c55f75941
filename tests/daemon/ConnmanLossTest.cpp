#include "OperationsScene.h"
#include "Suite.h"
#include <QTest>

using namespace scene;
using namespace test_support;

/// ConnMan is killed, without a word to anybody, and comes back.
class ConnmanLossTest : public QObject
{
    Q_OBJECT
private slots:
    void networksOfAConnmanThatWasKilledAreGone();
    void ledsGoOffWithConnman();
    void nothingIsAskedOfAConnmanThatIsGone();
    void preferredNetworkIsJoinedWhenItIsBack();
    void operationOnANetworkOfTheFormerConnmanIsRefused();
    void connectEndsWithConnman();
    void autoConnectComesBackAfterALossInAConnect();
};

namespace {
const QString homeOfTheNewConnman = "wifi_02a7c4030da4_486f6d65_managed_psk"_s;

QVariantMap homeIs(const QString &state)
{
    return {{"Name"_s, "Home"_s}, {"State"_s, state}};
}

/// What an operation on a network asked of a ConnMan that was gone.
void tolerateWhatWasStillAsked(Operations &device, const QString &identifier)
{
    device.tolerateRefusedAutoConnect();
    const QString absent = "The name net.connman was not provided by any .service files"_s;
    device.log().tolerate(
        "ConnmanService|critical|Failed to asynchronously call Connect on \"%1\" : "
        "QDBusError(\"org.freedesktop.DBus.Error.NoReply\", \"Message recipient disconnected from "
        "message bus without replying\")"_s.arg(servicePath(identifier)));
    device.log().tolerate("ConnmanService|critical|Failed to asynchronously call Disconnect on \"%1\" : "
                          "QDBusError(\"org.freedesktop.DBus.Error.ServiceUnknown\", \"%2\")"_s.arg(
                              servicePath(identifier), absent));
    device.log().tolerate(
        "ConnmanService.properties|critical|Call to GetProperties failed: \"%1\""_s.arg(absent));
    for (const QString &property : {"IPv4.Configuration"_s, "AutoConnect"_s}) {
        device.log().tolerate(
            "ConnmanService.properties|critical|Setting property \"%1\" failed: \"%2\""_s.arg(property,
                                                                                              absent));
    }
    device.log().tolerate("ConnmanService.properties|critical|Missing property \"Address\""_s);
    device.log().tolerate("ConnmanService.properties|critical|Missing property \"Gateway\""_s);
}
} // namespace

void ConnmanLossTest::networksOfAConnmanThatWasKilledAreGone()
{
    Operations device;
    device.simulator.addService(home, homeIs("ready"_s));
    QVERIFY(device.begin());
    QCOMPARE(device.client.call("activeNetworks").toStringList(), {"Home"_s});
    device.simulator.setPresent(connman, false);
    device.client.settle();
    QCOMPARE(device.client.call("activeNetworks").toStringList(), QStringList());
}

void ConnmanLossTest::ledsGoOffWithConnman()
{
    Operations device;
    device.simulator.addService(home, homeIs("ready"_s));
    device.simulator.addService(cable, {{"State"_s, "online"_s}});
    QVERIFY(device.begin());
    QVERIFY(device.devices().waitForLed("led8"_s, LedPattern::on()));
    QVERIFY(device.devices().waitForLed("led10"_s, LedPattern::on()));
    device.simulator.setPresent(connman, false);
    QVERIFY(device.devices().waitForLed("led8"_s, LedPattern::off()));
    QVERIFY(device.devices().waitForLed("led10"_s, LedPattern::off()));
}

void ConnmanLossTest::nothingIsAskedOfAConnmanThatIsGone()
{
    Operations device;
    device.daemon.setLoggingRules("ConnmanManager.services=true"_s);
    device.simulator.addService(home, homeIs("ready"_s));
    QVERIFY(device.begin());
    device.simulator.setPresent(connman, false);
    QVERIFY(device.log().waitFor(
        "ConnmanManager.services|debug|Removing service \"%1\""_s.arg(servicePath(home))));
    device.client.settle();
    QCOMPARE(device.log().problems(), QStringList());
    QCOMPARE(device.simulator.calls(), QStringList());
}

void ConnmanLossTest::preferredNetworkIsJoinedWhenItIsBack()
{
    TestDevice device;
    device.daemon.sandbox().setSettings("main"_s, homePreferred);
    device.daemon.sandbox().setSettings("region"_s, regionSweden);
    device.simulator.addService(home, homeIs("ready"_s));
    QVERIFY(device.startAndAttach());
    QVERIFY(device.client.waitFor("powerChanged(true)"_s));
    device.simulator.setPresent(connman, false);
    // The new ConnMan has another identifier for it (the card's address is part of it), and has not joined
    // it.
    device.simulator.removeService(home);
    device.simulator.addService(homeOfTheNewConnman, homeIs("idle"_s));
    const Fault success = device.simulator.injectFault(
        "net.connman.Service"_s, "Connect"_s, FaultKind::reply({}), servicePath(homeOfTheNewConnman), 0);
    device.simulator.setPresent(connman, true);
    device.reportState(homeOfTheNewConnman, "idle"_s);
    QVERIFY(device.simulator.waitForCall(connectCall(homeOfTheNewConnman)));
    QVERIFY(device.client.waitFor(announcement));
}

void ConnmanLossTest::operationOnANetworkOfTheFormerConnmanIsRefused()
{
    Operations device;
    device.simulator.addService(home, homeIs("idle"_s));
    QVERIFY(device.begin());
    device.simulator.setPresent(connman, false);
    device.simulator.removeService(home);
    device.simulator.setPresent(connman, true);
    QVERIFY(device.log().takeProblem("default|critical|WLAN not supported on this board."_s));
    QCOMPARE(device.client.call("connect", home).toBool(), false);
    QCOMPARE(device.client.record().constLast(), "connect -> false"_s);
    QVERIFY(device.client.record().contains(errorSignal("Unknown network: '%1'"_s.arg(home))));
    QVERIFY(device.log().takeProblem(noSuchNetwork(home)));
    QVERIFY(!device.simulator.calls().contains(connectCall(home)));
}

// The wait for ConnMan ends with it, and the daemon goes on.
void ConnmanLossTest::connectEndsWithConnman()
{
    Operations device;
    device.simulator.addService(home, homeIs("idle"_s));
    QVERIFY(device.begin());
    Fault unanswered = connectFault(device.simulator, FaultKind::never());
    device.client.send("connect", home);
    QVERIFY(device.simulator.waitForCall(connectCall(home)));
    device.simulator.setPresent(connman, false);
    QVERIFY(device.client.waitFor("connect -> false"_s));
    QCOMPARE(device.client.call("activeNetworks").toStringList(), QStringList());
    tolerateWhatWasStillAsked(device, home);
}

// ConnMan keeps what it was told: without this, networks that it remembers would never be joined again.
void ConnmanLossTest::autoConnectComesBackAfterALossInAConnect()
{
    Operations device;
    const auto isOn = [&device](const QString &identifier) {
        return device.simulator.serviceProperties(identifier).value("AutoConnect"_s).toBool();
    };
    constexpr int never = -1;
    device.simulator.setTiming("autoConnect"_s, never);
    device.simulator.addService(home, {{"Name"_s, "Home"_s}, {"Favorite"_s, true}, {"AutoConnect"_s, true}});
    device.simulator.addService(den, {{"Name"_s, "Den"_s}});
    QVERIFY(device.begin());
    const Fault loss = connectFault(device.simulator, FaultKind::vanish());
    QCOMPARE(device.client.call("connect", den).toBool(), false);
    device.client.settle();
    QVERIFY(!isOn(home));
    tolerateWhatWasStillAsked(device, den);

    device.simulator.clearCalls();
    device.simulator.setPresent(connman, true);
    QVERIFY(waitUntil([&] { return isOn(home); }));
    device.client.settle();
    QCOMPARE(device.changes().filter("AutoConnect"_s), QStringList(autoConnect(home, true)));
    QVERIFY(device.log().takeProblem("default|critical|WLAN not supported on this board."_s));
}

static const Suite<ConnmanLossTest> connmanLossTest;
#include "ConnmanLossTest.moc"
