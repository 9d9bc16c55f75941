// What ConnMan asks the agent for a passphrase, and what it makes of each answer.

#include "NetworkFixture.h"
#include "Suite.h"
#include "Text.h"
#include <QDBusObjectPath>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

class CredentialsTest : public NetworkFixture
{
    Q_OBJECT

private slots:
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
};

void CredentialsTest::pskAsksForThePassphrase()
{
    addNetwork();
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_agent->lines(), QStringList{request(pskId, pskFields)});
    QCOMPARE(m_client->property(pskId, "Favorite"_s), "true"_s);
}

void CredentialsTest::wrongPassphraseFailsAndIsReported()
{
    addNetwork();
    m_agent->planInput(with(passphrase, "wrong passphrase"_s));
    QCOMPARE(connectService(pskId).text(), failed);
    QCOMPARE(m_client->states(pskId).join(QLatin1Char(' ')), "association failure idle"_s);
    QCOMPARE(m_client->signalLines("Error"_s),
             QStringList{pskId + " PropertyChanged(\"Error\", <\"invalid-key\">)"_s});
    QVERIFY(m_agent->waitForLine("Cancel()"_s));
    QCOMPARE(m_agent->lines().mid(1),
             (QStringList{"ReportError(objectpath \"/net/connman/service/%1\", \"invalid-key\")"_s.arg(pskId),
                          "Cancel()"_s}));
    QCOMPARE(m_client->property(pskId, "Error"_s), "\"invalid-key\""_s);
    QCOMPARE(m_client->property(pskId, "Favorite"_s), "false"_s);
}

void CredentialsTest::nextTryTellsThePreviousPassphrase()
{
    addNetwork();
    m_agent->planInput(with(passphrase, "wrong passphrase"_s));
    QCOMPARE(connectService(pskId).text(), failed);
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_agent->lines().last(),
             request(pskId,
                     "\"Passphrase\": <{\"Type\": <\"psk\">, \"Requirement\": <\"mandatory\">}>, "
                     "\"PreviousPassphrase\": <{\"Type\": <\"psk\">, \"Requirement\": <\"informational\">, "
                     "\"Value\": <\"wrong passphrase\">}>"));
}

void CredentialsTest::rightPassphraseAfterAWrongOneTakesTheErrorAway()
{
    addNetwork();
    m_agent->planInput(with(passphrase, "wrong passphrase"_s));
    QCOMPARE(connectService(pskId).text(), failed);
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_client->signalLines("\"Error\""_s).last(), pskId + " PropertyChanged(\"Error\", <\"\">)"_s);
    QCOMPARE(m_client->property(pskId, "Error"_s), QString());
}

void CredentialsTest::unusablePassphraseMayBeRetried()
{
    addNetwork();
    m_agent->planInput(with(passphrase, "short"_s));
    m_agent->planInput(with(passphrase, rightPassphrase));
    m_agent->planRetry();
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_client->states(pskId).mid(0, 3), (QStringList{"failure"_s, "idle"_s, "association"_s}));
    QCOMPARE(m_agent->lines().filter("RequestInput"_s).size(), 2);
}

void CredentialsTest::unusablePassphraseWithoutRetryFails()
{
    addNetwork();
    m_agent->planInput(with(passphrase, "short"_s));
    QCOMPARE(connectService(pskId).text(), failed);
    QCOMPARE(m_client->states(pskId).join(QLatin1Char(' ')), "failure idle"_s);
    QCOMPARE(m_agent->lines().filter("Cancel"_s), QStringList());
}

void CredentialsTest::refusalOfTheAgent_data()
{
    addAgentRefusals();
}

void CredentialsTest::refusalOfTheAgent()
{
    QFETCH(QString, refusal);
    QFETCH(QString, error);
    addNetwork();
    m_agent->planInputError(refusal);
    QCOMPARE(connectService(pskId).text(), error);
    QCOMPARE(m_client->states(pskId), QStringList());
    QCOMPARE(m_client->property(pskId, "State"_s), "\"idle\""_s);
}

void CredentialsTest::silentAgentTimesOut()
{
    addNetwork();
    m_simulator->setTiming("agent"_s, 200);
    m_agent->planInputSilence();
    QCOMPARE(connectService(pskId).text(), timedOut);
}

void CredentialsTest::agentThatLeavesTimesOut()
{
    addNetwork();
    BusClient leaving(m_bus->address());
    FakeAgent leavingAgent(leaving.connection());
    leavingAgent.planInputSilence();
    QVERIFY(
        !leaving.manager("RegisterAgent"_s, {QVariant::fromValue(QDBusObjectPath(FakeAgent::path))}).isError);
    // A client that has an agent of its own is asked, not the default one.
    const std::unique_ptr<PendingAnswer> ownConnect = leaving.startService(pskId, "Connect"_s);
    QVERIFY(leavingAgent.waitForLine("RequestInput"_s));
    QVERIFY(!leaving.manager("UnregisterAgent"_s, {QVariant::fromValue(QDBusObjectPath(FakeAgent::path))})
                 .isError);
    QVERIFY(leavingAgent.waitForLine("Cancel()"_s));
    QCOMPARE(ownConnect->wait().text(), timedOut);
    QCOMPARE(m_agent->lines(), QStringList());
}

void CredentialsTest::emptyAnswerIsAskedAgain()
{
    addNetwork();
    m_agent->planInput({});
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_agent->lines(), (QStringList{request(pskId, pskFields), request(pskId, pskFields)}));
}

void CredentialsTest::answerOfAnotherTypeTimesOut()
{
    addNetwork();
    m_agent->planInput(with(passphrase, 12345678));
    QCOMPARE(connectService(pskId).text(), timedOut);
}

void CredentialsTest::noAgentIsNotRegistered()
{
    addNetwork();
    m_client->manager("UnregisterAgent"_s, {QVariant::fromValue(QDBusObjectPath(FakeAgent::path))});
    QCOMPARE(connectService(pskId).text(), "net.connman.Error.NotRegistered: Not registered"_s);
}

static const Suite<CredentialsTest> credentialsTest;
#include "CredentialsTest.moc"
