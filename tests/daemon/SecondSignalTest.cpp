#include "HangingScene.h"
#include "Suite.h"

#include <csignal>

#include <QTest>

using namespace test_support;

/// Who does not want to wait until a blocked daemon ends by itself asks a second time.
class SecondSignalTest : public QObject
{
    Q_OBJECT

private slots:
    void secondSignalEndsABlockedDaemonAtOnce_data() { addAllMoments(); }
    void secondSignalEndsABlockedDaemonAtOnce();
};

void SecondSignalTest::secondSignalEndsABlockedDaemonAtOnce()
{
    QFETCH(BlockingMoment, block);
    HangingDevice device;
    QVERIFY(block(device));
    QVERIFY(device.daemon.sendSignal(SIGTERM));
    QTRY_VERIFY(!device.daemon.catches(SIGTERM));
    QVERIFY(device.daemon.sendSignal(SIGTERM));
    QCOMPARE(device.daemon.waitForExit(), 128 + SIGTERM);
}

static const Suite<SecondSignalTest> secondSignalTest;
#include "SecondSignalTest.moc"
