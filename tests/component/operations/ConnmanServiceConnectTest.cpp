#include "EventWait.h"
#include "ServiceFixture.h"
#include "Suite.h"
#include "Text.h"

#include <QAbstractEventDispatcher>
#include <QDBusObjectPath>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

using test_support::eventTimeoutMs;
using test_support::Fault;
using test_support::FaultKind;

namespace {

const QString disconnectingLine = "Disconnecting service due to timeout."_s;
// Far above what a reply takes to arrive, far below any timer that could end a wait by chance.
constexpr int atOnceMs = 5000;

} // namespace

class ConnmanServiceConnectTest : public ServiceFixture
{
    Q_OBJECT

private slots:
    void connectReturnsTrueOnceConnmanAnswers();
    void connectOfANetworkEndsConnected();
    void connectIsWokenByTheReplyItself();
    void connectSleepsWhileItWaits();
    void connectServesEventsWhileItWaits();

    void connectOfAServiceThatIsGoneFailsSilently();
    void connectThatFailsIsLoggedWithoutDisconnecting_data();
    void connectThatFailsIsLoggedWithoutDisconnecting();

    void connectWithoutReplyDisconnectsOnceAndWritesTheAddress();
    void connectThatTimesOutAndCannotDisconnectFailsAndSaysSoInOrder();
    void connectToAConnmanThatCrashesFails();
    void connectWithoutConnmanFailsAtOnce();
    void connectCanBeRepeatedAfterAFailure();

private:
    static QStringList callsAfterNoReply();
};

QStringList ConnmanServiceConnectTest::callsAfterNoReply()
{
    return {
        call("Connect"), call("Disconnect"),
        setProperty("IPv4.Configuration",
                    "{\"Address\": <\"10.0.0.7\">, \"Gateway\": <\"10.0.0.1\">, \"Method\": <\"manual\">}"),
        getProperties(), getProperties()};
}

void ConnmanServiceConnectTest::connectReturnsTrueOnceConnmanAnswers()
{
    const Fault answered = fault("Connect", FaultKind::reply({}));

    QVERIFY(service().connect());
    QCOMPARE(calls(), QStringList(call("Connect")));
    QCOMPARE(complaints(), QStringList());
    QCOMPARE(debugLines(), QStringList());
}

