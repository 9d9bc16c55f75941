// What the client does while the daemon takes its time: it says what it waits for, and can be interrupted.
#include "ClientProgram.h"
#include "EventWait.h"
#include "FakeDaemon.h"
#include "PrivateBus.h"
#include "Suite.h"
#include "Text.h"
#include <memory>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

using namespace test_support;

class ClientWaitingTest : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void longCallSaysWhatIsWaitedFor_data();
    void longCallSaysWhatIsWaitedFor();
    void longerCallSaysForHowLong();
    void interruptedConnectIsCancelled_data();
    void interruptedConnectIsCancelled();
    void cancelThatFailsIsTold();
    void secondInterruptEndsAtOnce();
    void interruptedListIsNotWaitedFor();
    void interruptedAnswerIsNone();
    void daemonThatGoesEndsTheWait();
    void errorBeforeTheCallsOwnIsNotItsReason();

    void monitorTellsWhatHappens_data();
    void monitorTellsWhatHappens();
    void monitorTellsProgramsWhatHappens();
    void monitorTellsThatTheDaemonGoesAndComes();
    void listGoesOnWithWhatHappens();

private:
    bool waitForCall(const QString &call)
    {
        return waitUntil([&] { return m_daemon->calls().contains(call); });
    }

    PrivateBus m_bus;
    std::unique_ptr<FakeDaemon> m_daemon;
};

void ClientWaitingTest::init()
{
    m_daemon.reset(); // its name is taken until then
    m_daemon = std::make_unique<FakeDaemon>(m_bus.address());
    QVERIFY(m_daemon->isReady());
}

void ClientWaitingTest::longCallSaysWhatIsWaitedFor_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QString>("text");
    QTest::newRow("connect =a") << "connect"_s
                                << "Connecting a; Ctrl-C cancels.\n"_s;
    QTest::newRow("register-wps =a") << "registerWifiWps"_s
                                     << "Connecting a; Ctrl-C cancels.\n"_s;
    QTest::newRow("wps") << "wpsNetworks"_s
                         << "Looking for networks; Ctrl-C ends the waiting.\n"_s;
    QTest::newRow("region SE") << "setWifiRegion"_s
                               << "Setting the region; Ctrl-C ends the waiting.\n"_s;
}

void ClientWaitingTest::longCallSaysWhatIsWaitedFor()
{
    QFETCH(const QString, method);
    QFETCH(const QString, text);
    m_daemon->hold(method);
    ClientProgram client(QString::fromLatin1(QTest::currentDataTag()).split(QLatin1Char(' ')));
    QVERIFY(client.waitForErrors(text));
    m_daemon->release();
    QCOMPARE(client.waitForExit(), 0);
    QCOMPARE(client.errors(), text);
}

void ClientWaitingTest::longerCallSaysForHowLong()
{
    m_daemon->hold("connect"_s);
    ClientProgram client({"connect"_s, "=a"_s});
    QVERIFY(client.waitForErrors(" seconds so far.\n"_s));
    QVERIFY(QRegularExpression("\nConnecting a, for [1-9][0-9] seconds so far.\n$"_s)
                .match(client.errors())
                .hasMatch());
    m_daemon->release();
    QCOMPARE(client.waitForExit(), 0);
}

void ClientWaitingTest::interruptedConnectIsCancelled_data()
{
    QTest::addColumn<QString>("method");
    QTest::newRow("connect") << "connect"_s;
    QTest::newRow("register-wps") << "registerWifiWps"_s;
}

void ClientWaitingTest::interruptedConnectIsCancelled()
{
    QFETCH(const QString, method);
    m_daemon->hold(method);
    m_daemon->setAnswer(method, false);
    ClientProgram client({QString::fromLatin1(QTest::currentDataTag()), "=a"_s});
    QVERIFY(waitForCall(method + " a"_s));
    client.interrupt();
    QVERIFY(client.waitForErrors("Cancelled: the network is disconnected.\n"_s));
    m_daemon->release();
    QCOMPARE(client.waitForExit(), 130);
    QCOMPARE(m_daemon->calls(), (QStringList{method + " a"_s, "disconnect a"_s}));
}

void ClientWaitingTest::cancelThatFailsIsTold()
{
    m_daemon->hold("connect"_s);
    m_daemon->setAnswer("disconnect"_s, false);
    ClientProgram client({"connect"_s, "=a"_s});
    QVERIFY(waitForCall("connect a"_s));
    client.interrupt();
    QVERIFY(client.waitForErrors("The network daemon could not disconnect it.\n"_s));
    m_daemon->release();
    QCOMPARE(client.waitForExit(), 130);
}

void ClientWaitingTest::secondInterruptEndsAtOnce()
{
    m_daemon->hold("connect"_s);
    ClientProgram client({"connect"_s, "=a"_s});
    QVERIFY(waitForCall("connect a"_s));
    client.interrupt();
    QVERIFY(waitForCall("disconnect a"_s));
    client.interrupt();
    QCOMPARE(client.waitForExit(), 130);
}

void ClientWaitingTest::interruptedListIsNotWaitedFor()
{
    m_daemon->hold("networks"_s);
    ClientProgram client({"list"_s});
    QVERIFY(waitForCall("networks (none)"_s));
    client.interrupt();
    QCOMPARE(client.waitForExit(), 130);
    QVERIFY(client.errors().endsWith("Not waiting any longer; the network daemon goes on with it.\n"_s));
}

