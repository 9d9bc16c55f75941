// Connecting and disconnecting: ConnMan's states and answers, and what it asks the agent.

#include "BusClient.h"
#include "ConnmanWire.h"
#include "PrivateBus.h"
#include "SimulatorClient.h"
#include "TestAgent.h"
#include <QDBusObjectPath>
#include <QtTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString ssid = QStringLiteral("Home");
const QString pskId = QStringLiteral("wifi_020000000200_486f6d65_managed_psk");
const QString openId = QStringLiteral("wifi_020000000200_486f6d65_managed_none");
const QString enterpriseId = QStringLiteral("wifi_020000000200_486f6d65_managed_ieee8021x");
const QString hiddenId = QStringLiteral("wifi_020000000200_hidden_managed_psk");
const QString otherId = QStringLiteral("wifi_020000000200_4f74686572_managed_none");
const QString right = QStringLiteral("right passphrase");
const QString pin = QStringLiteral("12345670");

const QString passphrase = QStringLiteral("Passphrase");
const QString connectMethod = QStringLiteral("Connect");
const QString disconnectMethod = QStringLiteral("Disconnect");
const QString failed = QStringLiteral("net.connman.Error.Failed: Input/output error");
const QString aborted = QStringLiteral("net.connman.Error.OperationAborted: Operation aborted");
const QString timedOut = QStringLiteral("net.connman.Error.OperationTimeout: Operation timeout");
const QString invalidArguments = QStringLiteral("net.connman.Error.InvalidArguments: Invalid arguments");
const QString canceled = QStringLiteral("net.connman.Agent.Error.Canceled");

QVariantMap with(const QString &key, const QVariant &value)
{
    return {{key, value}};
}

QString request(const QString &identifier, const char *fields)
{
    return QStringLiteral("RequestInput(objectpath \"/net/connman/service/%1\", {%2})")
        .arg(identifier, QLatin1String(fields));
}

constexpr char pskFields[] = "\"Passphrase\": <{\"Type\": <\"psk\">, \"Requirement\": <\"mandatory\">}>";
} // namespace

class ConnectTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { simulator::registerWireTypes(); }
    void init();
    void cleanup();

    void openNetworkAsksNobody();
    void readyIsToldBeforeTheAddresses();
    void favouriteAsksNobody();
    void rawFavouriteAsksNobody();
    void pskAsksForThePassphrase();
    void wrongPassphraseFailsAndIsReported();
    void nextTryTellsThePreviousPassphrase();
    void rightPassphraseAfterAWrongOneTakesTheErrorAway();
    void unusablePassphraseMayBeRetried();
    void unusablePassphraseWithoutRetryFails();
    void refusalOfTheAgent_data();
    void refusalOfTheAgent();
    void silentAgentTimesOut();
    void agentThatLeavesTimesOut();
    void emptyAnswerIsAskedAgain();
    void answerOfAnotherTypeTimesOut();
    void noAgentIsNotRegistered();

    void wpsOffersBothWays();
    void wpsByPinConnects();
    void wpsByButtonConnects();
    void unusablePinFails();
    void wrongPinTriesUntilTheTimeIsUp();

    void hiddenNetworkHasNoName();
    void hiddenNetworkAppearsUnderItsName();
    void hiddenNetworkByBytesOfItsName();
    void hiddenNetworkThatIsNotThereFails();
    void hiddenNetworkWithoutANameIsRefused();
    void hiddenNetworkRefusedByTheAgent_data();
    void hiddenNetworkRefusedByTheAgent();
    void hiddenNetworkWithAWrongPassphraseFails();

    void enterpriseAsksForIdentityAndPassphrase();
    void wrongIdentityFails();
    void unprovisionedEnterpriseIsRefused();

    void secondConnectIsInProgress();
    void connectedServiceIsAlreadyConnected();
    void disconnectGoesThroughItsStates();
    void idleServiceIsNotConnected();
    void disconnectAbortsTheConnect();
    void disconnectTakesTheQuestionBack();
    void anotherNetworkTakesItsPlace();
    void serviceWithoutAnyIpHasNoCarrier();
    void vanishedNetworkDisconnects();

    void removedNetworkIsForgotten();
    void ethernetCannotBeRemoved();
    void disconnectedByTheUserStaysSo();
    void nextFavouriteFollows();

