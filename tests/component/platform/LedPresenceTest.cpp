#include "FakeLed.h"
#include "LedScene.h"
#include "LogCapture.h"
#include "Suite.h"
#include "Text.h"
#include <libled/Led.h>

#include <QCoreApplication>
#include <QFile>
#include <QTest>

using test_support::FakeDevices;
using test_support::LogCapture;

/// A LED that fails, goes away or comes.
class LedPresenceTest : public QObject
{
    Q_OBJECT

private slots:
    void ledThatComesLaterWorksFromThenOn_data();
    void ledThatComesLaterWorksFromThenOn();
    void triggerThatComesLaterIsUsed();
    void ledThatComesBackIsWrittenAnew();
    void ledThatWentAwayIsLoggedOnce_data();
    void ledThatWentAwayIsLoggedOnce();
    void failedWriteIsLoggedOnce();
    void failedWriteIsTriedAgain();
    void failedWriteLeavesNothingThatNeedNotBeWritten();
    void failureAfterASuccessIsLoggedAgain();
    void blinkingOnALedThatWentAwayIsLoggedOnce();
    void fileThatWentAwayIsNotMadeAnew();
};

void LedPresenceTest::ledThatComesLaterWorksFromThenOn_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QStringList>("writes");
    QTest::newRow("on") << Call([](Led &led) { led.on(); })
                        << QStringList{"trigger=none"_s, "brightness=127"_s};
    QTest::newRow("off") << Call([](Led &led) { led.off(); })
                         << QStringList{"trigger=none"_s, "brightness=0"_s};
    QTest::newRow("blink") << Call([](Led &led) { led.blink(500, untilToldOtherwise); })
                           << QStringList{"trigger=timer"_s, "delay_on=250"_s, "delay_off=250"_s};
}

void LedPresenceTest::ledThatComesLaterWorksFromThenOn()
{
    QFETCH(Call, call);
    QFETCH(QStringList, writes);
    LogCapture log;
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    Led led(ledName, nullptr);
    QVERIFY(!led.isValid());
    call(led);
    const FakeLed files(devices, ledName);
    QVERIFY(led.isValid());
    call(led);
    QCOMPARE(files.takeWrites(), writes);
    QCOMPARE(log.takeCriticals(), QStringList());
}

// The kernel's module for it may be loaded late.
void LedPresenceTest::triggerThatComesLaterIsUsed()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName, FakeLed::withoutTimerTrigger());
    Led led(ledName, nullptr);
    led.on();
    files.setUp(FakeLed::kernelBlinking());
    files.takeWrites();
    led.blink(500, untilToldOtherwise);
    QCOMPARE(files.takeWrites(), (QStringList{"trigger=timer"_s, "delay_on=250"_s, "delay_off=250"_s}));
}

void LedPresenceTest::ledThatComesBackIsWrittenAnew()
{
    const LogCapture log;
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed files(devices, ledName);
    Led led(ledName, nullptr);
    led.on();
    files.unplug();
    files.plugIn();
    led.on();
    QCOMPARE(files.content(brightness), QByteArray("127"));
    QCOMPARE(files.content(trigger), QByteArray("none"));

    files.unplug();
    led.on();
    files.plugIn();
    led.on();
    QCOMPARE(files.content(brightness), QByteArray("127"));
    QCOMPARE(log.lines("libled"_s).size(), 1);
}

void LedPresenceTest::ledThatWentAwayIsLoggedOnce_data()
{
    QTest::addColumn<Call>("call");
    QTest::newRow("on") << Call([](Led &led) { led.on(); });
    QTest::newRow("off") << Call([](Led &led) { led.off(); });
    QTest::newRow("blink") << Call([](Led &led) { led.blink(500, untilToldOtherwise); });
}

void LedPresenceTest::ledThatWentAwayIsLoggedOnce()
{
    QFETCH(Call, call);
    const LogCapture log;
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed files(devices, ledName);
    Led led(ledName, nullptr);
    files.unplug();
    call(led);
    led.on();
    led.blink(500, 0);
    led.off();
    QCoreApplication::processEvents();
    QCOMPARE(log.lines("libled"_s), QStringList("LED \"/sys/class/leds/led8/\" went away."_s));
}

void LedPresenceTest::failedWriteIsLoggedOnce()
{
    LogCapture log;
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName);
    Led led(ledName, nullptr);
    files.breakFile(brightness);
    led.on();
    led.off();
    led.on();
    QCOMPARE(log.lines("libled"_s), QStringList{"Writing \"/sys/class/leds/led8/brightness\" failed: "
                                                "\"No space left on device\""_s});
    QCOMPARE(log.takeCriticals().size(), 1);
}

void LedPresenceTest::failedWriteIsTriedAgain()
{
    const LogCapture log;
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName);
    Led led(ledName, nullptr);
    files.breakFile(brightness);
    led.on();
    QCOMPARE(log.lines("libled"_s).size(), 1);
    files.restoreFile(brightness);
    led.on();
    QCOMPARE(files.content(brightness), QByteArray("127"));
}

// Nobody knows how far a failed write came.
void LedPresenceTest::failedWriteLeavesNothingThatNeedNotBeWritten()
{
    const LogCapture log;
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName);
    Led led(ledName, nullptr);
    led.on();
    files.breakFile(brightness);
    led.off();
    QCOMPARE(log.lines("libled"_s).size(), 1);
    files.restoreFile(brightness);
    files.takeWrites();
    led.on();
    QCOMPARE(files.takeWrites(), QStringList{"brightness=127"_s});
}

void LedPresenceTest::failureAfterASuccessIsLoggedAgain()
{
    LogCapture log;
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName);
    Led led(ledName, nullptr);
    files.breakFile(brightness);
    led.on();
    files.restoreFile(brightness);
    led.on();
    files.breakFile(brightness);
    led.off();
    QCOMPARE(log.takeCriticals().size(), 2);
}

void LedPresenceTest::blinkingOnALedThatWentAwayIsLoggedOnce()
{
    LogCapture log;
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName, FakeLed::withoutTimerTrigger());
    const FakeLed witnessFiles(devices, "led10"_s, FakeLed::withoutTimerTrigger());
    Led led(ledName, nullptr);
    Led witness("led10"_s, nullptr);
    led.blink(10, untilToldOtherwise);
    QVERIFY(QFile::remove(files.realPath(brightness)));
    witness.blink(100, untilToldOtherwise);
    QTRY_COMPARE(witnessFiles.content(brightness), QByteArray("0"));
    QCOMPARE(log.takeCriticals().size(), 1);
}

void LedPresenceTest::fileThatWentAwayIsNotMadeAnew()
{
    LogCapture log;
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName);
    Led led(ledName, nullptr);
    QVERIFY(QFile::remove(files.realPath(brightness)));
    led.on();
    QVERIFY(!QFile::exists(files.realPath(brightness)));
    QCOMPARE(log.takeCriticals().size(), 1);
}

static const Suite<LedPresenceTest> ledPresenceTest;
#include "LedPresenceTest.moc"
