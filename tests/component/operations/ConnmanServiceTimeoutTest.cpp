#include "ServiceFixture.h"
#include "Suite.h"
#include "Text.h"

#include <QElapsedTimer>
#include <QTest>

using test_support::Fault;
using test_support::FaultKind;

/// How long an operation waits for a ConnMan that has nothing to say: in real time.
class ConnmanServiceTimeoutTest : public ServiceFixture
{
    Q_OBJECT

private slots:
    void connectIsGivenUpAfterTwoMinutesAndDisconnectsOnce();
};

void ConnmanServiceTimeoutTest::connectIsGivenUpAfterTwoMinutesAndDisconnectsOnce()
{
    constexpr qint64 TwoMinutes = 120000;
    constexpr qint64 Tolerance = 1000;
    const Fault unanswered = fault("Connect", FaultKind::never());
    const Fault taken = fault("SetProperty", FaultKind::reply({}));
    QElapsedTimer elapsed;
    elapsed.start();

    QVERIFY(!service().connect());
    QVERIFY2(elapsed.elapsed() >= TwoMinutes - Tolerance, qPrintable(QString::number(elapsed.elapsed())));
    QVERIFY2(elapsed.elapsed() < 2 * TwoMinutes, qPrintable(QString::number(elapsed.elapsed())));
    QCOMPARE(calls().mid(0, 2), QStringList({call("Connect"), call("Disconnect")}));
    QCOMPARE(calls().count(call("Disconnect")), 1);
    QCOMPARE(complaints().size(), 1);
    QVERIFY(complaints().constFirst().startsWith(
        serviceLine("Failed to asynchronously call Connect on \"%1\" : "
                    "QDBusError(\"org.freedesktop.DBus.Error.NoReply\", "_s.arg(path()))));
    QCOMPARE(debugLines(), QStringList("Disconnecting service due to timeout."_s));
}

static const Suite<ConnmanServiceTimeoutTest> connmanServiceTimeoutTest;
#include "ConnmanServiceTimeoutTest.moc"