private:
    QString addNetwork(QVariantMap options = {});
    void registerAgent();
    Answer connectService(const QString &identifier) { return m_client->service(identifier, connectMethod); }

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<BusClient> m_client;
    std::unique_ptr<SimulatorClient> m_simulator;
    std::unique_ptr<TestAgent> m_agent;
};

void ConnectTest::init()
{
    m_bus = std::make_unique<PrivateBus>();
    m_client = std::make_unique<BusClient>(m_bus->address());
    m_simulator = std::make_unique<SimulatorClient>(m_bus->address());
    QVERIFY(m_simulator->isReady());
    m_agent = std::make_unique<TestAgent>(m_client->connection());
    registerAgent();
}

void ConnectTest::cleanup()
{
    m_agent.reset();
    m_simulator.reset();
    m_client.reset();
    m_bus.reset();
}

// "Home" with the right passphrase, announced, unless the options say otherwise.
QString ConnectTest::addNetwork(QVariantMap options)
{
    if (!options.contains(QStringLiteral("ssid"))) {
        options[QStringLiteral("ssid")] = ssid;
    }
    if (!options.contains(QStringLiteral("passphrase"))) {
        options[QStringLiteral("passphrase")] = right;
    }
    const QString identifier = m_simulator->addNetwork(options);
    m_client->waitForSignal(identifier);
    m_client->clear();
    return identifier;
}

void ConnectTest::registerAgent()
{
    const Answer answer = m_client->manager(QStringLiteral("RegisterAgent"),
                                            {QVariant::fromValue(QDBusObjectPath(TestAgent::path))});
    QVERIFY2(!answer.isError, qPrintable(answer.error));
}

void ConnectTest::openNetworkAsksNobody()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForState(openId, QStringLiteral("online")));
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')),
             QStringLiteral("association configuration ready online"));
    QCOMPARE(m_agent->lines(), QStringList());
}

void ConnectTest::readyIsToldBeforeTheAddresses()
{
    addNetwork({{QStringLiteral("security"), QStringLiteral("none")},
                {QStringLiteral("address"), QStringLiteral("192.168.10.77")}});
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForSignal(QStringLiteral("PropertyChanged(\"Nameservers\"")));
    const QStringList told = m_client->signalLines();
    const int ready = told.indexOf(openId + QStringLiteral(" PropertyChanged(\"State\", <\"ready\">)"));
    QVERIFY(ready >= 0);
    QCOMPARE(
        told.mid(ready, 9),
        (QStringList{openId + QStringLiteral(" PropertyChanged(\"State\", <\"ready\">)"),
                     openId + QStringLiteral(" PropertyChanged(\"Favorite\", <true>)"),
                     openId + QStringLiteral(" PropertyChanged(\"Domains\", <@as []>)"),
                     openId + QStringLiteral(" PropertyChanged(\"Proxy\", <{\"Method\": <\"direct\">}>)"),
                     QStringLiteral("wifi PropertyChanged(\"Connected\", <true>)"),
                     QStringLiteral(" PropertyChanged(\"State\", <\"ready\">)"),
                     openId + QStringLiteral(" PropertyChanged(\"IPv4\", <{\"Address\": <\"192.168.10.77\">, "
                                             "\"Gateway\": <\"192.168.10.1\">, \"Method\": <\"dhcp\">, "
                                             "\"Netmask\": <\"255.255.255.0\">}>)"),
                     openId + QStringLiteral(" PropertyChanged(\"IPv6\", <@a{sv} {}>)"),
                     openId + QStringLiteral(" PropertyChanged(\"Nameservers\", <[\"192.168.10.1\"]>)")}));
    QCOMPARE(m_client->property(openId, QStringLiteral("AutoConnect")), QStringLiteral("true"));
}

void ConnectTest::favouriteAsksNobody()
{
    addNetwork();
    m_agent->planInput(with(passphrase, right));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_client->service(pskId, disconnectMethod).text(), QString());
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_agent->lines().size(), 1);
}

