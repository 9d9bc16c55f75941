#include "OperationsScene.h"
#include "Suite.h"
#include <QTest>

using namespace scene;
using namespace test_support;

/// connect() and disconnect().
class ConnectingTest : public QObject
{
    Q_OBJECT
private slots:
    void connectedNetworkIsPreferredSpokenAndSignalled();
    void connectedCableIsSpokenAndSignalledButNotPreferred();
    void failedConnectIsReportedAndAutoConnectIsOnAgain();
    void autoConnectOfEveryWifiNetworkIsSwitchedAroundTheConnect();
    void autoConnectOfANetworkThatWasAwayAfterwardsIsOnWhenItIsBack();
    void autoConnectOfANetworkThatWasForgottenMeanwhileStaysAlone();
    void disconnectedNetworkIsNoLongerPreferred();
    void refusedDisconnectStillClearsThePreference();
    void refusedDisconnectLeavesTheLedOn();
    void disconnectedCableLeavesThePreference();
    void preferenceIsClearedBeforeConnmanIsAskedToDisconnect();
    void disconnectOfANetworkThatIsNotConnectedSucceeds();
    void disconnectKeepsThePreferenceForAnotherNetwork();
};

namespace {
const QString cafe = "wifi_020000000200_43616665_managed_none"_s;

QVariantMap openCafe()
{
    return {{"ssid"_s, "Cafe"_s}, {"security"_s, "none"_s}};
}

/// Home is remembered, and out of reach by the time "Den" is connected.
bool loseHomeWhileDenIsConnected(Operations &device)
{
    device.simulator.addService(home, {{"Name"_s, "Home"_s}, {"Favorite"_s, true}, {"AutoConnect"_s, true}});
    device.simulator.addService(den, {{"Name"_s, "Den"_s}});
    device.tolerateRefusedAutoConnect();
    const bool begun = device.begin();
    const Fault slow = connectFault(device.simulator, FaultKind::reply({}).after(4000));
    device.client.send("connect", den);
    const bool connecting = device.simulator.waitForCall(connectCall(den));
    device.simulator.removeService(home);
    return begun && connecting && device.client.waitFor("connect -> true"_s);
}

} // namespace

void ConnectingTest::connectedNetworkIsPreferredSpokenAndSignalled()
{
    Operations device;
    QCOMPARE(device.simulator.addNetwork(openCafe()), cafe);
    QVERIFY(device.begin());

    QVERIFY(device.client.call("connect", cafe).toBool());
    QCOMPARE(device.client.record(),
             (QStringList{"networkConnected(\"%1\")"_s.arg(cafe), "connect -> true"_s}));
    QCOMPARE(device.changes(),
             (QStringList{autoConnect(cafe, false), callOf(cafe, "Connect()"_s), autoConnect(cafe, true)}));
    QCOMPARE(spoken(device.simulator), QStringList(sentence(6)));
    QCOMPARE(device.daemon.sandbox().settings("main"_s), QByteArray("[wifi]\nprefered=Cafe\n"));
    device.tolerateRefusedAutoConnect();
}

void ConnectingTest::connectedCableIsSpokenAndSignalledButNotPreferred()
{
    Operations device;
    device.simulator.addService(cable, {{"Name"_s, "Wired"_s}});
    QVERIFY(device.begin());
    const Fault success = connectFault(device.simulator, FaultKind::reply({}));

    QVERIFY(device.client.call("connect", cable).toBool());
    QCOMPARE(device.client.record(),
             (QStringList{"networkConnected(\"%1\")"_s.arg(cable), "connect -> true"_s}));
    QCOMPARE(device.changes(), QStringList(callOf(cable, "Connect()"_s)));
    QCOMPARE(spoken(device.simulator), QStringList(sentence(6)));
    QCOMPARE(device.daemon.sandbox().settings("main"_s), QByteArray());
}

