#include "OperationsScene.h"
#include "Suite.h"
#include <QTest>

using namespace scene;
using namespace test_support;

/// forgetWifi().
class ForgettingTest : public QObject
{
    Q_OBJECT
private slots:
    void forgottenNetworkIsRemovedFromConnman();
    void forgettingAnEnterpriseNetworkDeletesItsFileFirst();
    void fileAndPreferenceAreGoneBeforeConnmanIsAskedToRemove();
    void fileGoesWithAnIdentifierThatHasTheEnterpriseWord_data();
    void fileGoesWithAnIdentifierThatHasTheEnterpriseWord();
    void forgettingFindsWifiNetworksOnly();
};

void ForgettingTest::forgottenNetworkIsRemovedFromConnman()
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

void ForgettingTest::forgettingAnEnterpriseNetworkDeletesItsFileFirst()
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

void ForgettingTest::fileAndPreferenceAreGoneBeforeConnmanIsAskedToRemove()
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

void ForgettingTest::fileGoesWithAnIdentifierThatHasTheEnterpriseWord_data()
{
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<bool>("goes");
    QTest::newRow("at its end") << corp << true;
    QTest::newRow("inside") << "wifi_020000000200_436f7270_ieee8021x_psk" << true;
    QTest::newRow("in capitals") << "wifi_020000000200_436f7270_managed_IEEE8021X" << false;
    QTest::newRow("not at all") << home << false;
}

void ForgettingTest::fileGoesWithAnIdentifierThatHasTheEnterpriseWord()
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

void ForgettingTest::forgettingFindsWifiNetworksOnly()
{
    Operations device;
    device.simulator.addService(cable);
    QVERIFY(device.begin());

    QVERIFY(!device.client.call("forgetWifi", cable).toBool());
    QVERIFY(device.client.record().contains(errorSignal("Unknown network: '%1'"_s.arg(cable))));
    QVERIFY(device.log().takeProblem(noSuchNetwork(cable)));
    QCOMPARE(device.changes(), QStringList(scan));
}

static const Suite<ForgettingTest> forgettingTest;
#include "ForgettingTest.moc"