void ConnectTest::rawFavouriteAsksNobody()
{
    m_simulator->addService(QStringLiteral("wifi_raw_managed_psk"), with(QStringLiteral("Favorite"), true));
    QCOMPARE(connectService(QStringLiteral("wifi_raw_managed_psk")).text(), QString());
    QCOMPARE(m_agent->lines(), QStringList());
}

void ConnectTest::pskAsksForThePassphrase()
{
    addNetwork();
    m_agent->planInput(with(passphrase, right));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_agent->lines(), QStringList{request(pskId, pskFields)});
    QCOMPARE(m_client->property(pskId, QStringLiteral("Favorite")), QStringLiteral("true"));
}

void ConnectTest::wrongPassphraseFailsAndIsReported()
{
    addNetwork();
    m_agent->planInput(with(passphrase, QStringLiteral("wrong passphrase")));
    QCOMPARE(connectService(pskId).text(), failed);
    QCOMPARE(m_client->states(pskId).join(QLatin1Char(' ')), QStringLiteral("association failure idle"));
    QCOMPARE(m_client->signalLines(QStringLiteral("Error")),
             QStringList{pskId + QStringLiteral(" PropertyChanged(\"Error\", <\"invalid-key\">)")});
    QVERIFY(m_agent->waitForLine(QStringLiteral("Cancel()")));
    QCOMPARE(
        m_agent->lines().mid(1),
        (QStringList{
            QStringLiteral("ReportError(objectpath \"/net/connman/service/%1\", \"invalid-key\")").arg(pskId),
            QStringLiteral("Cancel()")}));
    QCOMPARE(m_client->property(pskId, QStringLiteral("Error")), QStringLiteral("\"invalid-key\""));
    QCOMPARE(m_client->property(pskId, QStringLiteral("Favorite")), QStringLiteral("false"));
}

void ConnectTest::nextTryTellsThePreviousPassphrase()
{
    addNetwork();
    m_agent->planInput(with(passphrase, QStringLiteral("wrong passphrase")));
    QCOMPARE(connectService(pskId).text(), failed);
    m_agent->planInput(with(passphrase, right));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_agent->lines().last(),
             request(pskId,
                     "\"Passphrase\": <{\"Type\": <\"psk\">, \"Requirement\": <\"mandatory\">}>, "
                     "\"PreviousPassphrase\": <{\"Type\": <\"psk\">, \"Requirement\": <\"informational\">, "
                     "\"Value\": <\"wrong passphrase\">}>"));
}

void ConnectTest::rightPassphraseAfterAWrongOneTakesTheErrorAway()
{
    addNetwork();
    m_agent->planInput(with(passphrase, QStringLiteral("wrong passphrase")));
    QCOMPARE(connectService(pskId).text(), failed);
    m_agent->planInput(with(passphrase, right));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_client->signalLines(QStringLiteral("\"Error\"")).last(),
             pskId + QStringLiteral(" PropertyChanged(\"Error\", <\"\">)"));
    QCOMPARE(m_client->property(pskId, QStringLiteral("Error")), QString());
}

void ConnectTest::unusablePassphraseMayBeRetried()
{
    addNetwork();
    m_agent->planInput(with(passphrase, QStringLiteral("short")));
    m_agent->planInput(with(passphrase, right));
    m_agent->planRetry();
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_client->states(pskId).mid(0, 3),
             (QStringList{QStringLiteral("failure"), QStringLiteral("idle"), QStringLiteral("association")}));
    QCOMPARE(m_agent->lines().filter(QStringLiteral("RequestInput")).size(), 2);
}

void ConnectTest::unusablePassphraseWithoutRetryFails()
{
    addNetwork();
    m_agent->planInput(with(passphrase, QStringLiteral("short")));
    QCOMPARE(connectService(pskId).text(), failed);
    QCOMPARE(m_client->states(pskId).join(QLatin1Char(' ')), QStringLiteral("failure idle"));
    QCOMPARE(m_agent->lines().filter(QStringLiteral("Cancel")), QStringList());
}

