#include "AgentFixture.h"
#include "Suite.h"
#include "Text.h"

#include <QDBusObjectPath>
#include <QMap>
#include <QSignalSpy>
#include <QTest>

using RequestType = ConnmanAgent::RequestType;

namespace {

const QString passphrase = "Passphrase"_s;
const QDBusObjectPath service("/net/connman/service/x"_s);
const QDBusObjectPath peer("/net/connman/peer/y"_s);

QVariant path(const QDBusObjectPath &object)
{
    return QVariant::fromValue(object);
}

QVariantMap pskFields()
{
    return {{passphrase, QVariantMap{{"Type"_s, "psk"_s}}}};
}

} // namespace

/// The agent's calls other than RequestInput, and what holds for all of them.
class ConnmanAgentTest : public AgentFixture
{
    Q_OBJECT

private slots:
    void requestTypesHaveTheirNumbers();
    void agentIsAtItsPath();
    void releaseIsOnlyLogged();
    void cancelIsOnlyLogged();

    void reportedErrorIsLoggedKeptAndAnswered();
    void connectFailedIsEmittedExactlyOnceAndAnswered();
    void connectFailedIsEmittedBeforeTheErrorIsKept();
    void otherErrorsEmitNothing_data();
    void otherErrorsEmitNothing();
    void lastErrorIsTheLatest();
    void lastErrorOutlivesTheNextRequest();

    void reportedPeerErrorIsOnlyLogged();
    void browserRequestIsAlwaysRefused_data();
    void browserRequestIsAlwaysRefused();
    void peerAuthorizationIsAlwaysRefused_data();
    void peerAuthorizationIsAlwaysRefused();

    void handlersDoNothingWhenNotCalledOverDBus();
    void requestInputDoesNothingWhenNotCalledOverDBus_data();
    void requestInputDoesNothingWhenNotCalledOverDBus();
};

void ConnmanAgentTest::requestTypesHaveTheirNumbers()
{
    QCOMPARE(static_cast<int>(RequestType::None), 0);
    QCOMPARE(static_cast<int>(RequestType::Psk), 1);
    QCOMPARE(static_cast<int>(RequestType::Hidden), 2);
    QCOMPARE(static_cast<int>(RequestType::Wpa2Enterprise), 3);
    QCOMPARE(static_cast<int>(RequestType::Wps), 4);
}

void ConnmanAgentTest::agentIsAtItsPath()
{
    QCOMPARE(adaptor().path().path(), "/agent"_s);
    QCOMPARE(adaptor().parent(), &agent());
    QCOMPARE(log().messages().size(), 0);
}

void ConnmanAgentTest::releaseIsOnlyLogged()
{
    agent().setRequest(QString(), "secret"_s, RequestType::Psk, QString());
    const QDBusMessage reply = call("Release"_s);

    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(reply.arguments(), QVariantList());
    QCOMPARE(agentLines(), QStringList("debug ConnmanAgent: Release()"_s));
    QCOMPARE(answer(requestInput(pskFields())).value(passphrase), QVariant("secret"_s));
}

void ConnmanAgentTest::cancelIsOnlyLogged()
{
    agent().setRequest(QString(), "secret"_s, RequestType::Psk, QString());
    const QDBusMessage reply = call("Cancel"_s);

    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(reply.arguments(), QVariantList());
    QCOMPARE(agentLines(), QStringList("debug ConnmanAgent: Cancel()"_s));
    QCOMPARE(answer(requestInput(pskFields())).value(passphrase), QVariant("secret"_s));
}

void ConnmanAgentTest::reportedErrorIsLoggedKeptAndAnswered()
{
    const QDBusMessage reply = call("ReportError"_s, {path(service), "invalid-key"_s});

    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(reply.arguments(), QVariantList());
    QCOMPARE(
        agentLines(),
        QStringList("critical ConnmanAgent: Error: \"invalid-key\" on service \"/net/connman/service/x\""_s));
    QCOMPARE(agent().lastError(), "invalid-key"_s);
}

void ConnmanAgentTest::connectFailedIsEmittedExactlyOnceAndAnswered()
{
    const QSignalSpy connectFailed(&agent(), &ConnmanAgent::connectFailed);
    const QDBusMessage reply = call("ReportError"_s, {path(service), "connect-failed"_s});

    QCOMPARE(connectFailed.count(), 1);
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(agent().lastError(), "connect-failed"_s);
    QCOMPARE(agentLines(),
             QStringList(
                 "critical ConnmanAgent: Error: \"connect-failed\" on service \"/net/connman/service/x\""_s));
}

void ConnmanAgentTest::connectFailedIsEmittedBeforeTheErrorIsKept()
{
    QString errorAtSignal = "unset"_s;
    int linesAtSignal = -1;
    connect(&agent(), &ConnmanAgent::connectFailed, this, [&] {
        errorAtSignal = agent().lastError();
        linesAtSignal = agentLines().size();
    });
    call("ReportError"_s, {path(service), "connect-failed"_s});

    QCOMPARE(errorAtSignal, QString());
    QCOMPARE(linesAtSignal, 0);
}