void ConnectingTest::failedConnectIsReportedAndAutoConnectIsOnAgain()
{
    Operations device;
    device.simulator.addNetwork(openCafe());
    QVERIFY(device.begin());
    const Fault refused =
        device.simulator.injectFault("net.connman.Service"_s, "Connect"_s,
                                     FaultKind::error("net.connman.Error.Failed"_s, "Input/output error"_s));

    QVERIFY(!device.client.call("connect", cafe).toBool());
    QCOMPARE(device.client.record(),
             (QStringList{errorSignal("Unable to connect network '%1'."_s.arg(cafe)), "connect -> false"_s}));
    QCOMPARE(device.changes(),
             (QStringList{autoConnect(cafe, false), callOf(cafe, "Connect()"_s), autoConnect(cafe, true)}));
    QCOMPARE(spoken(device.simulator), QStringList(sentence(5)));
    QCOMPARE(device.daemon.sandbox().settings("main"_s), QByteArray());
    QVERIFY(device.log().takeProblem(failedCall("Connect"_s, cafe)));
    device.tolerateRefusedAutoConnect();
}

void ConnectingTest::autoConnectOfEveryWifiNetworkIsSwitchedAroundTheConnect()
{
    Operations device;
    device.simulator.addNetwork(openCafe());
    device.simulator.addService(home);
    device.simulator.addService(cable);
    QVERIFY(device.begin());

    QVERIFY(device.client.call("connect", cafe).toBool());
    const QStringList calls = device.changes();
    QCOMPARE(calls.size(), 5);
    // The registry has no order.
    QCOMPARE(QSet<QString>({calls[0], calls[1]}),
             QSet<QString>({autoConnect(cafe, false), autoConnect(home, false)}));
    QCOMPARE(calls[2], callOf(cafe, "Connect()"_s));
    QCOMPARE(QSet<QString>({calls[3], calls[4]}),
             QSet<QString>({autoConnect(cafe, true), autoConnect(home, true)}));
    device.tolerateRefusedAutoConnect();
}

void ConnectingTest::autoConnectOfANetworkThatWasAwayAfterwardsIsOnWhenItIsBack()
{
    Operations device;
    QVERIFY(loseHomeWhileDenIsConnected(device));

    device.simulator.clearCalls();
    device.simulator.addService(home, {{"Name"_s, "Home"_s}, {"Favorite"_s, true}, {"AutoConnect"_s, false}});
    QVERIFY(device.simulator.waitForCall(autoConnect(home, true)));
    device.client.settle();
    QCOMPARE(device.changes(), QStringList(autoConnect(home, true)));
}

void ConnectingTest::autoConnectOfANetworkThatWasForgottenMeanwhileStaysAlone()
{
    Operations device;
    QVERIFY(loseHomeWhileDenIsConnected(device));

    device.simulator.clearCalls();
    device.simulator.addService(home, {{"Name"_s, "Home"_s}, {"Favorite"_s, false}});
    QVERIFY(device.simulator.waitForCall(callOf(home, "GetProperties()"_s)));
    device.client.settle();
    QCOMPARE(device.changes(), QStringList());
}

void ConnectingTest::disconnectedNetworkIsNoLongerPreferred()
{
    Operations device;
    device.simulator.addNetwork(openCafe());
    QVERIFY(device.begin());
    QVERIFY(device.client.call("connect", cafe).toBool());
    QVERIFY(device.devices().waitForLed("led8"_s, LedPattern::on()));
    device.tolerateRefusedAutoConnect();
    device.client.clearRecord();
    device.simulator.clearCalls();

    QVERIFY(device.client.call("disconnect", cafe).toBool());
    QCOMPARE(device.client.record(),
             (QStringList{"networkDisconnected(\"%1\")"_s.arg(cafe), "disconnect -> true"_s}));
    QCOMPARE(device.devices().led("led8"_s), LedPattern::off());
    QCOMPARE(device.daemon.sandbox().settings("main"_s), QByteArray());
    const QStringList calls = device.changes();
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls[0], callOf(cafe, "Disconnect()"_s));
    QVERIFY2(calls[1].startsWith(callOf(cafe, "SetProperty(\"IPv4.Configuration\""_s)), qPrintable(calls[1]));
    QVERIFY(calls[1].contains("\"Method\": <\"manual\">"_s) && !calls[1].contains("Netmask"_s));
    device.tolerateMissingAddress();
}