void ConnectTest::refusalOfTheAgent_data()
{
    QTest::addColumn<QString>("refusal");
    QTest::addColumn<QString>("error");
    QTest::newRow("cancelled by the user") << canceled << aborted;
    QTest::newRow("any other") << QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs") << timedOut;
    QTest::newRow("browser") << QStringLiteral("net.connman.Agent.Error.LaunchBrowser") << timedOut;
}

void ConnectTest::refusalOfTheAgent()
{
    QFETCH(QString, refusal);
    QFETCH(QString, error);
    addNetwork();
    m_agent->planInputError(refusal);
    QCOMPARE(connectService(pskId).text(), error);
    QCOMPARE(m_client->states(pskId), QStringList());
    QCOMPARE(m_client->property(pskId, QStringLiteral("State")), QStringLiteral("\"idle\""));
}

void ConnectTest::silentAgentTimesOut()
{
    addNetwork();
    m_simulator->setTiming(QStringLiteral("agent"), 200);
    m_agent->planInputSilence();
    QCOMPARE(connectService(pskId).text(), timedOut);
}

void ConnectTest::agentThatLeavesTimesOut()
{
    addNetwork();
    BusClient leaving(m_bus->address());
    TestAgent leavingAgent(leaving.connection());
    leavingAgent.planInputSilence();
    QVERIFY(!leaving
                 .manager(QStringLiteral("RegisterAgent"),
                          {QVariant::fromValue(QDBusObjectPath(TestAgent::path))})
                 .isError);
    // A client that has an agent of its own is asked, not the default one.
    const std::unique_ptr<PendingAnswer> ownConnect = leaving.startService(pskId, connectMethod);
    QVERIFY(leavingAgent.waitForLine(QStringLiteral("RequestInput")));
    QVERIFY(!leaving
                 .manager(QStringLiteral("UnregisterAgent"),
                          {QVariant::fromValue(QDBusObjectPath(TestAgent::path))})
                 .isError);
    QVERIFY(leavingAgent.waitForLine(QStringLiteral("Cancel()")));
    QCOMPARE(ownConnect->wait().text(), timedOut);
    QCOMPARE(m_agent->lines(), QStringList());
}

void ConnectTest::emptyAnswerIsAskedAgain()
{
    addNetwork();
    m_agent->planInput({});
    m_agent->planInput(with(passphrase, right));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_agent->lines(), (QStringList{request(pskId, pskFields), request(pskId, pskFields)}));
}

void ConnectTest::answerOfAnotherTypeTimesOut()
{
    addNetwork();
    m_agent->planInput(with(passphrase, 12345678));
    QCOMPARE(connectService(pskId).text(), timedOut);
}

void ConnectTest::noAgentIsNotRegistered()
{
    addNetwork();
    m_client->manager(QStringLiteral("UnregisterAgent"),
                      {QVariant::fromValue(QDBusObjectPath(TestAgent::path))});
    QCOMPARE(connectService(pskId).text(), QStringLiteral("net.connman.Error.NotRegistered: Not registered"));
}

void ConnectTest::wpsOffersBothWays()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("wps")));
    m_agent->planInput(with(passphrase, right));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(
        m_agent->lines(),
        QStringList{request(pskId, "\"Passphrase\": <{\"Type\": <\"psk\">, \"Requirement\": <\"mandatory\">, "
                                   "\"Alternates\": <[\"WPS\"]>}>, "
                                   "\"WPS\": <{\"Type\": <\"wpspin\">, \"Requirement\": <\"alternate\">}>")});
    QCOMPARE(m_client->property(pskId, QStringLiteral("Security")), QStringLiteral("[\"psk\", \"wps\"]"));
}

void ConnectTest::wpsByPinConnects()
{
    addNetwork({{QStringLiteral("security"), QStringLiteral("wps")}, {QStringLiteral("pin"), pin}});
    m_agent->planInput(with(QStringLiteral("WPS"), pin));
    QCOMPARE(connectService(pskId).text(), QString());
}

void ConnectTest::wpsByButtonConnects()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("wps")));
    m_agent->planInput(with(QStringLiteral("WPS"), QString()));
    QCOMPARE(connectService(pskId).text(), QString());
}

