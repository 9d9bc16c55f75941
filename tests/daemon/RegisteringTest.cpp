#include "RegisteringScene.h"
#include "Suite.h"
#include <QDBusArgument>
#include <QTest>

using namespace scene;
using namespace test_support;

/// Registering networks: what is common to those with a passphrase, hidden ones and enterprise ones.
class RegisteringTest : public QObject
{
    Q_OBJECT
private slots:
    void registeredNetworkIsPreferredSpokenAndSignalled_data();
    void registeredNetworkIsPreferredSpokenAndSignalled();
    void refusedRegistrationReportsConnmansReason_data();
    void refusedRegistrationReportsConnmansReason();
    void credentialsAreClearedAfterwards_data();
    void credentialsAreClearedAfterwards();
    void openNetworkNeedsNoPassphrase();
    void favouriteFoundAtOnceIsRegisteredAgain();
    void favouriteFoundAtOnceIsConnectedWithTheNewCredentials();
    void favouriteFoundOnlyByTheServiceCheckIsRefused();
    void networkFoundOnlyByTheServiceCheckIsRegistered();
    void twoRegistrationsAtOnceAreBothAnsweredAndCleared();
    void otherClientsAreServedDuringARegistration();
};

void RegisteringTest::registeredNetworkIsPreferredSpokenAndSignalled_data()
{
    QTest::addColumn<QVariantMap>("options");
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("before");
    QTest::addColumn<QVariantList>("after");
    QTest::addColumn<QByteArray>("preference");
    QTest::newRow("passphrase") << network("Den"_s, "psk"_s) << "registerWifi"_s << QVariantList{}
                                << QVariantList{"right secret"_s} << QByteArray("[wifi]\nprefered=Den\n");
    QVariantMap hidden = network("Den"_s, "psk"_s);
    hidden["hidden"_s] = true;
    // Its service has no name that could be preferred.
    QTest::newRow("hidden") << hidden << "registerHiddenWifi"_s << QVariantList{"Den"_s}
                            << QVariantList{"right secret"_s} << QByteArray();
    QTest::newRow("enterprise") << network("Corp"_s, "ieee8021x"_s) << "registerWiFiWpa2Enterprise"_s
                                << QVariantList{"me"_s}
                                << QVariantList{"right secret"_s, "peap"_s, "MSCHAPV2"_s}
                                << QByteArray("[wifi]\nprefered=Corp\n");
}

void RegisteringTest::registeredNetworkIsPreferredSpokenAndSignalled()
{
    QFETCH(QVariantMap, options);
    QFETCH(QString, method);
    QFETCH(QVariantList, before);
    QFETCH(QVariantList, after);
    Operations device;
    const QString identifier = device.simulator.addNetwork(options);
    QVERIFY(device.begin());

    device.client.callForReply(method, before + QVariantList{identifier} + after);
    QCOMPARE(device.client.record(), registered(method, identifier));
    QCOMPARE(spoken(device.simulator), QStringList(sentence(6)));
    QTEST(device.daemon.sandbox().settings("main"_s), "preference");
    const QStringList calls = device.changes();
    QCOMPARE(calls.value(0), autoConnect(identifier, false));
    QCOMPARE(calls.value(1), callOf(identifier, "Connect()"_s));
    device.tolerateRefusedAutoConnect();
    device.log().tolerate("NetworkSettings|critical|Unable to obtain name for service \"%1\""_s.arg(
        servicePath(identifier))); // a hidden network has none
}

void RegisteringTest::refusedRegistrationReportsConnmansReason_data()
{
    QTest::addColumn<QString>("security");
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("before");
    QTest::addColumn<QVariantList>("after");
    QTest::addColumn<QString>("reason");
    QTest::newRow("passphrase") << "psk"_s
                                << "registerWifi"_s << QVariantList{} << QVariantList{"wrong secret"_s}
                                << "invalid-key"_s;
    QTest::newRow("enterprise") << "ieee8021x"_s
                                << "registerWiFiWpa2Enterprise"_s << QVariantList{"me"_s}
                                << QVariantList{"wrong secret"_s, "peap"_s, "MSCHAPV2"_s}
                                << "connect-failed"_s;
}

