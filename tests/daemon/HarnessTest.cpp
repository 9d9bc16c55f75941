#include "Suite.h"
#include "TestDevice.h"
#include "Text.h"

#include <csignal>

#include <QTest>

using namespace test_support;

/// What the tests of the daemon rely on.
class HarnessTest : public QObject
{
    Q_OBJECT

private slots:
    void clientMayGoBeforeItsCallsAreAnswered();
    void linesBeforeAnAnswerAreInTheLog();
};

void HarnessTest::clientMayGoBeforeItsCallsAreAnswered()
{
    constexpr int manyClients = 100; // a few get away with it
    LonelyDaemon device;
    QVERIFY(device.start());
    QVERIFY(device.daemon.sendSignal(SIGSTOP));
    for (int number = 0; number < manyClients; ++number) {
        DaemonClient client(device.bus.address());
        client.send("getWifiRegion");
        client.send("getWifiRegion");
    }
    QVERIFY(device.daemon.sendSignal(SIGCONT));
    device.client.settle(); // a daemon that ends before it has seen to them still has their messages
}

void HarnessTest::linesBeforeAnAnswerAreInTheLog()
{
    LonelyDaemon device;
    QVERIFY(device.start());
    QDBusMessage call = QDBusMessage::createMethodCall("com.tactora.NetworkManager"_s, "/"_s,
                                                       "com.tactora.NetworkManager"_s, "getHwAddress"_s);
    call << "x"_s;
    // No event is seen to meanwhile, the daemon's output neither.
    QCOMPARE(device.client.connection().call(call, QDBus::Block).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(device.daemon.log().takeProblems().size(), 1);
}

static const Suite<HarnessTest> harnessTest;
#include "HarnessTest.moc"
