#include "EventWait.h"
#include "Suite.h"
#include "TechnologyFixture.h"
#include "Text.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

using test_support::eventTimeoutMs;
using test_support::Fault;
using test_support::FaultKind;

/// Switching the technology, and scanning with it.
class ConnmanTechnologyPowerTest : public TechnologyFixture
{
    Q_OBJECT

private slots:
    void powerIsSwitched_data();
    void powerIsSwitched();
    void switchingDoesNotRefresh();
    void switchedPowerFollowsConnmansSignal();
    void rejectedPowerIsLogged_data();
    void rejectedPowerIsLogged();
    void switchingARemovedTechnologyIsNotLogged();
    void anyPropertyCanBeSet();
    void powerOfAnotherType_data();
    void powerOfAnotherType();

    void scanBlocksUntilConnmanHasScanned();
    void scanProcessesNoEvents();
    void failedScanIsLogged_data();
    void failedScanIsLogged();
};

void ConnmanTechnologyPowerTest::powerIsSwitched_data()
{
    QTest::addColumn<bool>("before");
    QTest::addColumn<QByteArray>("arguments");
    QTest::newRow("off") << true << QByteArray("\"Powered\", <false>");
    QTest::newRow("on") << false << QByteArray("\"Powered\", <true>");
}

void ConnmanTechnologyPowerTest::powerIsSwitched()
{
    QFETCH(bool, before);
    QFETCH(QByteArray, arguments);
    connman().setTechnologyProperty(name(), powered, before, true);

    QVERIFY(technology().setPowered(!before));
    QCOMPARE(calls(), QStringList(call("SetProperty", arguments.constData())));
    QCOMPARE(criticalLines(), QStringList());
    QCOMPARE(debugLines().constFirst(),
             "\"Powered\" -> QVariant(bool, %1)"_s.arg(QVariant(!before).toString()));
}

void ConnmanTechnologyPowerTest::switchingDoesNotRefresh()
{
    const Fault taken = fault("SetProperty", FaultKind::reply({}));

    QVERIFY(technology().setProperty("Connected"_s, false));
    QVERIFY(technology().isConnected());
    QCOMPARE(calls(), QStringList(call("SetProperty", "\"Connected\", <false>")));
}

void ConnmanTechnologyPowerTest::switchedPowerFollowsConnmansSignal()
{
    QVERIFY(technology().setPowered(false));
    QTRY_VERIFY_WITH_TIMEOUT(log().contains("propertyChanged( \"Powered\" ,  QVariant(bool, false) )"_s),
                             eventTimeoutMs);
    QCOMPARE(calls(), QStringList(call("SetProperty", "\"Powered\", <false>")));
}

void ConnmanTechnologyPowerTest::powerOfAnotherType_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("power");
    QTest::newRow("1") << QVariant(1) << 1;
    QTest::newRow("0") << QVariant(0) << 0;
    QTest::newRow("another number") << QVariant(7) << 1;
    QTest::newRow("negative number") << QVariant(-1) << 1;
    QTest::newRow("large number") << QVariant(qlonglong(1) << 32) << 1;
    QTest::newRow("fraction") << QVariant(0.5) << 1;
    QTest::newRow("byte 0") << QVariant::fromValue(uchar(0)) << 0;
    QTest::newRow("byte 1") << QVariant::fromValue(uchar(1)) << 1;
    QTest::newRow("number in a string") << QVariant("1"_s) << -1;
    QTest::newRow("word") << QVariant("true"_s) << -1;
    QTest::newRow("empty dictionary") << QVariant(QVariantMap()) << -1;
    QTest::newRow("dictionary") << QVariant(QVariantMap{{"a"_s, 1}}) << -1;
}

void ConnmanTechnologyPowerTest::powerOfAnotherType()
{
    QFETCH(QVariant, value);
    QFETCH(int, power);
    connman().setTechnologyProperty(name(), powered, value, true);

    QCOMPARE(technology().isPowered(), power);
    const QStringList invalid{"Invalid type of property \"Powered\" of service \"%1\""_s.arg(path())};
    QCOMPARE(criticalLines(), power < 0 ? invalid : QStringList());
}

