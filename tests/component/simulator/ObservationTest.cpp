// What a script sees of the device: calls, speech, agents; and that values of any type get through unchanged.

#include "ConnmanWire.h"
#include "DeviceFixture.h"
#include "GVariantText.h"
#include "Suite.h"
#include "TestAgent.h"
#include <QDBusMetaType>
#include <QDBusSignature>
#include <QDBusVariant>
#include <QMap>
#include <QSignalSpy>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString rawId = QStringLiteral("wifi_raw_managed_psk");
const QString configurationManager = QStringLiteral("com.tactora.ConfigurationManager");
const QString speech = QStringLiteral("com.tactora.Speech");
} // namespace

class ObservationTest : public DeviceFixture
{
    Q_OBJECT

private slots:
    void rawValuesTravelUnchanged_data();
    void rawValuesTravelUnchanged();
    void rendersCalls_data();
    void rendersCalls();
    void recordsCallsOnceAndForgets();
    void tellsOfEachCall();
    void standardInterfacesAreNotRecorded();
    void recordsSpeech();
    void answersWithTheSerialNumber();
    void answersWithAnyConfiguration();
    void listsAgents();
    void callsTheAgent();
    void tellsTheAgentsRefusal();
    void tellsThatThereIsNoAgent();
};

void ObservationTest::rawValuesTravelUnchanged_data()
{
    qDBusRegisterMetaType<QMap<QString, QString>>();
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    const QVariantMap empty;
    QTest::newRow("y") << QVariant::fromValue<uchar>(64) << QStringLiteral("byte 0x40");
    QTest::newRow("q") << QVariant::fromValue<ushort>(7) << QStringLiteral("uint16 7");
    QTest::newRow("x") << QVariant(qlonglong(-7)) << QStringLiteral("int64 -7");
    QTest::newRow("d") << QVariant(1.5) << QStringLiteral("1.5");
    QTest::newRow("o") << QVariant::fromValue(QDBusObjectPath("/a")) << QStringLiteral("objectpath \"/a\"");
    QTest::newRow("g") << QVariant::fromValue(QDBusSignature(QStringLiteral("a{sv}")))
                       << QStringLiteral("signature \"a{sv}\"");
    QTest::newRow("ay") << QVariant(QByteArray("\x01\xff")) << QStringLiteral("[byte 0x01, 0xff]");
    QTest::newRow("ai") << QVariant::fromValue(QList<int>{1, -2}) << QStringLiteral("[1, -2]");
    QTest::newRow("empty ai") << QVariant::fromValue(QList<int>()) << QStringLiteral("@ai []");
    QTest::newRow("ao") << QVariant::fromValue(
                               QList<QDBusObjectPath>{QDBusObjectPath("/a"), QDBusObjectPath("/b")})
                        << QStringLiteral("[objectpath \"/a\", \"/b\"]");
    QTest::newRow("(oa{sv})") << QVariant::fromValue(simulator::ObjectRecord{QDBusObjectPath("/a"), {}})
                              << QStringLiteral("(objectpath \"/a\", @a{sv} {})");
    QTest::newRow("a{sv}") << QVariant(
                                  QVariantMap{{QStringLiteral("k"), QVariantMap{{QStringLiteral("i"), 1}}}})
                           << QStringLiteral("{\"k\": <{\"i\": <1>}>}");
    QTest::newRow("empty a{sv}") << QVariant(empty) << QStringLiteral("@a{sv} {}");
    QTest::newRow("v") << QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(3))))
                       << QStringLiteral("<<3>>");
    QTest::newRow("av") << QVariant(QVariantList{1, QStringLiteral("x")}) << QStringLiteral("[<1>, <\"x\">]");
    QTest::newRow("a{ss}") << QVariant::fromValue(
                                  QMap<QString, QString>{{QStringLiteral("k"), QStringLiteral("v")}})
                           << QStringLiteral("{\"k\": \"v\"}");
}

// There and back, twice: as a property from GetProperties, in a signal, and once more from GetProperties.
void ObservationTest::rawValuesTravelUnchanged()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    const QString property = QStringLiteral("Raw");
    m_simulator->addService(rawId, {{property, value}});
    QCOMPARE(m_client->property(rawId, property), text);
    m_simulator->setServiceProperty(rawId, property, value);
    QVERIFY(
        m_client->waitForSignal(QStringLiteral("PropertyChanged(\"Raw\", <") + text + QStringLiteral(">)")));
    QCOMPARE(m_client->property(rawId, property), text);
}

void ObservationTest::rendersCalls_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("map") << QVariant(QVariantMap{{QStringLiteral("Method"), QStringLiteral("dhcp")}})
                         << QStringLiteral("<{\"Method\": <\"dhcp\">}>");
    QTest::newRow("strings") << QVariant(QStringList{QStringLiteral("1.1.1.1"), QStringLiteral("a\"b\\c\n")})
                             << QStringLiteral("<[\"1.1.1.1\", \"a\\\"b\\\\c\\n\"]>");
    QTest::newRow("no strings") << QVariant(QStringList()) << QStringLiteral("<@as []>");
    QTest::newRow("boolean") << QVariant(true) << QStringLiteral("<true>");
}

void ObservationTest::rendersCalls()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    m_simulator->addService(rawId);
    m_client->setServiceProperty(rawId, QStringLiteral("Unknown"), value);
    QCOMPARE(m_simulator->calls(),
             QStringList{QStringLiteral("/net/connman/service/wifi_raw_managed_psk "
                                        "net.connman.Service.SetProperty(\"Unknown\", ") +
                         text + QLatin1Char(')')});
}