void ConnectTest::unusablePinFails()
{
    addNetwork({{QStringLiteral("security"), QStringLiteral("wps")}, {QStringLiteral("pin"), pin}});
    m_agent->planInput(with(QStringLiteral("WPS"), QStringLiteral("123")));
    QCOMPARE(connectService(pskId).text(), failed);
    QVERIFY(m_agent->waitForLine(QStringLiteral("invalid-key")));
}

void ConnectTest::wrongPinTriesUntilTheTimeIsUp()
{
    m_simulator->setTiming(QStringLiteral("connect"), 200);
    addNetwork({{QStringLiteral("security"), QStringLiteral("wps")}, {QStringLiteral("pin"), pin}});
    m_agent->planInput(with(QStringLiteral("WPS"), QStringLiteral("00000000")));
    QCOMPARE(connectService(pskId).text(), aborted);
    QVERIFY(m_client->waitForState(pskId, QStringLiteral("failure")));
    QCOMPARE(m_client->states(pskId).join(QLatin1Char(' ')),
             QStringLiteral("association disconnect idle failure"));
    QCOMPARE(m_agent->lines().filter(QStringLiteral("ReportError")), QStringList());
}

void ConnectTest::hiddenNetworkHasNoName()
{
    QCOMPARE(addNetwork(with(QStringLiteral("hidden"), true)), hiddenId);
    QCOMPARE(m_client->property(hiddenId, QStringLiteral("Name")), QString());
    QCOMPARE(m_client->property(hiddenId, QStringLiteral("Security")), QStringLiteral("[\"psk\"]"));
}

void ConnectTest::hiddenNetworkAppearsUnderItsName()
{
    addNetwork(with(QStringLiteral("hidden"), true));
    m_agent->planInput({{QStringLiteral("Name"), ssid}, {passphrase, right}});
    QCOMPARE(connectService(hiddenId).text(), QString());
    QCOMPARE(m_agent->lines(),
             QStringList{request(
                 hiddenId, "\"Name\": <{\"Type\": <\"string\">, \"Requirement\": <\"mandatory\">, "
                           "\"Alternates\": <[\"SSID\"]>}>, "
                           "\"SSID\": <{\"Type\": <\"ssid\">, \"Requirement\": <\"alternate\">}>, "
                           "\"Passphrase\": <{\"Type\": <\"psk\">, \"Requirement\": <\"mandatory\">}>")});
    QVERIFY(m_client->waitForSignal(QStringLiteral("service/%1\", {\"Type\"").arg(pskId)));
    QCOMPARE(m_client->property(pskId, QStringLiteral("Favorite")), QStringLiteral("true"));
    QCOMPARE(m_client->property(pskId, QStringLiteral("Name")), QStringLiteral("\"Home\""));
    QCOMPARE(m_client->property(hiddenId, QStringLiteral("State")), QStringLiteral("\"idle\""));
}

void ConnectTest::hiddenNetworkByBytesOfItsName()
{
    addNetwork(with(QStringLiteral("hidden"), true));
    m_agent->planInput({{QStringLiteral("SSID"), ssid.toUtf8()}, {passphrase, right}});
    QCOMPARE(connectService(hiddenId).text(), QString());
    QCOMPARE(m_client->property(pskId, QStringLiteral("Favorite")), QStringLiteral("true"));
}

void ConnectTest::hiddenNetworkThatIsNotThereFails()
{
    addNetwork(with(QStringLiteral("hidden"), true));
    m_agent->planInput({{QStringLiteral("Name"), QStringLiteral("Elsewhere")}, {passphrase, right}});
    QCOMPARE(connectService(hiddenId).text(), failed);
}

void ConnectTest::hiddenNetworkWithoutANameIsRefused()
{
    addNetwork(with(QStringLiteral("hidden"), true));
    m_agent->planInput(with(passphrase, right));
    QCOMPARE(connectService(hiddenId).text(), invalidArguments);
}

void ConnectTest::hiddenNetworkRefusedByTheAgent_data()
{
    refusalOfTheAgent_data();
}

void ConnectTest::hiddenNetworkRefusedByTheAgent()
{
    QFETCH(QString, refusal);
    QFETCH(QString, error);
    addNetwork(with(QStringLiteral("hidden"), true));
    m_agent->planInputError(refusal);
    QCOMPARE(connectService(hiddenId).text(), error);
}