void ConnmanTechnologyPowerTest::rejectedPowerIsLogged_data()
{
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("message");

    QTest::newRow("already on") << "net.connman.Error.AlreadyEnabled"_s
                                << "Already enabled"_s;
    QTest::newRow("no carrier") << "net.connman.Error.NoCarrier"_s
                                << "No carrier"_s;
    QTest::newRow("in progress") << "net.connman.Error.InProgress"_s
                                 << "In progress"_s;
    QTest::newRow("access denied") << "org.freedesktop.DBus.Error.AccessDenied"_s
                                   << "No way"_s;
}

void ConnmanTechnologyPowerTest::rejectedPowerIsLogged()
{
    QFETCH(QString, error);
    QFETCH(QString, message);
    const Fault rejected = fault("SetProperty", FaultKind::error(error, message));

    QVERIFY(!technology().setPowered(true));
    QCOMPARE(criticalLines(), QStringList("Setting property \"Powered\" failed: \"%1\""_s.arg(message)));
    QCOMPARE(calls(), QStringList(call("SetProperty", "\"Powered\", <true>")));
}

void ConnmanTechnologyPowerTest::switchingARemovedTechnologyIsNotLogged()
{
    connman().removeTechnology(name());

    QVERIFY(!technology().setPowered(true));
    QCOMPARE(criticalLines(), QStringList());
}

void ConnmanTechnologyPowerTest::anyPropertyCanBeSet()
{
    const Fault taken = fault("SetProperty", FaultKind::reply({}));

    QVERIFY(technology().setProperty("TetheringIdentifier"_s, "printer"_s));
    QCOMPARE(calls(), QStringList(call("SetProperty", "\"TetheringIdentifier\", <\"printer\">")));
}

void ConnmanTechnologyPowerTest::scanBlocksUntilConnmanHasScanned()
{
    constexpr int scanMs = 300;
    const Fault slow = fault("Scan", FaultKind::delay(scanMs));
    QElapsedTimer elapsed;
    elapsed.start();

    QVERIFY(technology().scan());
    QVERIFY2(elapsed.elapsed() >= scanMs * 8 / 10, qPrintable(QString::number(elapsed.elapsed())));
    QCOMPARE(calls(), QStringList(call("Scan")));
    QCOMPARE(criticalLines(), QStringList());
}

void ConnmanTechnologyPowerTest::scanProcessesNoEvents()
{
    const Fault slow = fault("Scan", FaultKind::delay(100));
    bool processed = false;
    QMetaObject::invokeMethod(
        this, [&processed] { processed = true; }, Qt::QueuedConnection);

    QVERIFY(technology().scan());
    QVERIFY(!processed);
    QCoreApplication::processEvents();
    QVERIFY(processed);
}

void ConnmanTechnologyPowerTest::failedScanIsLogged_data()
{
    QTest::addColumn<QString>("error");

    QTest::newRow("no carrier") << "net.connman.Error.NoCarrier"_s;
    QTest::newRow("no reply") << "org.freedesktop.DBus.Error.NoReply"_s;
    QTest::newRow("unknown object") << "org.freedesktop.DBus.Error.UnknownObject"_s;
}

void ConnmanTechnologyPowerTest::failedScanIsLogged()
{
    QFETCH(QString, error);
    const Fault failing = fault("Scan", FaultKind::error(error, "Because"_s));

    QVERIFY(!technology().scan());
    QCOMPARE(criticalLines(),
             QStringList("Failed to asynchronously call Scan on \"%1\" : \"Because\""_s.arg(path())));
    QCOMPARE(calls(), QStringList(call("Scan")));
}

static const Suite<ConnmanTechnologyPowerTest> connmanTechnologyPowerTest;
#include "ConnmanTechnologyPowerTest.moc"