void ObservationTest::recordsCallsOnceAndForgets()
{
    m_client->manager(QStringLiteral("GetServices"));
    QCOMPARE(m_simulator->calls(), QStringList{QStringLiteral("/ net.connman.Manager.GetServices()")});
    m_simulator->clearCalls();
    QCOMPARE(m_simulator->calls(), QStringList());
}

void ObservationTest::tellsOfEachCall()
{
    const QSignalSpy called(m_simulator.get(), &SimulatorClient::called);
    m_client->manager(QStringLiteral("GetPeers"));
    QVERIFY(m_simulator->waitForCall(QStringLiteral("/ net.connman.Manager.GetPeers()")));
    QTRY_COMPARE(called.size(), 1);
    QCOMPARE(called.first().first().toString(), QStringLiteral("/ net.connman.Manager.GetPeers()"));
}

void ObservationTest::standardInterfacesAreNotRecorded()
{
    const Answer answer =
        m_client->call(QStringLiteral("net.connman"), QStringLiteral("/"),
                       QStringLiteral("org.freedesktop.DBus.Introspectable"), QStringLiteral("Introspect"));
    QVERIFY(answer.text().contains(QStringLiteral("net.connman.Manager")));
    QCOMPARE(m_simulator->calls(), QStringList());
}

void ObservationTest::recordsSpeech()
{
    const QSignalSpy spoke(m_simulator.get(), &SimulatorClient::spoke);
    const QVariantMap request{{QStringLiteral("sentenceId"), 7}, {QStringLiteral("serviceId"), 4}};
    QVERIFY(!m_client
                 ->call(speech, QStringLiteral("/"), speech, QStringLiteral("speakFromId"),
                        {QStringLiteral("an-id"), request})
                 .isError);
    QCOMPARE(
        m_simulator->speech(),
        QStringList{QStringLiteral("speakFromId(\"an-id\", {\"sentenceId\": <7>, \"serviceId\": <4>})")});
    QTRY_COMPARE(spoke.size(), 1);
    QCOMPARE(spoke.first().at(0).toString(), QStringLiteral("an-id"));
    QCOMPARE(spoke.first().at(1).toMap(), request);
    QCOMPARE(m_simulator->calls(), QStringList());
}

void ObservationTest::answersWithTheSerialNumber()
{
    m_simulator->setSerialNumber(4711);
    QCOMPARE(m_client
                 ->call(configurationManager, QStringLiteral("/"), configurationManager,
                        QStringLiteral("process"), {QVariantMap{{QStringLiteral("command"), 1}}})
                 .text(),
             QStringLiteral("{\"systemInfo\": <{\"serialNo\": <4711>}>}"));
    QCOMPARE(m_simulator->calls(),
             QStringList{QStringLiteral("/ com.tactora.ConfigurationManager.process({\"command\": <1>})")});
}

void ObservationTest::answersWithAnyConfiguration()
{
    m_simulator->setConfigurationReply({{QStringLiteral("systemInfo"), QStringLiteral("none")}});
    QCOMPARE(m_client
                 ->call(configurationManager, QStringLiteral("/"), configurationManager,
                        QStringLiteral("process"), {QVariantMap()})
                 .text(),
             QStringLiteral("{\"systemInfo\": <\"none\">}"));
}

void ObservationTest::listsAgents()
{
    m_client->manager(QStringLiteral("RegisterAgent"), {QVariant::fromValue(QDBusObjectPath("/an/agent"))});
    QCOMPARE(m_simulator->agents(), QList<QDBusObjectPath>{QDBusObjectPath("/an/agent")});
}

void ObservationTest::callsTheAgent()
{
    TestAgent agent(m_client->connection());
    agent.planInput({{QStringLiteral("Passphrase"), QStringLiteral("abc")}});
    m_client->manager(QStringLiteral("RegisterAgent"),
                      {QVariant::fromValue(QDBusObjectPath(TestAgent::path))});
    const SimulatorClient::AgentReply reply = m_simulator->callAgent(
        QStringLiteral("RequestInput"), {QVariant::fromValue(QDBusObjectPath("/x")), QVariantMap()});
    QCOMPARE(reply.error, QString());
    QCOMPARE(simulator::toGVariantText(reply.arguments), QStringLiteral("{\"Passphrase\": <\"abc\">}"));
    QCOMPARE(agent.lines(), QStringList{QStringLiteral("RequestInput(objectpath \"/x\", @a{sv} {})")});
}

void ObservationTest::tellsTheAgentsRefusal()
{
    TestAgent agent(m_client->connection());
    agent.planInputError(QStringLiteral("net.connman.Agent.Error.Canceled"));
    m_client->manager(QStringLiteral("RegisterAgent"),
                      {QVariant::fromValue(QDBusObjectPath(TestAgent::path))});
    const SimulatorClient::AgentReply reply = m_simulator->callAgent(
        QStringLiteral("RequestInput"), {QVariant::fromValue(QDBusObjectPath("/x")), QVariantMap()});
    QCOMPARE(reply.error, QStringLiteral("net.connman.Agent.Error.Canceled: no"));
}

void ObservationTest::tellsThatThereIsNoAgent()
{
    QCOMPARE(m_simulator->callAgent(QStringLiteral("Cancel"), {}).error,
             QStringLiteral("net.connman.Error.NotRegistered: Not registered"));
}

static const Suite<ObservationTest> suite;
#include "ObservationTest.moc"
