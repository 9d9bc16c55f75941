#include "RegisteringScene.h"
#include "Suite.h"
#include <QTest>

using namespace scene;
using namespace test_support;

/// Registering networks by WPS.
class RegisteringWpsTest : public QObject
{
    Q_OBJECT
private slots:
    void wpsNetworkIsPreferredButNotSpoken();
    void wpsNetworkFoundOnlyAtTheSecondLookIsRegistered();
    void failedWpsIsReportedByName();
    void favouriteIsRefusedByWps();
    void credentialsAreClearedAfterWpsWithoutNetwork();
};

void RegisteringWpsTest::wpsNetworkIsPreferredButNotSpoken()
{
    Operations device;
    const QString identifier = device.simulator.addNetwork(network("Den"_s, "wps"_s));
    QVERIFY(device.begin());

    QVERIFY(device.client.call("registerWifiWps", identifier, "12345670"_s).toBool());
    QCOMPARE(device.client.record(), registered("registerWifiWps"_s, identifier));
    QCOMPARE(device.daemon.sandbox().settings("main"_s), QByteArray("[wifi]\nprefered=Den\n"));
    QCOMPARE(spoken(device.simulator), QStringList());
    QCOMPARE(device.changes(), (QStringList{autoConnect(identifier, false), callOf(identifier, "Connect()"_s),
                                            autoConnect(identifier, true)}));
    QCOMPARE(agentError(device.simulator), noRequest);
    device.tolerateRefusedAutoConnect();
}

void RegisteringWpsTest::wpsNetworkFoundOnlyAtTheSecondLookIsRegistered()
{
    Operations device;
    QVERIFY(device.begin());
    device.simulator.setTiming("scan"_s, 1000); // time for the network to come, on a busy machine too
    connect(&device.simulator, &SimulatorClient::called, this, [&](const QString &line) {
        if (line == scan && device.simulator.callsStartingWith(scan).size() == 2) {
            device.simulator.addNetwork(network("Den"_s, "wps"_s));
        }
    });

    QVERIFY(device.client.call("registerWifiWps", den, "12345670"_s).toBool());
    QCOMPARE(device.client.record(), registered("registerWifiWps"_s, den));
    QCOMPARE(device.changes().count(scan), 2);
    device.tolerateRefusedAutoConnect();
}

void RegisteringWpsTest::failedWpsIsReportedByName()
{
    Operations device;
    const QString identifier = device.simulator.addNetwork(network("Den"_s, "wps"_s));
    QVERIFY(device.begin());
    const Fault refused =
        device.simulator.injectFault("net.connman.Service"_s, "Connect"_s,
                                     FaultKind::error("net.connman.Error.Failed"_s, "Input/output error"_s));

    QVERIFY(!device.client.call("registerWifiWps", identifier, "12345670"_s).toBool());
    QCOMPARE(device.client.record(),
             (QStringList{errorSignal("Unable to register network 'Den' using WPS."_s),
                          "registerWifiWps -> false"_s}));
    QVERIFY(device.log().takeProblem(
        "NetworkManager|critical|Unable to register to network \"Den\" using WPS."_s));
    QVERIFY(device.log().takeProblem(failedCall("Connect"_s, identifier)));
    QVERIFY(device.changes().contains(autoConnect(identifier, true)));
    device.tolerateRefusedAutoConnect();
}

void RegisteringWpsTest::favouriteIsRefusedByWps()
{
    Operations device;
    device.simulator.addService(den, {{"Favorite"_s, true}});
    QVERIFY(device.begin());

    QVERIFY(!device.client.call("registerWifiWps", den).toBool());
    QCOMPARE(device.client.record(),
             (QStringList{errorSignal("Network already registered."_s), "registerWifiWps -> false"_s}));
    QVERIFY(device.log().takeProblem("NetworkManager|critical|Network already registered."_s));
    QCOMPARE(device.changes(), QStringList());
}

void RegisteringWpsTest::credentialsAreClearedAfterWpsWithoutNetwork()
{
    Operations device;
    QVERIFY(device.begin());

    QVERIFY(!device.client.call("registerWifiWps", QString(), "12345670"_s).toBool());
    QCOMPARE(agentError(device.simulator), noRequest);
    QVERIFY(
        device.log().takeProblem("NetworkManager|critical|Connect to any WPS network isn't supported."_s));
}

static const Suite<RegisteringWpsTest> registeringWpsTest;
#include "RegisteringWpsTest.moc"
