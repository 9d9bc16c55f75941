// What a script sees of the device: calls, speech, agents; and that values of any type get through unchanged.

#include "ConnmanWire.h"
#include "DeviceFixture.h"
#include "FakeAgent.h"
#include "GVariantText.h"
#include "Suite.h"
#include "Text.h"
#include <QDBusMetaType>
#include <QDBusSignature>
#include <QDBusVariant>
#include <QMap>
#include <QSignalSpy>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
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
    QTest::newRow("y") << QVariant::fromValue<uchar>(64) << "byte 0x40"_s;
    QTest::newRow("q") << QVariant::fromValue<ushort>(7) << "uint16 7"_s;
    QTest::newRow("x") << QVariant(qlonglong(-7)) << "int64 -7"_s;
    QTest::newRow("d") << QVariant(1.5) << "1.5"_s;
    QTest::newRow("o") << QVariant::fromValue(QDBusObjectPath("/a")) << "objectpath \"/a\""_s;
    QTest::newRow("g") << QVariant::fromValue(QDBusSignature("a{sv}"_s)) << "signature \"a{sv}\""_s;
    QTest::newRow("ay") << QVariant(QByteArray("\x01\xff")) << "[byte 0x01, 0xff]"_s;
    QTest::newRow("ai") << QVariant::fromValue(QList<int>{1, -2}) << "[1, -2]"_s;
    QTest::newRow("empty ai") << QVariant::fromValue(QList<int>()) << "@ai []"_s;
    QTest::newRow("ao") << QVariant::fromValue(
                               QList<QDBusObjectPath>{QDBusObjectPath("/a"), QDBusObjectPath("/b")})
                        << "[objectpath \"/a\", \"/b\"]"_s;
    QTest::newRow("(oa{sv})") << QVariant::fromValue(simulator::ObjectRecord{QDBusObjectPath("/a"), {}})
                              << "(objectpath \"/a\", @a{sv} {})"_s;
    QTest::newRow("a{sv}") << QVariant(QVariantMap{{"k"_s, QVariantMap{{"i"_s, 1}}}})
                           << "{\"k\": <{\"i\": <1>}>}"_s;
    QTest::newRow("empty a{sv}") << QVariant(empty) << "@a{sv} {}"_s;
    QTest::newRow("v") << QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(3))))
                       << "<<3>>"_s;
    QTest::newRow("av") << QVariant(QVariantList{1, "x"_s}) << "[<1>, <\"x\">]"_s;
    QTest::newRow("a{ss}") << QVariant::fromValue(QMap<QString, QString>{{"k"_s, "v"_s}})
                           << "{\"k\": \"v\"}"_s;
}

// There and back, twice: as a property from GetProperties, in a signal, and once more from GetProperties.
void ObservationTest::rawValuesTravelUnchanged()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    const QString property = "Raw"_s;
    m_simulator->addService(rawId, {{property, value}});
    QCOMPARE(m_client->property(rawId, property), text);
    m_simulator->setServiceProperty(rawId, property, value);
    QVERIFY(m_client->waitForSignal("PropertyChanged(\"Raw\", <"_s + text + ">)"_s));
    QCOMPARE(m_client->property(rawId, property), text);
}

void ObservationTest::rendersCalls_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("map") << QVariant(QVariantMap{{"Method"_s, "dhcp"_s}}) << "<{\"Method\": <\"dhcp\">}>"_s;
    QTest::newRow("strings") << QVariant(QStringList{"1.1.1.1"_s, "a\"b\\c\n"_s})
                             << "<[\"1.1.1.1\", \"a\\\"b\\\\c\\n\"]>"_s;
    QTest::newRow("no strings") << QVariant(QStringList()) << "<@as []>"_s;
    QTest::newRow("boolean") << QVariant(true) << "<true>"_s;
}

void ObservationTest::rendersCalls()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    m_simulator->addService(rawId);
    m_client->setServiceProperty(rawId, "Unknown"_s, value);
    QCOMPARE(m_simulator->calls(), QStringList{"/net/connman/service/wifi_raw_managed_psk "
                                               "net.connman.Service.SetProperty(\"Unknown\", "_s +
                                               text + QLatin1Char(')')});
}

void ObservationTest::recordsCallsOnceAndForgets()
{
    m_client->manager("GetServices"_s);
    QCOMPARE(m_simulator->calls(), QStringList{"/ net.connman.Manager.GetServices()"_s});
    m_simulator->clearCalls();
    QCOMPARE(m_simulator->calls(), QStringList());
}