void ConnectingTest::refusedDisconnectStillClearsThePreference()
{
    Operations device;
    device.simulator.addService(home, {{"Name"_s, "Home"_s}});
    device.daemon.sandbox().setSettings("main"_s, homePreferred);
    QVERIFY(device.begin());
    const Fault refused =
        device.simulator.injectFault("net.connman.Service"_s, "Disconnect"_s,
                                     FaultKind::error("net.connman.Error.Failed"_s, "Input/output error"_s));

    QVERIFY(!device.client.call("disconnect", home).toBool());
    QCOMPARE(device.client.record(),
             (QStringList{errorSignal("Unable to disconnect network '%1'."_s.arg(home)),
                          "disconnect -> false"_s}));
    QCOMPARE(device.daemon.sandbox().settings("main"_s), QByteArray());
    QVERIFY(device.log().takeProblem(failedCall("Disconnect"_s, home)));
    device.tolerateMissingAddress();
}

void ConnectingTest::refusedDisconnectLeavesTheLedOn()
{
    Operations device;
    device.simulator.addService(home, {{"Name"_s, "Home"_s}});
    QVERIFY(device.begin());
    device.reportState(home, "ready"_s);
    const Fault refused =
        device.simulator.injectFault("net.connman.Service"_s, "Disconnect"_s, connectRefusal());

    QVERIFY(!device.client.call("disconnect", home).toBool());
    QCOMPARE(device.devices().led("led8"_s), LedPattern::on());
    device.log().tolerate(failedCall("Disconnect"_s, home));
    device.tolerateMissingAddress();
}

void ConnectingTest::disconnectedCableLeavesThePreference()
{
    Operations device;
    device.simulator.addService(cable, {{"Name"_s, "Home"_s}});
    device.daemon.sandbox().setSettings("main"_s, homePreferred);
    QVERIFY(device.begin());

    QVERIFY(device.client.call("disconnect", cable).toBool());
    QCOMPARE(device.client.record(),
             (QStringList{"networkDisconnected(\"%1\")"_s.arg(cable), "disconnect -> true"_s}));
    QCOMPARE(device.daemon.sandbox().settings("main"_s), homePreferred);
    device.tolerateMissingAddress();
}

void ConnectingTest::preferenceIsClearedBeforeConnmanIsAskedToDisconnect()
{
    Operations device;
    device.simulator.addService(home, {{"Name"_s, "Home"_s}});
    device.daemon.sandbox().setSettings("main"_s, homePreferred);
    QVERIFY(device.begin());
    const Fault slow = device.simulator.injectFault("net.connman.Service"_s, "Disconnect"_s,
                                                    FaultKind::delay(whileConnmanWaitsMs));

    device.client.send("disconnect", home);
    QVERIFY(device.simulator.waitForCall(callOf(home, "Disconnect()"_s)));
    QCOMPARE(device.daemon.sandbox().settings("main"_s), QByteArray());
    QCOMPARE(device.client.record(), QStringList());
    QVERIFY(device.client.waitFor("disconnect -> true"_s));
    device.tolerateMissingAddress();
}

void ConnectingTest::disconnectOfANetworkThatIsNotConnectedSucceeds()
{
    Operations device;
    device.simulator.addNetwork(openCafe());
    QVERIFY(device.begin());

    QVERIFY(device.client.call("disconnect", cafe).toBool());
    QCOMPARE(device.changes().constFirst(), callOf(cafe, "Disconnect()"_s));
    QVERIFY(device.changes().constLast().contains(
        "<{\"Address\": <\"\">, \"Gateway\": <\"\">, \"Method\": <\"manual\">}>"_s));
    device.tolerateMissingAddress();
}

void ConnectingTest::disconnectKeepsThePreferenceForAnotherNetwork()
{
    Operations device;
    device.simulator.addNetwork(openCafe());
    device.daemon.sandbox().setSettings("main"_s, homePreferred);
    QVERIFY(device.begin());

    QVERIFY(device.client.call("disconnect", cafe).toBool());
    QCOMPARE(device.daemon.sandbox().settings("main"_s), homePreferred);
    device.tolerateMissingAddress();
}

static const Suite<ConnectingTest> connectingTest;
#include "ConnectingTest.moc"