void ConnectTest::hiddenNetworkWithAWrongPassphraseFails()
{
    addNetwork(with(QStringLiteral("hidden"), true));
    m_agent->planInput({{QStringLiteral("Name"), ssid}, {passphrase, QStringLiteral("wrong passphrase")}});
    QCOMPARE(connectService(hiddenId).text(), failed);
    QVERIFY(m_agent->waitForLine(
        QStringLiteral("ReportError(objectpath \"/net/connman/service/%1\"").arg(pskId)));
}

void ConnectTest::enterpriseAsksForIdentityAndPassphrase()
{
    addNetwork({{QStringLiteral("security"), QStringLiteral("ieee8021x")},
                {QStringLiteral("identity"), QStringLiteral("me")}});
    m_agent->planInput({{QStringLiteral("Identity"), QStringLiteral("me")}, {passphrase, right}});
    QCOMPARE(connectService(enterpriseId).text(), QString());
    QCOMPARE(m_agent->lines(),
             QStringList{request(
                 enterpriseId,
                 "\"Identity\": <{\"Type\": <\"string\">, \"Requirement\": <\"mandatory\">}>, "
                 "\"Passphrase\": <{\"Type\": <\"passphrase\">, \"Requirement\": <\"mandatory\">}>")});
}

void ConnectTest::wrongIdentityFails()
{
    addNetwork({{QStringLiteral("security"), QStringLiteral("ieee8021x")},
                {QStringLiteral("identity"), QStringLiteral("me")}});
    m_agent->planInput({{QStringLiteral("Identity"), QStringLiteral("you")}, {passphrase, right}});
    QCOMPARE(connectService(enterpriseId).text(), failed);
}

void ConnectTest::unprovisionedEnterpriseIsRefused()
{
    addNetwork(
        {{QStringLiteral("security"), QStringLiteral("ieee8021x")}, {QStringLiteral("provisioned"), false}});
    QCOMPARE(connectService(enterpriseId).text(), invalidArguments);
    QCOMPARE(m_agent->lines(), QStringList());
}

void ConnectTest::secondConnectIsInProgress()
{
    m_simulator->setTiming(QStringLiteral("association"), 60000);
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    const std::unique_ptr<PendingAnswer> first = m_client->startService(openId, connectMethod);
    QVERIFY(m_client->waitForState(openId, QStringLiteral("association")));
    QCOMPARE(connectService(openId).text(), QStringLiteral("net.connman.Error.InProgress: In progress"));
    QVERIFY(!first->hasCome());
}

void ConnectTest::connectedServiceIsAlreadyConnected()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    QCOMPARE(connectService(openId).text(), QString());
    QCOMPARE(connectService(openId).text(),
             QStringLiteral("net.connman.Error.AlreadyConnected: Already connected"));
}

void ConnectTest::disconnectGoesThroughItsStates()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForState(openId, QStringLiteral("online")));
    m_client->clear();
    QCOMPARE(m_client->service(openId, disconnectMethod).text(), QString());
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')),
             QStringLiteral("configuration disconnect idle"));
    QCOMPARE(m_client->property(openId, QStringLiteral("IPv4")), QStringLiteral("@a{sv} {}"));
    QCOMPARE(m_client->property(openId, QStringLiteral("Nameservers")), QStringLiteral("@as []"));
    QCOMPARE(m_client->property(openId, QStringLiteral("Favorite")), QStringLiteral("true"));
}

void ConnectTest::idleServiceIsNotConnected()
{
    addNetwork();
    QCOMPARE(m_client->service(pskId, disconnectMethod).text(),
             QStringLiteral("net.connman.Error.NotConnected: Not connected"));
}

void ConnectTest::disconnectAbortsTheConnect()
{
    m_simulator->setTiming(QStringLiteral("association"), 60000);
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(openId, connectMethod);
    QVERIFY(m_client->waitForState(openId, QStringLiteral("association")));
    QCOMPARE(m_client->service(openId, disconnectMethod).text(), QString());
    QCOMPARE(pending->wait().text(), aborted);
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')), QStringLiteral("association disconnect idle"));
}