void ObservationTest::tellsOfEachCall()
{
    const QSignalSpy called(m_simulator.get(), &SimulatorClient::called);
    m_client->manager("GetPeers"_s);
    QVERIFY(m_simulator->waitForCall("/ net.connman.Manager.GetPeers()"_s));
    QTRY_COMPARE(called.size(), 1);
    QCOMPARE(called.first().first().toString(), "/ net.connman.Manager.GetPeers()"_s);
}

void ObservationTest::standardInterfacesAreNotRecorded()
{
    const Answer answer =
        m_client->call("net.connman"_s, "/"_s, "org.freedesktop.DBus.Introspectable"_s, "Introspect"_s);
    QVERIFY(answer.text().contains("net.connman.Manager"_s));
    QCOMPARE(m_simulator->calls(), QStringList());
}

void ObservationTest::recordsSpeech()
{
    const QSignalSpy spoke(m_simulator.get(), &SimulatorClient::spoke);
    const QVariantMap request{{"sentenceId"_s, 7}, {"serviceId"_s, 4}};
    QVERIFY(!m_client->call(speech, "/"_s, speech, "speakFromId"_s, {"an-id"_s, request}).isError);
    QCOMPARE(m_simulator->speech(),
             QStringList{"speakFromId(\"an-id\", {\"sentenceId\": <7>, \"serviceId\": <4>})"_s});
    QTRY_COMPARE(spoke.size(), 1);
    QCOMPARE(spoke.first().at(0).toString(), "an-id"_s);
    QCOMPARE(spoke.first().at(1).toMap(), request);
    QCOMPARE(m_simulator->calls(), QStringList());
}

void ObservationTest::answersWithTheSerialNumber()
{
    m_simulator->setSerialNumber(4711);
    QCOMPARE(m_client
                 ->call(configurationManager, "/"_s, configurationManager, "process"_s,
                        {QVariantMap{{"command"_s, 1}}})
                 .text(),
             "{\"systemInfo\": <{\"serialNo\": <4711>}>}"_s);
    QCOMPARE(m_simulator->calls(),
             QStringList{"/ com.tactora.ConfigurationManager.process({\"command\": <1>})"_s});
}

void ObservationTest::answersWithAnyConfiguration()
{
    m_simulator->setConfigurationReply({{"systemInfo"_s, "none"_s}});
    QCOMPARE(m_client->call(configurationManager, "/"_s, configurationManager, "process"_s, {QVariantMap()})
                 .text(),
             "{\"systemInfo\": <\"none\">}"_s);
}

void ObservationTest::listsAgents()
{
    m_client->manager("RegisterAgent"_s, {QVariant::fromValue(QDBusObjectPath("/an/agent"))});
    QCOMPARE(m_simulator->agents(), QList<QDBusObjectPath>{QDBusObjectPath("/an/agent")});
}

void ObservationTest::callsTheAgent()
{
    FakeAgent agent(m_client->connection());
    agent.planInput({{"Passphrase"_s, "abc"_s}});
    m_client->manager("RegisterAgent"_s, {QVariant::fromValue(QDBusObjectPath(FakeAgent::path))});
    const SimulatorClient::AgentReply reply =
        m_simulator->callAgent("RequestInput"_s, {QVariant::fromValue(QDBusObjectPath("/x")), QVariantMap()});
    QCOMPARE(reply.error, QString());
    QCOMPARE(simulator::toGVariantText(reply.arguments), "{\"Passphrase\": <\"abc\">}"_s);
    QCOMPARE(agent.lines(), QStringList{"RequestInput(objectpath \"/x\", @a{sv} {})"_s});
}

void ObservationTest::tellsTheAgentsRefusal()
{
    FakeAgent agent(m_client->connection());
    agent.planInputError("net.connman.Agent.Error.Canceled"_s);
    m_client->manager("RegisterAgent"_s, {QVariant::fromValue(QDBusObjectPath(FakeAgent::path))});
    const SimulatorClient::AgentReply reply =
        m_simulator->callAgent("RequestInput"_s, {QVariant::fromValue(QDBusObjectPath("/x")), QVariantMap()});
    QCOMPARE(reply.error, "net.connman.Agent.Error.Canceled: no"_s);
}

void ObservationTest::tellsThatThereIsNoAgent()
{
    QCOMPARE(m_simulator->callAgent("Cancel"_s, {}).error,
             "net.connman.Error.NotRegistered: Not registered"_s);
}

static const Suite<ObservationTest> observationTest;
#include "ObservationTest.moc"
