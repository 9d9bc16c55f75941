// What ConnMan asks the agent for a passphrase, and what it makes of each answer.

#include "NetworkFixture.h"
#include "Suite.h"
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
    QCOMPARE(m_client->property(pskId, QStringLiteral("Favorite")), QStringLiteral("true"));
}

void CredentialsTest::wrongPassphraseFailsAndIsReported()
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

void CredentialsTest::nextTryTellsThePreviousPassphrase()
{
    addNetwork();
    m_agent->planInput(with(passphrase, QStringLiteral("wrong passphrase")));
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
    m_agent->planInput(with(passphrase, QStringLiteral("wrong passphrase")));
    QCOMPARE(connectService(pskId).text(), failed);
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_client->signalLines(QStringLiteral("\"Error\"")).last(),
             pskId + QStringLiteral(" PropertyChanged(\"Error\", <\"\">)"));
    QCOMPARE(m_client->property(pskId, QStringLiteral("Error")), QString());
}

void CredentialsTest::unusablePassphraseMayBeRetried()
{
    addNetwork();
    m_agent->planInput(with(passphrase, QStringLiteral("short")));
    m_agent->planInput(with(passphrase, rightPassphrase));
    m_agent->planRetry();
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_client->states(pskId).mid(0, 3),
             (QStringList{QStringLiteral("failure"), QStringLiteral("idle"), QStringLiteral("association")}));
    QCOMPARE(m_agent->lines().filter(QStringLiteral("RequestInput")).size(), 2);
}

void CredentialsTest::unusablePassphraseWithoutRetryFails()
{
    addNetwork();
    m_agent->planInput(with(passphrase, QStringLiteral("short")));
    QCOMPARE(connectService(pskId).text(), failed);
    QCOMPARE(m_client->states(pskId).join(QLatin1Char(' ')), QStringLiteral("failure idle"));
    QCOMPARE(m_agent->lines().filter(QStringLiteral("Cancel")), QStringList());
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
    QCOMPARE(m_client->property(pskId, QStringLiteral("State")), QStringLiteral("\"idle\""));
}

void CredentialsTest::silentAgentTimesOut()
{
    addNetwork();
    m_simulator->setTiming(QStringLiteral("agent"), 200);
    m_agent->planInputSilence();
    QCOMPARE(connectService(pskId).text(), timedOut);
}

void CredentialsTest::agentThatLeavesTimesOut()
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
    const std::unique_ptr<PendingAnswer> ownConnect = leaving.startService(pskId, QStringLiteral("Connect"));
    QVERIFY(leavingAgent.waitForLine(QStringLiteral("RequestInput")));
    QVERIFY(!leaving
                 .manager(QStringLiteral("UnregisterAgent"),
                          {QVariant::fromValue(QDBusObjectPath(TestAgent::path))})
                 .isError);
    QVERIFY(leavingAgent.waitForLine(QStringLiteral("Cancel()")));
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
    m_client->manager(QStringLiteral("UnregisterAgent"),
                      {QVariant::fromValue(QDBusObjectPath(TestAgent::path))});
    QCOMPARE(connectService(pskId).text(), QStringLiteral("net.connman.Error.NotRegistered: Not registered"));
}

static const Suite<CredentialsTest> suite;
#include "CredentialsTest.moc"