void RegisteringTest::refusedRegistrationReportsConnmansReason()
{
    QFETCH(QString, security);
    QFETCH(QString, method);
    QFETCH(QVariantList, before);
    QFETCH(QVariantList, after);
    QFETCH(QString, reason);
    const QString failure = failedRegistration(reason);
    Operations device;
    const QString identifier = device.simulator.addNetwork(network("Den"_s, security));
    QVERIFY(device.begin());

    device.client.callForReply(method, before + QVariantList{identifier} + after);
    QVERIFY(device.log().waitFor(failure));
    QCOMPARE(device.client.record(), (QStringList{errorSignal(reason), method + " -> false"_s}));
    QCOMPARE(spoken(device.simulator), QStringList(sentence(5)));
    QCOMPARE(device.changes().filter("Connect()"_s), QStringList(callOf(identifier, "Connect()"_s)));
    QVERIFY(device.simulator.calls().contains(autoConnect(identifier, true)));
    QCOMPARE(device.daemon.sandbox().settings("main"_s), QByteArray());
    QVERIFY(device.log().takeProblem(failure));
    QVERIFY(device.log().takeProblem(reportedError(identifier, reason)));
    QVERIFY(device.log().takeProblem(failedCall("Connect"_s, identifier)));
    device.tolerateRefusedAutoConnect();
}

void RegisteringTest::credentialsAreClearedAfterwards_data()
{
    QTest::addColumn<QString>("secret");
    QTest::addColumn<bool>("isRight");
    QTest::newRow("success") << "right secret" << true;
    QTest::newRow("failure") << "wrong secret" << false;
}

void RegisteringTest::credentialsAreClearedAfterwards()
{
    QFETCH(QString, secret);
    QFETCH(bool, isRight);
    Operations device;
    device.simulator.addNetwork(network("Den"_s, "psk"_s));
    QVERIFY(device.begin());

    QCOMPARE(device.client.call("registerWifi", den, secret).toBool(), isRight);
    QCOMPARE(agentError(device.simulator), noRequest);
    tolerateRefusedRegistration(device, den, "invalid-key"_s);
}

void RegisteringTest::openNetworkNeedsNoPassphrase()
{
    Operations device;
    const QString cafe = device.simulator.addNetwork({{"ssid"_s, "Cafe"_s}, {"security"_s, "none"_s}});
    QVERIFY(device.begin());

    QVERIFY(device.client.call("registerWifi", cafe, QString()).toBool());
    QCOMPARE(device.client.record(), registered("registerWifi"_s, cafe));
    device.tolerateRefusedAutoConnect();
}

void RegisteringTest::favouriteFoundAtOnceIsRegisteredAgain()
{
    Operations device;
    device.simulator.addNetwork(network("Den"_s, "psk"_s));
    QVERIFY(device.begin());
    QVERIFY(device.client.call("registerWifi", den, "right secret"_s).toBool());
    device.client.clearRecord();

    device.client.call("disconnect", den);
    device.client.clearRecord();
    QVERIFY(device.client.call("registerWifi", den, "right secret"_s).toBool());
    QCOMPARE(device.client.record(), registered("registerWifi"_s, den));
    device.tolerateRefusedAutoConnect();
}

void RegisteringTest::favouriteFoundAtOnceIsConnectedWithTheNewCredentials()
{
    Operations device;
    device.simulator.addService(den, {{"Name"_s, "Den"_s}, {"Favorite"_s, true}});
    QVERIFY(device.begin());
    const Fault slow = connectFault(device.simulator, FaultKind::delay(whileConnmanWaitsMs));

    device.client.send("registerWifi", den, "new secret"_s);
    QVERIFY(device.simulator.waitForCall(callOf(den, "Connect()"_s)));
    const SimulatorClient::AgentReply reply = askForPassphrase(device.simulator);
    QCOMPARE(reply.error, QString());
    QCOMPARE(qdbus_cast<QVariantMap>(reply.arguments.value(0)),
             (QVariantMap{{"Passphrase"_s, "new secret"_s}}));
    QVERIFY(device.client.waitFor("registerWifi -> true"_s));
}