void ClientWaitingTest::interruptedAnswerIsNone()
{
    PipedProgram client(ClientProgram::path(), {"register"_s, "Kitchen"_s});
    m_daemon->setAnswer("networks"_s, QVariantMap{{"a"_s, QVariantMap{{"Name"_s, "Kitchen"_s}}}});
    QVERIFY(waitForCall("networks (none)"_s));
    client.type("half a passphr"_s);
    client.sendSignal(SIGINT); // whether it reads already or not: half an answer is none
    QCOMPARE(client.waitForExit(), 130);
    QCOMPARE(m_daemon->calls(), QStringList{"networks (none)"_s});
}

void ClientWaitingTest::daemonThatGoesEndsTheWait()
{
    m_daemon->hold("connect"_s);
    ClientProgram client({"connect"_s, "=a"_s});
    QVERIFY(waitForCall("connect a"_s));
    m_daemon.reset();
    QCOMPARE(client.waitForExit(), 3);
    QCOMPARE(client.errors(), "The network daemon has gone before it answered.\n"_s);
}

void ClientWaitingTest::errorBeforeTheCallsOwnIsNotItsReason()
{
    m_daemon->hold("registerWifi"_s);
    m_daemon->setAnswer("registerWifi"_s, false);
    m_daemon->setError("registerWifi"_s, "invalid-key"_s);
    ClientProgram client({"register"_s, "=a"_s}, "sweet potato\n"_s);
    QVERIFY(waitForCall("registerWifi a, sweet potato"_s));
    m_daemon->sendSignal("error"_s,
                         {"connect-failed"_s}); // of another client's call, served inside the first one
    m_daemon->release();
    QCOMPARE(client.waitForExit(), 1);
    QCOMPARE(client.errors(), "Failed: invalid-key\n"_s);
}

void ClientWaitingTest::monitorTellsWhatHappens_data()
{
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("line");
    QTest::newRow("error") << QVariantList{"Unknown network: 'a'"_s} << "error: Unknown network: 'a'"_s;
    QTest::newRow("powerChanged") << QVariantList{true} << "Wi-Fi is on"_s;
    QTest::newRow("regionChanged") << QVariantList{"SE"_s, true} << "region: SE, locked"_s;
    QTest::newRow("networkRegistered") << QVariantList{"a"_s} << "registered: a"_s;
    QTest::newRow("networkForgot") << QVariantList{"a"_s} << "forgotten: a"_s;
    QTest::newRow("networkConnected") << QVariantList{"a"_s} << "connected: a"_s;
    QTest::newRow("networkDisconnected") << QVariantList{"a"_s} << "disconnected: a"_s;
}

void ClientWaitingTest::monitorTellsWhatHappens()
{
    QFETCH(const QVariantList, arguments);
    QFETCH(const QString, line);
    ClientProgram client({"monitor"_s});
    QVERIFY(client.waitForOutput("the network daemon is there\n"_s));
    m_daemon->sendSignal(QString::fromLatin1(QTest::currentDataTag()), arguments);
    QVERIFY(client.waitForOutput(line + "\n"_s));
    const QRegularExpression form("^[0-9]{2}:[0-9]{2}:[0-9]{2} %1$"_s.arg(QRegularExpression::escape(line)));
    QVERIFY2(form.match(client.output().trimmed().section(QLatin1Char('\n'), -1)).hasMatch(),
             qPrintable(client.output()));
    client.interrupt();
    QCOMPARE(client.waitForExit(), 0);
}

void ClientWaitingTest::monitorTellsProgramsWhatHappens()
{
    ClientProgram client({"--json"_s, "monitor"_s});
    QVERIFY(client.waitForOutput("daemonCame"_s));
    m_daemon->sendSignal("regionChanged"_s, {"SE"_s, false});
    QVERIFY(client.waitForOutput("regionChanged"_s));
    const QJsonObject event =
        QJsonDocument::fromJson(client.output().trimmed().section(QLatin1Char('\n'), -1).toUtf8()).object();
    QCOMPARE(event.value("event"_s).toString(), "regionChanged"_s);
    QCOMPARE(event.value("arguments"_s).toVariant().toList(), (QVariantList{"SE"_s, false}));
    QVERIFY(QDateTime::fromString(event.value("time"_s).toString(), Qt::ISODateWithMs).isValid());
    client.interrupt();
    QCOMPARE(client.waitForExit(), 0);
}

void ClientWaitingTest::monitorTellsThatTheDaemonGoesAndComes()
{
    ClientProgram client({"monitor"_s});
    QVERIFY(client.waitForOutput("the network daemon is there\n"_s));
    m_daemon.reset();
    QVERIFY(client.waitForOutput("the network daemon is not there\n"_s));
    m_daemon = std::make_unique<FakeDaemon>(m_bus.address());
    QVERIFY(waitUntil([&] { return client.output().count("the network daemon is there\n"_s) == 2; }));
    client.interrupt();
    QCOMPARE(client.waitForExit(), 0);
}

void ClientWaitingTest::listGoesOnWithWhatHappens()
{
    m_daemon->setAnswer("networks"_s, QVariantMap{{"a"_s, QVariantMap{{"Name"_s, "Kitchen"_s}}}});
    ClientProgram client({"list"_s, "--watch"_s});
    QVERIFY(client.waitForOutput("the network daemon is there\n"_s));
    m_daemon->sendSignal("networkConnected"_s, {"a"_s});
    QVERIFY(client.waitForOutput("connected: Kitchen\n"_s)); // the list has told the name
    client.interrupt();
    QCOMPARE(client.waitForExit(), 0);
}

static const Suite<ClientWaitingTest> clientWaitingTest;
#include "ClientWaitingTest.moc"
