#include "AgentFixture.h"
#include "Suite.h"

#include <QDBusObjectPath>
#include <QMap>
#include <QSignalSpy>
#include <QTest>

using RequestType = ConnmanAgent::RequestType;

namespace {

const QString passphrase = QStringLiteral("Passphrase");
const QDBusObjectPath service(QStringLiteral("/net/connman/service/x"));
const QDBusObjectPath peer(QStringLiteral("/net/connman/peer/y"));

QVariant path(const QDBusObjectPath &object)
{
    return QVariant::fromValue(object);
}

QVariantMap pskFields()
{
    return {{passphrase, QVariantMap{{QStringLiteral("Type"), QStringLiteral("psk")}}}};
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
    QCOMPARE(adaptor().path().path(), QStringLiteral("/agent"));
    QCOMPARE(adaptor().parent(), &agent());
    QCOMPARE(log().messages().size(), 0);
}

void ConnmanAgentTest::releaseIsOnlyLogged()
{
    agent().setRequest(QString(), QStringLiteral("secret"), RequestType::Psk, QString());
    const QDBusMessage reply = call(QStringLiteral("Release"));

    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(reply.arguments(), QVariantList());
    QCOMPARE(agentLines(), QStringList(QStringLiteral("debug|Release()")));
    QCOMPARE(answer(requestInput(pskFields())).value(passphrase), QVariant(QStringLiteral("secret")));
}

void ConnmanAgentTest::cancelIsOnlyLogged()
{
    agent().setRequest(QString(), QStringLiteral("secret"), RequestType::Psk, QString());
    const QDBusMessage reply = call(QStringLiteral("Cancel"));

    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(reply.arguments(), QVariantList());
    QCOMPARE(agentLines(), QStringList(QStringLiteral("debug|Cancel()")));
    QCOMPARE(answer(requestInput(pskFields())).value(passphrase), QVariant(QStringLiteral("secret")));
}

void ConnmanAgentTest::reportedErrorIsLoggedKeptAndAnswered()
{
    const QDBusMessage reply =
        call(QStringLiteral("ReportError"), {path(service), QStringLiteral("invalid-key")});

    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(reply.arguments(), QVariantList());
    QCOMPARE(agentLines(), QStringList(QStringLiteral(
                               "critical|Error: \"invalid-key\" on service \"/net/connman/service/x\"")));
    QCOMPARE(agent().lastError(), QStringLiteral("invalid-key"));
}

void ConnmanAgentTest::connectFailedIsEmittedExactlyOnceAndAnswered()
{
    const QSignalSpy connectFailed(&agent(), &ConnmanAgent::connectFailed);
    const QDBusMessage reply =
        call(QStringLiteral("ReportError"), {path(service), QStringLiteral("connect-failed")});

    QCOMPARE(connectFailed.count(), 1);
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(agent().lastError(), QStringLiteral("connect-failed"));
    QCOMPARE(agentLines(), QStringList(QStringLiteral(
                               "critical|Error: \"connect-failed\" on service \"/net/connman/service/x\"")));
}

void ConnmanAgentTest::connectFailedIsEmittedBeforeTheErrorIsKept()
{
    QString errorAtSignal = QStringLiteral("unset");
    int linesAtSignal = -1;
    connect(&agent(), &ConnmanAgent::connectFailed, this, [&] {
        errorAtSignal = agent().lastError();
        linesAtSignal = agentLines().size();
    });
    call(QStringLiteral("ReportError"), {path(service), QStringLiteral("connect-failed")});

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

    QCOMPARE(call(QStringLiteral("ReportError"), {path(service), error}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(connectFailed.count(), 0);
    QCOMPARE(agent().lastError(), error);
}

void ConnmanAgentTest::lastErrorIsTheLatest()
{
    QCOMPARE(agent().lastError(), QString());
    call(QStringLiteral("ReportError"), {path(service), QStringLiteral("connect-failed")});
    call(QStringLiteral("ReportError"), {path(service), QStringLiteral("invalid-key")});
    QCOMPARE(agent().lastError(), QStringLiteral("invalid-key"));
}

void ConnmanAgentTest::lastErrorOutlivesTheNextRequest()
{
    call(QStringLiteral("ReportError"), {path(service), QStringLiteral("invalid-key")});
    agent().setRequest(QStringLiteral("wifi_x"), QStringLiteral("secret"), RequestType::Psk, QString());
    QCOMPARE(agent().lastError(), QStringLiteral("invalid-key"));
    QCOMPARE(call(QStringLiteral("RequestInput"), {path(service), pskFields()}).type(),
             QDBusMessage::ReplyMessage);
    QCOMPARE(agent().lastError(), QStringLiteral("invalid-key"));
}

void ConnmanAgentTest::reportedPeerErrorIsOnlyLogged()
{
    const QSignalSpy connectFailed(&agent(), &ConnmanAgent::connectFailed);
    const QDBusMessage reply =
        call(QStringLiteral("ReportPeerError"), {path(peer), QStringLiteral("connect-failed")});

    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(reply.arguments(), QVariantList());
    QCOMPARE(agentLines(), QStringList(QStringLiteral(
                               "critical|Service: \"/net/connman/peer/y\" Error: \"connect-failed\"")));
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
    agent().setRequest(QString(), QStringLiteral("secret"), static_cast<RequestType>(requestType), QString());
    const QDBusMessage reply =
        call(QStringLiteral("RequestBrowser"), {path(service), QStringLiteral("http://portal/")});

    QCOMPARE(error(reply), invalidArgs(QStringLiteral("Unsupported browser-request.")));
    QCOMPARE(agentLines(), QStringList(QStringLiteral(
                               "critical|Service: \"/net/connman/service/x\" Url: \"http://portal/\"")));
}

void ConnmanAgentTest::peerAuthorizationIsAlwaysRefused_data()
{
    browserRequestIsAlwaysRefused_data();
}

void ConnmanAgentTest::peerAuthorizationIsAlwaysRefused()
{
    QFETCH(int, requestType);
    agent().setRequest(QString(), QStringLiteral("secret"), static_cast<RequestType>(requestType), QString());
    const QDBusMessage reply =
        call(QStringLiteral("RequestPeerAuthorization"),
             {path(peer), QVariantMap{{QStringLiteral("WPS"), QStringLiteral("12345670")}}});

    QCOMPARE(error(reply), invalidArgs(QStringLiteral("Unsupported peer-request type.")));
    QCOMPARE(agentLines(), QStringList({QStringLiteral("debug|Service: \"/net/connman/peer/y\" Request: "
                                                       "QMap((\"WPS\", QVariant(QString, \"12345670\")))"),
                                        QStringLiteral("critical|Unsupported peer-request type.")}));
}

void ConnmanAgentTest::handlersDoNothingWhenNotCalledOverDBus()
{
    const QSignalSpy connectFailed(&agent(), &ConnmanAgent::connectFailed);
    agent().release();
    agent().cancel();
    agent().reportError(service, QStringLiteral("connect-failed"));
    agent().reportPeerError(peer, QStringLiteral("connect-failed"));
    agent().requestBrowser(service, QStringLiteral("http://portal/"));
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
    agent().setRequest(QString(), QStringLiteral("secret"), static_cast<RequestType>(requestType), QString());

    QCOMPARE(agent().requestInput(service, pskFields()), QVariantMap());
    QVERIFY(log().messages().isEmpty());
}

static const Suite<ConnmanAgentTest> suite;
#include "ConnmanAgentTest.moc"