void ConnmanServiceConnectTest::connectOfANetworkEndsConnected()
{
    const QString open = connman().addNetwork({{"ssid"_s, "Cafe"_s}, {"security"_s, "none"_s}});
    connman().addTechnology("wifi"_s, {{"Powered"_s, true}});
    ConnmanService cafe(connection(), QDBusObjectPath("/net/connman/service/"_s + open), nullptr);
    cafe.serviceChanged();

    QVERIFY(cafe.connect());
    QTRY_VERIFY_WITH_TIMEOUT(cafe.state() >= ConnmanService::State::Ready, eventTimeoutMs);
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceConnectTest::connectIsWokenByTheReplyItself()
{
    // Refused late, and nothing else happens on the bus or in this process until then.
    const Fault late = fault("Connect", FaultKind::delay(300));
    QTimer rescue;
    rescue.start(2 * atOnceMs);
    QElapsedTimer elapsed;
    elapsed.start();

    QVERIFY(!service().connect());
    QVERIFY2(elapsed.elapsed() >= 250, qPrintable(QString::number(elapsed.elapsed())));
    QVERIFY2(elapsed.elapsed() < atOnceMs, qPrintable(QString::number(elapsed.elapsed())));
    QCOMPARE(complaints(), QStringList(failedCallLine("Connect", "net.connman.Error.AlreadyConnected",
                                                      "Already connected")));
}

void ConnmanServiceConnectTest::connectSleepsWhileItWaits()
{
    const Fault late = fault("Connect", FaultKind::delay(500));
    int sleeps = 0;
    const auto counting = connect(QAbstractEventDispatcher::instance(),
                                  &QAbstractEventDispatcher::aboutToBlock, this, [&sleeps] { ++sleeps; });

    QVERIFY(!service().connect());
    disconnect(counting);
    QVERIFY2(sleeps > 0 && sleeps < 20, qPrintable(QString::number(sleeps)));
}

void ConnmanServiceConnectTest::connectServesEventsWhileItWaits()
{
    const Fault late = fault("Connect", FaultKind::delay(300));
    QTimer::singleShot(0, this, [this] {
        connman().setServiceProperty(identifier(), "Strength"_s, QVariant::fromValue<uchar>(17));
    });

    QVERIFY(!service().connect());
    QCOMPARE(service().strength(), 17);
    QCOMPARE(calls(), QStringList(call("Connect")));
}

void ConnmanServiceConnectTest::connectOfAServiceThatIsGoneFailsSilently()
{
    removeServiceUnnoticed();

    QVERIFY(!service().connect());
    QCOMPARE(calls(), QStringList(call("Connect")));
    QCOMPARE(complaints(), QStringList());
    QCOMPARE(debugLines(), QStringList());
}

void ConnmanServiceConnectTest::connectThatFailsIsLoggedWithoutDisconnecting_data()
{
    QTest::addColumn<QByteArray>("error");
    QTest::addColumn<QByteArray>("message");

    const QByteArray connmanError = "net.connman.Error.";
    const QByteArray busError = "org.freedesktop.DBus.Error.";
    QTest::newRow("failed") << connmanError + "Failed" << QByteArray("Input/output error");
    QTest::newRow("in progress") << connmanError + "InProgress" << QByteArray("In progress");
    QTest::newRow("already connected")
        << connmanError + "AlreadyConnected" << QByteArray("Already connected");
    QTest::newRow("not connected") << connmanError + "NotConnected" << QByteArray("Not connected");
    QTest::newRow("aborted") << connmanError + "OperationAborted" << QByteArray("Operation aborted");
    QTest::newRow("ConnMan's own time-out")
        << connmanError + "OperationTimeout" << QByteArray("Operation timeout");
    QTest::newRow("bus time-out") << busError + "Timeout" << QByteArray("Too late");
    QTest::newRow("timed out") << busError + "TimedOut" << QByteArray("Too late");
    QTest::newRow("access denied") << busError + "AccessDenied" << QByteArray("No way");
    QTest::newRow("unknown method") << busError + "UnknownMethod" << QByteArray("What?");
    QTest::newRow("no message") << connmanError + "Failed" << QByteArray();
}

void ConnmanServiceConnectTest::connectThatFailsIsLoggedWithoutDisconnecting()
{
    QFETCH(QByteArray, error);
    QFETCH(QByteArray, message);
    const Fault failing =
        fault("Connect", FaultKind::error(QString::fromLatin1(error), QString::fromLatin1(message)));

    QVERIFY(!service().connect());
    QCOMPARE(calls(), QStringList(call("Connect")));
    QCOMPARE(complaints(), QStringList(failedCallLine("Connect", error.constData(), message.constData())));
    QCOMPARE(debugLines(), QStringList());
}

void ConnmanServiceConnectTest::connectWithoutReplyDisconnectsOnceAndWritesTheAddress()
{
    const Fault noReply = fault("Connect", silence());
    const Fault taken = fault("SetProperty", FaultKind::reply({}));

    QVERIFY(!service().connect());
    QCOMPARE(calls(), callsAfterNoReply());
    QCOMPARE(complaints(),
             QStringList(failedCallLine("Connect", "org.freedesktop.DBus.Error.NoReply", "Silence")));
    QCOMPARE(debugLines(), QStringList(disconnectingLine));
}

void ConnmanServiceConnectTest::connectThatTimesOutAndCannotDisconnectFailsAndSaysSoInOrder()
{
    const Fault noReply = fault("Connect", silence());
    const Fault failing = fault("Disconnect", connmanError("Failed", "Input/output error"));
    const Fault taken = fault("SetProperty", FaultKind::reply({}));

    QVERIFY(!service().connect());
    QCOMPARE(calls(), callsAfterNoReply());
    QCOMPARE(complaints(),
             QStringList({failedCallLine("Connect", "org.freedesktop.DBus.Error.NoReply", "Silence"),
                          failedCallLine("Disconnect", "net.connman.Error.Failed", "Input/output error")}));
    const QStringList lines = log().lines("ConnmanService"_s);
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines.at(1), disconnectingLine);
}

void ConnmanServiceConnectTest::connectToAConnmanThatCrashesFails()
{
    const Fault vanished = fault("Connect", FaultKind::vanish());
    constexpr char Absent[] = "The name net.connman was not provided by any .service files";
    const QString refresh =
        propertiesLine("Call to GetProperties failed: \"%1\""_s.arg(QLatin1String(Absent)));

    QVERIFY(!service().connect());
    QCOMPARE(
        complaints(),
        QStringList({failedCallLine("Connect", "org.freedesktop.DBus.Error.NoReply",
                                    "Message recipient disconnected from message bus without replying"),
                     propertiesLine("Setting property \"IPv4.Configuration\" failed: \"%1\""_s.arg(
                         QLatin1String(Absent))),
                     refresh, refresh,
                     failedCallLine("Disconnect", "org.freedesktop.DBus.Error.ServiceUnknown", Absent)}));
    QCOMPARE(calls(), QStringList(call("Connect")));
}

void ConnmanServiceConnectTest::connectWithoutConnmanFailsAtOnce()
{
    connman().setPresent("net.connman"_s, false);

    QVERIFY(!service().connect());
    QCOMPARE(complaints(),
             QStringList(failedCallLine("Connect", "org.freedesktop.DBus.Error.ServiceUnknown",
                                        "The name net.connman was not provided by any .service files")));
    QCOMPARE(debugLines(), QStringList());
}

void ConnmanServiceConnectTest::connectCanBeRepeatedAfterAFailure()
{
    const Fault failing = fault("Connect", connmanError("Failed", "Input/output error"));
    const Fault answered = fault("Connect", FaultKind::reply({}));

    QVERIFY(!service().connect());
    QVERIFY(service().connect());
    QCOMPARE(calls(), QStringList({call("Connect"), call("Connect")}));
}

static const Suite<ConnmanServiceConnectTest> connmanServiceConnectTest;
#include "ConnmanServiceConnectTest.moc"
