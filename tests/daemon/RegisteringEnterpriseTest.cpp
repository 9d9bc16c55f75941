#include "RegisteringScene.h"
#include "Suite.h"
#include <QTest>

using namespace scene;
using namespace test_support;

/// The provisioning file of an enterprise network.
class RegisteringEnterpriseTest : public QObject
{
    Q_OBJECT
private slots:
    void enterpriseNetworkGetsItsProvisioningFile();
    void provisioningFileIsThereWhenConnmanIsAskedToConnect();
    void failedEnterpriseRegistrationLeavesNoFile();
    void enterpriseValueWithALineBreakIsRefused();
};

void RegisteringEnterpriseTest::enterpriseNetworkGetsItsProvisioningFile()
{
    Operations device;
    QCOMPARE(device.simulator.addNetwork(network("Corp"_s, "ieee8021x"_s)), corp);
    QVERIFY(device.begin());

    QVERIFY(device.client
                .call("registerWiFiWpa2Enterprise", "me"_s, corp, "right secret"_s, "peap"_s, "MSCHAPV2"_s)
                .toBool());
    QCOMPARE(device.daemon.sandbox().connmanFile(corp + ".config"_s),
             QByteArray("[service_peap]\nType=wifi\nName=Corp\nEAP=peap\nPhase2=MSCHAPV2"));
    device.tolerateRefusedAutoConnect();
}

void RegisteringEnterpriseTest::provisioningFileIsThereWhenConnmanIsAskedToConnect()
{
    Operations device;
    device.simulator.addService(corp, {{"Name"_s, "Corp"_s}});
    QVERIFY(device.begin());
    const Fault slow = connectFault(device.simulator, FaultKind::delay(whileConnmanWaitsMs));

    device.client.send("registerWiFiWpa2Enterprise", "me"_s, corp, "secret"_s, "peap"_s, "MSCHAPV2"_s);
    QVERIFY(device.simulator.waitForCall(callOf(corp, "Connect()"_s)));
    QCOMPARE(device.daemon.sandbox().connmanFiles(), QStringList(corp + ".config"_s));
    QCOMPARE(device.client.record(), QStringList());
    QVERIFY(device.client.waitFor("registerWiFiWpa2Enterprise -> true"_s));
    device.tolerateRefusedAutoConnect();
}

void RegisteringEnterpriseTest::failedEnterpriseRegistrationLeavesNoFile()
{
    Operations device;
    device.simulator.addNetwork(network("Corp"_s, "ieee8021x"_s));
    QVERIFY(device.begin());

    QVERIFY(!device.client
                 .call("registerWiFiWpa2Enterprise", "me"_s, corp, "wrong secret"_s, "peap"_s, "MSCHAPV2"_s)
                 .toBool());
    QCOMPARE(device.daemon.sandbox().connmanFiles(), QStringList());
    tolerateRefusedRegistration(device, corp, "connect-failed"_s);
}

void RegisteringEnterpriseTest::enterpriseValueWithALineBreakIsRefused()
{
    Operations device;
    device.simulator.addNetwork(network("Corp"_s, "ieee8021x"_s));
    QVERIFY(device.begin());

    QVERIFY(
        !device.client
             .call("registerWiFiWpa2Enterprise", "me"_s, corp, "secret"_s, "peap\nName=Other"_s, "MSCHAPV2"_s)
             .toBool());
    QCOMPARE(device.client.record(), (QStringList{errorSignal("Invalid parameter, EAP: 'peap\nName=Other'"_s),
                                                  "registerWiFiWpa2Enterprise -> false"_s}));
    QVERIFY(device.log().takeProblem(
        "NetworkSettings|critical|Control character in EAP of configuration file!"_s));
    QCOMPARE(device.daemon.sandbox().connmanFiles(), QStringList());
    QCOMPARE(device.changes(), QStringList());
}

static const Suite<RegisteringEnterpriseTest> registeringEnterpriseTest;
#include "RegisteringEnterpriseTest.moc"