void ConnectTest::disconnectTakesTheQuestionBack()
{
    addNetwork();
    m_agent->planInputSilence();
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(pskId, connectMethod);
    QVERIFY(m_agent->waitForLine(QStringLiteral("RequestInput")));
    QCOMPARE(m_client->service(pskId, disconnectMethod).text(),
             QStringLiteral("net.connman.Error.NotConnected: Not connected"));
    QVERIFY(m_agent->waitForLine(QStringLiteral("Cancel()")));
    QCOMPARE(pending->wait().text(), timedOut);
}

void ConnectTest::anotherNetworkTakesItsPlace()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    addNetwork({{QStringLiteral("ssid"), QStringLiteral("Other")},
                {QStringLiteral("security"), QStringLiteral("none")}});
    QCOMPARE(connectService(openId).text(), QString());
    QCOMPARE(connectService(otherId).text(), QString());
    QCOMPARE(m_client->property(openId, QStringLiteral("State")), QStringLiteral("\"idle\""));
    QVERIFY(m_client->waitForState(otherId, QStringLiteral("online")));
}

void ConnectTest::serviceWithoutAnyIpHasNoCarrier()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    const QVariantMap off = with(QStringLiteral("Method"), QStringLiteral("off"));
    QCOMPARE(m_client->setServiceProperty(openId, QStringLiteral("IPv4.Configuration"), off).text(),
             QString());
    QCOMPARE(m_client->setServiceProperty(openId, QStringLiteral("IPv6.Configuration"), off).text(),
             QString());
    QCOMPARE(connectService(openId).text(), QStringLiteral("net.connman.Error.NoCarrier: No carrier"));
}

void ConnectTest::vanishedNetworkDisconnects()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForState(openId, QStringLiteral("online")));
    m_client->clear();
    m_simulator->removeNetwork(ssid);
    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged(@a(oa{sv}) [], [objectpath")));
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')),
             QStringLiteral("configuration disconnect idle"));
}

void ConnectTest::removedNetworkIsForgotten()
{
    addNetwork();
    m_agent->planInput(with(passphrase, right));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_client->service(pskId, QStringLiteral("Remove")).text(), QString());
    QVERIFY(m_client->waitForSignal(pskId + QStringLiteral(" PropertyChanged(\"Favorite\", <false>)")));
    QCOMPARE(m_client->property(pskId, QStringLiteral("State")), QStringLiteral("\"idle\""));
    QCOMPARE(m_client->property(pskId, QStringLiteral("AutoConnect")), QStringLiteral("false"));
    m_agent->planInput(with(passphrase, right));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_agent->lines(), (QStringList{request(pskId, pskFields), request(pskId, pskFields)}));
}

void ConnectTest::ethernetCannotBeRemoved()
{
    m_simulator->setCable(true);
    QCOMPARE(
        m_client->service(QStringLiteral("ethernet_020000000100_cable"), QStringLiteral("Remove")).text(),
        QStringLiteral("net.connman.Error.NotSupported: Not supported"));
}

void ConnectTest::disconnectedByTheUserStaysSo()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    QCOMPARE(connectService(openId).text(), QString());
    QCOMPARE(m_client->service(openId, disconnectMethod).text(), QString());
    m_client->clear();
    QVERIFY(!m_client->technology(QStringLiteral("wifi"), QStringLiteral("Scan")).isError);
    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged")));
    QCOMPARE(m_client->states(openId), QStringList());
}

void ConnectTest::nextFavouriteFollows()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    addNetwork({{QStringLiteral("ssid"), QStringLiteral("Other")},
                {QStringLiteral("security"), QStringLiteral("none")}});
    QCOMPARE(connectService(openId).text(), QString());
    QCOMPARE(connectService(otherId).text(), QString());
    m_client->clear();
    QCOMPARE(m_client->service(otherId, disconnectMethod).text(), QString());
    QVERIFY(m_client->waitForState(openId, QStringLiteral("online")));
}

QTEST_GUILESS_MAIN(ConnectTest)
#include "ConnectTest.moc"