void ConnmanAgentTest::otherErrorsEmitNothing_data()
{
    QTest::addColumn<QString>("error");
    for (const char *error : {"", "invalid-key", "Connect-Failed", "connect-failed ", "dhcp-failed",
                              "out-of-range", "pin-missing", "login-failed", "auth-failed", "blocked"}) {
        QTest::newRow(error) << QString::fromLatin1(error);
    }
}

void ConnmanAgentTest::otherErrorsEmitNothing()
{
    QFETCH(QString, error);
    const QSignalSpy connectFailed(&agent(), &ConnmanAgent::connectFailed);

    QCOMPARE(call("ReportError"_s, {path(service), error}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(connectFailed.count(), 0);
    QCOMPARE(agent().lastError(), error);
}

void ConnmanAgentTest::lastErrorIsTheLatest()
{
    QCOMPARE(agent().lastError(), QString());
    call("ReportError"_s, {path(service), "connect-failed"_s});
    call("ReportError"_s, {path(service), "invalid-key"_s});
    QCOMPARE(agent().lastError(), "invalid-key"_s);
}

void ConnmanAgentTest::lastErrorOutlivesTheNextRequest()
{
    call("ReportError"_s, {path(service), "invalid-key"_s});
    agent().setRequest("wifi_x"_s, "secret"_s, RequestType::Psk, QString());
    QCOMPARE(agent().lastError(), "invalid-key"_s);
    QCOMPARE(call("RequestInput"_s, {path(service), pskFields()}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(agent().lastError(), "invalid-key"_s);
}

void ConnmanAgentTest::reportedPeerErrorIsOnlyLogged()
{
    const QSignalSpy connectFailed(&agent(), &ConnmanAgent::connectFailed);
    const QDBusMessage reply = call("ReportPeerError"_s, {path(peer), "connect-failed"_s});

    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(reply.arguments(), QVariantList());
    QCOMPARE(
        agentLines(),
        QStringList("critical ConnmanAgent: Service: \"/net/connman/peer/y\" Error: \"connect-failed\""_s));
    QCOMPARE(connectFailed.count(), 0);
    QCOMPARE(agent().lastError(), QString());
}

void ConnmanAgentTest::browserRequestIsAlwaysRefused_data()
{
    QTest::addColumn<int>("requestType");
    for (int type = 0; type <= 4; ++type) {
        QTest::addRow("request type %d", type) << type;
    }
}

void ConnmanAgentTest::browserRequestIsAlwaysRefused()
{
    QFETCH(int, requestType);
    agent().setRequest(QString(), "secret"_s, static_cast<RequestType>(requestType), QString());
    const QDBusMessage reply = call("RequestBrowser"_s, {path(service), "http://portal/"_s});

    QCOMPARE(error(reply), invalidArgs("Unsupported browser-request."_s));
    QCOMPARE(
        agentLines(),
        QStringList("critical ConnmanAgent: Service: \"/net/connman/service/x\" Url: \"http://portal/\""_s));
}

void ConnmanAgentTest::peerAuthorizationIsAlwaysRefused_data()
{
    browserRequestIsAlwaysRefused_data();
}

void ConnmanAgentTest::peerAuthorizationIsAlwaysRefused()
{
    QFETCH(int, requestType);
    agent().setRequest(QString(), "secret"_s, static_cast<RequestType>(requestType), QString());
    const QDBusMessage reply =
        call("RequestPeerAuthorization"_s, {path(peer), QVariantMap{{"WPS"_s, "12345670"_s}}});

    QCOMPARE(error(reply), invalidArgs("Unsupported peer-request type."_s));
    QCOMPARE(agentLines(), QStringList({"debug ConnmanAgent: Service: \"/net/connman/peer/y\" Request: "
                                        "QMap((\"WPS\", QVariant(QString, \"12345670\")))"_s,
                                        "critical ConnmanAgent: Unsupported peer-request type."_s}));
}

void ConnmanAgentTest::handlersDoNothingWhenNotCalledOverDBus()
{
    const QSignalSpy connectFailed(&agent(), &ConnmanAgent::connectFailed);
    agent().release();
    agent().cancel();
    agent().reportError(service, "connect-failed"_s);
    agent().reportPeerError(peer, "connect-failed"_s);
    agent().requestBrowser(service, "http://portal/"_s);
    QCOMPARE(agent().requestPeerAuthorization(peer, pskFields()), QVariantMap());

    QCOMPARE(connectFailed.count(), 0);
    QCOMPARE(agent().lastError(), QString());
    QVERIFY(log().messages().isEmpty());
}

void ConnmanAgentTest::requestInputDoesNothingWhenNotCalledOverDBus_data()
{
    QTest::addColumn<int>("requestType");
    for (int type = 0; type <= 5; ++type) {
        QTest::addRow("request type %d", type) << type;
    }
}

void ConnmanAgentTest::requestInputDoesNothingWhenNotCalledOverDBus()
{
    QFETCH(int, requestType);
    agent().setRequest(QString(), "secret"_s, static_cast<RequestType>(requestType), QString());

    QCOMPARE(agent().requestInput(service, pskFields()), QVariantMap());
    QVERIFY(log().messages().isEmpty());
}

static const Suite<ConnmanAgentTest> connmanAgentTest;
#include "ConnmanAgentTest.moc"
