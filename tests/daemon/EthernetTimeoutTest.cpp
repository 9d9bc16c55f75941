#include "EthernetScene.h"
#include "Suite.h"
#include <QElapsedTimer>
#include <QTest>

using namespace scene;
using namespace test_support;

/// A cable that brings no address: at the sixteenth look, some 32 seconds after "eth0" is ready, the user is
/// told.
class EthernetTimeoutTest : public QObject
{
    Q_OBJECT
private slots:
    void missingAddressIsToldAtTheSixteenthTick();
    void addressAtTheSixteenthTickIsSpokenAfterTheComplaint();
    void readyReportBeginsTheCountAnew();
};

void EthernetTimeoutTest::missingAddressIsToldAtTheSixteenthTick()
{
    Wired device;
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QElapsedTimer clock;
    clock.start();
    QVERIFY(device.waitForTicks(15));
    QCOMPARE(spoken(device.simulator), QStringList());
    QVERIFY(device.waitForSpeech({sentence(8)}));
    QVERIFY2(clock.elapsed() > 16 * tickMs * 9 / 10, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(device.devices().waitForLed(ethernetLed, LedPattern::blink(500)));
    QVERIFY(device.waitForTicks(16));
    QVERIFY(device.devices().waitForLed(ethernetLed, LedPattern::off()));
    // The timer is stopped: an address that comes now is not noticed.
    device.setIpv4("192.168.1.7"_s);
    QVERIFY(device.staysSilent());
    QCOMPARE(device.ticks(), 16);
}

void EthernetTimeoutTest::addressAtTheSixteenthTickIsSpokenAfterTheComplaint()
{
    Wired device;
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QVERIFY(device.waitForTicks(15));
    device.setIpv4("192.168.1.7"_s);
    QVERIFY(device.waitForSpeech({sentence(8), ipv4Sentence()}));
    QVERIFY(device.devices().waitForLed(ethernetLed, LedPattern::on()));
    QVERIFY(device.staysSilent());
}

void EthernetTimeoutTest::readyReportBeginsTheCountAnew()
{
    Wired device;
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QVERIFY(device.waitForTicks(2));
    for (int replug = 0; replug < 20; ++replug) {
        device.reportState(cable, "configuration"_s);
        device.ready();
    }
    const int before = device.ticks();
    QVERIFY(device.waitForTicks(before + 15));
    QCOMPARE(spoken(device.simulator), QStringList());
    QVERIFY(device.waitForSpeech({sentence(8)}));
    QVERIFY(device.waitForTicks(before + 16));
    QVERIFY(device.staysSilent());
    QCOMPARE(device.ticks(), before + 16);
}

static const Suite<EthernetTimeoutTest> ethernetTimeoutTest;
#include "EthernetTimeoutTest.moc"