void RegisteringTest::favouriteFoundOnlyByTheServiceCheckIsRefused()
{
    Operations device;
    QVERIFY(device.begin());
    device.simulator.setTiming("scan"_s, 1000); // time for the network to come, on a busy machine too
    // Announced only after the first look-up has given up.
    connect(&device.simulator, &SimulatorClient::called, this, [&](const QString &line) {
        if (line == scan && device.simulator.callsStartingWith(scan).size() == 2) {
            device.simulator.addService(den, {{"Name"_s, "Den"_s}, {"Favorite"_s, true}});
        }
    });

    QVERIFY(!device.client.call("registerWifi", den, "secret"_s).toBool());
    QCOMPARE(device.client.record(),
             (QStringList{errorSignal("Network already registered."_s), "registerWifi -> false"_s}));
    QVERIFY(device.log().takeProblem(
        "NetworkManager|critical|Trying to register an already registered network."_s));
    QVERIFY(device.changes().filter("Connect()"_s).isEmpty());
}

void RegisteringTest::networkFoundOnlyByTheServiceCheckIsRegistered()
{
    Operations device;
    QVERIFY(device.begin());
    device.simulator.setTiming("scan"_s, 1000); // time for the network to come, on a busy machine too
    connect(&device.simulator, &SimulatorClient::called, this, [&](const QString &line) {
        if (line == scan && device.simulator.callsStartingWith(scan).size() == 2) {
            device.simulator.addNetwork(network("Den"_s, "psk"_s));
        }
    });

    QVERIFY(device.client.call("registerWifi", den, "right secret"_s).toBool());
    QCOMPARE(device.client.record(), registered("registerWifi"_s, den));
    device.tolerateRefusedAutoConnect();
}

void RegisteringTest::twoRegistrationsAtOnceAreBothAnsweredAndCleared()
{
    Operations device;
    const QString identifier = device.simulator.addNetwork(network("Den"_s, "psk"_s));
    const QString corpIdentifier = device.simulator.addNetwork(network("Corp"_s, "ieee8021x"_s));
    device.simulator.setTiming("association"_s, 500);
    QVERIFY(device.begin());

    device.client.send("registerWifi", identifier, "right secret"_s);
    QVERIFY(device.simulator.waitForCall(callOf(identifier, "Connect()"_s)));
    device.client.send("registerWiFiWpa2Enterprise", "me"_s, corpIdentifier, "right secret"_s, "peap"_s,
                       "MSCHAPV2"_s);
    QTRY_VERIFY_WITH_TIMEOUT(device.client.record().filter("registerWifi -> "_s).size() == 1, eventTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(device.client.record().filter("registerWiFiWpa2Enterprise -> "_s).size() == 1,
                             eventTimeoutMs);
    QCOMPARE(agentError(device.simulator), noRequest);
    device.tolerateRefusedAutoConnect();
    // Which of the two wins is ConnMan's affair.
    for (const QString &loser : {identifier, corpIdentifier}) {
        device.log().tolerate(
            failedCall("Connect"_s, loser,
                       "QDBusError(\"net.connman.Error.OperationAborted\", \"Operation aborted\")"_s));
    }
    device.log().tolerate(failedRegistration(QString()));
}

void RegisteringTest::otherClientsAreServedDuringARegistration()
{
    Operations device;
    const QString identifier = device.simulator.addNetwork(network("Den"_s, "psk"_s));
    QVERIFY(device.begin());
    const Fault slow =
        device.simulator.injectFault("net.connman.Service"_s, "Connect"_s, FaultKind::delay(1500));

    device.client.send("registerWifi", identifier, "right secret"_s);
    QVERIFY(device.simulator.waitForCall(callOf(identifier, "Connect()"_s)));
    DaemonClient other(device.bus.address());
    QCOMPARE(other.call("getHostName").toString(), "printer"_s);
    QCOMPARE(device.client.record(), QStringList());
    QVERIFY(device.client.waitFor("registerWifi -> true"_s));
    device.tolerateRefusedAutoConnect();
}

static const Suite<RegisteringTest> registeringTest;
#include "RegisteringTest.moc"
