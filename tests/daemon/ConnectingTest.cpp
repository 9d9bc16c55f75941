#include "OperationsScene.h"
#include "Suite.h"
#include <QTest>

using namespace scene;
using namespace test_support;

/// connect(), disconnect() and forgetWifi().
class ConnectingTest : public QObject
{
    Q_OBJECT
private slots:
    void connectedNetworkIsPreferredSpokenAndSignalled();
    void connectedCableIsSpokenAndSignalledButNotPreferred();
    void failedConnectIsReportedAndAutoConnectIsOnAgain();
    void autoConnectOfEveryWifiNetworkIsSwitchedAroundTheConnect();
    void disconnectedNetworkIsNoLongerPreferred();
    void refusedDisconnectStillClearsThePreference();
    void refusedDisconnectLeavesTheLedOn();
    void disconnectedCableLeavesThePreference();
    void preferenceIsClearedBeforeConnmanIsAskedToDisconnect();
    void disconnectOfANetworkThatIsNotConnectedSucceeds();
    void disconnectKeepsThePreferenceForAnotherNetwork();
    void forgottenNetworkIsRemovedFromConnman();
    void forgettingAnEnterpriseNetworkDeletesItsFileFirst();
    void fileAndPreferenceAreGoneBeforeConnmanIsAskedToRemove();
    void fileGoesWithAnIdentifierThatHasTheEnterpriseWord_data();
    void fileGoesWithAnIdentifierThatHasTheEnterpriseWord();
    void forgettingFindsWifiNetworksOnly();
};

namespace {
const QString cafe = "wifi_020000000200_43616665_managed_none"_s;

QVariantMap openCafe()
{
    return {{"ssid"_s, "Cafe"_s}, {"security"_s, "none"_s}};
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

void ConnectingTest::forgottenNetworkIsRemovedFromConnman()
{
    Operations device;
    device.simulator.addService(home, {{"Name"_s, "Home"_s}, {"Favorite"_s, true}});
    device.daemon.sandbox().setSettings("main"_s, homePreferred);
    device.daemon.sandbox().setConnmanFile(home + ".config"_s, "kept: not an enterprise network");
    QVERIFY(device.begin());

    QVERIFY(device.client.call("forgetWifi", home).toBool());
    QCOMPARE(device.client.record(),
             (QStringList{"networkForgot(\"%1\")"_s.arg(home), "forgetWifi -> true"_s}));
    QCOMPARE(device.changes(),
             (QStringList{write(home, "IPv4.Configuration"_s, "{\"Method\": <\"dhcp\">}"_s),
                          callOf(home, "SetProperty(\"Nameservers.Configuration\", <@as []>)"_s),
                          callOf(home, "Remove()"_s)}));
    QCOMPARE(device.daemon.sandbox().settings("main"_s), QByteArray());
    QCOMPARE(device.daemon.sandbox().connmanFiles(), QStringList(home + ".config"_s));
}

void ConnectingTest::forgettingAnEnterpriseNetworkDeletesItsFileFirst()
{
    Operations device;
    device.simulator.addService(corp, {{"Name"_s, "Corp"_s}});
    device.daemon.sandbox().setConnmanFile(corp + ".config"_s, "[service_peap]");
    QVERIFY(device.begin());
    const Fault refused =
        device.simulator.injectFault("net.connman.Service"_s, "Remove"_s,
                                     FaultKind::error("net.connman.Error.Failed"_s, "Input/output error"_s));

    QVERIFY(!device.client.call("forgetWifi", corp).toBool());
    QCOMPARE(device.client.record(),
             (QStringList{errorSignal("Unable to forget wifi-network '%1'."_s.arg(corp)),
                          "forgetWifi -> false"_s}));
    QCOMPARE(device.daemon.sandbox().connmanFiles(), QStringList());
    QVERIFY(device.log().takeProblem(failedCall("Remove"_s, corp)));
}

void ConnectingTest::fileAndPreferenceAreGoneBeforeConnmanIsAskedToRemove()
{
    Operations device;
    device.simulator.addService(corp, {{"Name"_s, "Corp"_s}, {"Favorite"_s, true}});
    device.daemon.sandbox().setConnmanFile(corp + ".config"_s, "[service_peap]");
    device.daemon.sandbox().setSettings("main"_s, "[wifi]\nprefered=Corp\n");
    QVERIFY(device.begin());
    const Fault slow = device.simulator.injectFault("net.connman.Service"_s, "Remove"_s,
                                                    FaultKind::delay(whileConnmanWaitsMs));

    device.client.send("forgetWifi", corp);
    QVERIFY(device.simulator.waitForCall(callOf(corp, "Remove()"_s)));
    QCOMPARE(device.daemon.sandbox().connmanFiles(), QStringList());
    QCOMPARE(device.daemon.sandbox().settings("main"_s), QByteArray());
    QCOMPARE(device.client.record(), QStringList());
    QVERIFY(device.client.waitFor("forgetWifi -> true"_s));
}

void ConnectingTest::fileGoesWithAnIdentifierThatHasTheEnterpriseWord_data()
{
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<bool>("goes");
    QTest::newRow("at its end") << corp << true;
    QTest::newRow("inside") << "wifi_020000000200_436f7270_ieee8021x_psk" << true;
    QTest::newRow("in capitals") << "wifi_020000000200_436f7270_managed_IEEE8021X" << false;
    QTest::newRow("not at all") << home << false;
}

void ConnectingTest::fileGoesWithAnIdentifierThatHasTheEnterpriseWord()
{
    QFETCH(QString, identifier);
    QFETCH(bool, goes);
    const QString file = identifier + ".config"_s;
    Operations device;
    device.simulator.addService(identifier, {{"Favorite"_s, true}});
    device.daemon.sandbox().setConnmanFile(file, "[service_peap]");
    QVERIFY(device.begin());

    QVERIFY(device.client.call("forgetWifi", identifier).toBool());
    QCOMPARE(device.daemon.sandbox().connmanFiles(), goes ? QStringList() : QStringList(file));
}

void ConnectingTest::forgettingFindsWifiNetworksOnly()
{
    Operations device;
    device.simulator.addService(cable);
    QVERIFY(device.begin());

    QVERIFY(!device.client.call("forgetWifi", cable).toBool());
    QVERIFY(device.client.record().contains(errorSignal("Unknown network: '%1'"_s.arg(cable))));
    QVERIFY(device.log().takeProblem(noSuchNetwork(cable)));
    QCOMPARE(device.changes(), QStringList(scan));
}

static const Suite<ConnectingTest> suite;
#include "ConnectingTest.moc"
